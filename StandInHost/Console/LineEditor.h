#pragma once

#include <cwchar>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "Console/Completion.h"

struct editline;
struct history;

namespace standin_host {

class HostEvents;

// What the editor asks of the shell.
struct EditorHooks {
    std::function<std::string()> prompt; // asked again whenever the line is drawn
    std::function<Completion(std::string_view line)> complete;
    std::function<void()> meanwhile; // something was reported while the user writes; may print lines
};

// A line at a time from the terminal at standard input, with history and completion, drawn on standard error.
// One at a time; belongs to the driving thread, which goes on hearing of events while it waits for keys.
class LineEditor {
public:
    LineEditor(HostEvents& events, EditorHooks hooks);
    ~LineEditor(); // gives the terminal back as it was
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    enum class Result {
        Line,
        Cancelled, // by Ctrl-C, which is taken off the events
        Ended,     // by Ctrl-D on an empty line, the end of the terminal or another signal
    };
    // Throws what a hook has thrown, once the library is out of the way.
    Result Read(std::string& line);

    // Adds a line that the arrow keys bring back.
    void Remember(const std::string& line);

    // True when there is a terminal to write on and one to draw on.
    static bool HasTerminal();

private:
    struct CloseEditor {
        void operator()(editline* editor) const;
    };
    struct CloseHistory {
        void operator()(struct history* editHistory) const;
    };

    // Calls into our code come out of the library, which knows no exceptions.
    template <class TResult, class TFunction>
    TResult Guarded(TResult failed, TFunction function);
    int ReadCharacter(wchar_t* character);
    bool AwaitKey();
    unsigned char Complete();

    HostEvents& m_events;
    const EditorHooks m_hooks;
    std::string m_prompt; // what the library holds on to
    bool m_cancelled = false;
    std::exception_ptr m_thrown;
    std::mbstate_t m_decoding{};
    std::unique_ptr<struct history, CloseHistory> m_history;
    std::unique_ptr<editline, CloseEditor> m_editor;
};

} // namespace standin_host
