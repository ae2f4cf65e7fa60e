// The version as a text inside the library, for `strings` and `readelf -p .tvwall_version`. A section and no
// export: the host expects two exported functions and nothing else.

namespace {

[[gnu::used, gnu::section(".tvwall_version")]] const char s_szVersion[] =
    "NetDeviceDECODERDev " TVWALL_VERSION;

} // namespace
