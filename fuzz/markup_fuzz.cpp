// Parses hostile text as an XML document, then moves about in it and adds elements. Input: a byte with the
// number of steps, a byte for each step, the text.

#include <algorithm>
#include <string>
#include <vector>

#include "FuzzScript.h"
#include "MarkupSTL.h"

namespace {

// All elements as navigation finds them.
std::string Outline(CMarkupSTL& doc)
{
    std::string text;
    doc.ResetPos();
    do {
        while (doc.FindElem()) {
            text += "[" + doc.GetTagName() + "=" + doc.GetData();
            Require(doc.IntoElem());
        }
        text += "]";
    } while (doc.OutOfElem());
    return text;
}

// False when an element without end tag was added: the text is no longer well formed.
bool Step(CMarkupSTL& doc, unsigned int step)
{
    using M = CMarkupSTL;
    constexpr int kFlags[] = {
        0, M::MNF_WITHNOLINES, M::MNF_WITHCDATA, M::MNF_WITHREFS, M::MNF_WITHXHTMLSPACE, M::MNF_WITHNOEND};
    constexpr const char* kData[] = {nullptr, "1", "<&amp;]]>'\"", "&#x"};
    const unsigned int choice = step / 6;
    const int flags = kFlags[choice % std::size(kFlags)];
    switch (step % 6) {
    case 0:
        doc.FindElem(choice % 2 == 0 ? nullptr : "a");
        return true;
    case 1:
        doc.IntoElem();
        return true;
    case 2:
        doc.OutOfElem();
        return true;
    case 3:
        if (choice == 0) {
            doc.ResetPos();
        }
        return true;
    case 4:
        doc.AddElem("b", choice, flags);
        return true;
    default:
        return !doc.AddElem("a", kData[choice / std::size(kFlags) % std::size(kData)], flags) ||
               flags != M::MNF_WITHNOEND;
    }
}

void Exercise(CMarkupSTL& doc, bool wellFormed, const std::vector<uint8_t>& steps)
{
    for (const unsigned int step : steps) {
        wellFormed = Step(doc, step) && wellFormed;
        Observe(doc.GetTagName() + '=' + doc.GetData());
    }
    CMarkupSTL copy;
    copy = doc;
    const std::string outline = Outline(doc);
    Observe(outline + doc.GetDoc() + doc.GetError());
    Require(Outline(copy) == outline);
    const bool oneRoot = copy.IsWellFormed();
    const bool parses = copy.SetDoc(doc.GetDoc().data(), static_cast<unsigned int>(doc.GetDoc().size()));
    Require(!wellFormed || (parses == oneRoot && Outline(copy) == outline));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0) {
        return 0;
    }
    const size_t stepCount = std::min<size_t>(data[0], size - 1);
    const std::vector<uint8_t> steps(data + 1, data + 1 + stepCount);
    CMarkupSTL parsed(reinterpret_cast<const char*>(data + 1 + stepCount),
                      static_cast<unsigned int>(size - 1 - stepCount));
    Outline(parsed);
    parsed.ResetPos();
    Exercise(parsed, parsed.IsWellFormed(), steps);
    CMarkupSTL composed;
    Exercise(composed, true, steps);
    parsed.Clear(); // as good as new
    Exercise(parsed, true, steps);
    Require(parsed.GetDoc() == composed.GetDoc() && parsed.GetError() == composed.GetError());
    return 0;
}
