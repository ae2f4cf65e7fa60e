#pragma once

#include <map>
#include <memory>
#include <string>

#include "NetProtocolProc.h"

namespace standin_host {

// The device type under which the plug-in registers its decoders.
inline constexpr unsigned int kDecoderDeviceType = 513;

// The host application's own node, to which notifications are addressed.
inline constexpr GUID kAppNodeID{
    0x00000001, 0x0000, 0x4000, {0x80, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01}};

// One loaded plug-in library. It outlives every processor that it has created. Plug-ins are loaded by one
// thread at a time.
class Plugin {
public:
    // Loads the library and lets it register. Throws UsageError when the file cannot be loaded, lacks an
    // entry point, or registers no decoder.
    explicit Plugin(const std::string& path);
    ~Plugin(); // tells the plug-in and unloads it
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    // A new processor for one decoder; null when the plug-in creates none.
    std::unique_ptr<CNetProtocolProc> CreateProcessor() const;

    // The host's side of the registration, called by the plug-in while it loads: keeps a processor of the
    // prototype's kind. 0 on success, -1 otherwise.
    int Register(unsigned int type, CNetProtocolProc* prototype);

private:
    using EntryInitial = int (*)();
    using EntryQuit = void (*)();

    struct Unload {
        void operator()(void* library) const;
    };

    void* Entry(const std::string& path, const char* name) const;

    std::unique_ptr<void, Unload> m_library;
    EntryQuit m_quit = nullptr;
    std::map<unsigned int, std::unique_ptr<CNetProtocolProc>> m_prototypes; // by device type
};

// The plug-in's default path: beside this program in the build tree or in the installation. The build tree's
// path when neither exists.
std::string DefaultPluginFile();

} // namespace standin_host
