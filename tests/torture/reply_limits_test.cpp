// What reading a reply may cost: the most memory that is taken while the largest one is read that is read at
// all, the answer to the host included.

#include "AllocationFault.h"
#include "CmdProcObject.h"
#include "SessionFixture.h"

namespace {

constexpr unsigned int GET = 0x50000;
constexpr unsigned int GET_LAYOUT = 0x50006;
constexpr unsigned int BASIC_CONFIG = 0x50002;
constexpr unsigned int GROUPS = 0x6000D;
constexpr unsigned int SOUND = 0x60016;
constexpr long MOST = 256L << 20;

struct Question {
    unsigned int nCmdID;
    unsigned int nOptType; // 0 for none
};

std::string InLists(std::string items, const std::vector<std::string>& lists)
{
    for (const std::string& name : lists) {
        items = Elem(name, items);
    }
    return items;
}

// Takes the answer without a copy, which would be the host's.
class MeasuredCommand final : public CCmdProcObject {
public:
    explicit MeasuredCommand(unsigned int nCmdID) : m_nCmdID(nCmdID) {}

    unsigned int GetRequestCommand() const override { return m_nCmdID; }
    bool HasReply() const override { return true; }
    void AddReference(int) override {}
    void DecReference(int) override {}
    void ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply&) override {}
    void ReplyBuffer(const char*, unsigned long nLen) override { nAnswerLen = nLen; }

    size_t nAnswerLen = 0; // 0: a failure

private:
    unsigned int m_nCmdID;
};

class ReplyLimitsTest : public SessionFixture {
protected:
    ReplyLimitsTest() { LogIn(); }

    // The answer's length, 0 for a failure.
    size_t Ask(const Question& question, const std::string& body)
    {
        const std::string text = ReplyText("", "%SEQ%", "0", "", body);
        const std::string tail = text.substr(text.find("%SEQ%") + 5);
        onPoll = [this, &text, &tail] {
            const std::string seq = Element(LastRequest(), "seq");
            const std::string frame = Frame(text.substr(0, text.size() - tail.size() - 5) + seq + tail);
            allocation_fault::ResetPeak();
            m_nBefore = allocation_fault::LiveBytes();
            Receive(frame);
        };
        MeasuredCommand command(question.nCmdID);
        std::string payload = question.nOptType == 0 ? "" : Option(question.nOptType, "");
        session.ProcOneCommand(&command, reinterpret_cast<unsigned char*>(payload.data()),
                               static_cast<unsigned int>(payload.size()));
        return command.nAnswerLen;
    }
    long m_nBefore = 0;
};

TEST_F(ReplyLimitsTest, PROBE)
{
    const struct {
        const char* what;
        Question question;
        std::string item;
        std::vector<std::string> lists;
    } cases[] = {
        {"empty elements", {GET, BASIC_CONFIG}, "<a/>", {}},
        {"elements with a text", {GET, BASIC_CONFIG}, "<a>x</a>", {}},
        {"elements and texts", {GET, BASIC_CONFIG}, "<a/>x", {}},
        {"an attribute each", {GET, BASIC_CONFIG}, "<a b=''/>", {}},
        {"32 attributes each",
         {GET, BASIC_CONFIG},
         "<a "
         "a=''b=''c=''d=''e=''f=''g=''h=''i=''j=''k=''l=''m=''n=''o=''p=''q=''r=''s=''t=''u=''v=''w=''x=''y='"
         "'z=''A=''B=''C=''D=''E=''F=''/>",
         {}},
        {"comments", {GET, BASIC_CONFIG}, "<!---->", {}},
        {"unknown", {GET, BASIC_CONFIG}, "<!>", {}},
        {"CDATA", {GET, BASIC_CONFIG}, "<![CDATA[]]>", {}},
        {"a long text", {GET, BASIC_CONFIG}, "xxxxxxxxxxxxxxxx", {"devicename"}},
        {"long texts", {GET, BASIC_CONFIG}, Elem("devicename", std::string(1 << 20, 'x')), {}},
        {"space", {GET, BASIC_CONFIG}, "                ", {}},
        {"screens", {GET_LAYOUT, 0}, "<a/>", {"td_channellist"}},
        {"screens 2", {GET_LAYOUT, 0}, "<item/>", {"td_channellist"}},
        {"groups", {GET, GROUPS}, "<item/>", {"channelgrouplist"}},
        {"windows", {GET, SOUND}, "<item/>", {"td_windowlist"}},
        {"sub-windows", {GET, SOUND}, "<item/>", {"td_subwindowlist", "item", "td_windowlist"}},
    };
    for (const auto& c : cases) {
        size_t lo = 0, hi = (96u << 20) / c.item.size();
        long peak = 0;
        auto cput = [] {
            timespec t;
            clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
            return double(t.tv_sec) + 1e-9 * double(t.tv_nsec);
        };
        double secs = 0;
        while (hi - lo > hi / 50 + 1) {
            const size_t n = (lo + hi) / 2;
            const double t0 = cput();
            std::string body =
                InLists((c.item == "<a/>" && !c.lists.empty() ? "<item/>" : "") + Repeat(c.item, n), c.lists);
            if (Ask(c.question, body) != 0) {
                lo = n;
                peak = allocation_fault::PeakBytes() - m_nBefore;
                secs = cput() - t0;
            } else
                hi = n;
        }
        printf("%-24s n=%zu text=%.1f MiB peak=%.1f MiB (with frame) secs=%.2f\n", c.what, lo,
               double(lo * c.item.size()) / 1048576, double(peak) / 1048576, secs);
        fflush(stdout);
    }
}

} // namespace
