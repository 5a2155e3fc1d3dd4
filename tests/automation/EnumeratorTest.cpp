#include "automation/Enumerator.h"

#include "automation/Variant.h"

#include <array>

#include <gtest/gtest.h>

using namespace zul;

namespace {

// Odd numbers cannot be handed out until they may.
bool mayBeOdd = false;

HRESULT handOut(const LONG& number, VARIANT& raw)
{
    VariantInit(&raw);
    if (number % 2 != 0 && !mayBeOdd) {
        return E_OUTOFMEMORY;
    }
    raw.vt = VT_I4;
    raw.lVal = number;
    return S_OK;
}

using NumberEnumerator = Enumerator<IEnumVARIANT, LONG, VARIANT, handOut>;

} // namespace

TEST(Enumerator, EndsBeforeAnItemThatCannotBeHandedOut)
{
    mayBeOdd = false;
    const auto numbers = makeCom<NumberEnumerator>(std::vector<LONG>{2, 4, 5, 6});
    std::array<Variant, 4> got;
    ULONG fetched = 9;
    EXPECT_EQ(numbers->Next(4, got.data(), &fetched), S_FALSE);
    EXPECT_EQ(fetched, 2U);
    EXPECT_EQ(got[1].lVal, 4);
    EXPECT_EQ(numbers->Next(2, got.data(), &fetched), E_OUTOFMEMORY);
    EXPECT_EQ(fetched, 0U);
    mayBeOdd = true;
    EXPECT_EQ(numbers->Next(2, got.data(), &fetched), S_OK);
    EXPECT_EQ(got[0].lVal, 5);
    EXPECT_EQ(got[1].lVal, 6);
    EXPECT_EQ(numbers->Next(1, got.data(), nullptr), S_FALSE);
}
