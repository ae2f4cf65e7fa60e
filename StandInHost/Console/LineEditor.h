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

class CHostEvents;

// What the editor asks of the shell.
struct SEditorHooks {
    std::function<std::string()> prompt; // asked again whenever the line is drawn
    std::function<SCompletion(std::string_view line)> complete;
    std::function<void()> meanwhile; // something was reported while the user writes; may print lines
};

// A line at a time from the terminal at standard input, with history and completion, drawn on standard error.
// One at a time; belongs to the driving thread, which goes on hearing of events while it waits for keys.
class CLineEditor {
public:
    CLineEditor(CHostEvents& events, SEditorHooks hooks);
    ~CLineEditor(); // gives the terminal back as it was
    CLineEditor(const CLineEditor&) = delete;
    CLineEditor& operator=(const CLineEditor&) = delete;

    enum class EResult {
        Line,
        Cancelled, // by Ctrl-C, which is taken off the events
        Ended,     // by Ctrl-D on an empty line, the end of the terminal or another signal
    };
    // Throws what a hook has thrown, once the library is out of the way.
    EResult Read(std::string& strLine);

    // Adds a line that the arrow keys bring back.
    void Remember(const std::string& strLine);

    // True when there is a terminal to write on and one to draw on.
    static bool HasTerminal();

private:
    struct SCloseEditor {
        void operator()(editline* pEditor) const;
    };
    struct SCloseHistory {
        void operator()(struct history* pHistory) const;
    };

    // Calls into our code come out of the library, which knows no exceptions.
    template <class TResult, class TFunction>
    TResult Guarded(TResult failed, TFunction function);
    int ReadCharacter(wchar_t* pCharacter);
    bool AwaitKey();
    unsigned char Complete();

    CHostEvents& m_events;
    const SEditorHooks m_hooks;
    std::string m_strPrompt; // what the library holds on to
    bool m_bCancelled = false;
    std::exception_ptr m_pThrown;
    std::mbstate_t m_decoding{};
    std::unique_ptr<struct history, SCloseHistory> m_pHistory;
    std::unique_ptr<editline, SCloseEditor> m_pEditor;
};

} // namespace standin_host
