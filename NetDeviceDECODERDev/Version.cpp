// The version as text inside the library, for `strings` and `readelf -p .tvwall_version`. A section, not an
// export: the host expects exactly two exported functions.

namespace {

[[gnu::used, gnu::section(".tvwall_version")]] const char VERSION_TEXT[] =
    "NetDeviceDECODERDev " TVWALL_VERSION;

} // namespace
