// GUIDs as text.
#include <array>
#include <cstring>
#include <random>
#include <string>
#include <string_view>

#include <objbase.h>

namespace {

constexpr int textLength = 38;

int digitOf(char16_t c) noexcept
{
    if (c >= u'0' && c <= u'9') {
        return c - u'0';
    }
    if (c >= u'a' && c <= u'f') {
        return c - u'a' + 10;
    }
    if (c >= u'A' && c <= u'F') {
        return c - u'A' + 10;
    }
    return -1;
}

// "{B7A0C731-6521-48C8-8DA9-B7465A7FF35B}"
bool parse(std::u16string_view text, GUID& guid) noexcept
{
    if (text.size() != textLength || text.front() != u'{' || text.back() != u'}' || text[9] != u'-' ||
        text[14] != u'-' || text[19] != u'-' || text[24] != u'-') {
        return false;
    }
    std::array<uint8_t, 16> bytes{};
    std::size_t digits = 0;
    for (const char16_t c : text.substr(1, textLength - 2)) {
        if (c == u'-') {
            continue;
        }
        const int digit = digitOf(c);
        if (digit < 0 || digits >= 2 * bytes.size()) {
            return false;
        }
        uint8_t& byte = bytes[digits / 2];
        byte = static_cast<uint8_t>(byte << 4 | digit);
        ++digits;
    }
    if (digits != 2 * bytes.size()) {
        return false;
    }
    guid.Data1 = static_cast<uint32_t>(bytes[0]) << 24 | static_cast<uint32_t>(bytes[1]) << 16 |
                 static_cast<uint32_t>(bytes[2]) << 8 | bytes[3];
    guid.Data2 = static_cast<uint16_t>(bytes[4] << 8 | bytes[5]);
    guid.Data3 = static_cast<uint16_t>(bytes[6] << 8 | bytes[7]);
    std::memcpy(guid.Data4, bytes.data() + 8, sizeof guid.Data4);
    return true;
}

void appendHex(std::u16string& text, uint32_t value, int digits)
{
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
        text.push_back(u"0123456789ABCDEF"[value >> shift & 0xF]);
    }
}

std::u16string format(const GUID& guid)
{
    std::u16string text = u"{";
    appendHex(text, guid.Data1, 8);
    text += u'-';
    appendHex(text, guid.Data2, 4);
    text += u'-';
    appendHex(text, guid.Data3, 4);
    text += u'-';
    for (int i = 0; i < 8; ++i) {
        if (i == 2) {
            text += u'-';
        }
        appendHex(text, guid.Data4[i], 2);
    }
    text += u'}';
    return text;
}

HRESULT textFromGuid(const GUID& guid, LPOLESTR* text) noexcept
{
    if (text == nullptr) {
        return E_POINTER;
    }
    *text = static_cast<LPOLESTR>(CoTaskMemAlloc((textLength + 1) * sizeof(OLECHAR)));
    return *text != nullptr && StringFromGUID2(guid, *text, textLength + 1) != 0 ? S_OK : E_OUTOFMEMORY;
}

} // namespace

int StringFromGUID2(REFGUID guid, LPOLESTR text, int room)
{
    if (text == nullptr || room <= textLength) {
        return 0;
    }
    const std::u16string formatted = format(guid);
    text[formatted.copy(text, textLength)] = 0;
    return textLength + 1;
}

HRESULT StringFromCLSID(REFCLSID clsid, LPOLESTR* text)
{
    return textFromGuid(clsid, text);
}

HRESULT StringFromIID(REFIID iid, LPOLESTR* text)
{
    return textFromGuid(iid, text);
}

HRESULT IIDFromString(LPCOLESTR text, IID* iid)
{
    if (iid == nullptr) {
        return E_INVALIDARG;
    }
    *iid = IID{};
    if (text == nullptr) {
        return S_OK; // as documented: null stands for the null id
    }
    const std::u16string_view given(text);
    IID parsed{};
    if (!parse(given, parsed)) {
        // What cannot be an id by its length alone is a bad argument, as the system tells them apart.
        return given.size() == textLength ? CO_E_IIDSTRING : E_INVALIDARG;
    }
    *iid = parsed;
    return S_OK;
}

HRESULT CLSIDFromString(LPCOLESTR text, CLSID* clsid)
{
    if (clsid == nullptr) {
        return E_INVALIDARG;
    }
    *clsid = CLSID{};
    if (text == nullptr) {
        return S_OK;
    }
    CLSID parsed{};
    if (parse(text, parsed)) {
        *clsid = parsed;
        return S_OK;
    }
    return text[0] != u'{' && SUCCEEDED(CLSIDFromProgID(text, clsid)) ? S_OK : CO_E_CLASSSTRING;
}

HRESULT CoCreateGuid(GUID* guid)
{
    if (guid == nullptr) {
        return E_POINTER;
    }
    try {
        std::random_device random;
        std::array<uint32_t, 4> words{random(), random(), random(), random()};
        std::memcpy(guid, words.data(), sizeof *guid);
        guid->Data3 = static_cast<uint16_t>((guid->Data3 & 0x0FFF) | 0x4000); // version 4, random
        guid->Data4[0] = static_cast<uint8_t>((guid->Data4[0] & 0x3F) | 0x80);
        return S_OK;
    } catch (...) {
        return E_FAIL;
    }
}
