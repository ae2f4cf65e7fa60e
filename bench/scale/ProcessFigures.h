#pragma once

#include <chrono>
#include <cstddef>

namespace scale {

// What this process uses at one moment.
struct ProcessFigures {
    std::size_t heap = 0;     // bytes in use
    std::size_t resident = 0; // bytes of physical memory
    std::size_t threads = 0;
    std::size_t descriptors = 0;
};

ProcessFigures ReadProcessFigures();

// Processor time of all threads so far, in user and system mode.
std::chrono::microseconds ProcessorTime();

// Allows `wanted` open descriptors, here and in child processes. False when the system's limit is lower.
bool AllowDescriptors(std::size_t wanted);

} // namespace scale
