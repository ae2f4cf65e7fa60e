#pragma once
// Commands that carry the credentials of video sources.

#include "Crypto/tdcrypto.h"
#include "WallCommandFixture.h"

class MediaFixture : public WallCommandFixture {
protected:
    MediaFixture() { tdcrypto::GenerateRsaKey(m_keys); }
    ~MediaFixture() override
    {
        for (const auto& log : fake_host::Logs()) {
            EXPECT_EQ(log.text.find(kSourceUser), std::string::npos) << log.text;
            EXPECT_EQ(log.text.find(kSourcePassword), std::string::npos) << log.text;
        }
    }

    void LogInWithMediaKey() { LogIn(m_keys[0]); }

    // The credentials as the decoder reads them.
    std::string SentBody() const override
    {
        return Deciphered("user", Deciphered("pwd", WallCommandFixture::SentBody()));
    }

private:
    std::string Deciphered(const std::string& name, std::string xml) const
    {
        const std::string tag = "<" + name + ">";
        for (auto at = xml.find(tag); at != std::string::npos; at = xml.find(tag, at)) {
            at += tag.size();
            const auto len = xml.find('<', at) - at;
            xml.replace(at, len, tdcrypto::RsaPriDecrypt(xml.substr(at, len), m_keys[1]));
        }
        return xml;
    }

    std::string m_keys[2];
};
