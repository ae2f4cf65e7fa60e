// Replays the inputs of a fuzz target without the fuzzer, and variations of them that are always the same,
// and holds what came out against the checksums beside the folder, one for each input. "record" writes those
// anew; "show" prints what comes out of one input, to be compared with another build.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <set>

#include "FuzzScript.h"
#include "LinkTexts.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

namespace fs = std::filesystem;

// What texts and records are changed into; the first ones leave XML well formed.
constexpr char kPieceTexts[] =
    "|0|-1|+5| 7 |0x10|007|1.5|255|65536|2147483648|4294967296|99999999999999999999|&amp;|&#65;|&#x0000041;|"
    "<!-- c -->|<![CDATA[&1]]>|\r\n|<x/>|"
    "&lt|<x>|</x>| a='1'|\0\0\0\0|\xFF\xFF\xFF\xFF|\1\0\0\0|\0\0\0\x80|\x80";
const std::vector<std::string_view> kPieces = Split({kPieceTexts, sizeof(kPieceTexts) - 1});
constexpr size_t kWellFormed = 20;
constexpr size_t kMany = 300; // more than a byte counts

// Changes that are always the same: the generator's own numbers are on every machine.
class Variations {
public:
    std::string Of(std::string input)
    {
        const bool keepForm = input.find("</") != std::string::npos && Below(4) > 0;
        for (size_t changes = 1 + Below(3); changes > 0; --changes) {
            const size_t at = Below(input.size());
            size_t tag = input.find('<', at);
            while (tag != std::string::npos && input[tag + 1] == '/') {
                tag = input.find('<', tag + 1);
            }
            if (keepForm && tag != std::string::npos) {
                ChangeElement(input, tag);
            } else {
                ChangeBytes(input, at);
            }
        }
        return input;
    }

private:
    size_t Below(size_t n) { return n == 0 ? 0 : m_random() % n; }

    // The text after its start tag, or the whole element is taken away or put in again.
    void ChangeElement(std::string& xml, size_t begin)
    {
        const size_t nameEnd = xml.find_first_of(" />", begin + 1);
        const size_t text = xml.find('>', begin) + 1;
        const std::string endTag = "</" + xml.substr(begin + 1, nameEnd - begin - 1) + ">";
        const size_t end = xml.find(endTag, begin);
        if (Below(2) == 0 || end == std::string::npos) {
            xml.replace(text, xml.find('<', text) - text, kPieces[Below(kWellFormed)]);
        } else if (const std::string element = xml.substr(begin, end + endTag.size() - begin);
                   Below(2) == 0) {
            xml.erase(begin, element.size());
        } else {
            xml.insert(begin, Repeat(element, Below(8) == 0 ? kMany : 1));
        }
    }

    void ChangeBytes(std::string& bytes, size_t at)
    {
        const size_t from = Below(bytes.size()), length = Below(64), piece = Below(kPieces.size());
        switch (Below(6)) {
        case 0:
            bytes.replace(at, length % 5, kPieces[piece]);
            break;
        case 1:
            bytes.erase(at, length);
            break;
        case 2:
            bytes.insert(at, bytes.substr(from, length));
            break;
        case 3:
            bytes.resize(at);
            break;
        case 4:
            bytes.insert(at, Repeat(bytes.substr(from, 1 + length % 16), kMany));
            break;
        default:
            if (!bytes.empty()) {
                bytes[at] = static_cast<char>(m_random());
            }
        }
    }

    std::mt19937 m_random;
};

std::string OutcomeOf(const fs::path& path)
{
    std::string outcome;
    std::ifstream file(path, std::ios::binary);
    const std::string input{std::istreambuf_iterator<char>(file), {}};
    Variations variations;
    g_outcome = &outcome;
    for (int n = 0; n <= VARIATIONS; ++n) {
        const std::string bytes = n == 0 ? input : variations.Of(input);
        Observe("-- " + std::to_string(n));
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    }
    g_outcome = nullptr;
    return outcome;
}

// FNV-1a of 64 bits, as text.
std::string ChecksumOf(const std::string& text)
{
    uint64_t hash = 0xCBF29CE484222325;
    for (const char byte : text) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
    }
    return std::to_string(hash);
}

} // namespace

int main(int argc, char** argv)
{
    const std::string way = argc == 3 ? argv[1] : "";
    if (way == "show") {
        std::cout << OutcomeOf(argv[2]);
        return 0;
    }
    if (argc != (way == "record" ? 3 : 2)) {
        fputs("usage: TARGET [record] FOLDER, or TARGET show FILE\n", stderr);
        return 2;
    }
    const fs::path folder = argv[argc - 1];
    std::set<std::string> outcomes;
    for (const auto& entry : fs::directory_iterator(folder)) {
        outcomes.insert(entry.path().filename().string() + ' ' + ChecksumOf(OutcomeOf(entry.path())));
    }
    std::fstream recorded(folder.string() + ".outcomes",
                          way.empty() ? std::ios::in : std::ios::out | std::ios::trunc);
    if (!way.empty()) {
        std::copy(outcomes.begin(), outcomes.end(), std::ostream_iterator<std::string>(recorded, "\n"));
        return recorded.flush() ? 0 : 1;
    }
    std::set<std::string> expected;
    for (std::string line; std::getline(recorded, line);) {
        expected.insert(line);
    }
    for (const std::string& outcome : outcomes) {
        if (expected.count(outcome) == 0) {
            printf("not as recorded: %s\n", outcome.c_str());
        }
    }
    return outcomes == expected && !outcomes.empty() ? 0 : 1;
}
