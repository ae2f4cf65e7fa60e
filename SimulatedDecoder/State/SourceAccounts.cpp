#include "State/SourceAccounts.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "Link/Crypto.h"

namespace simulated_decoder {

SourceAccounts SourceAccounts::Load(const std::string& path)
{
    std::ifstream file(path);
    if (!file) {
        throw std::runtime_error("cannot read source accounts from " + path + ": " +
                                 std::generic_category().message(errno));
    }
    SourceAccounts accounts;
    accounts.m_limited = true;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        if (line.empty()) {
            continue;
        }
        const auto colon = line.find(':');
        if (colon == 0 || colon == std::string::npos || colon + 1 == line.size()) {
            throw std::runtime_error("line " + std::to_string(number) + " of " + path +
                                     " is not USER:PASSWORD");
        }
        accounts.m_digests.emplace(line.substr(0, colon), Sha256Hex(line.substr(colon + 1)));
    }
    if (file.bad() || accounts.m_digests.empty()) {
        throw std::runtime_error("no source accounts in " + path);
    }
    return accounts;
}

bool SourceAccounts::Accept(std::string_view user, std::string_view password) const
{
    if (!m_limited) {
        return true;
    }
    const std::string digest = Sha256Hex(password);
    const auto [first, last] = m_digests.equal_range(user);
    return std::any_of(first, last, [&](const auto& account) { return account.second == digest; });
}

} // namespace simulated_decoder
