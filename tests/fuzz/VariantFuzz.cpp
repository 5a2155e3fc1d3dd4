// Conversion of variants: any value to any type in any country ends in a value of that type or in a documented error, the
// source stays as it is, a failure leaves the destination as it was, and nothing that was held is lost.
#include "automation/Variant.h"
#include "tests/fuzz/Input.h"
#include "tests/fuzz/Values.h"

#include <array>

using namespace zul;
using fuzz::require;

namespace {

constexpr std::array<LCID, 8> countries{0x0410, 0x0409, 0x0807, 0x041d, 0x0804, 0x007f, 0x0400, 0x0000};

bool isDocumented(HRESULT result)
{
    return result == S_OK || result == DISP_E_TYPEMISMATCH || result == DISP_E_OVERFLOW ||
           result == DISP_E_BADVARTYPE || result == E_INVALIDARG || result == E_OUTOFMEMORY;
}

// A decimal number lies over the type; everything else stands behind it.
bool sameBits(const VARIANT& a, const VARIANT& b)
{
    return a.vt == b.vt && (a.vt == VT_EMPTY || a.vt == VT_NULL || a.llVal == b.llVal);
}

void checkResult(const VARIANT& value, VARTYPE wanted, VARTYPE from)
{
    require(value.vt == wanted, "the type that was asked for");
    if (from == wanted) {
        return; // as it was
    }
    if (wanted == VT_BOOL) {
        require(value.boolVal == VARIANT_TRUE || value.boolVal == VARIANT_FALSE, "a truth is one of two");
    } else if (wanted == VT_DECIMAL) {
        require(value.decVal.scale <= 28 && (value.decVal.sign & 0x7F) == 0, "a decimal number of good form");
    } else if (wanted == VT_BSTR) {
        require(SysStringByteLen(value.bstrVal) % 2 == 0, "a text of whole characters");
    }
}

// What a number became as a text is that number again.
void checkThereAndBack(const VARIANT& source, LCID country)
{
    constexpr std::array<VARTYPE, 12> whole{VT_I1, VT_UI1, VT_I2,  VT_UI2,  VT_I4, VT_UI4,
                                            VT_I8, VT_UI8, VT_INT, VT_UINT, VT_CY, VT_DECIMAL};
    if (std::find(whole.begin(), whole.end(), source.vt) == whole.end()) {
        return;
    }
    Variant text;
    if (FAILED(VariantChangeTypeEx(&text, &source, country, 0, VT_BSTR))) {
        require(source.vt == VT_DECIMAL, "every number has a text");
        return;
    }
    Variant back;
    require(VariantChangeTypeEx(&back, &text, country, 0, source.vt) == S_OK, "a number's text is a number");
    Variant again;
    require(VariantChangeTypeEx(&again, &back, country, 0, VT_BSTR) == S_OK && again.text() == text.text(),
            "a number's text is that number");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    {
        fuzz::Values values(input);
        while (!input.ended()) {
            const VARTYPE wanted = values.type();
            const LCID country = countries[input.below(countries.size())];
            const auto flags = static_cast<USHORT>(input.number<std::uint8_t>() & 0x17U);
            VARIANT* const source = values.variant();
            const VARIANT before = *source;

            Variant destination = Variant::fromText(u"held");
            const HRESULT result = VariantChangeTypeEx(&destination, source, country, flags, wanted);
            require(isDocumented(result), "a result of the documented set");
            require(sameBits(*source, before), "the source stays as it is");
            if (SUCCEEDED(result)) {
                Variant plain;
                require(copyWithoutReference(plain, *source) == S_OK, "what was read can be read");
                checkResult(destination, wanted, plain.vt);
                Variant copy;
                require(copyVariant(copy, destination) == S_OK && copy.vt == wanted,
                        "a result can be copied");
            } else {
                require(destination.text() == u"held", "a failure leaves the destination");
            }
            checkThereAndBack(*source, country);

            Variant behind;
            const HRESULT looked = copyWithoutReference(behind, *source);
            require(isDocumented(looked) && (behind.vt & VT_BYREF) == 0,
                    "nothing refers to somebody else's storage");

            // In place: the same answer, and after a failure the same value.
            Variant inPlace;
            if (SUCCEEDED(copyVariant(inPlace, *source))) {
                const HRESULT answer = VariantChangeTypeEx(&inPlace, &inPlace, country, flags, wanted);
                require(answer == result, "the same answer in place");
                require(SUCCEEDED(answer) ? inPlace.vt == wanted : inPlace.vt == source->vt,
                        "a failure in place leaves the value");
            }
        }
    }
    require(fuzz::Values::objectsAlive() == 0, "every reference is given back");
    return 0;
}
