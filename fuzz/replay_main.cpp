// Replays the inputs of a fuzz target without the fuzzer, and variations of them that are always the same,
// and holds what came out against what is recorded beside the folder, a checksum for each input. Usage:
// TARGET FOLDER           status 1 where they differ
//        TARGET --record FOLDER  writes FOLDER.outcomes anew
//        TARGET --show FILE      what came out of one input, to be compared with what an older build says

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <set>
#include <sstream>

#include "FuzzScript.h"
#include "LinkTexts.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

namespace fs = std::filesystem;

// What texts and records are changed into; the first ones leave XML well formed.
constexpr char kPieceTexts[] =
    "|0|-1|+5| 7 |0x10|007|1.5|255|65536|2147483648|4294967296|99999999999999999999|&amp;|&#65;|&#x0000041;|"
    "<!-- c -->|<![CDATA[&1]]>|\r\n|<x/>|"
    "&lt|<x>|</x>| a='1'|\0\0\0\0|\xFF\xFF\xFF\xFF|\1\0\0\0|\0\0\0\x80|\x80";
const std::vector<std::string_view> kPieces = Split({kPieceTexts, sizeof(kPieceTexts) - 1});
constexpr size_t kWellFormed = 20;
constexpr size_t kMany = 300; // more than a byte counts

// Changes that are always the same: the generator's own numbers are on every machine.
class Variations {
public:
    std::string Of(std::string input)
    {
        const bool keepForm = input.find("</") != std::string::npos && Below(4) > 0;
        for (size_t changes = 1 + Below(3); changes > 0; --changes) {
            size_t at = Below(input.size());
            if (keepForm) {
                for (at = input.find('<', at); at != std::string::npos && input[at + 1] == '/';) {
                    at = input.find('<', at + 1);
                }
                ChangeElement(input, at == std::string::npos ? input.find('<') : at);
            } else {
                ChangeBytes(input, at);
            }
        }
        return input;
    }

private:
    size_t Below(size_t n) { return n == 0 ? 0 : m_random() % n; }

    // The text after its start tag, or the whole element is taken away or put in again.
    void ChangeElement(std::string& xml, size_t begin)
    {
        const size_t nameEnd = xml.find_first_of(" />", begin + 1);
        const size_t text = xml.find('>', begin) + 1;
        const std::string endTag = "</" + xml.substr(begin + 1, nameEnd - begin - 1) + ">";
        const size_t end = xml.find(endTag, begin);
        if (Below(2) == 0 || end == std::string::npos) {
            xml.replace(text, xml.find('<', text) - text, kPieces[Below(kWellFormed)]);
        } else if (const std::string element = xml.substr(begin, end + endTag.size() - begin);
                   Below(2) == 0) {
            xml.erase(begin, element.size());
        } else {
            xml.insert(begin, Repeat(element, Below(8) == 0 ? kMany : 1));
        }
    }

    void ChangeBytes(std::string& bytes, size_t at)
    {
        switch (Below(6)) {
        case 0:
            bytes.replace(at, Below(5), kPieces[Below(kPieces.size())]);
            break;
        case 1:
            bytes.erase(at, Below(64));
            break;
        case 2:
            bytes.insert(at, bytes.substr(Below(bytes.size()), Below(64)));
            break;
        case 3:
            bytes.resize(at);
            break;
        case 4:
            bytes.insert(at, Repeat(bytes.substr(Below(bytes.size()), 1 + Below(16)), kMany));
            break;
        default:
            if (!bytes.empty()) {
                bytes[at] = static_cast<char>(m_random());
            }
        }
    }

    std::mt19937 m_random;
};

std::string Read(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string OutcomeOf(const fs::path& path)
{
    std::string outcome;
    const std::string input = Read(path);
    Variations variations;
    g_outcome = &outcome;
    for (int n = 0; n <= VARIATIONS; ++n) {
        const std::string bytes = n == 0 ? input : variations.Of(input);
        Observe("-- " + std::to_string(n));
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    }
    g_outcome = nullptr;
    return outcome;
}

// FNV-1a of 64 bits, as text.
std::string ChecksumOf(const std::string& text)
{
    uint64_t hash = 0xCBF29CE484222325;
    for (const unsigned char byte : text) {
        hash = (hash ^ byte) * 0x100000001B3;
    }
    char digits[17];
    snprintf(digits, sizeof(digits), "%016llx", static_cast<unsigned long long>(hash));
    return digits;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string way = argc == 3 ? argv[1] : "";
    if (way == "--show") {
        std::cout << OutcomeOf(argv[2]);
        return 0;
    }
    const fs::path folder = argv[argc - 1];
    std::string outcomes;
    for (const auto& path : std::set<fs::path>(fs::directory_iterator(folder), {})) {
        outcomes += ChecksumOf(OutcomeOf(path)) + ' ' + path.filename().string() + '\n';
    }
    const fs::path recorded = folder.string() + ".outcomes";
    if (way == "--record") {
        return std::ofstream(recorded) << outcomes ? 0 : 1;
    }
    std::ifstream expected(recorded);
    std::istringstream lines(outcomes);
    int differ = outcomes.empty() ? 1 : 0;
    for (std::string line, was; std::getline(lines, line);) {
        if (!std::getline(expected, was) || was != line) {
            ++differ;
            printf("%s: something else comes out than is recorded\n", line.substr(17).c_str());
        }
    }
    printf("%d differ\n", differ);
    return differ == 0 ? 0 : 1;
}
