// What every fuzz target shares: the input taken apart, and the end of a run that broke a promise.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

namespace zul::fuzz {

/// Ends the process when a promise is broken, as libFuzzer wants it.
inline void require(bool condition, const char* promise)
{
    if (!condition) {
        std::fprintf(stderr, "broken: %s\n", promise);
        std::abort();
    }
}

/// The bytes of an input, taken from the front. Behind the end everything is 0 or empty.
class Input
{
public:
    Input(const std::uint8_t* data, std::size_t size)
        : m_rest(reinterpret_cast<const char*>(data), size)
    {}

    bool ended() const { return m_rest.empty(); }

    template <typename T>
    T number()
    {
        static_assert(std::is_arithmetic_v<T>);
        T value{};
        const std::string_view bytes = bytesUpTo(sizeof value);
        if (!bytes.empty()) {
            std::memcpy(&value, bytes.data(), bytes.size());
        }
        return value;
    }
    bool flag() { return (number<std::uint8_t>() & 1U) != 0; }
    /// 0 to count - 1.
    std::uint32_t below(std::uint32_t count) { return count == 0 ? 0 : number<std::uint8_t>() % count; }

    /// At most so many bytes.
    std::string_view bytesUpTo(std::size_t most)
    {
        const std::string_view taken = m_rest.substr(0, most);
        m_rest.remove_prefix(taken.size());
        return taken;
    }
    /// A length of one byte, and so many bytes.
    std::string_view bytes() { return bytesUpTo(number<std::uint8_t>()); }
    /// The bytes up to the end of the line, which is taken too.
    std::string_view line()
    {
        const std::size_t length = std::min(m_rest.find('\n'), m_rest.size());
        const std::string_view taken = bytesUpTo(length);
        bytesUpTo(1);
        return taken;
    }
    std::string_view rest() { return bytesUpTo(m_rest.size()); }

    /// A text of UTF-16, broken pairs and zeros included: two bytes a character.
    std::u16string text16()
    {
        const std::string_view raw = bytes();
        std::u16string text(raw.size() / 2, u'\0');
        if (!text.empty()) {
            std::memcpy(text.data(), raw.data(), text.size() * sizeof(char16_t));
        }
        return text;
    }

private:
    std::string_view m_rest;
};

} // namespace zul::fuzz
