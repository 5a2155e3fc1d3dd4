#include <gtest/gtest.h>

#include "automation/Variant.h"

using zul::Bstr;
using zul::Variant;

TEST(SafeArray, OfTextsOwnsThem)
{
    SAFEARRAY* const array = SafeArrayCreateVector(VT_BSTR, 1, 2);
    ASSERT_NE(array, nullptr);
    LONG index = 2;
    Bstr text(u"città");
    EXPECT_EQ(SafeArrayPutElement(array, &index, text.get()), S_OK);
    EXPECT_EQ(SafeArrayPutElement(array, &index, text.get()), S_OK) << "the first copy is freed";
    Bstr back;
    EXPECT_EQ(SafeArrayGetElement(array, &index, back.put()), S_OK);
    EXPECT_EQ(back.view(), u"città");
    EXPECT_NE(back.get(), text.get());
    index = 1;
    EXPECT_EQ(SafeArrayGetElement(array, &index, back.put()), S_OK);
    EXPECT_TRUE(back.isEmpty());
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SafeArray, RefusesIndicesOutsideItsBounds)
{
    SAFEARRAY* const array = SafeArrayCreateVector(VT_I4, -1, 3);
    LONG value = 7;
    for (LONG index : {-2, 2}) {
        EXPECT_EQ(SafeArrayPutElement(array, &index, &value), DISP_E_BADINDEX);
        EXPECT_EQ(SafeArrayGetElement(array, &index, &value), DISP_E_BADINDEX);
    }
    LONG bound = 0;
    EXPECT_EQ(SafeArrayGetLBound(array, 1, &bound), S_OK);
    EXPECT_EQ(bound, -1);
    EXPECT_EQ(SafeArrayGetUBound(array, 1, &bound), S_OK);
    EXPECT_EQ(bound, 1);
    EXPECT_EQ(SafeArrayGetUBound(array, 2, &bound), DISP_E_BADINDEX);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SafeArray, OfTwoDimensionsRunsTheFirstIndexFastest)
{
    SAFEARRAYBOUND bounds[] = {{2, 0}, {3, 10}};
    SAFEARRAY* const array = SafeArrayCreate(VT_I2, 2, bounds);
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(SafeArrayGetDim(array), 2u);
    EXPECT_EQ(SafeArrayGetElemsize(array), 2u);
    short number = 0;
    for (LONG column = 10; column < 13; ++column) {
        for (LONG row = 0; row < 2; ++row, ++number) {
            LONG indices[] = {row, column};
            EXPECT_EQ(SafeArrayPutElement(array, indices, &number), S_OK);
        }
    }
    void* data = nullptr;
    ASSERT_EQ(SafeArrayAccessData(array, &data), S_OK);
    for (short i = 0; i < 6; ++i) {
        EXPECT_EQ(static_cast<short*>(data)[i], i);
    }
    EXPECT_EQ(SafeArrayDestroy(array), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayUnaccessData(array), S_OK);
    EXPECT_EQ(SafeArrayUnlock(array), E_UNEXPECTED);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SafeArray, RefusesWhatItCannotHold)
{
    EXPECT_EQ(SafeArrayCreateVector(VT_EMPTY, 0, 1), nullptr);
    EXPECT_EQ(SafeArrayCreateVector(VT_VARIANT, 0, 0x40000000), nullptr);
    EXPECT_EQ(SafeArrayCreate(VT_I4, 0, nullptr), nullptr);
    EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
    EXPECT_EQ(SafeArrayGetDim(nullptr), 0u);
}

TEST(SafeArray, InAVariantIsCopiedAndClearedWithIt)
{
    Variant array;
    array.vt = VT_ARRAY | VT_VARIANT;
    array.parray = SafeArrayCreateVector(VT_VARIANT, 0, 2);
    LONG index = 1;
    Variant text = Variant::fromText(u"Rossi");
    ASSERT_EQ(SafeArrayPutElement(array.parray, &index, &text), S_OK);

    Variant copy = array;
    EXPECT_NE(copy.parray, array.parray);
    array.clear();
    Variant back;
    ASSERT_EQ(SafeArrayGetElement(copy.parray, &index, back.put()), S_OK);
    EXPECT_EQ(back.text(), u"Rossi");
    VARTYPE type = VT_EMPTY;
    EXPECT_EQ(SafeArrayGetVartype(copy.parray, &type), S_OK);
    EXPECT_EQ(type, VT_VARIANT);
}
