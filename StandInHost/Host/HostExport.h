#pragma once
// Everything is compiled with hidden visibility; this marks the functions that a loaded plug-in finds in the
// process.

#define HOST_EXPORT __attribute__((visibility("default")))
