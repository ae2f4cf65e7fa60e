#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <sys/types.h>

namespace standin_host {
class HostEvents;
}

namespace scale {

// The simulated decoders, all of them in one child process. It ends with this object or this process.
class DecoderProcess {
public:
    // Starts the program. Throws std::system_error when the child cannot be started.
    DecoderProcess(const std::string& program, const std::vector<std::string>& arguments);
    ~DecoderProcess();
    DecoderProcess(const DecoderProcess&) = delete;
    DecoderProcess& operator=(const DecoderProcess&) = delete;

    // Waits until that many decoders listen and returns their ports. Throws ExitError when they do not come
    // up, and after a signal.
    std::vector<std::string> AwaitPorts(std::size_t decoders, standin_host::HostEvents& events);

private:
    const std::string m_program;
    pid_t m_pid = -1;
    int m_output = -1; // its standard output
};

} // namespace scale
