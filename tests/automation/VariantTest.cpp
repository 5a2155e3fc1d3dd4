#include <gtest/gtest.h>

#include "automation/ComObject.h"
#include "automation/Variant.h"

using zul::Variant;

namespace {

class Thing final : public zul::ComObject<IUnknown>
{};

ULONG referencesOf(IUnknown& object)
{
    object.AddRef();
    return object.Release();
}

} // namespace

TEST(Variant, CopiesTextsDeeply)
{
    const Variant a = Variant::fromText(u"à è € 😀");
    const Variant b = a;
    EXPECT_EQ(b.text(), u"à è € 😀");
    EXPECT_NE(a.bstrVal, b.bstrVal);
    Variant null;
    null.vt = VT_BSTR;
    EXPECT_EQ(Variant(null).bstrVal, nullptr);
}

TEST(Variant, CountsReferencesToObjects)
{
    const auto thing = zul::makeCom<Thing>();
    {
        const Variant a = Variant::fromUnknown(thing.get());
        Variant b = a;
        EXPECT_EQ(b.punkVal, thing.get());
        EXPECT_EQ(referencesOf(*thing.get()), 3u);
    }
    EXPECT_EQ(referencesOf(*thing.get()), 1u);
}

TEST(Variant, ClearingAReferenceLeavesWhatItLeadsTo)
{
    zul::Bstr text(u"caller's");
    Variant reference = Variant::ref(text.inOut());
    reference.clear();
    EXPECT_TRUE(reference.isEmpty());
    EXPECT_EQ(text.view(), u"caller's");
}

TEST(Variant, LooksBehindReferences)
{
    LONG number = 42;
    Variant inner = Variant::ref(&number);
    const Variant outer = Variant::ref(static_cast<VARIANT*>(&inner));
    Variant value;
    EXPECT_EQ(VariantCopyInd(&value, &outer), S_OK);
    EXPECT_EQ(value.vt, VT_I4);
    EXPECT_EQ(value.lVal, 42);

    Variant deeper = outer;
    Variant tooDeep = Variant::ref(static_cast<VARIANT*>(&deeper));
    EXPECT_EQ(VariantCopyInd(&value, &tooDeep), E_INVALIDARG);
    EXPECT_EQ(value.lVal, 42) << "unchanged after a failure";

    const Variant toNothing = Variant::ref(static_cast<LONG*>(nullptr));
    EXPECT_EQ(VariantCopyInd(&value, &toNothing), E_INVALIDARG);
}

TEST(Variant, MayBeCopiedFromTheInsideOfItself)
{
    Variant text = Variant::fromText(u"x");
    EXPECT_EQ(VariantCopy(&text, &text), S_OK);
    EXPECT_EQ(text.text(), u"x");
    EXPECT_EQ(VariantCopyInd(&text, &text), S_OK);
    EXPECT_EQ(text.text(), u"x");
}

TEST(Variant, RefusesTypesThatDoNotExist)
{
    for (const int type : {15, 24, 0x0fff, 0x1003, static_cast<int>(VT_VARIANT), VT_BYREF | VT_EMPTY}) {
        VARIANT odd{};
        odd.vt = static_cast<VARTYPE>(type);
        VARIANT copy{};
        EXPECT_EQ(VariantCopy(&copy, &odd), DISP_E_BADVARTYPE) << type;
        EXPECT_EQ(VariantClear(&odd), DISP_E_BADVARTYPE) << type;
    }
    EXPECT_EQ(VariantClear(nullptr), E_INVALIDARG);
    EXPECT_EQ(VariantCopy(nullptr, nullptr), E_INVALIDARG);
    VariantInit(nullptr);
}

TEST(Variant, MovesItsValueOut)
{
    VARIANT out;
    Variant::fromText(u"fuori").detachTo(&out);
    EXPECT_EQ(zul::textOf(out.bstrVal), u"fuori");
    EXPECT_EQ(VariantClear(&out), S_OK);
    EXPECT_EQ(out.vt, VT_EMPTY);
}
