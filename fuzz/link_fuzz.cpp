// Bytes from the link, whole and in any pieces, in both ways of receiving: the frames are the same.

#include <algorithm>
#include <vector>

#include "FuzzSession.h"
#include "HostFunctions.h"
#include "Link/NetPacketProcTWDecoderDev.h"

namespace {

using Frames = std::vector<std::string>;

unsigned int Collect(tagNET_PACKETTYPE type, const char* data, unsigned long len, void* param)
{
    const bool pooled = len == MEM_POOL_HANDLE_LEN;
    const std::string bytes =
        pooled ? std::string(MEM_POOL_GetData(data), MEM_POOL_GetLen(data)) : std::string(data, len);
    static_cast<Frames*>(param)->push_back(std::to_string(type) + bytes);
    return 0;
}

// The pieces are as long as the bytes of cuts say, over and over; without cuts the stream comes whole.
Frames Parse(const std::string& stream, const std::string& cuts, bool buffered)
{
    Frames frames;
    CNetPacketProcTWDECODERDev parser;
    parser.Initial(&Collect, &frames);
    std::string kept;
    size_t cut = 0;
    for (size_t at = 0; at < stream.size();) {
        const size_t piece =
            cuts.empty() ? stream.size() : 1 + static_cast<unsigned char>(cuts[cut++ % cuts.size()]);
        kept += stream.substr(at, piece);
        at += piece;
        unsigned int consumed = 0;
        unsigned int need = 0;
        // In memory of its own, so that the sanitizer sees reads behind its end.
        const std::vector<char> exact(kept.begin(), kept.end());
        Require(parser.RecvProc(exact.data(), exact.size(), consumed, buffered ? nullptr : &need));
        Observe(std::to_string(consumed) + ' ' + std::to_string(need));
        Require(consumed <= kept.size() && (!buffered || consumed == kept.size()));
        kept.erase(0, consumed);
    }
    std::for_each(frames.begin(), frames.end(), Observe);
    return frames;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzScript script(data, size);
    const std::string cuts = script.Text(script.Number() % 8);
    const std::string stream = script.Rest();
    const Frames whole = Parse(stream, "", false);
    Require(Parse(stream, cuts, false) == whole);
    Require(Parse(stream, "", true) == whole);
    Require(Parse(stream, cuts, true) == whole);
    Require(fake_host::LiveBuffers() == 0);
    return 0;
}
