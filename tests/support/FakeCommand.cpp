#include "FakeCommand.h"

#include <cstdio>
#include <cstring>

std::string Hex(const std::string& bytes)
{
    constexpr char kDigits[] = "0123456789abcdef";
    std::string hex;
    hex.reserve(2 * bytes.size());
    for (const char byte : bytes) {
        hex += kDigits[static_cast<unsigned char>(byte) / 16];
        hex += kDigits[static_cast<unsigned char>(byte) % 16];
    }
    return hex;
}

std::string FakeCommand::Answer() const
{
    if (answers != 1) {
        return answers == 0 ? "none" : "twice";
    }
    if (!failed) {
        return "buffer " + Hex(buffer);
    }
    ORVA_NET_PROTOCOL::_kest_net_reply expected{};
    expected.dwResult = record.dwResult;
    if (memcmp(&expected, &record, sizeof(record)) != 0) {
        return "failure with a record that is not zero behind its code";
    }
    char code[9];
    snprintf(code, sizeof(code), "%08x", record.dwResult);
    return std::string("failure ") + code;
}
