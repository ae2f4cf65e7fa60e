#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <sys/types.h>

namespace standin_host {
class CHostEvents;
}

namespace scale {

// The simulated decoders, all of them in one child process. It ends with this object, or with this process.
class CDecoderProcess {
public:
    // Starts the program. Throws std::system_error when there can be no child.
    CDecoderProcess(const std::string& strProgram, const std::vector<std::string>& arguments);
    ~CDecoderProcess();
    CDecoderProcess(const CDecoderProcess&) = delete;
    CDecoderProcess& operator=(const CDecoderProcess&) = delete;

    // Waits until so many decoders listen and returns their ports. Throws CExitError when they do not come
    // up, and after a signal.
    std::vector<std::string> AwaitPorts(std::size_t nDecoders, standin_host::CHostEvents& events);

private:
    const std::string m_strProgram;
    pid_t m_pid = -1;
    int m_nOutput = -1; // its standard output
};

} // namespace scale
