#include "Console/LineEditor.h"

#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <utility>

#include <histedit.h>
#include <unistd.h>

#include "Base/ErrorLines.h"
#include "Console/HistoryFile.h"
#include "Host/HostEvents.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {

namespace {

constexpr char s_szComplete[] = "tvwall-complete";

CLineEditor& Self(EditLine* pEditor)
{
    void* pSelf = nullptr;
    el_get(pEditor, EL_CLIENTDATA, &pSelf);
    return *static_cast<CLineEditor*>(pSelf);
}

} // namespace

template <class TResult, class TFunction>
TResult CLineEditor::Guarded(TResult failed, TFunction function)
{
    try {
        return function();
    } catch (...) {
        m_pThrown = std::current_exception();
        return failed;
    }
}

CLineEditor::CLineEditor(CHostEvents& events, SEditorHooks hooks)
    : m_events(events),
      m_hooks(std::move(hooks)),
      m_pHistory(history_init()),
      m_pEditor(el_init("tvwall-host", stdin, stderr, stderr))
{
    if (m_pHistory == nullptr || m_pEditor == nullptr) {
        throw std::runtime_error("this terminal takes no line editor");
    }
    HistEvent result;
    ::history(m_pHistory.get(), &result, H_SETSIZE, static_cast<int>(CHistoryFile::kMaxLines));
    ::history(m_pHistory.get(), &result, H_SETUNIQUE, 1);

    EditLine* pEditor = m_pEditor.get();
    el_set(pEditor, EL_CLIENTDATA, this);
    el_set(pEditor, EL_HIST, ::history, m_pHistory.get());
    el_set(pEditor, EL_EDITOR, "emacs");
    el_set(
        pEditor, EL_PROMPT, +[](EditLine* pAsking) {
            CLineEditor& self = Self(pAsking);
            self.m_strPrompt = self.Guarded(std::string(), self.m_hooks.prompt);
            return self.m_strPrompt.data();
        });
    el_set(
        pEditor, EL_GETCFN, +[](EditLine* pAsking, wchar_t* pCharacter) {
            CLineEditor& self = Self(pAsking);
            return self.Guarded(-1, [&] { return self.ReadCharacter(pCharacter); });
        });
    el_set(
        pEditor, EL_ADDFN, s_szComplete, "completes the word at the cursor", +[](EditLine* pAsking, int) {
            CLineEditor& self = Self(pAsking);
            return self.Guarded(static_cast<unsigned char>(CC_ERROR), [&self] { return self.Complete(); });
        });
    el_set(pEditor, EL_BIND, "^I", s_szComplete, nullptr);
    el_set(pEditor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    el_set(pEditor, EL_BIND, "^W", "ed-delete-prev-word", nullptr);
    el_source(pEditor, nullptr); // what the user has set for all programs with this editor
}

CLineEditor::~CLineEditor() = default;

void CLineEditor::SCloseEditor::operator()(EditLine* pEditor) const { el_end(pEditor); }

void CLineEditor::SCloseHistory::operator()(History* pHistory) const { history_end(pHistory); }

bool CLineEditor::HasTerminal() { return ::isatty(STDIN_FILENO) != 0 && ::isatty(STDERR_FILENO) != 0; }

CLineEditor::EResult CLineEditor::Read(std::string& strLine)
{
    m_bCancelled = false;
    m_decoding = {};
    const CErrorLinesHold hold([this] { m_events.Changed(); });
    el_resize(m_pEditor.get());               // the window may have another size by now
    el_set(m_pEditor.get(), EL_PREP_TERM, 1); // else keys in the moment behind the prompt miss the editor
    int nLength = 0;
    const char* szLine = el_gets(m_pEditor.get(), &nLength);
    if (const auto pThrown = std::exchange(m_pThrown, nullptr)) {
        std::rethrow_exception(pThrown);
    }
    if (szLine != nullptr && nLength > 0) {
        strLine.assign(szLine, static_cast<std::size_t>(nLength));
        strLine.erase(strLine.find_last_not_of("\r\n") + 1);
        return EResult::Line;
    }
    (void)std::fputs(m_bCancelled ? "^C\n" : "\n", stderr);
    return m_bCancelled ? EResult::Cancelled : EResult::Ended;
}

void CLineEditor::Remember(const std::string& strLine)
{
    HistEvent result;
    ::history(m_pHistory.get(), &result, H_ENTER, strLine.c_str());
}

// 1 with a character, 0 at the end of the input, -1 to give the line up.
int CLineEditor::ReadCharacter(wchar_t* pCharacter)
{
    while (AwaitKey()) {
        char cByte = 0;
        const ssize_t nRead = ::read(STDIN_FILENO, &cByte, 1);
        if (nRead < 0 && errno == EINTR) {
            continue;
        }
        if (nRead <= 0) {
            return 0; // a terminal that has gone away ends the input, too
        }
        // NOLINTNEXTLINE(concurrency-mt-unsafe): unsafe only without a state of its own
        const std::size_t nTaken = std::mbrtowc(pCharacter, &cByte, 1, &m_decoding);
        if (nTaken <= 1) {
            return 1;
        }
        if (nTaken == static_cast<std::size_t>(-1)) {
            m_decoding = {}; // no character of this terminal: as if it had not been typed
        }
    }
    return -1;
}

// Waits until there is a key to read; false after a signal.
bool CLineEditor::AwaitKey()
{
    while (true) {
        if (m_events.Interrupted() != 0) {
            m_bCancelled = m_events.TakeKeyboardInterrupt();
            return false;
        }
        const auto wake = m_events.Wait(CHostEvents::Clock::time_point::max(), STDIN_FILENO);
        if (wake.bEvent) {
            (void)std::fputs("\r\x1b[J",
                             stderr); // what is printed stands in place of the line, which follows
            CErrorLinesHold::Write();
            m_hooks.meanwhile();
            el_set(m_pEditor.get(), EL_REFRESH);
        }
        if (wake.bInput && m_events.Interrupted() == 0) {
            return true;
        }
    }
}

unsigned char CLineEditor::Complete()
{
    const LineInfo* pLine = el_line(m_pEditor.get());
    const SCompletion completion =
        m_hooks.complete({pLine->buffer, static_cast<std::size_t>(pLine->cursor - pLine->buffer)});
    const std::string strRest = CommonRest(completion);
    if (!strRest.empty()) {
        el_insertstr(m_pEditor.get(), strRest.c_str());
        return CC_REFRESH;
    }
    if (completion.candidates.empty()) {
        return CC_ERROR;
    }
    std::string strList = "\n";
    for (const std::string& strCandidate : completion.candidates) {
        strList += tools::OneLine(strCandidate) + "  ";
    }
    (void)std::fputs((strList + '\n').c_str(), stderr);
    return CC_REDISPLAY;
}

} // namespace standin_host
