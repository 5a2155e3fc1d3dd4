#pragma once
// Numbers and texts as the protocol writes them: little-endian, UTF-16.
#include "base/Utf8.h"

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

namespace zul::tds {

class Writer
{
public:
    Writer& u8(std::uint64_t value) { return number(value, 1); }
    Writer& u16(std::uint64_t value) { return number(value, 2); }
    Writer& u32(std::uint64_t value) { return number(value, 4); }
    Writer& u64(std::uint64_t value) { return number(value, 8); }
    Writer& raw(std::string_view bytes)
    {
        m_bytes += bytes;
        return *this;
    }
    Writer& utf16(std::u16string_view text)
    {
        for (const char16_t unit : text) {
            u16(unit);
        }
        return *this;
    }
    /// A text with its length in units before it, in one byte or in two.
    Writer& shortText(std::string_view text) { return counted(text, 1); }
    Writer& longText(std::string_view text) { return counted(text, 2); }

    Writer& number(std::uint64_t value, int bytes)
    {
        for (int i = 0; i < bytes; ++i) {
            m_bytes += static_cast<char>(value >> (8 * i) & 0xFFU);
        }
        return *this;
    }

    const std::string& bytes() const { return m_bytes; }
    void clear() { m_bytes.clear(); }

private:
    Writer& counted(std::string_view text, int bytes)
    {
        const std::u16string units = utf16FromUtf8(text);
        number(units.size(), bytes);
        return utf16(units);
    }

    std::string m_bytes;
};

/// Reads from the front; throws when the bytes are at their end.
class Reader
{
public:
    explicit Reader(std::string_view bytes)
        : m_bytes(bytes)
    {}

    bool atEnd() const { return m_bytes.empty(); }
    std::size_t left() const { return m_bytes.size(); }
    std::uint8_t peek() const
    {
        need(1);
        return static_cast<std::uint8_t>(m_bytes.front());
    }

    std::string_view raw(std::size_t count)
    {
        need(count);
        const std::string_view bytes = m_bytes.substr(0, count);
        m_bytes.remove_prefix(count);
        return bytes;
    }
    std::uint64_t number(std::size_t count)
    {
        std::uint64_t value = 0;
        const std::string_view bytes = raw(count);
        for (std::size_t i = count; i-- > 0;) {
            value = value << 8U | static_cast<std::uint8_t>(bytes[i]);
        }
        return value;
    }
    std::uint8_t u8() { return static_cast<std::uint8_t>(number(1)); }
    std::uint16_t u16() { return static_cast<std::uint16_t>(number(2)); }
    std::uint32_t u32() { return static_cast<std::uint32_t>(number(4)); }
    std::uint64_t u64() { return number(8); }

    /// A text of `units` units, as UTF-8.
    std::string text(std::size_t units) { return textOf(raw(units * 2)); }

    static std::string textOf(std::string_view bytes)
    {
        std::u16string units;
        for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
            units += static_cast<char16_t>(static_cast<std::uint8_t>(bytes[i]) |
                                           static_cast<std::uint8_t>(bytes[i + 1]) << 8U);
        }
        return utf8FromUtf16(units);
    }

private:
    void need(std::size_t count) const
    {
        if (m_bytes.size() < count) {
            throw std::runtime_error("a message is too short");
        }
    }

    std::string_view m_bytes;
};

} // namespace zul::tds
