#include <sys/utsname.h>

#include "Requests/RequestHandlers.h"
#include "State/ChannelNotices.h"

namespace simulated_decoder {

namespace {

constexpr int kModel = 1;
constexpr const char* kMac = "02:00:00:00:00:01"; // locally administered: no real device uses it
constexpr const char* kDataVersion = "1";

// A decoder that takes its orders from hosts, not from another decoder.
constexpr int kIdentity = 1;
constexpr int kRunMode = 0;

std::string KernelVersion()
{
    utsname system{};
    return uname(&system) == 0 ? system.release : "";
}

} // namespace

ErrorCode DoGetSystemInfo(RequestContext& context)
{
    tinyxml2::XMLElement& body = context.reply.Body();
    AddChild(body, "name", context.state.name);
    AddChild(body, "model", kModel);
    AddChild(body, "devicetype", "Simulated TV-wall decoder");
    AddChild(body, "mac", kMac);
    AddChild(body, "softversion", TVWALL_DECODER_VERSION);
    AddChild(body, "builddate", ""); // keeps builds reproducible
    AddChild(body, "kernelversion", KernelVersion());
    AddChild(body, "dataversion", kDataVersion);
    return ErrorCode::Success;
}

ErrorCode DoGetBasicConfig(RequestContext& context)
{
    tinyxml2::XMLElement& body = context.reply.Body();
    AddChild(body, "identidy", kIdentity); // spelt this way on the link
    AddChild(body, "runmode", kRunMode);
    AddChild(body, "devicename", context.state.name);
    return ErrorCode::Success;
}

ErrorCode DoGetChannels(RequestContext& context)
{
    AddChannelList(context.reply.Body(), context.state.channels);
    return ErrorCode::Success;
}

} // namespace simulated_decoder
