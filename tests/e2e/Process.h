#pragma once
// A program of this project as a child process, with its three streams in the hands of the test.

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <sys/types.h>

class Process {
public:
    // Environment variables are given as NAME=VALUE, on top of the test's own.
    explicit Process(const std::vector<std::string>& command,
                     const std::vector<std::string>& environment = {});
    ~Process(); // kills what still runs
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    void Write(const std::string& text);
    void CloseInput();
    void Signal(int nSignal);

    // Waits until standard output holds the text; what came before and the rest of its line are skipped. ""
    // when the program ends or 20 s pass without it.
    std::string ReadUntil(const std::string& text);
    // The exit status, or 128 + the signal. Fails by killing a program that does not end within 60 s (then
    // 137).
    int Wait();

    std::string Out();
    std::string Err();

private:
    void Collect(int fd, std::string& text);

    pid_t m_pid = -1;
    int m_input = -1;
    int m_nStatus = -1;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::string m_out;
    std::string m_err;
    size_t m_nRead = 0;
    int m_nOpen = 2; // streams that still may bring text
    std::thread m_readers[2];
};
