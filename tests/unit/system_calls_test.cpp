// What the platform layer asks of the system, call by call, and what it makes of the results.

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <pthread.h>
#include <semaphore.h>
#include <string>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>
#include <vector>

#include "Event.h"
#include "MonitorTvwComm.h"
#include "PFFile.h"
#include "PFHelper.h"
#include "Semaphore.h"

// The tests are linked so that calls of the sleep go to the test's clock; this is the one that ships.
bool Sleep(unsigned int ms) __asm__("__real__ZN9CPFHelper5SleepEj");

namespace {

std::string Text(const timespec& time)
{
    return std::to_string(time.tv_sec) + "s " + std::to_string(time.tv_nsec / 1'000'000) + "ms";
}

// The calls that are made while it lives, in one text, and what they come to: each takes the next error, or
// 0, and has no effect. A second passes between two looks at the clock. Files hold the alphabet, and a
// negative error is what is missing of the bytes that are to be read or written.
struct Script {
    Script() { running = this; }
    ~Script() { running = nullptr; }
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;

    int Next(const std::string& call)
    {
        calls += (calls.empty() ? "" : ", ") + call;
        const int error = errors.empty() ? 0 : errors.front();
        errors.erase(errors.begin(), errors.begin() + (errors.empty() ? 0 : 1));
        return error;
    }
    static int WithErrno(int error)
    {
        errno = error != 0 ? error : errno; // as the system does
        return error == 0 ? 0 : -1;
    }
    int Clock(clockid_t clock, timespec& time)
    {
        EXPECT_EQ(clock, CLOCK_MONOTONIC);
        time = {now++, 700'000'000};
        return 0;
    }
    int Wait(const timespec& end)
    {
        const int error = Next("until " + Text(end));
        onWait();
        return error;
    }
    int WaitWithoutEnd(pthread_mutex_t* mutex)
    {
        const int error = Next("wait");
        pthread_mutex_unlock(mutex);
        onWait();
        pthread_mutex_lock(mutex);
        return error;
    }
    int Sleep(const timespec& time, timespec* left)
    {
        const int error = Next("sleep " + Text(time));
        if (error == EINTR && left != nullptr) {
            *left = {time.tv_sec - 1, time.tv_nsec};
        }
        return WithErrno(error);
    }
    int Create(pthread_t& thread, const pthread_attr_t* attributes, void* result)
    {
        thread = reinterpret_cast<pthread_t>(result);
        return Next(attributes == nullptr ? "create" : "create with attributes");
    }
    int Semaphore(const std::string& call) { return WithErrno(Next(call)); }
    sem_t* Open(const std::string& name, int flags, mode_t mode, unsigned int value)
    {
        static sem_t semaphore;
        EXPECT_EQ(flags & O_EXCL, 0); // another may make it meanwhile
        const std::string made = " new " + std::to_string(mode) + " " + std::to_string(value);
        return Next("open " + name + ((flags & O_CREAT) != 0 ? made : "")) == 0 ? &semaphore : SEM_FAILED;
    }

    int OpenFile(const std::string& name, int flags, mode_t mode)
    {
        EXPECT_EQ(mode, 0666U);
        EXPECT_NE(flags & O_CLOEXEC, 0);
        const std::string call = "open " + name + " " + std::to_string(flags & ~O_CLOEXEC);
        return WithErrno(Next(call)) != 0 ? -1 : name == "/g" ? 0 : 7;
    }
    int CloseFile(int fd) { return WithErrno(Next("close " + std::to_string(fd))); }
    int Status(int fd, struct stat& status)
    {
        EXPECT_TRUE(fd == 7 || fd == -1);
        status.st_size = fileSize;
        return WithErrno(Next("size"));
    }
    // Of the bytes that are to be read or written: how many are.
    ssize_t Transfer(const std::string& call, int fd, size_t n)
    {
        EXPECT_EQ(fd, 7);
        const int error = Next(call);
        return error > 0 ? WithErrno(error) : static_cast<ssize_t>(n) + error;
    }
    ssize_t Read(int fd, void* data, size_t len)
    {
        const ssize_t n = Transfer("read " + std::to_string(len), fd, len);
        for (ssize_t i = 0; i < n; ++i) {
            static_cast<char*>(data)[i] = static_cast<char>('a' + bytesRead++);
        }
        return n;
    }
    ssize_t Write(int fd, const void* data, size_t len)
    {
        return Transfer("write " + std::string(static_cast<const char*>(data), len), fd, len);
    }

