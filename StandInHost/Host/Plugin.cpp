#include "Host/Plugin.h"

#include <filesystem>
#include <new>

#include <dlfcn.h>
#include <unistd.h>

#include "Base/ExitStatus.h"
#include "Host/HostExport.h"
#include "Host/HostLog.h"
#include "HostFunctions.h"

namespace standin_host {

namespace {

constexpr char kLibrary[] = "libNetDeviceDECODERDev.so";

Plugin* loading = nullptr; // the plug-in whose initial entry point is running

} // namespace

Plugin::Plugin(const std::string& file)
{
    // A path without a slash would be looked up in the system's library folders.
    const std::string path = std::filesystem::absolute(file);
    m_library.reset(::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (m_library == nullptr) {
        Log(LogLevel::Normal, ::dlerror());
        throw UsageError("cannot load the plug-in " + path +
                         (::access(path.c_str(), R_OK) != 0
                              ? ": it is not there, or cannot be read"
                              : ": it is no library for this program; --log-level normal says more"));
    }
    const auto initial = reinterpret_cast<EntryInitial>(Entry(path, "NET_DEV_DECODERDEVSDK_Initial"));
    m_quit = reinterpret_cast<EntryQuit>(Entry(path, "NET_DEV_DECODERDEVSDK_Quit"));
    loading = this;
    const int result = initial();
    loading = nullptr;
    if (result != 0 || !m_prototypes.contains(kDecoderDeviceType)) {
        throw UsageError("the plug-in " + path + " registers no decoder");
    }
}

Plugin::~Plugin()
{
    m_prototypes.clear();
    m_quit();
}

std::unique_ptr<CNetProtocolProc> Plugin::CreateProcessor() const
{
    std::unique_ptr<CNetProtocolProc> pProcessor(m_prototypes.at(kDecoderDeviceType)->CreateSelf());
    if (pProcessor == nullptr) {
        throw std::bad_alloc();
    }
    return pProcessor;
}

int Plugin::Register(unsigned int type, CNetProtocolProc* prototype)
{
    if (prototype == nullptr) {
        return -1;
    }
    // The plug-in's prototype lives during this call only, so the host keeps a processor of its own.
    std::unique_ptr<CNetProtocolProc> own(prototype->CreateSelf());
    if (own == nullptr) {
        return -1;
    }
    m_prototypes[type] = std::move(own);
    return 0;
}

void Plugin::Unload::operator()(void* library) const { ::dlclose(library); }

void* Plugin::Entry(const std::string& path, const char* name) const
{
    void* entry = ::dlsym(m_library.get(), name);
    if (entry == nullptr) {
        throw UsageError("the plug-in " + path + " has no function " + name);
    }
    return entry;
}

std::string DefaultPluginFile()
{
    namespace fs = std::filesystem;
    std::error_code ignored;
    const fs::path folder = fs::read_symlink("/proc/self/exe", ignored).parent_path().parent_path();
    const fs::path built = folder / "NetDeviceDECODERDev" / kLibrary;
    const fs::path installed = folder / TVWALL_PLUGIN_FOLDER / kLibrary;
    return fs::exists(built, ignored) || !fs::exists(installed, ignored) ? built : installed;
}

} // namespace standin_host

extern "C" {

HOST_EXPORT int NET_COMM_RegistDevProtocolProcObject(unsigned int type, CNetProtocolProc* prototype)
{
    using standin_host::loading;
    return loading == nullptr ? -1 : loading->Register(type, prototype);
}

HOST_EXPORT GUID NET_COMM_GetCurrentAppNodeID() { return standin_host::kAppNodeID; }

} // extern "C"
