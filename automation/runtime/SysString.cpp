// Texts of automation: UTF-16, with the length in bytes in the 32 bits before the first character and a zero
// character behind the last.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include <oleauto.h>

namespace {

// As on 64-bit Windows: four unused bytes, the length, the text. The text is aligned to 8.
constexpr std::size_t prefix = 8;
constexpr std::size_t lengthAt = 4;
constexpr std::size_t endMark = sizeof(OLECHAR);
constexpr std::size_t maxBytes = std::numeric_limits<std::int32_t>::max() - prefix - endMark;

char* blockOf(BSTR text) noexcept
{
    return reinterpret_cast<char*>(text) - prefix;
}

// Contents are copied from a place that may be null: the text is then zeros.
BSTR allocate(const void* contents, std::size_t bytes) noexcept
{
    if (bytes > maxBytes) {
        return nullptr;
    }
    // Bytes may be odd in number. The end mark is a whole character at a character's place all the same, for those
    // who look for it.
    const std::size_t padding = bytes % sizeof(OLECHAR);
    auto* const block = static_cast<char*>(std::malloc(prefix + bytes + padding + endMark));
    if (block == nullptr) {
        return nullptr;
    }
    const auto length = static_cast<std::uint32_t>(bytes);
    std::memset(block, 0, lengthAt);
    std::memcpy(block + lengthAt, &length, sizeof length);
    if (contents != nullptr) {
        std::memcpy(block + prefix, contents, bytes);
    } else {
        std::memset(block + prefix, 0, bytes);
    }
    std::memset(block + prefix + bytes, 0, padding + endMark);
    return reinterpret_cast<BSTR>(block + prefix);
}

std::uint32_t byteLength(BSTR text) noexcept
{
    std::uint32_t length = 0;
    if (text != nullptr) {
        std::memcpy(&length, blockOf(text) + lengthAt, sizeof length);
    }
    return length;
}

} // namespace

BSTR SysAllocString(const OLECHAR* text)
{
    return text == nullptr ? nullptr
                           : allocate(text, std::char_traits<OLECHAR>::length(text) * sizeof(OLECHAR));
}

BSTR SysAllocStringLen(const OLECHAR* text, UINT length)
{
    return allocate(text, std::size_t{length} * sizeof(OLECHAR));
}

BSTR SysAllocStringByteLen(const char* text, UINT bytes)
{
    return allocate(text, bytes);
}

INT SysReAllocString(BSTR* text, const OLECHAR* newText)
{
    if (text == nullptr) {
        return 0;
    }
    // The new text may lie inside the old one, so that is freed last.
    const BSTR replacement = SysAllocString(newText);
    if (replacement == nullptr && newText != nullptr) {
        return 0;
    }
    SysFreeString(*text);
    *text = replacement;
    return 1;
}

INT SysReAllocStringLen(BSTR* text, const OLECHAR* newText, UINT length)
{
    if (text == nullptr) {
        return 0;
    }
    BSTR replacement = nullptr;
    if (newText != nullptr) {
        replacement = SysAllocStringLen(newText, length);
    } else {
        // Without a new text the old one is kept, cut or filled up with zeros.
        replacement = SysAllocStringLen(nullptr, length);
        if (replacement != nullptr && *text != nullptr) {
            const std::size_t room = std::size_t{length} * sizeof(OLECHAR);
            const std::size_t had = byteLength(*text);
            std::memcpy(replacement, *text, had < room ? had : room);
        }
    }
    if (replacement == nullptr) {
        return 0;
    }
    SysFreeString(*text);
    *text = replacement;
    return 1;
}

void SysFreeString(BSTR text)
{
    if (text != nullptr) {
        std::free(blockOf(text));
    }
}

UINT SysStringLen(BSTR text)
{
    return byteLength(text) / static_cast<UINT>(sizeof(OLECHAR));
}

UINT SysStringByteLen(BSTR text)
{
    return byteLength(text);
}
