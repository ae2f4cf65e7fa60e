#include "Fleet.h"

#include <utility>

namespace simulated_decoder {

Fleet::Decoder::Decoder(asio::io_context& context, PcapFile& capture, const Options& options,
                        std::shared_ptr<const DeskKeys> keys, std::uint16_t port)
    : device(options.device, std::move(keys)), server(context, device, capture, options.host, port)
{
}

Fleet::Fleet(asio::io_context& context, const Options& options) : m_capture(options.pcap)
{
    const auto keys = std::make_shared<const DeskKeys>();
    for (std::uint32_t i = 0; i < options.decoders; ++i) {
        const std::uint32_t port = options.port == 0 ? 0 : options.port + i;
        m_decoders.push_back(
            std::make_unique<Decoder>(context, m_capture, options, keys, static_cast<std::uint16_t>(port)));
    }
}

void Fleet::ReloadChannels()
{
    for (const auto& decoder : m_decoders) {
        decoder->server.Notify(decoder->device.ReloadChannels());
    }
}

std::string Fleet::Ports() const
{
    std::string text;
    for (const auto& decoder : m_decoders) {
        text += std::to_string(decoder->server.Port()) + '\n';
    }
    return text;
}

std::string Fleet::Announcement() const
{
    std::string text;
    for (const auto& decoder : m_decoders) {
        text += "listening on " + decoder->server.Where() + '\n';
    }
    return text;
}

} // namespace simulated_decoder
