#pragma once

#include <chrono>
#include <cstddef>

namespace scale {

// What this process uses at one moment.
struct SProcessFigures {
    std::size_t nHeap = 0;     // bytes in use
    std::size_t nResident = 0; // bytes of memory that the system has given it
    std::size_t nThreads = 0;
    std::size_t nDescriptors = 0;
};

SProcessFigures ReadProcessFigures();

// Processor time of all threads so far, in user and system mode.
std::chrono::microseconds ProcessorTime();

// Makes room for nWanted open descriptors, here and in child processes. False when the system's limit is
// lower.
bool AllowDescriptors(std::size_t nWanted);

} // namespace scale
