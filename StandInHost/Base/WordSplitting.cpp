#include "Base/WordSplitting.h"

#include "Base/ExitStatus.h"

namespace standin_host {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

// Cuts one word at a time off the front of a line.
class WordReader {
public:
    explicit WordReader(std::string_view line) : m_left(line) {}

    bool Next(std::string& word)
    {
        while (!m_left.empty() && IsBlank(m_left.front())) {
            m_left.remove_prefix(1);
        }
        if (m_left.empty() || m_left.front() == '#') {
            return false;
        }
        word.clear();
        while (!m_left.empty() && !IsBlank(m_left.front())) {
            Piece(word);
        }
        return true;
    }

    // After Next: true when nothing follows the word, or the last one.
    bool AtEnd() const { return m_left.empty(); }

private:
    // A quoted stretch or one character.
    void Piece(std::string& word)
    {
        const char c = Take();
        if (c != '\'' && c != '"') {
            word += c == '\\' ? Take() : c;
            return;
        }
        for (char inner = Take(); inner != c; inner = Take()) {
            word += inner == '\\' && c == '"' ? Take() : inner;
        }
    }

    char Take()
    {
        if (m_left.empty()) {
            throw UsageError("the line ends inside a quotation");
        }
        const char c = m_left.front();
        m_left.remove_prefix(1);
        return c;
    }

    std::string_view m_left;
};

} // namespace

std::vector<std::string> SplitLine(std::string_view line)
{
    std::vector<std::string> words;
    WordReader reader(line);
    std::string word;
    while (reader.Next(word)) {
        words.push_back(word);
    }
    return words;
}

std::optional<WrittenLine> SplitWrittenLine(std::string_view line)
{
    WrittenLine written;
    WordReader reader(line);
    try {
        std::string word;
        while (reader.Next(word)) {
            (reader.AtEnd() ? written.last : written.words.emplace_back()) = word;
        }
    } catch (const UsageError&) {
        return std::nullopt;
    }
    return reader.AtEnd() ? std::optional(written) : std::nullopt;
}

} // namespace standin_host
