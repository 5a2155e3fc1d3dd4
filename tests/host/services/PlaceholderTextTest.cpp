#include "host/services/PlaceholderText.h"

#include <gtest/gtest.h>

using zul::host::fillPlaceholders;

namespace {

std::u16string fill(std::u16string_view text)
{
    return fillPlaceholders(text, [](std::u16string_view name) -> std::optional<std::u16string> {
        if (name == u"Cliente") {
            return u"Rossi {email}";
        }
        if (name == u"email") {
            return u"a@example.com";
        }
        if (name == u"Vuoto") {
            return u"";
        }
        return std::nullopt;
    });
}

} // namespace

TEST(PlaceholderText, FillsWhatIsKnown)
{
    EXPECT_EQ(fill(u"{email}"), u"a@example.com");
    EXPECT_EQ(fill(u"A {Vuoto}{email} B"), u"A a@example.com B");
    EXPECT_EQ(fill(u""), u"");
}

TEST(PlaceholderText, LeavesWhatIsUnknownAsItIs)
{
    for (const char16_t* text :
         {u"{Altro}", u"{", u"}", u"{}", u"{email", u"email}", u"{ email}", u"{EMAIL}", u"à € 😀 % ' \""}) {
        EXPECT_EQ(fill(text), text);
    }
}

TEST(PlaceholderText, FindsAPlaceholderBehindALoneBrace)
{
    EXPECT_EQ(fill(u"{{email}"), u"{a@example.com");
    EXPECT_EQ(fill(u"{Altro{email}}"), u"{Altroa@example.com}");
}

TEST(PlaceholderText, DoesNotLookAtWhatItFilledInAgain)
{
    EXPECT_EQ(fill(u"{Cliente}"), u"Rossi {email}");
}

TEST(PlaceholderText, TakesLongTexts)
{
    const std::u16string braces(10'000, u'{');
    EXPECT_EQ(fill(braces), braces);
}
