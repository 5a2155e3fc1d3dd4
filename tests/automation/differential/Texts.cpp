#include "tests/automation/differential/Answer.h"
#include "tests/automation/differential/Sections.h"
#include "tests/automation/differential/Source.h"

#include <cstring>
#include <thread>

#include <objbase.h>

namespace differential {

namespace {

const OLECHAR* ole(const char16_t* text) noexcept
{
    return reinterpret_cast<const OLECHAR*>(text);
}

// How long a text is, by both counts, and what it holds; frees it.
std::string taken(BSTR text)
{
    std::string answer = text == nullptr
                             ? "none"
                             : std::to_string(SysStringLen(text)) + " " +
                                   std::to_string(SysStringByteLen(text)) + " " + quoted(textOf(text));
    SysFreeString(text);
    return answer;
}

void printBasicTexts()
{
    Line line("texts");
    line.add("of nothing", taken(SysAllocString(nullptr)));
    line.add("empty", taken(SysAllocString(ole(u""))));
    line.add("of characters", taken(SysAllocString(ole(u"abc"))));
    line.add("of three", taken(SysAllocStringLen(ole(u"abcdef"), 3)));
    line.add("with zeros", taken(SysAllocStringLen(ole(u"a\0b"), 3)));
    line.add("of no characters", taken(SysAllocStringLen(ole(u"abc"), 0)));
    line.add("of no bytes", taken(SysAllocStringByteLen("abc", 0)));
    line.add("of three bytes", taken(SysAllocStringByteLen("abc", 3)));
    line.add("of four bytes", taken(SysAllocStringByteLen("abcd", 4)));
    line.add("too long", taken(SysAllocStringLen(nullptr, 0x7FFFFFFF)));
    line.add("much too long", taken(SysAllocStringLen(nullptr, 0xFFFFFFFF)));
    line.add("length of nothing",
             std::to_string(SysStringLen(nullptr)) + " " + std::to_string(SysStringByteLen(nullptr)));
    BSTR text = SysAllocString(ole(u"abc"));
    int done = SysReAllocString(&text, ole(u"defgh"));
    line.add("again", std::to_string(done) + " " + quoted(textOf(text)));
    done = SysReAllocStringLen(&text, ole(u"xyz"), 2);
    line.add("again a part", std::to_string(done) + " " + quoted(textOf(text)));
    done = SysReAllocString(&text, nullptr);
    line.add("again of nothing",
             std::to_string(done) + " " + (text == nullptr ? "none" : quoted(textOf(text))));
    line.print();
    SysFreeString(text);
}

void printClearing()
{
    for (unsigned code = 0; code <= 75; ++code) {
        Line line("variant of " + nameOf(static_cast<VARTYPE>(code)));
        for (const unsigned modifier :
             {0U, unsigned{VT_BYREF}, unsigned{VT_ARRAY}, unsigned{VT_ARRAY | VT_BYREF}, 0x1000U, 0x8000U}) {
            VARIANT value = empty(static_cast<VARTYPE>(code | modifier));
            VARIANT copy = fromInteger(VT_I4, 77);
            const std::string name = modifier == 0 ? "plain" : nameOf(static_cast<VARTYPE>(modifier));
            line.add(name + " copy", VariantCopy(&copy, &value), [&] { return nameOf(copy.vt); });
            copy = fromInteger(VT_I4, 77);
            // The system follows a reference wherever it leads.
            if ((modifier & VT_BYREF) == 0) {
                line.add(name + " copied through", VariantCopyInd(&copy, &value),
                         [&] { return nameOf(copy.vt); });
            }
            line.add(name + " clear", VariantClear(&value), [&] { return nameOf(value.vt); });
        }
        line.print();
    }
}

const char16_t* const ids[] = {
    u"",
    u"{B7A0C731-6521-48C8-8DA9-B7465A7FF35B}",
    u"{b7a0c731-6521-48c8-8da9-b7465a7ff35b}",
    u"{B7A0C731-6521-48C8-8DA9-B7465A7FF35B",
    u"B7A0C731-6521-48C8-8DA9-B7465A7FF35B}",
    u"B7A0C731-6521-48C8-8DA9-B7465A7FF35B",
    u" {B7A0C731-6521-48C8-8DA9-B7465A7FF35B}",
    u"{B7A0C731-6521-48C8-8DA9-B7465A7FF35B} ",
    u"{B7A0C731-6521-48C8-8DA9-B7465A7FF35}",
    u"{B7A0C731-6521-48C8-8DA9-B7465A7FF35BB}",
    u"{B7A0C731-6521-48C8-8DA9-B7465A7FF35G}",
    u"{B7A0C7316521-48C8-8DA9-B7465A7FF35B-}",
    u"{B7A0C731 6521 48C8 8DA9 B7465A7FF35B}",
    u"{}",
    u"{",
    u"not registered anywhere",
    u"Zul.NotRegistered.1",
};

std::string idText(const GUID& id)
{
    OLECHAR text[40];
    StringFromGUID2(id, text, 40);
    return quoted(reinterpret_cast<const char16_t*>(text));
}

void printIds()
{
    for (const char16_t* const text : ids) {
        Line line("id " + quoted(text));
        GUID id{};
        std::memset(&id, 0x11, sizeof id);
        line.add("class", CLSIDFromString(const_cast<OLECHAR*>(ole(text)), &id), [&] { return idText(id); });
        std::memset(&id, 0x11, sizeof id);
        line.add("interface", IIDFromString(const_cast<OLECHAR*>(ole(text)), &id),
                 [&] { return idText(id); });
        std::memset(&id, 0x11, sizeof id);
        line.add("program", CLSIDFromProgID(ole(text), &id), [&] { return idText(id); });
        line.print();
    }
    Line line("ids and nothing");
    GUID id{};
    std::memset(&id, 0x11, sizeof id);
    line.add("class", CLSIDFromString(nullptr, &id), [&] { return idText(id); });
    std::memset(&id, 0x11, sizeof id);
    line.add("interface", IIDFromString(nullptr, &id), [&] { return idText(id); });
    OLECHAR text[40];
    for (const int room : {0, 38, 39, 40}) {
        line.add("room for " + std::to_string(room), std::to_string(StringFromGUID2(id, text, room)));
    }
    line.print();
}

// On a thread that has not been in an apartment.
void printApartments()
{
    constexpr DWORD single = COINIT_APARTMENTTHREADED;
    constexpr DWORD many = COINIT_MULTITHREADED;
    for (const DWORD first : {single, many}) {
        for (const DWORD second : {single, many}) {
            std::thread([first, second] {
                Line line("apartment " + std::to_string(first) + " and then " + std::to_string(second));
                line.add("first", nameOf(CoInitializeEx(nullptr, first)));
                const HRESULT again = CoInitializeEx(nullptr, second);
                line.add("second", nameOf(again));
                if (SUCCEEDED(again)) {
                    CoUninitialize();
                }
                CoUninitialize();
                const HRESULT anew = CoInitializeEx(nullptr, second);
                line.add("second after all is over", nameOf(anew));
                if (SUCCEEDED(anew)) {
                    CoUninitialize();
                }
                line.print();
            }).join();
        }
    }
}

} // namespace

void printTexts()
{
    printBasicTexts();
    printClearing();
    printIds();
    printApartments();
}

} // namespace differential
