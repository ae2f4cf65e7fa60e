#include "Console/Script.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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

CLineInput::CLineInput(const std::string& strFile)
    : m_nDescriptor(strFile == "-" ? STDIN_FILENO : ::open(strFile.c_str(), O_RDONLY | O_CLOEXEC)),
      m_bOwned(strFile != "-")
{
    struct stat status {};
    const bool bOpen = m_nDescriptor >= 0 && ::fstat(m_nDescriptor, &status) == 0;
    if (!bOpen || S_ISDIR(status.st_mode)) {
        const std::string strReason = bOpen ? "it is a folder" : std::generic_category().message(errno);
        Close();
        throw CUsageError("cannot read the script " + strFile + ": " + strReason);
    }
    m_nSize = S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) : 0;
}

CLineInput::~CLineInput() { Close(); }

void CLineInput::Close() const
{
    if (m_bOwned && m_nDescriptor >= 0) {
        ::close(m_nDescriptor);
    }
}

bool CLineInput::Take(std::string& strLine)
{
    const std::size_t nEnd = m_strBuffer.find('\n');
    if (nEnd == std::string::npos && (!m_bEnd || m_strBuffer.empty())) {
        return false;
    }
    strLine = m_strBuffer.substr(0, nEnd);
    m_strBuffer.erase(0, nEnd == std::string::npos ? nEnd : nEnd + 1);
    return true;
}

void CLineInput::Fill()
{
    char buffer[4096];
    const ssize_t nRead = ::read(m_nDescriptor, buffer, sizeof buffer);
    if (nRead > 0) {
        m_strBuffer.append(buffer, static_cast<std::size_t>(nRead));
        m_nRead += static_cast<std::size_t>(nRead);
    } else if (nRead == 0) {
        m_bEnd = true;
    } else if (errno != EINTR) {
        throw CUsageError(std::string("cannot read the input: ") + std::generic_category().message(errno));
    }
}

std::string CLineInput::PositionText() const
{
    const std::size_t nTaken = m_nRead - m_strBuffer.size();
    // A file that grows while it is read, or was begun in its middle, has no share worth telling.
    return m_nSize == 0 || m_nRead > m_nSize ? "" : " (" + std::to_string(100 * nTaken / m_nSize) + " %)";
}

} // namespace standin_host
