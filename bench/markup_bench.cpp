// Composing a "docreatewindow" request as a session's handlers do, against pugixml and tinyxml2, which build
// and print the same tree. All are measured in turn, so that the ratios come from one run.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <new>
#include <pugixml.hpp>
#include <string>
#include <tinyxml2.h>
#include <vector>

#include "Ratio.h"
#include "Session/Envelope.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"

namespace {

size_t g_allocated = 0; // bytes, by operator new, which pugixml and tinyxml2 do not use

} // namespace

// Not inlined, or the compiler warns about a mismatched pair.
[[gnu::noinline]] void* operator new(std::size_t size)
{
    g_allocated += size;
    if (void* bytes = std::malloc(size)) {
        return bytes;
    }
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* bytes) noexcept { std::free(bytes); }
[[gnu::noinline]] void operator delete(void* bytes, std::size_t) noexcept { std::free(bytes); }

namespace {

constexpr unsigned int kSubWindows = 16;
constexpr unsigned int kSmallWall = 16;

// Elements of a request: the header and body, and for each window its item, six values, two lists and the
// sub-windows.
constexpr double Elems(unsigned int windows) { return 11 + windows * (9.0 + 3 * kSubWindows); }

class RequestSink {
public:
    explicit RequestSink(CNetProtocolProcTWDECODERDevImp& session = Session())
        : m_request(session), m_doc(m_request.Doc())
    {
    }
    void Open(const char* name)
    {
        m_doc.AddElem(name);
        m_doc.IntoElem();
    }
    void Close() { m_doc.OutOfElem(); }
    template <class Value>
    void Leaf(const char* name, Value value)
    {
        m_doc.AddElem(name, value);
    }
    const std::string& Text() { return m_doc.GetDoc(); }

private:
    static CNetProtocolProcTWDECODERDevImp& Session()
    {
        static CNetProtocolProcTWDECODERDevImp session;
        return session;
    }

