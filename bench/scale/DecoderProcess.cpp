#include "DecoderProcess.h"

#include <cerrno>
#include <csignal>
#include <system_error>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Base/ExitStatus.h"
#include "Host/HostEvents.h"

namespace scale {

using standin_host::ExitError;

namespace {

constexpr std::chrono::minutes kStartTimeout{2};
constexpr int kExecFailed = 127;

// The program's output: "listening on ADDRESS:PORT", one line for each decoder.
std::vector<std::string> PortsIn(const std::string& output)
{
    std::vector<std::string> ports;
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = output.find('\n', begin)) != std::string::npos; begin = end + 1) {
        const std::string line = output.substr(begin, end - begin);
        ports.push_back(line.substr(line.rfind(':') + 1));
    }
    return ports;
}

} // namespace

DecoderProcess::DecoderProcess(const std::string& program, const std::vector<std::string>& arguments)
    : m_program(program)
{
    std::vector<char*> argv = {const_cast<char*>(m_program.c_str())};
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    m_pid = ::fork();
    if (m_pid == 0) {
        ::setpgid(0, 0); // a Ctrl-C on the terminal is only for the host
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        ::dup2(ends[1], STDOUT_FILENO);
        ::execv(argv[0], argv.data());
        ::_exit(kExecFailed);
    }
    ::close(ends[1]);
    m_output = ends[0];
    if (m_pid < 0) {
        const int error = errno;
        ::close(m_output);
        throw std::system_error(error, std::generic_category(), "fork");
    }
}

DecoderProcess::~DecoderProcess()
{
    ::kill(m_pid, SIGTERM);
    ::waitpid(m_pid, nullptr, 0);
    ::close(m_output);
}

std::vector<std::string> DecoderProcess::AwaitPorts(std::size_t decoders, standin_host::HostEvents& events)
{
    const auto deadline = standin_host::HostEvents::Clock::now() + kStartTimeout;
    std::string output;
    std::vector<std::string> ports;
    while (ports.size() < decoders) {
        if (const int signal = events.Interrupted()) {
            throw ExitError(standin_host::kExitSignalBase + signal, "interrupted");
        }
        char chunk[4096];
        ssize_t len = 0;
        if (events.Wait(deadline, m_output).hasInput) {
            len = ::read(m_output, chunk, sizeof(chunk));
        } else if (standin_host::HostEvents::Clock::now() < deadline) {
            continue;
        }
        if (len <= 0) {
            throw ExitError(standin_host::kExitConnection, "the decoders do not come up: " + m_program);
        }
        output.append(chunk, static_cast<std::size_t>(len));
        ports = PortsIn(output);
    }
    return ports;
}

} // namespace scale
