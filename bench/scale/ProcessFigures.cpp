#include "ProcessFigures.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <sys/resource.h>
#include <unistd.h>

#include "HeapCount.h"

namespace scale {

namespace {

std::size_t CountEntries(const char* folder)
{
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator()));
}

std::size_t ResidentBytes()
{
    std::ifstream file("/proc/self/statm"); // pages: all, resident, ...
    std::size_t all = 0;
    std::size_t resident = 0;
    file >> all >> resident;
    return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

std::chrono::microseconds Duration(const timeval& time)
{
    return std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_usec);
}

} // namespace

ProcessFigures ReadProcessFigures()
{
    ProcessFigures figures;
    figures.heap = HeapInUse(); // first, as what follows allocates
    figures.resident = ResidentBytes();
    figures.threads = CountEntries("/proc/self/task");
    figures.descriptors = CountEntries("/proc/self/fd") - 1; // the listing itself holds one
    return figures;
}

std::chrono::microseconds ProcessorTime()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return Duration(usage.ru_utime) + Duration(usage.ru_stime);
}

bool AllowDescriptors(std::size_t wanted)
{
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_max < wanted) {
        return false;
    }
    limit.rlim_cur = std::max<rlim_t>(limit.rlim_cur, wanted);
    return ::setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

} // namespace scale
