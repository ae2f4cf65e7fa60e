// Every command, with one thing going wrong, at every place where it can.

#include "AllocationFault.h"
#include "CommandSamples.h"
#include "SessionFixture.h"

namespace {

class TortureTest : public SessionFixture {
protected:
    TortureTest()
    {
        LogIn();
        fake_host::SetLogRecording(false);
        onPoll = [this] { Deliver(Answer()); };
    }

    // The decoder's reply to the last request.
    std::string Answer()
    {
        const allocation_fault::Pause pause;
        const std::string request = LastRequest();
        const std::string tail = "<session>SID</session><token>TOK</token>";
        return Frame(ReplyText(Element(request, "url"), Element(request, "seq"), "0", tail, m_replyBody));
    }

    // As a host's socket does it: what is not consumed is offered again with what comes next.
    void Deliver(const std::string& bytes)
    {
        unsigned int nConsumed = 0;
        unsigned int nNeed = 0;
        {
            const allocation_fault::Pause pause;
            m_kept += bytes;
        }
        nConsumed = session.OnSocketRecvData(0, m_kept.data(), static_cast<unsigned int>(m_kept.size()),
                                             &nNeed, nullptr);
        m_kept.erase(0, nConsumed);
    }

    // Runs it with the allocation behind the first nAllowed ones failing; true when there was one to fail.
    bool RunWithAllocationFault(const CommandSample& sample, long nAllowed)
    {
        m_replyBody = sample.replyBody;
        FakeCommand command(sample.nCmdID);
        std::string payload = sample.Payload();
        allocation_fault::Arm(nAllowed);
        session.ProcOneCommand(&command, reinterpret_cast<unsigned char*>(payload.data()),
                               static_cast<unsigned int>(payload.size()));
        const bool bFailed = allocation_fault::Disarm();
        EXPECT_LE(command.nAnswers, 1);
        EXPECT_EQ(command.nReferences, 0);
        return bFailed;
    }

    std::string RunSample(const CommandSample& sample)
    {
        m_replyBody = sample.replyBody;
        return Run(sample.nCmdID, sample.Payload());
    }

    void ExpectTheNextCommandWorks()
    {
        EXPECT_EQ(Run(0x50001, Option(0x60011, "")), "buffer 11000600080000000000000000000000");
    }

    std::string m_replyBody;
    std::string m_kept;
};

TEST_F(TortureTest, EveryCommandSurvivesEveryAllocationThatFails)
{
    for (const CommandSample& sample : CommandSamples()) {
        SCOPED_TRACE(sample.szName);
        long nAllowed = 0;
        while (RunWithAllocationFault(sample, nAllowed)) {
            SCOPED_TRACE(nAllowed);
            ExpectTheNextCommandWorks();
            ++nAllowed;
        }
        EXPECT_GT(nAllowed, 10) << "the fault is not armed";
        EXPECT_EQ(fake_host::LiveBuffers(), 0);
    }
}

TEST_F(TortureTest, EveryCommandSurvivesEverySendThatFails)
{
    constexpr unsigned int BROKEN = 1;
    constexpr unsigned int NO_BUFFERS = 0x20000009;
    for (const CommandSample& sample : CommandSamples()) {
        SCOPED_TRACE(sample.szName);
        const std::string good = RunSample(sample);
        ASSERT_TRUE(good.starts_with("buffer")) << good;
        const size_t nSends = node.frames.size();
        node.frames.clear();
        node.sendErrors = {NO_BUFFERS, NO_BUFFERS, NO_BUFFERS};
        EXPECT_EQ(RunSample(sample), good);
        EXPECT_EQ(node.frames.size(), nSends);
        node.frames.clear();
        // Whoever sends twice fails once at each.
        for (size_t nFailing = 0; nFailing < nSends; ++nFailing) {
            size_t nSend = 0;
            node.onSend = [&] {
                if (nSend++ == nFailing) {
                    node.sendErrors = {BROKEN};
                }
            };
            const std::string answer = RunSample(sample);
            // The first exchange decides, but for the login, whose second one does so, too.
            const bool bDecides = nFailing == 0 || sample.nCmdID == 0x101;
            EXPECT_TRUE(!bDecides || answer == "none" || answer == "failure 2000000f") << answer;
            node.onSend = nullptr;
            ExpectTheNextCommandWorks();
        }
        node.frames.clear();
    }
}

TEST_F(TortureTest, AReplyThatStopsAnywhereIsATimeoutAndComesTooLate)
{
    std::string rest;
    for (const CommandSample& sample : CommandSamples()) {
        SCOPED_TRACE(sample.szName);
        m_replyBody = sample.replyBody;
        size_t nCut = 0;
        for (size_t nLen = 1; nCut < nLen; ++nCut) {
            onPoll = [&] {
                if (nPolls == 1) {
                    const std::string reply = Answer();
                    nLen = reply.size();
                    rest = reply.substr(nCut);
                    Deliver(reply.substr(0, nCut));
                }
            };
            rest.clear();
            const std::string answer = Run(sample.nCmdID, sample.Payload());
            EXPECT_TRUE(answer == "none" || answer == "failure 2000000f") << answer;
            EXPECT_EQ(nPolls, 300);
            Deliver(rest);
            onPoll = [this] { Deliver(Answer()); };
            ExpectTheNextCommandWorks();
        }
    }
}

TEST_F(TortureTest, RepliesInBadCompanyAreStillTheAnswer)
{
    const std::string notice =
        Frame("<td_command><td_header><url>notifychannelstate</url></td_header></td_command>");
    const std::string beat = Frame("");
    const std::string deviceHead(64, '2');
    for (const CommandSample& sample : CommandSamples()) {
        SCOPED_TRACE(sample.szName);
        const std::string good = RunSample(sample);
        ASSERT_TRUE(good.starts_with("buffer")) << good;
        const std::function<std::string()> companies[] = {
            [&] { return Answer() + Answer(); },
            [&] { return notice + Answer() + notice; },
            [&] { return beat + deviceHead + beat + Answer() + beat; },
        };
        for (const auto& company : companies) {
            onPoll = [&] { Deliver(company()); };
            EXPECT_EQ(RunSample(sample), good);
        }
        onPoll = [this] { Deliver(Answer()); };
    }
}

} // namespace
