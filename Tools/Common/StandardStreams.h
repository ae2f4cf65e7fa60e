#pragma once

namespace tools {

// Opens /dev/null in place of each standard stream that the caller has closed, which would else be the first
// file that the program opens. For the first lines of main.
void OpenStandardStreams();

} // namespace tools
