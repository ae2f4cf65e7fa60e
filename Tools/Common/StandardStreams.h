#pragma once

namespace tools {

// Opens /dev/null in place of each standard stream that was closed at start; otherwise the first file opened
// would take its descriptor. Call first in main.
void OpenStandardStreams();

} // namespace tools
