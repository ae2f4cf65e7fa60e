#include "Console/LineEditor.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cwchar>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <histedit.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include "Base/ErrorLines.h"
#include "Console/HistoryFile.h"
#include "Host/HostEvents.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {

namespace {

constexpr char kComplete[] = "tvwall-complete";

// Of the window, or what the editor takes a window to have that tells nothing.
int Columns()
{
    winsize size{};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1 ? size.ws_col : 80;
}

// Rows below the first that the cursor is on after this text, which began a line of the window. A wide
// character that does not fit at the edge begins the next row.
long RowsBelow(const std::string& text, int columns)
{
    std::mbstate_t state{};
    long row = 0;
    int column = 0;
    for (std::size_t i = 0; i < text.size();) {
        wchar_t character = 0;
        // NOLINTNEXTLINE(concurrency-mt-unsafe): unsafe only without a state of its own
        const std::size_t size = std::mbrtowc(&character, &text[i], text.size() - i, &state);
        const bool good = size > 0 && size <= text.size() - i;
        const int width = good ? ::wcwidth(character) : -1;
        const int shown = width < 0 ? 2 : width; // a control character is shown as ^X
        row += column + shown > columns ? 1 : 0;
        column = column + shown > columns ? shown : column + shown;
        row += column == columns ? 1 : 0;
        column %= columns;
        i += good ? size : 1;
        state = good ? state : std::mbstate_t{};
    }
    return row;
}

// The terminal at standard input, to be read without ever blocking: Ctrl-C makes it discard what was typed
// ahead, even between a poll that saw it and the read. Opened anew, because other programs share the flags of
// standard input. Only the controlling terminal sends signals; any other is read as it is.
int OpenKeys()
{
    const bool controlling = ::tcgetsid(STDIN_FILENO) >= 0;
    const int opened = controlling ? ::open("/dev/tty", O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC) : -1;
    return opened >= 0 ? opened : STDIN_FILENO;
}

LineEditor& Self(EditLine* editor)
{
    void* self = nullptr;
    el_get(editor, EL_CLIENTDATA, &self);
    return *static_cast<LineEditor*>(self);
}

} // namespace

template <class TResult, class TFunction>
TResult LineEditor::Guarded(TResult failed, TFunction function)
{
    try {
        return function();
    } catch (...) {
        m_thrown = std::current_exception();
        return failed;
    }
}

