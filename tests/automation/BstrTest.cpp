#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "automation/Bstr.h"

using zul::Bstr;

TEST(Bstr, NullIsTheEmptyText)
{
    EXPECT_EQ(SysStringLen(nullptr), 0u);
    EXPECT_EQ(SysStringByteLen(nullptr), 0u);
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    SysFreeString(nullptr);
    EXPECT_TRUE(zul::textOf(nullptr).empty());
    EXPECT_TRUE(Bstr() == Bstr(u""));
    EXPECT_TRUE(Bstr().isEmpty());
}

TEST(Bstr, HasItsLengthInBytesBeforeTheText)
{
    const BSTR text = SysAllocString(u"città €");
    std::uint32_t length = 0;
    std::memcpy(&length, reinterpret_cast<const char*>(text) - 4, 4);
    EXPECT_EQ(length, 14u);
    EXPECT_EQ(SysStringByteLen(text), 14u);
    EXPECT_EQ(SysStringLen(text), 7u);
    EXPECT_EQ(text[7], 0);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(text) % 8, 0u);
    SysFreeString(text);
}

TEST(Bstr, KeepsZerosAndEveryCharacter)
{
    const std::u16string zeros(u"a\0b", 3);
    EXPECT_EQ(Bstr(zeros).view(), zeros);
    const std::u16string tenThousand(10000, u'è');
    EXPECT_EQ(Bstr(tenThousand).view(), tenThousand);
    EXPECT_EQ(Bstr::fromUtf8("à è € 😀 ' % \"").toUtf8(), "à è € 😀 ' % \"");
}

TEST(Bstr, WithoutATextIsFilledWithZeros)
{
    const BSTR text = SysAllocStringLen(nullptr, 3);
    EXPECT_EQ(zul::textOf(text), std::u16string_view(u"\0\0\0", 3));
    SysFreeString(text);
}

TEST(Bstr, OfAnOddNumberOfBytesKeepsThem)
{
    const BSTR text = SysAllocStringByteLen("abc", 3);
    EXPECT_EQ(SysStringByteLen(text), 3u);
    EXPECT_EQ(SysStringLen(text), 1u);
    EXPECT_EQ(std::memcmp(text, "abc\0\0", 5), 0);
    SysFreeString(text);
}

TEST(Bstr, OfAnOddNumberOfBytesEndsWhereCharactersEnd)
{
    // On memory that is not zero: the freed block is the one that is given out next.
    SysFreeString(SysAllocStringByteLen(std::string(30, '\xFF').c_str(), 30));
    const BSTR text = SysAllocStringByteLen("123456789012345", 15);
    EXPECT_EQ(std::u16string_view(text).size(), 8u) << "seven characters, half a one, the end mark";
    EXPECT_EQ(text[7], u'5');
    EXPECT_EQ(zul::textOf(text).size(), 7u);
    SysFreeString(text);
}

TEST(Bstr, TooLongIsRefused)
{
    EXPECT_EQ(SysAllocStringLen(nullptr, 0x7fffffff), nullptr);
}

TEST(Bstr, IsReplacedByAPartOfItself)
{
    BSTR text = SysAllocString(u"Rossi Mario");
    EXPECT_EQ(SysReAllocString(&text, text + 6), 1);
    EXPECT_EQ(zul::textOf(text), u"Mario");
    EXPECT_EQ(SysReAllocStringLen(&text, text + 1, 2), 1);
    EXPECT_EQ(zul::textOf(text), u"ar");
    EXPECT_EQ(SysReAllocStringLen(&text, nullptr, 4), 1);
    EXPECT_EQ(zul::textOf(text), std::u16string_view(u"ar\0\0", 4));
    EXPECT_EQ(SysReAllocString(&text, nullptr), 1);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(SysReAllocString(nullptr, u"x"), 0);
}

TEST(Bstr, OwnsCopiesAndHandsOut)
{
    Bstr a(u"uno");
    Bstr copy = a;
    EXPECT_NE(copy.get(), a.get());
    EXPECT_TRUE(copy == a);
    Bstr moved = std::move(a);
    EXPECT_TRUE(a.isEmpty()); // NOLINT(bugprone-use-after-move): a moved-from text is the empty one
    *moved.put() = SysAllocString(u"due");
    EXPECT_EQ(moved.view(), u"due");
    const Bstr adopted = Bstr::adopt(moved.detach());
    EXPECT_EQ(adopted.view(), u"due");
    EXPECT_EQ(moved.get(), nullptr);
}
