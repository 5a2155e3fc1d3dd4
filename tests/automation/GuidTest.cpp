#include <gtest/gtest.h>

#include <ocidl.h>

#include <objbase.h>

#include <Zul_MessageBuilder.h>

#include "automation/Uuid.h"
#include "base/Utf8.h"

TEST(Guid, GoesToTextAndBack)
{
    OLECHAR text[39];
    ASSERT_EQ(StringFromGUID2(CLSID_SmsCreator, text, 39), 39);
    EXPECT_EQ(std::u16string(text), u"{B7A0C731-6521-48C8-8DA9-B7465A7FF35B}");
    CLSID back{};
    EXPECT_EQ(CLSIDFromString(u"{b7a0c731-6521-48c8-8da9-b7465a7ff35b}", &back), S_OK);
    EXPECT_TRUE(back == CLSID_SmsCreator);

    LPOLESTR allocated = nullptr;
    ASSERT_EQ(StringFromCLSID(CLSID_SmsCreator, &allocated), S_OK);
    EXPECT_EQ(std::u16string(allocated), text);
    CoTaskMemFree(allocated);
}

TEST(Guid, RefusesTooLittleRoom)
{
    OLECHAR text[39];
    EXPECT_EQ(StringFromGUID2(CLSID_SmsCreator, text, 38), 0);
    EXPECT_EQ(StringFromGUID2(CLSID_SmsCreator, nullptr, 39), 0);
}

TEST(Guid, RefusesTextsThatAreNone)
{
    for (const char16_t* const text :
         {u"", u"{", u"B7A0C731-6521-48C8-8DA9-B7465A7FF35B", u"{B7A0C731-6521-48C8-8DA9-B7465A7FF35B",
          u"{B7A0C731-6521-48C8-8DA9-B7465A7FF35G}", u"{B7A0C731-6521-48C8-8DA9-B7465A7FF35B}x",
          u"{B7A0C731 6521-48C8-8DA9-B7465A7FF35B}", u"{B7A0C731--521-48C8-8DA9-B7465A7FF35B}"}) {
        IID iid{1, 2, 3, {}};
        // What has not even the length of an id is a bad argument.
        const bool asLong = std::u16string_view(text).size() == 38;
        EXPECT_EQ(IIDFromString(text, &iid), asLong ? CO_E_IIDSTRING : E_INVALIDARG)
            << zul::utf8FromUtf16(text);
        EXPECT_TRUE(iid == GUID_NULL) << "the result is cleared";
    }
    EXPECT_EQ(IIDFromString(u"", nullptr), E_INVALIDARG);
}

TEST(Guid, ConstantsAndTypesAgree)
{
    EXPECT_TRUE(zul::iidOf<IUnknown>() == IID_IUnknown);
    EXPECT_TRUE(zul::iidOf<IDispatch>() == IID_IDispatch);
    EXPECT_TRUE(zul::iidOf<IConnectionPointContainer>() == IID_IConnectionPointContainer);
    EXPECT_TRUE(zul::iidOf<_SmsCreator>() == IID__SmsCreator);
    EXPECT_TRUE(zul::iidOf<__SmsCreator>() == DIID___SmsCreator);
}

TEST(Guid, NewOnesAreRandomAndMarkedSo)
{
    GUID a{};
    GUID b{};
    ASSERT_EQ(CoCreateGuid(&a), S_OK);
    ASSERT_EQ(CoCreateGuid(&b), S_OK);
    EXPECT_FALSE(a == b);
    EXPECT_EQ(a.Data3 >> 12, 4);
    EXPECT_EQ(a.Data4[0] >> 6, 2);
    EXPECT_EQ(CoCreateGuid(nullptr), E_POINTER);
}
