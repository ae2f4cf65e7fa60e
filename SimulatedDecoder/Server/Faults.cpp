#include "Server/Faults.h"

#include <algorithm>
#include <iterator>

#include <spdlog/fmt/fmt.h>

#include "Link/Frame.h"
#include "Link/Message.h"

namespace simulated_decoder {

namespace {

using std::chrono::milliseconds;

constexpr std::uint32_t kMaxMilliseconds = 24U * 3600U * 1000U;
constexpr std::uint32_t kMaxBurst = 1000;

// The least and the greatest number a fault takes; a fault with maximum 0 takes none.
struct Range {
    std::uint32_t minimum;
    std::uint32_t maximum;
};

// Where the number of a fault stands; 0 is off, and 1 is on where it takes none. Exactly one of both pairs is
// there: the fault belongs to a url or to the connection.
struct Kind {
    std::string_view name;
    const char* form;
    Range range;
    void (*setUrl)(UrlFaults& faults, std::uint32_t number);
    std::uint32_t (*getUrl)(const UrlFaults& faults);
    void (*setConnection)(Faults& faults, std::uint32_t number);
    std::uint32_t (*getConnection)(const Faults& faults);
    const char* help;
};

std::uint32_t Count(milliseconds time) { return static_cast<std::uint32_t>(time.count()); }

template <bool UrlFaults::*kMember>
constexpr Kind UrlSwitch(std::string_view name, const char* form, const char* help)
{
    return {name,
            form,
            {0, 0},
            [](UrlFaults& faults, std::uint32_t on) { faults.*kMember = on != 0; },
            [](const UrlFaults& faults) -> std::uint32_t { return faults.*kMember ? 1 : 0; },
            nullptr,
            nullptr,
            help};
}

template <milliseconds Faults::*kMember>
constexpr Kind Period(std::string_view name, const char* form, const char* help)
{
    return {name,
            form,
            {1, kMaxMilliseconds},
            nullptr,
            nullptr,
            [](Faults& faults, std::uint32_t ms) { faults.*kMember = milliseconds(ms); },
            [](const Faults& faults) { return Count(faults.*kMember); },
            help};
}

const Kind kKinds[] = {
    {"error",
     "error=CODE@URL",
     {1, UINT32_MAX},
     [](UrlFaults& faults, std::uint32_t code) {
         faults.errorCode = code != 0 ? std::optional(static_cast<ErrorCode>(code)) : std::nullopt;
     },
     [](const UrlFaults& faults) {
         return static_cast<std::uint32_t>(faults.errorCode.value_or(ErrorCode::Success));
     },
     nullptr,
     nullptr,
     "answer CODE and do nothing"},
    {"delay",
     "delay=MS@URL",
     {1, kMaxMilliseconds},
     [](UrlFaults& faults, std::uint32_t ms) { faults.delay = milliseconds(ms); },
     [](const UrlFaults& faults) { return Count(faults.delay); },
     nullptr,
     nullptr,
     "reply MS later; other requests go on"},
    UrlSwitch<&UrlFaults::silent>("silent", "silent@URL", "carry out, but do not reply"),
    UrlSwitch<&UrlFaults::wrongSeq>("wrong-seq", "wrong-seq@URL", "reply with another sequence number"),
    UrlSwitch<&UrlFaults::garbage>("garbage", "garbage@URL", "reply with bytes that are no XML"),
    {"chunk",
     "chunk=BYTES",
     {1, kMaxPayload},
     nullptr,
     nullptr,
     [](Faults& faults, std::uint32_t bytes) { faults.chunk = bytes; },
     [](const Faults& faults) { return static_cast<std::uint32_t>(faults.chunk); },
     "send everything in pieces of BYTES"},
    {"cut-after",
     "cut-after=N",
     {1, UINT32_MAX},
     nullptr,
     nullptr,
     [](Faults& faults, std::uint32_t replies) { faults.cutAfter = replies; },
     [](const Faults& faults) { return faults.cutAfter; },
     "close a connection after half of its N-th reply"},
    Period<&Faults::notifyEvery>(
        "notify-every", "notify-every=MS",
        "notify hosts that are logged in, by turns of channels and of channel states"),
    {"notify-burst",
     "notify-burst=N",
     {1, kMaxBurst},
     nullptr,
     nullptr,
     [](Faults& faults, std::uint32_t count) { faults.notifyBurst = std::max(count, 1U); },
     [](const Faults& faults) { return faults.notifyBurst > 1 ? faults.notifyBurst : 0; },
     "N notifications of notify-every at once"},
    Period<&Faults::flapEvery>(
        "flap-channels", "flap-channels=MS",
        "let all input channels go off, MS later on again, and so forth; hosts are notified"),
    {"device-head",
     "device-head",
     {0, 0},
     nullptr,
     nullptr,
     [](Faults& faults, std::uint32_t on) { faults.deviceHead = on != 0; },
     [](const Faults& faults) -> std::uint32_t { return faults.deviceHead ? 1 : 0; },
     "64 bytes of device head before each reply"},
    Period<&Faults::beatEvery>("beat-every", "beat-every=MS", "send heartbeats unasked"),
};

// A spec in its pieces; a piece that was not given is not there, one given empty is empty.
struct Pieces {
    std::string_view name;
    std::optional<std::string_view> number;
    std::optional<std::string_view> url;
};

Pieces Cut(std::string_view spec)
{
    Pieces pieces;
    if (const auto at = spec.find('@'); at != std::string_view::npos) {
        pieces.url = spec.substr(at + 1);
        spec = spec.substr(0, at);
    }
    if (const auto equals = spec.find('='); equals != std::string_view::npos) {
        pieces.number = spec.substr(equals + 1);
        spec = spec.substr(0, equals);
    }
    pieces.name = spec;
    return pieces;
}

// Null when there is no such fault.
const Kind* FindKind(std::string_view name)
{
    const auto* kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                    [name](const Kind& candidate) { return candidate.name == name; });
    return kind != std::end(kKinds) ? kind : nullptr;
}

bool HasRightUrl(const Kind& kind, const Pieces& pieces)
{
    return kind.setUrl != nullptr ? pieces.url && !pieces.url->empty() : !pieces.url;
}

void Set(Faults& faults, const Kind& kind, const Pieces& pieces, std::uint32_t number)
{
    if (kind.setUrl != nullptr) {
        kind.setUrl(faults.urls[std::string(*pieces.url)], number);
    } else {
        kind.setConnection(faults, number);
    }
}

} // namespace

