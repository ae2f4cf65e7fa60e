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

// The editor's callbacks into the shell.
struct EditorHooks {
    std::function<std::string()> prompt; // called whenever the line is drawn
    std::function<Completion(std::string_view line)> complete;
    std::function<void()> meanwhile; // something was reported while the user types; may print lines
};

// Reads lines from the terminal at standard input, with history and completion, drawn on standard error. One
// object at a time; belongs to the driving thread, which keeps handling events while it waits for keys.
class LineEditor {
public:
    LineEditor(HostEvents& events, EditorHooks hooks);
    ~LineEditor(); // restores the terminal
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    enum class Result {
        Line,
        Cancelled, // by Ctrl-C, which is removed from the events
        Ended,     // by Ctrl-D on an empty line, a vanished terminal or another signal
    };
    // Rethrows what a hook threw, once the library has returned.
    Result Read(std::string& line);

    // Adds a line to the history of the arrow keys.
    void Remember(const std::string& line);

    // True when there is a terminal to write on and one to draw on.
    static bool HasTerminal();

private:
    struct CloseEditor {
        void operator()(editline* editor) const;
    };
    struct CloseHistory {
        void operator()(struct history* history) const;
    };

    // Our code is called from the library, which knows no exceptions.
    template <class TResult, class TFunction>
    TResult Guarded(TResult failed, TFunction function);
    int ReadCharacter(wchar_t* character);
    bool AwaitKey();
    void Erase();
    unsigned char Complete();

    HostEvents& m_events;
    const EditorHooks m_hooks;
    const int m_keys;     // the descriptor that keys are read from
    std::string m_prompt; // the text that the library points to
    int m_columns = 0;    // of the window when the line was drawn
    bool m_cancelled = false;
    std::exception_ptr m_thrown;
    std::mbstate_t m_decoding{};
    std::unique_ptr<struct history, CloseHistory> m_history;
    std::unique_ptr<editline, CloseEditor> m_editor;
};

} // namespace standin_host
