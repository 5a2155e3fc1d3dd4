// The libraries of rules, whole, in a program without Qt's widgets: what one of them asked of a widget, the linker of
// this test would miss.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace zul {
namespace {

TEST(RulesTest, NeedNoWidgets)
{
    std::ifstream maps("/proc/self/maps");
    ASSERT_TRUE(maps.is_open());
    std::string loaded;
    for (std::string line; std::getline(maps, line);) {
        loaded += line + '\n';
    }
    EXPECT_NE(loaded.find("Qt6Core"), std::string::npos) << "the rules are not in this program";
    EXPECT_EQ(loaded.find("Qt6Widgets"), std::string::npos);
    EXPECT_EQ(loaded.find("Qt6Gui"), std::string::npos);
}

} // namespace
} // namespace zul