    std::string calls;
    std::vector<int> errors;
    off_t fileSize = 10;
    int bytesRead = 0;
    std::function<void()> onWait = [] {};
    time_t now = 100;
    static inline thread_local Script* running = nullptr;
};

} // namespace

// The linker sends the platform layer's calls here and gives the originals the other names, which are called
// where no script runs.
#define TVWALL_WRAPPED(result, name, parameters, arguments, scripted)                                        \
    result Real_##name parameters __asm__("__real_" #name);                                                  \
    result Wrapped_##name parameters __asm__("__wrap_" #name);                                               \
    result Wrapped_##name parameters                                                                         \
    {                                                                                                        \
        return Script::running == nullptr ? Real_##name arguments : Script::running->scripted;               \
    }

TVWALL_WRAPPED(int, clock_gettime, (clockid_t clock, timespec* time), (clock, time), Clock(clock, *time))
TVWALL_WRAPPED(int, nanosleep, (const timespec* time, timespec* left), (time, left), Sleep(*time, left))
TVWALL_WRAPPED(int, pthread_condattr_setclock, (pthread_condattr_t * p, clockid_t clock), (p, clock),
               Next("clock " + std::to_string(clock)))
TVWALL_WRAPPED(int, pthread_cond_timedwait, (pthread_cond_t * p, pthread_mutex_t* mutex, const timespec* end),
               (p, mutex, end), Wait(*end))
TVWALL_WRAPPED(int, pthread_cond_wait, (pthread_cond_t * p, pthread_mutex_t* mutex), (p, mutex),
               WaitWithoutEnd(mutex))
TVWALL_WRAPPED(int, pthread_cond_signal, (pthread_cond_t * p), (p), Next("signal"))
TVWALL_WRAPPED(int, pthread_cond_broadcast, (pthread_cond_t * p), (p), Next("broadcast"))
TVWALL_WRAPPED(int, pthread_create,
               (pthread_t * p, const pthread_attr_t* attributes, void* (*run)(void*), void* arg),
               (p, attributes, run, arg), Create(*p, attributes, run(arg)))
TVWALL_WRAPPED(sem_t*, sem_open, (const char* path, int flags, mode_t mode, unsigned int value),
               (path, flags, mode, value), Open(path, flags, mode, value))
TVWALL_WRAPPED(int, sem_wait, (sem_t * p), (p), Semaphore("wait"))
TVWALL_WRAPPED(int, sem_post, (sem_t * p), (p), Semaphore("post"))
TVWALL_WRAPPED(int, sem_close, (sem_t * p), (p), Semaphore("close"))
TVWALL_WRAPPED(int, open, (const char* path, int flags, mode_t mode), (path, flags, mode),
               OpenFile(path, flags, mode))
TVWALL_WRAPPED(int, close, (int fd), (fd), CloseFile(fd))
TVWALL_WRAPPED(int, fstat, (int fd, struct stat* status), (fd, status), Status(fd, *status))
TVWALL_WRAPPED(ssize_t, read, (int fd, void* p, size_t n), (fd, p, n), Read(fd, p, n))
TVWALL_WRAPPED(ssize_t, write, (int fd, const void* p, size_t n), (fd, p, n), Write(fd, p, n))

