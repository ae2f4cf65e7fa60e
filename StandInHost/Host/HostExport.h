#pragma once
// Everything is compiled with hidden visibility; this marks the functions that a loaded plug-in imports.

#define HOST_EXPORT __attribute__((visibility("default")))
