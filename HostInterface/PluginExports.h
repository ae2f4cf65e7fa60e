#pragma once
// The two functions that the library exports.

extern "C" {

// Registers the plug-in's processor with the host under the decoder type code; returns the host's result, or
// -1 without registering anything when there is no memory.
int NET_DEV_DECODERDEVSDK_Initial();
// Does nothing; the host calls it before unloading the library.
void NET_DEV_DECODERDEVSDK_Quit();

} // extern "C"
