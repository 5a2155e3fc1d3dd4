#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

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

TEST(SafeArray, TellsInItsFlagsWhatStandsBeforeIt)
{
    struct Case
    {
        VARTYPE type;
        USHORT flags;
    };
    for (const Case& c :
         {Case{VT_I4, FADF_HAVEVARTYPE}, Case{VT_BSTR, FADF_HAVEVARTYPE | FADF_BSTR},
          Case{VT_VARIANT, FADF_HAVEVARTYPE | FADF_VARIANT}, Case{VT_DISPATCH, FADF_HAVEIID | FADF_DISPATCH},
          Case{VT_UNKNOWN, FADF_HAVEIID | FADF_UNKNOWN}}) {
        SAFEARRAYBOUND bound{2, 0};
        SAFEARRAY* const array = SafeArrayCreate(c.type, 1, &bound);
        SAFEARRAY* const vector = SafeArrayCreateVector(c.type, 0, 2);
        EXPECT_EQ(array->fFeatures, c.flags);
        EXPECT_EQ(vector->fFeatures, c.flags | FADF_CREATEVECTOR);
        SAFEARRAY* copy = nullptr;
        ASSERT_EQ(SafeArrayCopy(vector, &copy), S_OK);
        EXPECT_EQ(copy->fFeatures, c.flags) << "a copy is no vector";
        VARTYPE type = VT_EMPTY;
        EXPECT_EQ(SafeArrayGetVartype(copy, &type), S_OK);
        EXPECT_EQ(type, c.type);
        for (SAFEARRAY* const made : {array, vector, copy}) {
            EXPECT_EQ(SafeArrayDestroy(made), S_OK);
        }
    }
}

TEST(SafeArray, OfInterfacesHasTheirIdBeforeIt)
{
    SAFEARRAY* const array = SafeArrayCreateVector(VT_DISPATCH, 0, 1);
    IID id{};
    std::memcpy(&id, reinterpret_cast<const char*>(array) - sizeof id, sizeof id);
    EXPECT_EQ(id, zul::iidOf<IDispatch>());
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SafeArray, OfAnotherMakingTellsItsTypeByItsFlagsOnly)
{
    const auto typeOf = [](USHORT flags, VARTYPE& type) {
        struct
        {
            std::uint32_t before[4] = {0, 0, 0, VT_I2};
            SAFEARRAY array{};
        } made;
        made.array.cDims = 1;
        made.array.cbElements = 8;
        made.array.fFeatures = flags;
        return SafeArrayGetVartype(&made.array, &type);
    };
    VARTYPE type = VT_EMPTY;
    EXPECT_EQ(typeOf(FADF_HAVEVARTYPE, type), S_OK);
    EXPECT_EQ(type, VT_I2);
    EXPECT_EQ(typeOf(FADF_HAVEIID | FADF_DISPATCH, type), S_OK);
    EXPECT_EQ(type, VT_DISPATCH);
    EXPECT_EQ(typeOf(FADF_HAVEIID, type), S_OK);
    EXPECT_EQ(type, VT_UNKNOWN);
    EXPECT_EQ(typeOf(FADF_RECORD, type), S_OK);
    EXPECT_EQ(type, VT_RECORD);
    for (const int flags : {0, FADF_STATIC, FADF_BSTR, FADF_DISPATCH, FADF_UNKNOWN, FADF_VARIANT}) {
        EXPECT_EQ(typeOf(static_cast<USHORT>(flags), type), E_INVALIDARG) << flags;
    }
}

TEST(SafeArray, OfAnotherMakingIsCopiedByItsFlags)
{
    // Without anything before it that could be read.
    BSTR texts[] = {SysAllocString(u"uno"), nullptr};
    SAFEARRAY made{};
    made.cDims = 1;
    made.cbElements = sizeof(BSTR);
    made.fFeatures = FADF_BSTR | FADF_STATIC;
    made.pvData = texts;
    made.rgsabound[0] = {2, 5};
    SAFEARRAY* copy = nullptr;
    ASSERT_EQ(SafeArrayCopy(&made, &copy), S_OK);
    EXPECT_EQ(copy->fFeatures, FADF_BSTR);
    LONG index = 5;
    Bstr text;
    EXPECT_EQ(SafeArrayGetElement(copy, &index, text.put()), S_OK);
    EXPECT_EQ(text.view(), u"uno");
    EXPECT_EQ(SafeArrayDestroy(copy), S_OK);
    SysFreeString(texts[0]);
}

TEST(SafeArray, IsLockedNoMoreOftenThanCanBeCounted)
{
    SAFEARRAY* const array = SafeArrayCreateVector(VT_I4, 0, 1);
    for (int i = 0; i < 65535; ++i) {
        ASSERT_EQ(SafeArrayLock(array), S_OK);
    }
    EXPECT_EQ(SafeArrayLock(array), E_UNEXPECTED);
    void* data = &data;
    EXPECT_EQ(SafeArrayAccessData(array, &data), E_UNEXPECTED);
    EXPECT_EQ(data, nullptr);
    LONG index = 0;
    LONG value = 5;
    EXPECT_EQ(SafeArrayPutElement(array, &index, &value), E_UNEXPECTED);
    EXPECT_EQ(SafeArrayGetElement(array, &index, &value), E_UNEXPECTED);
    EXPECT_EQ(array->cLocks, 65535u);
    while (array->cLocks > 0) {
        ASSERT_EQ(SafeArrayUnlock(array), S_OK);
    }
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}
