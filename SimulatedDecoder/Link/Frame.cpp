#include "Link/Frame.h"

#include <cstdint>

namespace simulated_decoder {

namespace {

constexpr std::string_view kMagic = "1111";

std::uint32_t ReadLength(std::string_view head)
{
    std::uint32_t value = 0;
    for (std::size_t i = kFrameHeadLength; i > kMagic.size(); --i) {
        value = value << 8U | static_cast<unsigned char>(head[i - 1]);
    }
    return value;
}

} // namespace

std::string EncodeFrame(std::string_view payload)
{
    std::string frame(kMagic);
    for (unsigned int shift = 0; shift < 32; shift += 8) {
        frame += static_cast<char>(payload.size() >> shift & 0xFFU);
    }
    frame += payload;
    return frame;
}

std::string DeviceHead()
{
    std::string head = "DEVICE HEAD ";
    head += EncodeFrame("inside");
    head.resize(kDeviceHeadLength, '1');
    return head;
}

void FrameReader::Feed(std::string_view bytes)
{
    m_buffer.erase(0, m_taken);
    m_taken = 0;
    m_buffer += bytes;
}

FrameReader::Result FrameReader::Next(std::string& payload)
{
    const std::string_view rest = std::string_view(m_buffer).substr(m_taken);
    if (rest.size() < kFrameHeadLength) {
        return Result::NeedMore;
    }
    if (!rest.starts_with(kMagic)) {
        return Result::BadHead;
    }
    const std::size_t length = ReadLength(rest);
    if (length > kMaxPayload) {
        return Result::TooLong;
    }
    if (rest.size() - kFrameHeadLength < length) {
        return Result::NeedMore;
    }
    m_taken += kFrameHeadLength + length;
    if (length == 0) {
        return Result::Heartbeat;
    }
    payload = rest.substr(kFrameHeadLength, length);
    return Result::Payload;
}

} // namespace simulated_decoder
