#pragma once
// The two functions that the library exports.

extern "C" {

// Registers the plug-in's processor with the host under the decoder type code; returns the host's result.
int NET_DEV_DECODERDEVSDK_Initial();
// Nothing to do; present because the host calls it before it unloads the library.
void NET_DEV_DECODERDEVSDK_Quit();

} // extern "C"
