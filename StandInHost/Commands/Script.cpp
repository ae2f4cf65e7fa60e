#include "Commands/Script.h"

#include <optional>
#include <utility>
#include <vector>

#include "Base/ErrorLines.h"
#include "Base/ExitStatus.h"
#include "Base/Files.h"
#include "Base/WordSplitting.h"
#include "Commands/ConsoleCommands.h"
#include "Host/HostEvents.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {

namespace {

// The command of a line; nothing for a blank line or a comment. Throws UsageError.
std::optional<ConsoleCommand> ParseText(std::string_view line)
{
    if (line.size() > kMaxLine) {
        throw UsageError(kLongLine);
    }
    if (!tools::IsUtf8(line) || line.find('\0') != std::string_view::npos) {
        throw UsageError("the line is not UTF-8 text");
    }
    const auto words = SplitLine(line);
    return words.empty() ? std::nullopt : std::optional(ParseScriptLine(words));
}

// Tells the first wrong lines, and counts them all.
class WrongLines {
public:
    void Add(const std::string& place, const char* reason)
    {
        if (++m_count <= kMaxTold) {
            PrintErrorLines("tvwall-host: " + tools::OneLine(place + ": " + reason) + '\n');
        }
    }

    void ExitIfAny(const std::string& name) const
    {
        if (m_count > kMaxTold) {
            throw UsageError(name + ": " + std::to_string(m_count) +
                             " lines are wrong, these are the first " + std::to_string(kMaxTold));
        }
        if (m_count != 0) {
            throw ExitError(kExitUsage, "");
        }
    }

private:
    std::size_t m_count = 0;
};

std::string ReadWholeScript(const std::string& path, HostEvents& events)
{
    LineInput input(path);
    const HostEvents::Awaited awaited(events, "waiting for the end of the script");
    while (!input.Ended()) {
        events.AwaitInput(input.Descriptor());
        input.Fill();
        if (input.Buffered() > kMaxFile) {
            throw UsageError("the script " + path + " is longer than 64 MiB");
        }
    }
    return input.TakeAll();
}

// A script that was read whole. A line is parsed again when its turn comes, which takes less memory than to
// keep its command; but what was read from files is kept, so that what runs is what was checked.
class CheckedScript final : public Script {
public:
    CheckedScript(const std::string& path, HostEvents& events)
        : Script(path), m_text(ReadWholeScript(path, events)), m_left(m_text)
    {
    }

    void Check(const HostEvents& events)
    {
        WrongLines wrong;
        for (std::string_view line; TakeLine(line);) {
            events.CheckInterrupted();
            try {
                if (!m_kept.contains(line)) {
                    Read(line);
                }
            } catch (const UsageError& error) {
                wrong.Add(Place(), error.what());
            }
        }
        wrong.ExitIfAny(m_name);
        m_left = m_text;
        m_line = 0;
    }

    void AskFor(SourcePasswords& passwords)
    {
        for (ConsoleCommand* command : m_incomplete) {
            Complete(*command, passwords);
        }
    }

    bool Next(ConsoleCommand& command, const AwaitInput& /*await*/) override
    {
        for (std::string_view line; TakeLine(line);) {
            if (auto parsed = Read(line)) {
                command = *std::move(parsed);
                return true;
            }
        }
        return false;
    }

    std::string Position() const override
    {
        return " (" + std::to_string(100 * (m_text.size() - m_left.size()) / m_text.size()) + " %)";
    }

private:
    bool TakeLine(std::string_view& line)
    {
        if (m_left.empty()) {
            return false;
        }
        const std::size_t end = m_left.find('\n');
        line = m_left.substr(0, end);
        m_left.remove_prefix(end == std::string_view::npos ? m_left.size() : end + 1);
        ++m_line;
        return true;
    }

    std::optional<ConsoleCommand> Read(std::string_view line)
    {
        if (const auto found = m_kept.find(line); found != m_kept.end()) {
            return found->second;
        }
        auto parsed = ParseText(line);
        if (parsed && parsed->readsFiles) {
            ConsoleCommand& kept = m_kept.emplace(line, *parsed).first->second;
            if (kept.complete) {
                m_incomplete.push_back(&kept);
            }
        }
        return parsed;
    }

    const std::string m_text;
    std::string_view m_left;
    std::unordered_map<std::string_view, ConsoleCommand> m_kept; // by the line's text
    std::vector<ConsoleCommand*> m_incomplete;                   // of those, in their order
};

// Lines that run as they come.
class StreamedScript final : public Script {
public:
    StreamedScript(const std::string& path, SourcePasswords* passwords)
        : Script(path), m_input(path), m_passwords(passwords)
    {
    }

    bool Next(ConsoleCommand& command, const AwaitInput& await) override
    {
        try {
            for (std::string line; TakeLine(line, await);) {
                if (auto parsed = ParseText(line)) {
                    command = *std::move(parsed);
                    if (m_passwords != nullptr) {
                        Complete(command, *m_passwords);
                    }
                    return true;
                }
            }
            return false;
        } catch (const UsageError& error) {
            throw UsageError(tools::OneLine(Place() + ": " + error.what()));
        }
    }

    std::string Position() const override { return m_input.PositionText(); }

private:
    bool TakeLine(std::string& line, const AwaitInput& await)
    {
        ++m_line;
        while (!m_input.Take(line)) {
            if (m_input.AtEnd()) {
                return false;
            }
            if (await(m_input.Descriptor())) {
                m_input.Fill();
            }
        }
        return true;
    }

    LineInput m_input;
    SourcePasswords* const m_passwords;
};

} // namespace

std::unique_ptr<Script> OpenScript(const ConsoleCommand& command, HostEvents& events,
                                   SourcePasswords* passwords)
{
    if (command.stream) {
        return std::make_unique<StreamedScript>(command.scriptFile, passwords);
    }
    auto script = std::make_unique<CheckedScript>(command.scriptFile, events);
    script->Check(events);
    if (passwords != nullptr) {
        script->AskFor(*passwords);
    }
    return script;
}

} // namespace standin_host
