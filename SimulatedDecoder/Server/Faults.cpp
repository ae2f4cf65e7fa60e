#include "Server/Faults.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include <spdlog/fmt/fmt.h>

#include "Link/Frame.h"
#include "Link/Message.h"

namespace simulated_decoder {

namespace {

using std::chrono::milliseconds;

constexpr std::uint32_t kMaxMilliseconds = 24U * 3600U * 1000U;
constexpr std::uint32_t kMaxBurst = 1000;

template <typename Value>
std::uint32_t NumberOf(Value value)
{
    return static_cast<std::uint32_t>(value);
}
std::uint32_t NumberOf(milliseconds time) { return static_cast<std::uint32_t>(time.count()); }

// Where a fault's number is kept: with its url or with the connection. 0 is off.
template <auto kMember>
struct Place;

template <typename Value, Value UrlFaults::*kMember>
struct Place<kMember> {
    static constexpr bool kOfUrl = true;
    static void Set(Faults& faults, std::string_view url, std::uint32_t number)
    {
        faults.urls[std::string(url)].*kMember = static_cast<Value>(number);
    }
    static std::uint32_t Get(const Faults& faults, std::string_view url)
    {
        return NumberOf(faults.For(url).*kMember);
    }
};

template <typename Value, Value Faults::*kMember>
struct Place<kMember> {
    static constexpr bool kOfUrl = false;
    static void Set(Faults& faults, std::string_view, std::uint32_t number)
    {
        faults.*kMember = static_cast<Value>(number);
    }
    static std::uint32_t Get(const Faults& faults, std::string_view) { return NumberOf(faults.*kMember); }
};

struct Row {
    FaultKind kind;
    void (*set)(Faults& faults, std::string_view url, std::uint32_t number);
    std::uint32_t (*get)(const Faults& faults, std::string_view url);
};

// A fault takes a number up to `maximum`, which is 0 when it takes none.
template <auto kMember>
constexpr Row Fault(std::string_view name, const char* form, std::uint32_t maximum, const char* help)
{
    using Its = Place<kMember>;
    return {{name, form, help, Its::kOfUrl, maximum != 0 ? 1U : 0U, maximum}, Its::Set, Its::Get};
}

constexpr Row kRows[] = {
    Fault<&UrlFaults::errorCode>("error", "error=CODE@URL", UINT32_MAX, "answer CODE and do nothing"),
    Fault<&UrlFaults::delay>("delay", "delay=MS@URL", kMaxMilliseconds,
                             "reply MS later; other requests go on"),
    Fault<&UrlFaults::silent>("silent", "silent@URL", 0, "carry out, but do not reply"),
    Fault<&UrlFaults::wrongSeq>("wrong-seq", "wrong-seq@URL", 0, "reply with another sequence number"),
    Fault<&UrlFaults::garbage>("garbage", "garbage@URL", 0, "reply with bytes that are no XML"),
    Fault<&Faults::chunk>("chunk", "chunk=BYTES", kMaxPayload, "send everything in pieces of BYTES"),
    Fault<&Faults::cutAfter>("cut-after", "cut-after=N", UINT32_MAX,
                             "close a connection after half of its N-th reply"),
    Fault<&Faults::notifyEvery>(
        "notify-every", "notify-every=MS", kMaxMilliseconds,
        "notify hosts that are logged in, by turns of channels and of channel states"),
    Fault<&Faults::notifyBurst>("notify-burst", "notify-burst=N", kMaxBurst,
                                "N notifications of notify-every at once"),
    Fault<&Faults::flapEvery>(
        "flap-channels", "flap-channels=MS", kMaxMilliseconds,
        "let all input channels go off, MS later on again, and so forth; hosts are notified"),
    Fault<&Faults::deviceHead>("device-head", "device-head", 0, "64 bytes of device head before each reply"),
    Fault<&Faults::beatEvery>("beat-every", "beat-every=MS", kMaxMilliseconds, "send heartbeats unasked"),
};

// A spec split into its parts; a missing part is absent, one given empty is empty.
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

// Null for an unknown fault.
const Row* FindRow(std::string_view name)
{
    const auto* row = std::find_if(std::begin(kRows), std::end(kRows),
                                   [name](const Row& candidate) { return candidate.kind.name == name; });
    return row != std::end(kRows) ? row : nullptr;
}

bool HasRightUrl(const FaultKind& kind, const Pieces& pieces)
{
    return kind.ofUrl ? pieces.url && !pieces.url->empty() : !pieces.url;
}

} // namespace

const UrlFaults& Faults::For(std::string_view url) const
{
    static const UrlFaults kNone;
    const auto found = urls.find(url);
    return found != urls.end() ? found->second : kNone;
}

std::string AddFault(Faults& faults, std::string_view spec)
{
    const Pieces pieces = Cut(spec);
    const Row* row = FindRow(pieces.name);
    if (row == nullptr) {
        return fmt::format("unknown fault '{}'", spec);
    }
    const FaultKind& kind = row->kind;
    const bool takesNumber = kind.maximum != 0;
    if (pieces.number.has_value() != takesNumber || !HasRightUrl(kind, pieces)) {
        return fmt::format("fault '{}' is not of the form {}", spec, kind.form);
    }
    std::uint32_t number = 1;
    if (takesNumber) {
        const auto parsed = tools::ParseDecimal<std::uint32_t>(*pieces.number);
        if (!parsed || *parsed < kind.minimum || *parsed > kind.maximum) {
            return fmt::format("fault '{}': '{}' is not a number from {} to {}", spec, *pieces.number,
                               kind.minimum, kind.maximum);
        }
        number = *parsed;
    }
    row->set(faults, pieces.url.value_or(""), number);
    return {};
}

std::string RemoveFault(Faults& faults, std::string_view spec)
{
    const Pieces pieces = Cut(spec);
    const Row* row = FindRow(pieces.name);
    if (row == nullptr) {
        return fmt::format("unknown fault '{}'", spec);
    }
    if (!HasRightUrl(row->kind, pieces)) {
        return fmt::format("fault '{}' is not of the form {}", spec, row->kind.form);
    }
    row->set(faults, pieces.url.value_or(""), 0);
    return {};
}

std::vector<ActiveFault> ListFaults(const Faults& faults)
{
    std::vector<ActiveFault> active;
    const auto add = [&](const Row& row, const std::string& url) {
        if (const std::uint32_t number = row.get(faults, url); number != 0) {
            active.push_back({row.kind.name, url, number});
        }
    };
    for (const Row& row : kRows) {
        if (!row.kind.ofUrl) {
            add(row, "");
            continue;
        }
        for (const auto& [url, ofUrl] : faults.urls) {
            add(row, url);
        }
    }
    return active;
}

std::vector<FaultKind> FaultKinds()
{
    std::vector<FaultKind> kinds;
    std::transform(std::begin(kRows), std::end(kRows), std::back_inserter(kinds),
                   [](const Row& row) { return row.kind; });
    return kinds;
}

std::string DescribeFaults()
{
    std::string text;
    for (const Row& row : kRows) {
        text += fmt::format("  {:<17} {}\n", row.kind.form, row.kind.help);
    }
    return text;
}

} // namespace simulated_decoder
