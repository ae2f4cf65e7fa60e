#include <new>

#include "Encoding/TvwRecord.h"
#include "HostFunctions.h"
#include "NetProtocolProcTWDECODERDev.h"
#include "PluginExports.h"
#include "TypeCheck.h"

extern "C" {

__attribute__((visibility("default"))) int NET_DEV_DECODERDEVSDK_Initial()
{
    constexpr int NO_MEMORY = -1;
    SetRecordOutput(SHARESDK_NormalOutput, SHARESDK_AbnormalOutput);
    try {
        // The host creates every working processor with CreateSelf during this call.
        CNetProtocolProcTWDECODERDev prototype;
        return NET_COMM_RegistDevProtocolProcObject(CTypeCheck::GetDECODERAbstractTypeValue(), &prototype);
    } catch (const std::bad_alloc&) {
        return NO_MEMORY;
    }
}

__attribute__((visibility("default"))) void NET_DEV_DECODERDEVSDK_Quit() {}

} // extern "C"
