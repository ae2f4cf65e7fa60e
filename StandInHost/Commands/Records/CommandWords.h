#pragma once
// The words of a command line as numbers and switches. Everything here throws UsageError that says what was
// expected.

#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "Commands/Records/Payloads.h"

namespace standin_host {

// What a word means, and its range.
struct Field {
    const char* name; // as in "the window id"
    int64_t min;
    int64_t highest;
    bool isSwitch = false; // on or off, for 1 or 0
};

template <class T>
constexpr Field FieldOf(const char* name)
{
    return {name, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()};
}
constexpr Field SwitchOf(const char* name) { return {name, 0, 1, true}; }

int64_t Number(const std::string& text, const Field& field);
uint32_t Unsigned(const std::string& text, const char* name);
int32_t Signed(const std::string& text, const char* name);
bool OnOrOff(const std::string& text, const char* name);
// Checks that a text fits its field.
const std::string& Fitting(const std::string& text, std::size_t highest, const char* name);

using Words = std::vector<std::string>;
using WordGroup = std::span<const std::string>;

// The words in groups of size. shape describes a group: "each screen takes three numbers: OUTPUT X Y".
std::vector<WordGroup> Groups(const Words& words, std::size_t size, const char* shape);

// Groups of window, sub-window index and further fields (at most four), gathered under their windows in order
// of first appearance.
std::vector<SubWindows> ReadSubWindows(const Words& words, std::span<const Field> fields, const char* shape);

// " 1 0 0 960 540", for titles.
std::string Join(const Words& words);

} // namespace standin_host
