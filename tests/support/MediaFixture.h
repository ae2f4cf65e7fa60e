#pragma once
// Commands that carry the credentials of video sources.

#include "WallCommandFixture.h"
#include "tdcrypto.h"

// A channel's GUID, as the host's bytes and as text; none at all.
inline const std::string GUID_BYTES = "ABCDEFGHIJKLMNOP";
inline const std::string GUID_TEXT = "{44434241-4645-4847-494A-4B4C4D4E4F50}";
inline const std::string NO_GUID(16, '\0');

class MediaFixture : public WallCommandFixture {
public:
    static constexpr auto USER = "camera user";
    static constexpr auto PASSWORD = "camera secret";

protected:
    MediaFixture() { tdcrypto::GenerateRsaKey(m_keys); }
    ~MediaFixture() override
    {
        for (const auto& log : fake_host::Logs()) {
            EXPECT_EQ(log.text.find(USER), std::string::npos) << log.text;
            EXPECT_EQ(log.text.find(PASSWORD), std::string::npos) << log.text;
        }
    }

    void LogInWithMediaKey() { LogIn(m_keys[0]); }

    // The credentials as the decoder reads them.
    std::string SentBody() const override { return Deciphered("user", Deciphered("pwd", LastBody())); }

    // What the log says of a record last; the credentials are looked for at the end.
    template <class Record>
    void CheckDump(const Record& record, const std::string& part)
    {
        fake_host::Reset();
        record.Dump();
        EXPECT_NE(fake_host::Logs().back().text.find(part), std::string::npos);
    }

private:
    std::string Deciphered(const std::string& name, std::string xml) const
    {
        const std::string tag = "<" + name + ">";
        for (auto at = xml.find(tag); at != std::string::npos; at = xml.find(tag, at)) {
            at += tag.size();
            const auto nLen = xml.find('<', at) - at;
            xml.replace(at, nLen, tdcrypto::RsaPriDecrypt(xml.substr(at, nLen), m_keys[1]));
        }
        return xml;
    }

    std::string m_keys[2];
};
