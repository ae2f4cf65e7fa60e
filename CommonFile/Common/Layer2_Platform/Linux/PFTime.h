#pragma once

#include <ctime>

// Deadlines for timed waits.
class CPFTime {
public:
    // The CLOCK_MONOTONIC time ms milliseconds from now.
    static timespec GetDeadline(unsigned int ms);
    // The normalised time ms milliseconds after the normalised time start.
    static timespec AddMilliseconds(const timespec& start, unsigned int ms);
};
