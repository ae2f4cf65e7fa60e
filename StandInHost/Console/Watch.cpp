// The session's watch: notifications as they come, over as many links as it takes.

#include <algorithm>
#include <csignal>
#include <random>

#include "Base/ExitStatus.h"
#include "Commands/ConsoleCommands.h"
#include "Console/Output.h"
#include "Console/Session.h"
#include "Host/Backoff.h"
#include "Host/DecoderLink.h"

namespace standin_host {

namespace {

using Clock = HostEvents::Clock;

// A link that held so long was a good one: the waits before the next begin anew.
constexpr std::chrono::seconds kGoodLink{30};

bool MayPass(int status)
{
    return status == kExitConnection || status == kExitNoAnswer || status == kExitSignalBase + SIGINT;
}

} // namespace

Session::Next Session::Watch(const ConsoleCommand& command)
{
    m_until = command.watchFor ? Clock::now() + *command.watchFor : Clock::time_point::max();
    const Next next = WatchUntil(command);
    m_until = Clock::time_point::max();
    return next;
}

// An interrupt is how to end a watch, and with it the script that contains it.
Session::Next Session::WatchUntil(const ConsoleCommand& command)
{
    const std::size_t before = m_notified;
    Backoff backoff(std::random_device{}());
    auto linkSince = Clock::now();
    while (true) {
        const bool lost = m_events.Lost().has_value();
        ShowNotifications(); // of a lost link, the last
        if (Clock::now() >= m_until ||
            (command.notifications && m_notified - before >= *command.notifications)) {
            return Next::GoOn;
        }
        if (m_events.Interrupted() == SIGINT) {
            return Next::End;
        }
        m_output.CheckWritten();
        m_events.CheckInterrupted();
        if (!lost) {
            const HostEvents::Awaited awaited(m_events, Where() + "waiting for notifications");
            m_events.Wait(m_until);
            continue;
        }
        if (Clock::now() - linkSince >= kGoodLink) {
            backoff.Reset();
        }
        ComeBack(command.reconnect ? &backoff : nullptr);
        linkSince = Clock::now();
    }
}

// Until there is another link, the watch is over, or a signal has come. Without a backoff, ends the session.
void Session::ComeBack(Backoff* backoff)
{
    const auto lostAt = Clock::now();
    m_output.PrintLinkLost(*m_events.Lost());
    m_output.CheckWritten();
    if (backoff == nullptr) {
        throw ExitError(kExitConnection, ""); // all has been said
    }
    m_link.reset(); // the decoder need not hear from it any more
    const bool login = m_loggedIn;
    while (Pause(backoff->Next())) {
        if (Attempt([&] { Reopen(login); })) {
            m_output.PrintLinkBack(std::chrono::ceil<std::chrono::milliseconds>(Clock::now() - lostAt));
            m_output.CheckWritten();
            if (login) {
                AskForChannels();
            }
            return;
        }
    }
}

// False when the watch is over before the time, or a signal has come.
bool Session::Pause(std::chrono::milliseconds time)
{
    const auto end = Clock::now() + time;
    const HostEvents::Awaited awaited(m_events, Where() + "waiting to connect again");
    while (m_events.Interrupted() == 0 && Clock::now() < std::min(end, m_until)) {
        m_events.Wait(std::min(end, m_until));
    }
    return m_events.Interrupted() == 0 && Clock::now() < m_until;
}

// Takes a step on the way back. False, and the link is closed again, after a failure that may pass or an
// interrupt.
bool Session::Attempt(const std::function<void()>& step)
{
    m_comingBack = true;
    try {
        step();
        m_comingBack = false;
        return true;
    } catch (const ExitError& error) {
        m_comingBack = false;
        m_link.reset();
        m_events.ReportLost(error.what());
        if (!MayPass(error.Status())) {
            throw;
        }
        return false;
    }
}

// What comes before the link is said to be back waits for that.
void Session::Reopen(bool login)
{
    m_events.ForgetLost();
    m_link = m_openLink(m_until);
    m_holdNotifications = true;
    const struct Release {
        bool& held;
        ~Release() { held = false; }
    } release{m_holdNotifications};
    if (login) {
        Login();
    }
}

// The decoder tells changes only: what changed in the gap shows in the whole list, which follows the system
// information as a notification.
void Session::AskForChannels()
{
    Attempt([this] { Request(ParseScriptLine({"info"})); });
}

} // namespace standin_host
