#pragma once

#include <map>
#include <string>
#include <string_view>

namespace simulated_decoder {

// The accounts that open video sources. Keeps digests of the passwords, not the passwords.
class SourceAccounts {
public:
    // Every account is valid.
    SourceAccounts() = default;
    // From a file with lines USER:PASSWORD; a password may hold colons. Throws std::runtime_error with one
    // line for the user, which quotes nothing from the file, when it cannot be read.
    static SourceAccounts Load(const std::string& path);

    bool Accept(std::string_view user, std::string_view password) const;

private:
    bool m_limited = false;
    std::multimap<std::string, std::string, std::less<>> m_digests; // digests of each user's passwords
};

} // namespace simulated_decoder