LineEditor::LineEditor(HostEvents& events, EditorHooks hooks)
    : m_events(events),
      m_hooks(std::move(hooks)),
      m_keys(OpenKeys()),
      m_history(history_init()),
      m_editor(el_init("tvwall-host", stdin, stderr, stderr))
{
    if (m_history == nullptr || m_editor == nullptr) {
        throw std::runtime_error("this terminal takes no line editor");
    }
    HistEvent result;
    ::history(m_history.get(), &result, H_SETSIZE, static_cast<int>(HistoryFile::kMaxLines));
    ::history(m_history.get(), &result, H_SETUNIQUE, 1);

    EditLine* editor = m_editor.get();
    el_set(editor, EL_CLIENTDATA, this);
    el_set(editor, EL_HIST, ::history, m_history.get());
    el_set(editor, EL_EDITOR, "emacs");
    el_set(
        editor, EL_PROMPT, +[](EditLine* asking) {
            LineEditor& self = Self(asking);
            self.m_prompt = self.Guarded(std::string(), self.m_hooks.prompt);
            return self.m_prompt.data();
        });
    el_set(
        editor, EL_GETCFN, +[](EditLine* asking, wchar_t* character) {
            LineEditor& self = Self(asking);
            return self.Guarded(-1, [&] { return self.ReadCharacter(character); });
        });
    el_set(
        editor, EL_ADDFN, kComplete, "completes the word at the cursor", +[](EditLine* asking, int) {
            LineEditor& self = Self(asking);
            return self.Guarded(static_cast<unsigned char>(CC_ERROR), [&self] { return self.Complete(); });
        });
    el_set(editor, EL_BIND, "^I", kComplete, nullptr);
    el_set(editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    el_set(editor, EL_BIND, "^W", "ed-delete-prev-word", nullptr);
    el_source(editor, nullptr); // the user's settings for all programs that use this editor
}

LineEditor::~LineEditor()
{
    if (m_keys != STDIN_FILENO) {
        ::close(m_keys);
    }
}

void LineEditor::CloseEditor::operator()(EditLine* editor) const { el_end(editor); }

void LineEditor::CloseHistory::operator()(History* history) const { history_end(history); }

bool LineEditor::HasTerminal() { return ::isatty(STDIN_FILENO) != 0 && ::isatty(STDERR_FILENO) != 0; }

LineEditor::Result LineEditor::Read(std::string& line)
{
    m_cancelled = false;
    m_decoding = {};
    const ErrorLinesHold hold([this] { m_events.Changed(); });
    m_columns = Columns(); // the window may have been resized
    el_resize(m_editor.get());
    el_set(m_editor.get(), EL_PREP_TERM, 1); // else keys typed right after the prompt miss the editor
    int length = 0;
    const char* typed = el_gets(m_editor.get(), &length);
    if (const auto thrown = std::exchange(m_thrown, nullptr)) {
        std::rethrow_exception(thrown);
    }
    if (typed != nullptr && length > 0) {
        line.assign(typed, static_cast<std::size_t>(length));
        line.erase(line.find_last_not_of("\r\n") + 1);
        return Result::Line;
    }
    (void)std::fputs(m_cancelled ? "^C\n" : "\n", stderr);
    return m_cancelled ? Result::Cancelled : Result::Ended;
}

void LineEditor::Remember(const std::string& line)
{
    HistEvent result;
    ::history(m_history.get(), &result, H_ENTER, line.c_str());
}

// 1 with a character, 0 at the end of the input, -1 to abandon the line.
int LineEditor::ReadCharacter(wchar_t* character)
{
    while (AwaitKey()) {
        char cByte = 0;
        const ssize_t readCount = ::read(m_keys, &cByte, 1);
        if (readCount < 0 && (errno == EINTR || errno == EAGAIN)) {
            continue;
        }
        if (readCount <= 0) {
            return 0; // a vanished terminal also ends the input
        }
        // NOLINTNEXTLINE(concurrency-mt-unsafe): unsafe only without a state of its own
        const std::size_t taken = std::mbrtowc(character, &cByte, 1, &m_decoding);
        if (taken <= 1) {
            return 1;
        }
        if (taken == static_cast<std::size_t>(-1)) {
            m_decoding = {}; // not a character of this terminal: ignored
        }
    }
    return -1;
}

// Waits until there is a key to read; false after a signal.
bool LineEditor::AwaitKey()
{
    while (true) {
        if (m_events.Interrupted() != 0) {
            m_cancelled = m_events.TakeKeyboardInterrupt();
            return false;
        }
        const auto wake = m_events.Wait(HostEvents::Clock::time_point::max(), m_keys);
        if (wake.event) {
            Erase(); // output replaces the line, which is redrawn below
            ErrorLinesHold::Write();
            if (m_events.TakeResized()) {
                m_columns = Columns();
                el_resize(m_editor.get());
            }
            m_hooks.meanwhile();
            el_set(m_editor.get(), EL_REFRESH);
        }
        if (wake.hasInput && m_events.Interrupted() == 0) {
            return true;
        }
    }
}

// Erases the line being typed, which may have wrapped. After a resize nobody knows whether the terminal has
// wrapped it anew: rather leave a part of it than erase what stands above.
void LineEditor::Erase()
{
    const LineInfo* line = el_line(m_editor.get());
    const std::string before =
        m_prompt + std::string(line->buffer, static_cast<std::size_t>(line->cursor - line->buffer));
    const long rows = RowsBelow(before, std::max(m_columns, Columns()));
    const std::string up = rows == 0 ? "" : "\x1b[" + std::to_string(rows) + 'A';
    (void)std::fputs((up + "\r\x1b[J").c_str(), stderr);
}

unsigned char LineEditor::Complete()
{
    const LineInfo* line = el_line(m_editor.get());
    const Completion completion =
        m_hooks.complete({line->buffer, static_cast<std::size_t>(line->cursor - line->buffer)});
    const std::string rest = CommonRest(completion);
    if (!rest.empty()) {
        el_insertstr(m_editor.get(), rest.c_str());
        return CC_REFRESH;
    }
    if (completion.candidates.empty()) {
        return CC_ERROR;
    }
    std::string list = "\n";
    for (const std::string& candidate : completion.candidates) {
        list += tools::OneLine(candidate) + "  ";
    }
    (void)std::fputs((list + '\n').c_str(), stderr);
    return CC_REDISPLAY;
}

} // namespace standin_host
