#include "Tools/Common/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

namespace tools {

void OpenStandardStreams()
{
    while (true) {
        const int descriptor = ::open("/dev/null", O_RDWR);
        if (descriptor < 0 || descriptor > STDERR_FILENO) {
            (void)::close(descriptor);
            return;
        }
    }
}

} // namespace tools
