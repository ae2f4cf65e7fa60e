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

size_t g_nAllocated = 0; // bytes, by operator new, which pugixml and tinyxml2 do not use

} // namespace

// Not inlined, or the compiler warns about a mismatched pair.
[[gnu::noinline]] void* operator new(std::size_t nSize)
{
    g_nAllocated += nSize;
    if (void* pBytes = std::malloc(nSize)) {
        return pBytes;
    }
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* pBytes) noexcept { std::free(pBytes); }
[[gnu::noinline]] void operator delete(void* pBytes, std::size_t) noexcept { std::free(pBytes); }

namespace {

constexpr unsigned int kSubWindows = 16;
constexpr unsigned int kSmallWall = 16;

// Elements of a request: the header and body, and for each window its item, six values, two lists and the
// sub-windows.
constexpr double Elems(unsigned int nWindows) { return 11 + nWindows * (9.0 + 3 * kSubWindows); }

class RequestSink {
public:
    explicit RequestSink(CNetProtocolProcTWDECODERDevImp& session = Session())
        : m_request(session), m_doc(m_request.Doc())
    {
    }
    void Open(const char* szName)
    {
        m_doc.AddElem(szName);
        m_doc.IntoElem();
    }
    void Close() { m_doc.OutOfElem(); }
    template <class Value>
    void Leaf(const char* szName, Value value)
    {
        m_doc.AddElem(szName, value);
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
    explicit StringWriter(std::string& strText) : m_strText(strText) {}
    void write(const void* pData, size_t nSize) override
    {
        m_strText.append(static_cast<const char*>(pData), nSize);
    }

private:
    std::string& m_strText;
};

template <unsigned int nFormat>
class PugiSink {
public:
    void Open(const char* szName) { m_current = m_current.append_child(szName); }
    void Close() { m_current = m_current.parent(); }
    template <class Value>
    void Leaf(const char* szName, Value value)
    {
        m_current.append_child(szName).text().set(value);
    }
    const std::string& Text()
    {
        StringWriter writer(m_strText);
        m_doc.save(writer, "\t", nFormat | pugi::format_no_declaration);
        return m_strText;
    }

private:
    pugi::xml_document m_doc;
    pugi::xml_node m_current = m_doc;
    std::string m_strText;
};

class TinySink {
public:
    void Open(const char* szName)
    {
        auto* pElem = m_doc.NewElement(szName);
        m_pCurrent->InsertEndChild(pElem);
        m_pCurrent = pElem;
    }
    void Close() { m_pCurrent = m_pCurrent->Parent(); }
    template <class Value>
    void Leaf(const char* szName, Value value)
    {
        auto* pElem = m_doc.NewElement(szName);
        pElem->SetText(value);
        m_pCurrent->InsertEndChild(pElem);
    }
    std::string Text()
    {
        m_doc.Print(&m_printer);
        return m_printer.CStr();
    }

private:
    tinyxml2::XMLDocument m_doc;
    tinyxml2::XMLNode* m_pCurrent = &m_doc;
    tinyxml2::XMLPrinter m_printer{nullptr, true};
};

template <class Sink>
void WriteWindow(Sink& sink, unsigned int nID)
{
    sink.Open("item");
    sink.Leaf("id", nID);
    sink.Open("rect");
    sink.Leaf("xpos", nID * 37U);
    sink.Leaf("ypos", nID * 11U);
    sink.Leaf("width", 1920U);
    sink.Leaf("height", 1080U);
    sink.Close();
    sink.Leaf("mode", kSubWindows);
    sink.Open("td_subwindowlist");
    for (unsigned int n = 0; n < kSubWindows; ++n) {
        sink.Open("item");
        sink.Leaf("index", n);
        sink.Leaf("osdid", nID * kSubWindows + n);
        sink.Close();
    }
    sink.Close();
    sink.Close();
}

template <class Sink>
void WriteRequest(Sink& sink, unsigned int nWindows)
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
    for (unsigned int nID = 1; nID <= nWindows; ++nID) {
        WriteWindow(sink, nID);
    }
    sink.Close();
    sink.Close();
    sink.Close();
}

template <class Sink>
std::string Compose(unsigned int nWindows)
{
    Sink sink;
    WriteRequest(sink, nWindows);
    return sink.Text();
}

// From an empty document to its text, including destruction of both.
template <class Sink>
double ComposeSeconds(unsigned int nWindows)
{
    const double start = ThreadSeconds();
    {
        Sink sink;
        WriteRequest(sink, nWindows);
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
double TypicalSeconds(unsigned int nWindows)
{
    std::vector<double> seconds;
    for (double total = 0; seconds.size() < 5 || total < 0.02; total += seconds.back()) {
        seconds.push_back(ComposeSeconds<Sink>(nWindows));
    }
    return Median(seconds);
}

// Compares one library or size with another. The two are measured in turn, as a machine's speed changes.
template <class Sink, class OtherSink>
double Ratio(unsigned int nWindows, unsigned int nOtherWindows)
{
    std::vector<double> ratios;
    for (int n = 0; n < 7; ++n) {
        ratios.push_back(TypicalSeconds<Sink>(nWindows) / TypicalSeconds<OtherSink>(nOtherWindows));
    }
    return Median(ratios);
}

// Bytes allocated for each byte of a request's text.
double AllocatedPerByte(CNetProtocolProcTWDECODERDevImp& session, unsigned int nWindows)
{
    const size_t nBefore = g_nAllocated;
    RequestSink sink(session);
    WriteRequest(sink, nWindows);
    return static_cast<double>(g_nAllocated - nBefore) / static_cast<double>(sink.Text().size());
}

bool ComposesSameTree(unsigned int nWindows)
{
    std::string strText = Compose<RequestSink>(nWindows);
    std::erase_if(strText, [](char c) { return c == '\r' || c == '\n'; });
    return strText == Compose<PugiSink<pugi::format_raw>>(nWindows) && strText == Compose<TinySink>(nWindows);
}

void ComposeCreateWindow(benchmark::State& state)
{
    const auto nWindows = static_cast<unsigned int>(state.range(0));
    if (!ComposesSameTree(nWindows)) {
        state.SkipWithError("the libraries compose different trees");
        return;
    }
    for (auto _ : state) {
        state.SetIterationTime(ComposeSeconds<RequestSink>(nWindows));
    }
    const double dVsRaw = Ratio<RequestSink, PugiSink<pugi::format_raw>>(nWindows, nWindows);
    const double dVsIndented = Ratio<RequestSink, PugiSink<pugi::format_default>>(nWindows, nWindows);
    state.counters["vs_pugixml"] = std::max(dVsRaw, dVsIndented);
    state.counters["vs_tinyxml2"] = Ratio<RequestSink, TinySink>(nWindows, nWindows);
    state.counters["elem_vs_16_windows"] =
        Ratio<RequestSink, RequestSink>(nWindows, kSmallWall) * Elems(kSmallWall) / Elems(nWindows);
    CNetProtocolProcTWDECODERDevImp session;
    state.counters["alloc_per_byte_first"] = AllocatedPerByte(session, nWindows);
    state.counters["alloc_per_byte_next"] = AllocatedPerByte(session, nWindows);
    state.counters["per_elem"] = benchmark::Counter(
        Elems(nWindows), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
// The middle size comes last: its growth must hold even after the largest. A filter runs it alone.
BENCHMARK(ComposeCreateWindow)->Arg(16)->Arg(4096)->Arg(256)->UseManualTime()->Unit(benchmark::kMicrosecond);

} // namespace
