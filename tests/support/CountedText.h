#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include "Link/MessageHeadScan.h"

// A message that counts how often the scan looks at each of its bytes.
class CountedText {
public:
    explicit CountedText(std::string_view text) : m_text(text), m_looks(text.size()) {}

    size_t Size() const { return m_text.Size(); }
    char At(size_t n)
    {
        ++m_looks[n];
        return m_text.At(n);
    }
    size_t Find(char c, size_t from, size_t end)
    {
        const size_t found = m_text.Find(c, from, end);
        for (size_t n = from; n < std::min(found + 1, end); ++n) {
            ++m_looks[n];
        }
        return found;
    }

    // The most looks that any byte got.
    unsigned int MostLooks() const
    {
        return m_looks.empty() ? 0 : *std::max_element(m_looks.begin(), m_looks.end());
    }

    // Bytes that got one look or more.
    size_t Seen() const
    {
        return m_looks.size() - static_cast<size_t>(std::count(m_looks.begin(), m_looks.end(), 0U));
    }

private:
    CMessageText m_text;
    std::vector<unsigned int> m_looks;
};