namespace {

TEST(SystemCallsTest, EveryOperationMakesItsCallsAndHeedsTheirResults)
{
    CMyEvent event(false);
    CMySemaphore semaphore(0, 9);
    uint64_t threadID = 0;
    const auto waits = [&] { return event.WaitEvent(1400) == WAIT_TIMED_OUT; };
    const auto create = [&] {
        return CPFHelper::CreateThread([](void* p) { return p; }, &threadID, &threadID);
    };
    const std::tuple<std::function<bool()>, bool, std::vector<int>, const char*> cases[] = {
        {[] { return CMyEvent(true).ResetEvent(); }, true, {}, "clock 1"},
        {waits, true, {0, 0, ETIMEDOUT}, "until 102s 100ms, until 102s 100ms, until 102s 100ms"},
        {[&] { return event.SetEvent() && event.SetEvent(); }, true, {}, "signal, signal"},
        {[&] { return event.WaitEvent(5) == WAIT_SIGNALLED; }, true, {}, ""},
        {[&] { return semaphore.lock(299); }, false, {0, ETIMEDOUT}, "until 100s 999ms, until 100s 999ms"},
        {[&] { return semaphore.unlock(); }, true, {}, "signal"},
        {[&] { return semaphore.unlock(2, nullptr); }, true, {}, "broadcast"},
        {[&] { return semaphore.lock(0) && semaphore.lock(0) && semaphore.lock(0); }, true, {}, ""},
        {create, true, {}, "create"},
        {create, false, {EAGAIN}, "create"},
        {[&] { return CPFHelper::CreateThread(nullptr, &threadID, &threadID); }, false, {}, ""},
        {[] { return CPFHelper::CreateThread([](void* p) { return p; }, nullptr, nullptr); }, false, {}, ""},
        {[] { return Sleep(2005); }, true, {EINTR, EINTR}, "sleep 2s 5ms, sleep 1s 5ms, sleep 0s 5ms"},
        {[] { return Sleep(1) && CPFHelper::GetLastError() == EIO && errno; }, true, {EIO}, "sleep 0s 1ms"},
        {[] { return CNameLock("/l").Lock(); }, true, {}, "open /l, wait, close"},
        {[] { return CNameLock("/l").Lock(); }, true, {0, EINTR}, "open /l, wait, wait, close"},
        {[] { return CNameLock("/l").Lock(); }, false, {0, EINVAL}, "open /l, wait, close"},
        {[] { return CNameLock("/l").Unlock(); }, true, {ENOENT}, "open /l, open /l new 438 1, post, close"},
        {[] { return CNameLock("/l").Unlock(); }, false, {0, EOVERFLOW}, "open /l, post, close"},
        {[] { return CNameLock("/l").Lock(); }, false, {ENOENT, EACCES}, "open /l, open /l new 438 1"},
        {[] { return CNameLock("/l").Unlock(); }, false, {ENOENT, EACCES}, "open /l, open /l new 438 1"},
        {[] { return CNameLock(nullptr).Lock() || CNameLock(nullptr).Unlock(); }, false, {}, ""},
    };
    for (const auto& [operation, result, errors, calls] : cases) {
        Script script;
        script.errors = errors;
        EXPECT_EQ(operation(), result) << calls;
        EXPECT_EQ(script.calls, calls);
    }
    EXPECT_EQ(threadID, reinterpret_cast<uint64_t>(&threadID)); // more than 32 bits
}

TEST(SystemCallsTest, AWaiterThatIsWokenForNothingWaitsAgain)
{
    CMySemaphore semaphore(0, 9);
    Script script;
    script.onWait = [&, woken = 0]() mutable { ++woken == 2 && semaphore.unlock(); };
    semaphore.lock();
    EXPECT_EQ(script.calls, "wait, wait, signal");
}

TEST(SystemCallsTest, FilesAreReadAndWrittenWholeAndClosed)
{
    using namespace ORVA2_CLIENT_TVW;
    const BYTE bytes[] = "0123456789";
    const auto readFrom = [](const std::string& path) {
        std::vector<BYTE> data{'x'};
        uint32_t len = 7;
        const bool wasRead = ReadFile(path, data, len, O_RDONLY);
        EXPECT_EQ(len, data.size());
        return std::string(wasRead ? "" : "failure ") + std::string(data.begin(), data.end());
    };
    const auto writeTo = [](const std::string& path, const BYTE* data) {
        return std::string(WriteFile(path, data, 10, O_WRONLY) ? "whole" : "failure");
    };
    const auto reads = [&] { return readFrom("/f"); };
    const auto writes = [&] { return writeTo("/f", bytes); };
    const auto opensTwo = [] {
        CPFFile file;
        EXPECT_TRUE(file.Open("/f", O_RDONLY) && file.Open("/g", O_WRONLY));
        file.Close();
        return std::string();
    };
    using Errors = std::vector<int>;
    const Errors inThree = {0, 0, -7, EINTR, -6}; // three bytes, one and six
    const std::tuple<std::function<std::string()>, const char*, Errors, const char*> cases[] = {
        {reads, "abcdefghij", {}, "open /f 0, size, read 10, close 7"},
        {reads, "abcdefghij", inThree, "open /f 0, size, read 10, read 7, read 7, read 6, close 7"},
        {reads, "a", {0, 0, -9, -9}, "open /f 0, size, read 10, read 9, close 7"},
        {reads, "", {0, 0, -10}, "open /f 0, size, read 10, close 7"},
        {reads, "failure ", {ENOENT}, "open /f 0"},
        {reads, "failure ", {0, EBADF}, "open /f 0, size, close 7"},
        {reads, "failure ", {0, 0, -7, EISDIR}, "open /f 0, size, read 10, read 7, close 7"},
        {[&] { return readFrom(""); }, "failure ", {}, ""},
        {writes, "whole", {}, "open /f 1, write 0123456789, close 7"},
        {writes, "whole", Errors(inThree.begin() + 1, inThree.end()),
         "open /f 1, write 0123456789, write 3456789, write 3456789, write 456789, close 7"},
        {writes, "failure", {0, -10}, "open /f 1, write 0123456789, close 7"},
        {writes, "failure", {0, ENOSPC}, "open /f 1, write 0123456789, close 7"},
        {writes, "failure", {EACCES}, "open /f 1"},
        {[&] { return writeTo("", bytes) + writeTo("/f", nullptr); }, "failurefailure", {}, ""},
        {opensTwo, "", {}, "open /f 0, close 7, open /g 1, close 0"},
        {[] { return std::to_string(CPFFile().GetSize()); }, "-1", {EBADF}, "size"},
    };
    for (const auto& [operation, result, errors, calls] : cases) {
        Script script;
        script.errors = errors;
        EXPECT_EQ(operation(), result) << calls;
        EXPECT_EQ(script.calls, calls);
    }
    for (const auto& [size, result] : {std::pair(off_t{0}, ""), std::pair(off_t{1} << 32, "failure ")}) {
        Script script;
        script.fileSize = size;
        EXPECT_EQ(reads(), result);
        EXPECT_EQ(script.calls, "open /f 0, size, close 7");
    }
}

TEST(SystemCallsTest, WhatComesAtTheDeadlineIsTooLateAndStays)
{
    CMyEvent event(false);
    CMySemaphore semaphore(0, 9);
    {
        Script script;
        script.errors = {ETIMEDOUT};
        script.onWait = [&] { event.SetEvent(); }; // its lock is recursive
        EXPECT_EQ(event.WaitEvent(5), WAIT_TIMED_OUT);
    }
    EXPECT_EQ(event.WaitEvent(0), WAIT_SIGNALLED);
    EXPECT_FALSE(semaphore.lock(0) || semaphore.trylock());
    int before = -1;
    EXPECT_TRUE(semaphore.unlock(9, &before));
    EXPECT_EQ(before, 0);
}

TEST(SystemCallsTest, LocksAreRecursiveUnlessTheyAreToldNotToBe)
{
    CLock lock, same(true), plain(false);
    for (CLock* each : {&lock, &same, &plain}) {
        const auto isFree = [each] {
            return pthread_mutex_trylock(each->Handle()) == 0 && pthread_mutex_unlock(each->Handle()) == 0;
        };
        const auto isFreeForOthers = [&] { return std::async(std::launch::async, isFree).get(); };
        each->Lock();
        EXPECT_EQ(isFree(), each != &plain);
        if (each != &plain) {
            std::invoke(&CLock::Lock, each); // twice, which clang would not have
            std::invoke(&CLock::Unlock, each);
        }
        EXPECT_FALSE(isFreeForOthers());
        each->Unlock();
        EXPECT_TRUE(isFreeForOthers());
    }
}

} // namespace
