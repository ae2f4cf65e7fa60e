#include "FakeCommand.h"

#include <cstdio>
#include <cstring>

std::string Hex(const std::string& bytes)
{
    constexpr char DIGITS[] = "0123456789abcdef";
    std::string hex;
    hex.reserve(2 * bytes.size());
    for (const char byte : bytes) {
        hex += DIGITS[static_cast<unsigned char>(byte) / 16];
        hex += DIGITS[static_cast<unsigned char>(byte) % 16];
    }
    return hex;
}

std::string FakeCommand::Answer() const
{
    if (nAnswers != 1) {
        return nAnswers == 0 ? "none" : "twice";
    }
    if (!bFailed) {
        return "buffer " + Hex(buffer);
    }
    ORVA_NET_PROTOCOL::_kest_net_reply expected{};
    expected.dwResult = record.dwResult;
    if (memcmp(&expected, &record, sizeof(record)) != 0) {
        return "failure with a record that is not zero behind its code";
    }
    char szCode[9];
    snprintf(szCode, sizeof(szCode), "%08x", record.dwResult);
    return std::string("failure ") + szCode;
}