    CDeviceRequest m_request;
    CMarkupSTL& m_doc;
};

class StringWriter : public pugi::xml_writer {
public:
    explicit StringWriter(std::string& text) : m_text(text) {}
    void write(const void* data, size_t size) override
    {
        m_text.append(static_cast<const char*>(data), size);
    }

private:
    std::string& m_text;
};

template <unsigned int format>
class PugiSink {
public:
    void Open(const char* name) { m_current = m_current.append_child(name); }
    void Close() { m_current = m_current.parent(); }
    template <class Value>
    void Leaf(const char* name, Value value)
    {
        m_current.append_child(name).text().set(value);
    }
    const std::string& Text()
    {
        StringWriter writer(m_text);
        m_doc.save(writer, "\t", format | pugi::format_no_declaration);
        return m_text;
    }

private:
    pugi::xml_document m_doc;
    pugi::xml_node m_current = m_doc;
    std::string m_text;
};

class TinySink {
public:
    void Open(const char* name)
    {
        auto* elem = m_doc.NewElement(name);
        m_current->InsertEndChild(elem);
        m_current = elem;
    }
    void Close() { m_current = m_current->Parent(); }
    template <class Value>
    void Leaf(const char* name, Value value)
    {
        auto* elem = m_doc.NewElement(name);
        elem->SetText(value);
        m_current->InsertEndChild(elem);
    }
    std::string Text()
    {
        m_doc.Print(&m_printer);
        return m_printer.CStr();
    }

private:
    tinyxml2::XMLDocument m_doc;
    tinyxml2::XMLNode* m_current = &m_doc;
    tinyxml2::XMLPrinter m_printer{nullptr, true};
};

template <class Sink>
void WriteWindow(Sink& sink, unsigned int id)
{
    sink.Open("item");
    sink.Leaf("id", id);
    sink.Open("rect");
    sink.Leaf("xpos", id * 37U);
    sink.Leaf("ypos", id * 11U);
    sink.Leaf("width", 1920U);
    sink.Leaf("height", 1080U);
    sink.Close();
    sink.Leaf("mode", kSubWindows);
    sink.Open("td_subwindowlist");
    for (unsigned int n = 0; n < kSubWindows; ++n) {
        sink.Open("item");
        sink.Leaf("index", n);
        sink.Leaf("osdid", id * kSubWindows + n);
        sink.Close();
    }
    sink.Close();
    sink.Close();
}

template <class Sink>
void WriteRequest(Sink& sink, unsigned int windows)
{
    sink.Open("td_command");
    sink.Open("td_header");
    sink.Leaf("version", "2.2");
    sink.Leaf("type", "request");
    sink.Leaf("url", "docreatewindow");
    sink.Leaf("seq", 300U);
    sink.Leaf("identity", 3);
    sink.Leaf("session", "0A1B2C3D4E5F60718293A4B5C6D7E8F9");
    sink.Leaf("token", "F9E8D7C6B5A4938271605F4E3D2C1B0A");
    sink.Close();
    sink.Open("td_body");
    sink.Open("td_windowlist");
    for (unsigned int id = 1; id <= windows; ++id) {
        WriteWindow(sink, id);
    }
    sink.Close();
    sink.Close();
    sink.Close();
}

template <class Sink>
std::string Compose(unsigned int windows)
{
    Sink sink;
    WriteRequest(sink, windows);
    return sink.Text();
}

// From an empty document to its text, including destruction of both.
template <class Sink>
double ComposeSeconds(unsigned int windows)
{
    const double start = ThreadSeconds();
    {
        Sink sink;
        WriteRequest(sink, windows);
        benchmark::DoNotOptimize(sink.Text().size());
    }
    return ThreadSeconds() - start;
}

double Median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Median of at least five runs and 20 ms.
template <class Sink>
double TypicalSeconds(unsigned int windows)
{
    std::vector<double> seconds;
    for (double total = 0; seconds.size() < 5 || total < 0.02; total += seconds.back()) {
        seconds.push_back(ComposeSeconds<Sink>(windows));
    }
    return Median(seconds);
}

// Compares one library or size with another. The two are measured in turn, as a machine's speed changes.
template <class Sink, class OtherSink>
double Ratio(unsigned int windows, unsigned int otherWindows)
{
    std::vector<double> ratios;
    for (int n = 0; n < 7; ++n) {
        ratios.push_back(TypicalSeconds<Sink>(windows) / TypicalSeconds<OtherSink>(otherWindows));
    }
    return Median(ratios);
}

// Bytes allocated for each byte of a request's text.
double AllocatedPerByte(CNetProtocolProcTWDECODERDevImp& session, unsigned int windows)
{
    const size_t before = g_allocated;
    RequestSink sink(session);
    WriteRequest(sink, windows);
    return static_cast<double>(g_allocated - before) / static_cast<double>(sink.Text().size());
}

bool ComposesSameTree(unsigned int windows)
{
    std::string text = Compose<RequestSink>(windows);
    std::erase_if(text, [](char c) { return c == '\r' || c == '\n'; });
    return text == Compose<PugiSink<pugi::format_raw>>(windows) && text == Compose<TinySink>(windows);
}

void ComposeCreateWindow(benchmark::State& state)
{
    const auto windows = static_cast<unsigned int>(state.range(0));
    if (!ComposesSameTree(windows)) {
        state.SkipWithError("the libraries compose different trees");
        return;
    }
    for (auto _ : state) {
        state.SetIterationTime(ComposeSeconds<RequestSink>(windows));
    }
    const double vsRaw = Ratio<RequestSink, PugiSink<pugi::format_raw>>(windows, windows);
    const double vsIndented = Ratio<RequestSink, PugiSink<pugi::format_default>>(windows, windows);
    state.counters["vs_pugixml"] = std::max(vsRaw, vsIndented);
    state.counters["vs_tinyxml2"] = Ratio<RequestSink, TinySink>(windows, windows);
    state.counters["elem_vs_16_windows"] =
        Ratio<RequestSink, RequestSink>(windows, kSmallWall) * Elems(kSmallWall) / Elems(windows);
    CNetProtocolProcTWDECODERDevImp session;
    state.counters["alloc_per_byte_first"] = AllocatedPerByte(session, windows);
    state.counters["alloc_per_byte_next"] = AllocatedPerByte(session, windows);
    state.counters["per_elem"] = benchmark::Counter(
        Elems(windows), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
// The middle size comes last: its growth must hold even after the largest. A filter runs it alone.
BENCHMARK(ComposeCreateWindow)->Arg(16)->Arg(4096)->Arg(256)->UseManualTime()->Unit(benchmark::kMicrosecond);

} // namespace
