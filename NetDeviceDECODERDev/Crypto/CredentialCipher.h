#pragma once

#include <string>
#include <string_view>

#include "Crypto/tdcrypto.h"

// Enciphers the credentials of one command under one key. Under a long key a whole wall takes minutes, so a
// session that is stopped meanwhile gives up and enciphers nothing more. Worker thread only.
class CCredentialCipher {
public:
    // runFlag is 0 once the session is stopped; bGivenUp is set once that has been seen. Both outlive the
    // cipher.
    CCredentialCipher(const std::string& pubKeyPem, const volatile int& runFlag, bool& bGivenUp);

    // Base64 text of the ciphertext; empty without a usable key, for an empty text, and after giving up.
    std::string Encrypt(std::string_view text) const;

private:
    tdcrypto::CRsaPubKey m_key;
    const volatile int& m_runFlag;
    bool& m_bGivenUp;
};
