#include "ftp/TextToNumber.h"

#include <clocale>
#include <gtest/gtest.h>

namespace zul::test {
namespace {

using namespace ftp;

TEST(LocaleNumbersTest, TheUsersSettingsAreAskedAndNotTheCLibrarys)
{
    ASSERT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    const NumberFormat format = localeNumberFormat();
    EXPECT_EQ(format.decimalSeparator, ","); // the tests' user is Italian
    EXPECT_EQ(textToInt16("2121,4", format), 2121);
    EXPECT_EQ(textToInt16("2.121,4", format), 2121);
}

} // namespace
} // namespace zul::test
