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

using standin_host::CExitError;

namespace {

constexpr std::chrono::minutes s_startTimeout{2};
constexpr int kExecFailed = 127;

// The program's own words for "listening on ADDRESS:PORT", one decoder a line.
std::vector<std::string> PortsIn(const std::string& strOutput)
{
    std::vector<std::string> ports;
    std::size_t nLine = 0;
    for (std::size_t nEnd = 0; (nEnd = strOutput.find('\n', nLine)) != std::string::npos; nLine = nEnd + 1) {
        const std::string strLine = strOutput.substr(nLine, nEnd - nLine);
        ports.push_back(strLine.substr(strLine.rfind(':') + 1));
    }
    return ports;
}

} // namespace

CDecoderProcess::CDecoderProcess(const std::string& strProgram, const std::vector<std::string>& arguments)
    : m_strProgram(strProgram)
{
    std::vector<char*> argv = {const_cast<char*>(m_strProgram.c_str())};
    for (const std::string& strArgument : arguments) {
        argv.push_back(const_cast<char*>(strArgument.c_str()));
    }
    argv.push_back(nullptr);
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    m_pid = ::fork();
    if (m_pid == 0) {
        ::setpgid(0, 0); // a Ctrl-C on the terminal is for the host alone
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        ::dup2(ends[1], STDOUT_FILENO);
        ::execv(argv[0], argv.data());
        ::_exit(kExecFailed);
    }
    ::close(ends[1]);
    m_nOutput = ends[0];
    if (m_pid < 0) {
        const int nError = errno;
        ::close(m_nOutput);
        throw std::system_error(nError, std::generic_category(), "fork");
    }
}

CDecoderProcess::~CDecoderProcess()
{
    ::kill(m_pid, SIGTERM);
    ::waitpid(m_pid, nullptr, 0);
    ::close(m_nOutput);
}

std::vector<std::string> CDecoderProcess::AwaitPorts(std::size_t nDecoders, standin_host::CHostEvents& events)
{
    const auto deadline = standin_host::CHostEvents::Clock::now() + s_startTimeout;
    std::string strOutput;
    std::vector<std::string> ports;
    while (ports.size() < nDecoders) {
        if (const int nSignal = events.Interrupted()) {
            throw CExitError(standin_host::EXIT_SIGNAL_BASE + nSignal, "interrupted");
        }
        char szChunk[4096];
        ssize_t nLen = 0;
        if (events.Wait(deadline, m_nOutput).bInput) {
            nLen = ::read(m_nOutput, szChunk, sizeof(szChunk));
        } else if (standin_host::CHostEvents::Clock::now() < deadline) {
            continue;
        }
        if (nLen <= 0) {
            throw CExitError(standin_host::EXIT_CONNECTION, "the decoders do not come up: " + m_strProgram);
        }
        strOutput.append(szChunk, static_cast<std::size_t>(nLen));
        ports = PortsIn(strOutput);
    }
    return ports;
}

} // namespace scale
