#pragma once

#include <memory>
#include <string>
#include <vector>

#include <asio/io_context.hpp>

#include "Options.h"
#include "Server/Device.h"
#include "Server/PcapFile.h"
#include "Server/Server.h"

namespace simulated_decoder {

// The decoders of one process, one or many. Each has its wall and its port; account and keys are the same, so
// that a thousand of them need not wait for two thousand keys.
class Fleet {
public:
    struct Decoder {
        Decoder(asio::io_context& context, PcapFile& capture, const Options& options,
                std::shared_ptr<const DeskKeys> keys, std::uint16_t port);

        Device device;
        Server server;
    };

    // All of them listen when it returns. Fails as Device, PcapFile and Server do.
    Fleet(asio::io_context& context, const Options& options);

    Decoder& First() { return *m_decoders.front(); }

    // Each reads its channels again and tells its hosts.
    void ReloadChannels();

    // One number a line.
    std::string Ports() const;
    // For standard output: where each can be reached, one a line.
    std::string Announcement() const;

private:
    PcapFile m_capture; // of all of them
    std::vector<std::unique_ptr<Decoder>> m_decoders;
};

} // namespace simulated_decoder
