#include "Process.h"

#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

std::vector<char*> Pointers(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (auto& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

Process::Process(const std::vector<std::string>& command, const std::vector<std::string>& environment)
{
    signal(SIGPIPE, SIG_IGN);
    int pipes[3][2];
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (int i = 0; i < 3; ++i) {
        if (pipe2(pipes[i], O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
        posix_spawn_file_actions_adddup2(&actions, pipes[i][i == 0 ? 0 : 1], i);
    }
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        variables.emplace_back(*variable);
    }
    variables.insert(variables.end(), environment.begin(), environment.end());
    std::vector<std::string> words = command;
    const int nError = posix_spawn(&m_pid, words[0].c_str(), &actions, nullptr, Pointers(words).data(),
                                   Pointers(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    close(pipes[0][0]);
    close(pipes[1][1]);
    close(pipes[2][1]);
    m_input = pipes[0][1];
    if (nError != 0) {
        throw std::runtime_error("cannot start " + command[0]);
    }
    m_readers[0] = std::thread([this, fd = pipes[1][0]] { Collect(fd, m_out); });
    m_readers[1] = std::thread([this, fd = pipes[2][0]] { Collect(fd, m_err); });
}

Process::~Process()
{
    if (m_nStatus < 0) {
        Signal(SIGKILL);
        Wait();
    }
    CloseInput();
    for (auto& reader : m_readers) {
        reader.join();
    }
}

void Process::Collect(int fd, std::string& text)
{
    char buffer[4096];
    for (ssize_t n = read(fd, buffer, sizeof(buffer)); n > 0; n = read(fd, buffer, sizeof(buffer))) {
        std::lock_guard lock(m_mutex);
        text.append(buffer, static_cast<size_t>(n));
        m_changed.notify_all();
    }
    close(fd);
    std::lock_guard lock(m_mutex);
    --m_nOpen;
    m_changed.notify_all();
}

void Process::Write(const std::string& text)
{
    if (write(m_input, text.data(), text.size()) < 0) {
        return; // the program is gone; its status tells
    }
}

void Process::CloseInput()
{
    if (m_input >= 0) {
        close(m_input);
        m_input = -1;
    }
}

void Process::Signal(int nSignal) { kill(m_pid, nSignal); }

std::string Process::ReadUntil(const std::string& text)
{
    std::unique_lock lock(m_mutex);
    size_t at = std::string::npos;
    const auto Found = [&] {
        at = m_out.find(text, m_nRead);
        return at != std::string::npos && m_out.find('\n', at) != std::string::npos;
    };
    m_changed.wait_for(lock, std::chrono::seconds(20), [&] { return Found() || m_nOpen == 0; });
    if (!Found()) {
        return "";
    }
    const size_t end = m_out.find('\n', at);
    m_nRead = end + 1;
    return m_out.substr(at, end - at);
}

int Process::Wait()
{
    if (m_nStatus >= 0) {
        return m_nStatus;
    }
    {
        std::unique_lock lock(m_mutex); // both streams end with the program
        if (!m_changed.wait_for(lock, std::chrono::seconds(60), [this] { return m_nOpen == 0; })) {
            Signal(SIGKILL);
        }
    }
    int nStatus = 0;
    waitpid(m_pid, &nStatus, 0);
    m_nStatus = WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : 128 + WTERMSIG(nStatus);
    return m_nStatus;
}

std::string Process::Out()
{
    std::lock_guard lock(m_mutex);
    return m_out;
}

std::string Process::Err()
{
    std::lock_guard lock(m_mutex);
    return m_err;
}
