#pragma once
// The commands of a host, one function for each, in the order of their families.
//
// Fields that go nowhere are zero: identifiers of walls and plans, absolute rectangles. A number that its
// field cannot hold throws std::out_of_range, a text that is longer than its field or has a zero byte
// std::length_error, each with the argument in its message. The functions may run on any threads at the same
// time.

#include <cstdint>
#include <string_view>
#include <vector>

#include "Wipe.h"
#include "tvwall/types.h"

namespace tvwall {

// Wiped when it is freed: some payloads hold passwords in the clear.
using Payload = std::vector<unsigned char, TWipingAllocator<unsigned char>>;

// What to queue with AddOneCmd, and how to recognise its answer.
struct Command {
    std::uint32_t id = 0;         // of the host command
    Payload payload{};            // may be empty
    std::uint32_t answerType = 0; // option type in the head of the answer; 0: the answer has no head
};

// --- session; names and passwords of at most 64 bytes ---

Command LogIn(std::string_view user, std::string_view password);
Command LogOut();
Command GetSystemInfo(); // the channels follow as a notification
Command GetBasicConfig();

// --- grid of screens, unsigned 32-bit numbers ---

Command GetLayout();
Command SetLayout(std::int64_t rows, std::int64_t columns);
Command BindScreens(const std::vector<Screen>& screens);
Command UnbindScreens(const std::vector<ScreenPlace>& places);

// --- windows ---

// Unsigned 32-bit numbers.
Command CreateWindows(const std::vector<Window>& windows);
Command SplitWindows(const std::vector<Window>& windows); // answered as if they had been created
Command DeleteWindows(const std::vector<WindowId>& windows);
Command RaiseWindow(WindowId window);
// Signed 32-bit numbers: a window may reach past the left and upper edge of the wall.
Command MoveWindows(const std::vector<MovedWindow>& windows);
Command ClearWall();
// Unsigned 16-bit numbers; of 32 bits are times and stream types, and, signed, channels.
Command SetWall(const std::vector<WallWindow>& windows);

// --- video in sub-windows: signed 32-bit numbers, the record mask unsigned ---

Command PlayMedia(const std::vector<InWindow<SubWindowMedia>>& windows);
Command StopMedia(const std::vector<InWindow<SubWindowIndex>>& windows);
// Unsigned 16-bit numbers, and no more windows and sub-windows than that.
Command ControlPlayback(const std::vector<InWindow<SubWindowPlayback>>& windows);

// --- sound: signed 32-bit numbers ---

Command PlaySound(const std::vector<InWindow<SubWindowSound>>& windows);
Command StopSound(const std::vector<InWindow<SubWindowIndex>>& windows);
Command GetSound(const SoundOwner& owner = {}); // the answer repeats the owner

// --- channel groups: signed 32-bit ids, unsigned 32-bit numbers ---

Command AddChannelGroup(const ChannelGroup& group);
Command SetChannelGroup(const ChannelGroup& group); // answered as the start of polling
Command DeleteChannelGroups(const std::vector<GroupId>& groups);
Command GetChannelGroup(GroupId group); // answered as the start of polling
Command GetChannelGroups();             // all of them; likewise
// Signed 32-bit window ids.
Command StartPolling(const std::vector<InWindow<SubWindowPolling>>& windows);
Command StopPolling(const std::vector<InWindow<SubWindowIndex>>& windows); // stops media, and is answered so

// --- display ---

// Signed 16-bit numbers.
Command DrawBorders(const std::vector<InWindow<SubWindowBorder>>& windows);
// Lets a sub-window fill its window, or puts it back. An unsigned 32-bit id, an unsigned 16-bit index.
Command Zoom(WindowId window, SubWindowIndex index, bool zoomed);
// Whether borders and window ids are shown on the whole wall.
Command SetDisplaySwitches(bool borders, bool windowIds);
Command GetDisplaySwitches();

} // namespace tvwall
