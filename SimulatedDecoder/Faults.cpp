#include "Faults.h"

#include <algorithm>
#include <iterator>

#include <spdlog/fmt/fmt.h>

#include "Frame.h"
#include "Message.h"

namespace simulated_decoder {

namespace {

using std::chrono::milliseconds;

constexpr std::uint32_t kMaxMilliseconds = 24U * 3600U * 1000U;

// The least and the greatest number a fault takes; a fault with maximum 0 takes none.
struct Range {
    std::uint32_t minimum;
    std::uint32_t maximum;
};

// Exactly one of the two functions is there: the fault belongs to a url or to the connection.
struct Kind {
    std::string_view name;
    const char* form;
    Range range;
    void (*setUrl)(UrlFaults& faults, std::uint32_t number);
    void (*setConnection)(Faults& faults, std::uint32_t number);
    const char* help;
};

constexpr Range kNoNumber{0, 0};
constexpr Range kPause{1, kMaxMilliseconds};

const Kind kKinds[] = {
    {"error",
     "error=CODE@URL",
     {1, UINT32_MAX},
     [](UrlFaults& faults, std::uint32_t code) { faults.errorCode = static_cast<ErrorCode>(code); },
     nullptr,
     "answer CODE and do nothing"},
    {"delay", "delay=MS@URL", kPause,
     [](UrlFaults& faults, std::uint32_t ms) { faults.delay = milliseconds(ms); }, nullptr,
     "reply MS later; other requests go on"},
    {"silent", "silent@URL", kNoNumber, [](UrlFaults& faults, std::uint32_t) { faults.silent = true; },
     nullptr, "carry out, but do not reply"},
    {"wrong-seq", "wrong-seq@URL", kNoNumber,
     [](UrlFaults& faults, std::uint32_t) { faults.wrongSeq = true; }, nullptr,
     "reply with another sequence number"},
    {"garbage", "garbage@URL", kNoNumber, [](UrlFaults& faults, std::uint32_t) { faults.garbage = true; },
     nullptr, "reply with bytes that are no XML"},
    {"chunk",
     "chunk=BYTES",
     {1, kMaxPayload},
     nullptr,
     [](Faults& faults, std::uint32_t bytes) { faults.chunk = bytes; },
     "send everything in pieces of BYTES"},
    {"cut-after",
     "cut-after=N",
     {1, UINT32_MAX},
     nullptr,
     [](Faults& faults, std::uint32_t replies) { faults.cutAfter = replies; },
     "close a connection after half of its N-th reply"},
    {"notify-every", "notify-every=MS", kPause, nullptr,
     [](Faults& faults, std::uint32_t ms) { faults.notifyEvery = milliseconds(ms); },
     "notify hosts that are logged in, by turns of channels and of channel states"},
    {"flap-channels", "flap-channels=MS", kPause, nullptr,
     [](Faults& faults, std::uint32_t ms) { faults.flapEvery = milliseconds(ms); },
     "let all input channels go off, MS later on again, and so forth; hosts are notified"},
    {"device-head", "device-head", kNoNumber, nullptr,
     [](Faults& faults, std::uint32_t) { faults.deviceHead = true; },
     "64 bytes of device head before each reply"},
    {"beat-every", "beat-every=MS", kPause, nullptr,
     [](Faults& faults, std::uint32_t ms) { faults.beatEvery = milliseconds(ms); },
     "send heartbeats unasked"},
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
    const auto* kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                    [&](const Kind& candidate) { return candidate.name == pieces.name; });
    if (kind == std::end(kKinds)) {
        return fmt::format("unknown fault '{}'", spec);
    }
    const bool takesNumber = kind->range.maximum != 0;
    const bool takesUrl = kind->setUrl != nullptr;
    if (pieces.number.has_value() != takesNumber || pieces.url.has_value() != takesUrl ||
        (takesUrl && pieces.url->empty())) {
        return fmt::format("fault '{}' is not of the form {}", spec, kind->form);
    }
    std::uint32_t number = 0;
    if (takesNumber) {
        const auto parsed = ParseNumber<std::uint32_t>(*pieces.number);
        if (!parsed || *parsed < kind->range.minimum || *parsed > kind->range.maximum) {
            return fmt::format("fault '{}': '{}' is not a number from {} to {}", spec, *pieces.number,
                               kind->range.minimum, kind->range.maximum);
        }
        number = *parsed;
    }
    if (takesUrl) {
        kind->setUrl(faults.urls[std::string(*pieces.url)], number);
    } else {
        kind->setConnection(faults, number);
    }
    return {};
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
