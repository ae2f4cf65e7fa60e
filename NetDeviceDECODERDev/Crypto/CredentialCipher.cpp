#include "Crypto/CredentialCipher.h"

#include "AtomicAccess.h"

CCredentialCipher::CCredentialCipher(const std::string& pubKeyPem, const volatile int& runFlag,
                                     bool& bGivenUp)
    : m_key(pubKeyPem), m_runFlag(runFlag), m_bGivenUp(bGivenUp)
{
}

std::string CCredentialCipher::Encrypt(std::string_view text) const
{
    if (AtomicLoad(m_runFlag) == 0) {
        m_bGivenUp = true;
        return {};
    }
    return m_key.Encrypt(text);
}