const UrlFaults& Faults::For(std::string_view url) const
{
    static const UrlFaults none;
    const auto found = urls.find(url);
    return found != urls.end() ? found->second : none;
}

std::string AddFault(Faults& faults, std::string_view spec)
{
    const Pieces pieces = Cut(spec);
    const Kind* kind = FindKind(pieces.name);
    if (kind == nullptr) {
        return fmt::format("unknown fault '{}'", spec);
    }
    const bool takesNumber = kind->range.maximum != 0;
    if (pieces.number.has_value() != takesNumber || !HasRightUrl(*kind, pieces)) {
        return fmt::format("fault '{}' is not of the form {}", spec, kind->form);
    }
    std::uint32_t number = 1;
    if (takesNumber) {
        const auto parsed = tools::ParseDecimal<std::uint32_t>(*pieces.number);
        if (!parsed || *parsed < kind->range.minimum || *parsed > kind->range.maximum) {
            return fmt::format("fault '{}': '{}' is not a number from {} to {}", spec, *pieces.number,
                               kind->range.minimum, kind->range.maximum);
        }
        number = *parsed;
    }
    Set(faults, *kind, pieces, number);
    return {};
}

std::string RemoveFault(Faults& faults, std::string_view spec)
{
    const Pieces pieces = Cut(spec);
    const Kind* kind = FindKind(pieces.name);
    if (kind == nullptr) {
        return fmt::format("unknown fault '{}'", spec);
    }
    if (!HasRightUrl(*kind, pieces)) {
        return fmt::format("fault '{}' is not of the form {}", spec, kind->form);
    }
    Set(faults, *kind, pieces, 0);
    return {};
}

std::vector<ActiveFault> ListFaults(const Faults& faults)
{
    std::vector<ActiveFault> active;
    const auto add = [&](const Kind& kind, const std::string& url, std::uint32_t number) {
        if (number != 0) {
            active.push_back({kind.name, url, number});
        }
    };
    for (const Kind& kind : kKinds) {
        if (kind.getConnection != nullptr) {
            add(kind, "", kind.getConnection(faults));
            continue;
        }
        for (const auto& [url, ofUrl] : faults.urls) {
            add(kind, url, kind.getUrl(ofUrl));
        }
    }
    return active;
}

std::vector<FaultKind> FaultKinds()
{
    std::vector<FaultKind> kinds;
    for (const Kind& kind : kKinds) {
        kinds.push_back({kind.name, kind.form, kind.help, kind.setUrl != nullptr, kind.range.minimum,
                         kind.range.maximum});
    }
    return kinds;
}

std::string DescribeFaults()
{
    std::string text;
    for (const Kind& kind : kKinds) {
        text += fmt::format("  {:<17} {}\n", kind.form, kind.help);
    }
    return text;
}

} // namespace simulated_decoder
