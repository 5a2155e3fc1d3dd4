#include "ftp/TextToNumber.h"

#include <clocale>
#include <gtest/gtest.h>

namespace zul::test {
namespace {

using namespace ftp;

TEST(LocaleNumbersTest, TheProcesssLocaleIsAsked)
{
    const std::string previous = std::setlocale(LC_NUMERIC, nullptr);
    if (std::setlocale(LC_NUMERIC, "it_IT.UTF-8") == nullptr) {
        GTEST_SKIP() << "no Italian locale on this machine";
    }
    const NumberFormat format = localeNumberFormat();
    std::setlocale(LC_NUMERIC, previous.c_str());
    EXPECT_EQ(format.decimalSeparator, ",");
    EXPECT_EQ(textToInt16("2121,4", format), 2121);
    EXPECT_EQ(textToInt16("2.121,4", format), 2121);
}

} // namespace
} // namespace zul::test
