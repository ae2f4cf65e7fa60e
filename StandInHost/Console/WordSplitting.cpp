#include "Console/WordSplitting.h"

#include "Base/ExitStatus.h"

namespace standin_host {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

// Cuts one word at a time off the front of a line.
class CWordReader {
public:
    explicit CWordReader(std::string_view line) : m_left(line) {}

    bool Next(std::string& strWord)
    {
        while (!m_left.empty() && IsBlank(m_left.front())) {
            m_left.remove_prefix(1);
        }
        if (m_left.empty() || m_left.front() == '#') {
            return false;
        }
        strWord.clear();
        while (!m_left.empty() && !IsBlank(m_left.front())) {
            Piece(strWord);
        }
        return true;
    }

    // After Next: whether nothing stands behind the word, or behind the last one.
    bool AtEnd() const { return m_left.empty(); }

private:
    // A quoted stretch or one character.
    void Piece(std::string& strWord)
    {
        const char c = Take();
        if (c != '\'' && c != '"') {
            strWord += c == '\\' ? Take() : c;
            return;
        }
        for (char inner = Take(); inner != c; inner = Take()) {
            strWord += inner == '\\' && c == '"' ? Take() : inner;
        }
    }

    char Take()
    {
        if (m_left.empty()) {
            throw CUsageError("the line ends inside a quotation");
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
    CWordReader reader(line);
    std::string strWord;
    while (reader.Next(strWord)) {
        words.push_back(strWord);
    }
    return words;
}

std::optional<SWrittenLine> SplitWrittenLine(std::string_view line)
{
    SWrittenLine written;
    CWordReader reader(line);
    try {
        std::string strWord;
        while (reader.Next(strWord)) {
            (reader.AtEnd() ? written.strLast : written.words.emplace_back()) = strWord;
        }
    } catch (const CUsageError&) {
        return std::nullopt;
    }
    return reader.AtEnd() ? std::optional(written) : std::nullopt;
}

} // namespace standin_host
