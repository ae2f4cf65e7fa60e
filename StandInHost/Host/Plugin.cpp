#include "Host/Plugin.h"

#include <filesystem>

#include <dlfcn.h>

#include "Base/ExitStatus.h"
#include "Host/HostExport.h"
#include "HostFunctions.h"

namespace standin_host {

namespace {

constexpr char s_szLibrary[] = "libNetDeviceDECODERDev.so";

CPlugin* s_pLoading = nullptr; // the plug-in whose initial entry runs

} // namespace

CPlugin::CPlugin(const std::string& strFile)
{
    // A path without a slash would be searched for in the system's library folders.
    const std::string strPath = std::filesystem::absolute(strFile);
    m_pLibrary.reset(::dlopen(strPath.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (m_pLibrary == nullptr) {
        throw CUsageError(std::string("cannot load the plug-in: ") + ::dlerror());
    }
    const auto pInitial = reinterpret_cast<EntryInitial>(Entry(strFile, "NET_DEV_DECODERDEVSDK_Initial"));
    m_pQuit = reinterpret_cast<EntryQuit>(Entry(strFile, "NET_DEV_DECODERDEVSDK_Quit"));
    s_pLoading = this;
    const int nResult = pInitial();
    s_pLoading = nullptr;
    if (nResult != 0 || !m_prototypes.contains(kDecoderDeviceType)) {
        throw CUsageError("the plug-in " + strFile + " registers no decoder");
    }
}

CPlugin::~CPlugin()
{
    m_prototypes.clear();
    m_pQuit();
}

std::unique_ptr<CNetProtocolProc> CPlugin::CreateProcessor() const
{
    return std::unique_ptr<CNetProtocolProc>(m_prototypes.at(kDecoderDeviceType)->CreateSelf());
}

int CPlugin::Register(unsigned int nType, CNetProtocolProc* pPrototype)
{
    if (pPrototype == nullptr) {
        return -1;
    }
    // The plug-in's prototype lives during this call only, so the host keeps a processor of its own.
    std::unique_ptr<CNetProtocolProc> pOwn(pPrototype->CreateSelf());
    if (pOwn == nullptr) {
        return -1;
    }
    m_prototypes[nType] = std::move(pOwn);
    return 0;
}

void CPlugin::SUnload::operator()(void* pLibrary) const { ::dlclose(pLibrary); }

void* CPlugin::Entry(const std::string& strFile, const char* szName) const
{
    void* pEntry = ::dlsym(m_pLibrary.get(), szName);
    if (pEntry == nullptr) {
        throw CUsageError("the plug-in " + strFile + " has no function " + szName);
    }
    return pEntry;
}

std::string DefaultPluginFile()
{
    namespace fs = std::filesystem;
    std::error_code ignored;
    const fs::path folder = fs::read_symlink("/proc/self/exe", ignored).parent_path().parent_path();
    const fs::path built = folder / "NetDeviceDECODERDev" / s_szLibrary;
    const fs::path installed = folder / TVWALL_PLUGIN_FOLDER / s_szLibrary;
    return fs::exists(built, ignored) || !fs::exists(installed, ignored) ? built : installed;
}

} // namespace standin_host

extern "C" {

HOST_EXPORT int NET_COMM_RegistDevProtocolProcObject(unsigned int nType, CNetProtocolProc* pPrototype)
{
    using standin_host::s_pLoading;
    return s_pLoading == nullptr ? -1 : s_pLoading->Register(nType, pPrototype);
}

HOST_EXPORT GUID NET_COMM_GetCurrentAppNodeID() { return standin_host::kAppNodeID; }

} // extern "C"
