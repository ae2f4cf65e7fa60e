#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <variant>

namespace tvwall {

// Why bytes could not be read.
struct Reason {
    std::size_t offset = 0; // of the byte at which reading stopped
    std::string field;      // what was to be read there: "screens[1]"
    std::string why;

    // "byte 280, screens[1]: 268 bytes needed, 100 left".
    std::string Text() const { return "byte " + std::to_string(offset) + ", " + field + ": " + why; }
};

// A value, or the reason why there is none.
template <class Value>
class [[nodiscard]] Result {
public:
    Result(Value value) : m_content(std::move(value)) {}
    Result(Reason reason) : m_content(std::move(reason)) {}

    explicit operator bool() const { return m_content.index() == 0; }

    // The value. Throws std::bad_variant_access where there is none.
    const Value& operator*() const& { return std::get<0>(m_content); }
    Value&& operator*() && { return std::get<0>(std::move(m_content)); }
    const Value* operator->() const { return &std::get<0>(m_content); }
    // The reason. Throws std::bad_variant_access where there is a value.
    const Reason& Why() const { return std::get<1>(m_content); }

private:
    std::variant<Value, Reason> m_content;
};

} // namespace tvwall
