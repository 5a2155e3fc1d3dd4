#include "automation/UnknownInterface.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <Zul_Host.h>

#include "automation/ComObject.h"

namespace {

class Asked final : public zul::ComObject<IUnknown>
{};

template <typename T>
class Templated final : public zul::ComObject<IUnknown>
{};

constexpr IID unknown(std::uint32_t number)
{
    return {number, 0xAAAA, 0xBBBB, {1, 2, 3, 4, 5, 6, 7, 8}};
}

template <typename Class>
HRESULT ask(const IID& iid)
{
    zul::ComPtr<IUnknown> object;
    return zul::makeCom<Class>()->QueryInterface(iid, reinterpret_cast<void**>(object.put()));
}

std::vector<std::pair<IID, std::string>> told;

void keep(const IID& iid, const char* className)
{
    told.emplace_back(iid, className);
}

class UnknownInterface : public testing::Test
{
protected:
    UnknownInterface() { told.clear(); }
    ~UnknownInterface() override { zul::setUnknownInterfaceHook(nullptr); }
};

/// What this program's test of that name writes in a process of its own that has the variable set, or not.
std::string outputOf(const std::string& test, bool traced)
{
    const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
    const std::string command = std::string(traced ? "" : "env -u ZUL_AUTOMATION_TRACE ") +
                                (traced ? "ZUL_AUTOMATION_TRACE=1 " : "") + "'" + program +
                                "' --gtest_filter=UnknownInterface." + test + " 2>&1";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
    std::string output;
    for (int c = std::fgetc(pipe.get()); c != EOF; c = std::fgetc(pipe.get())) {
        output.push_back(static_cast<char>(c));
    }
    return output;
}

std::size_t countOf(const std::string& part, const std::string& text)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

} // namespace

TEST_F(UnknownInterface, IsToldOnce)
{
    zul::setUnknownInterfaceHook(keep);
    EXPECT_EQ(ask<Asked>(unknown(1)), E_NOINTERFACE);
    EXPECT_EQ(ask<Asked>(unknown(1)), E_NOINTERFACE);
    EXPECT_EQ(ask<Templated<int>>(unknown(1)), E_NOINTERFACE) << "of another class";
    EXPECT_EQ(ask<Templated<int>>(unknown(2)), E_NOINTERFACE);
    ASSERT_EQ(told.size(), 2u);
    EXPECT_TRUE(told[0].first == unknown(1));
    EXPECT_EQ(told[0].second, "(anonymous namespace)::Asked");
    EXPECT_TRUE(told[1].first == unknown(2));
    EXPECT_EQ(told[1].second, "(anonymous namespace)::Templated");
}

TEST_F(UnknownInterface, KnownOnesAreNotTold)
{
    zul::setUnknownInterfaceHook(keep);
    EXPECT_EQ(ask<Asked>(zul::iidOf<IUnknown>()), S_OK);
    EXPECT_TRUE(told.empty());
}

TEST_F(UnknownInterface, AHookThatThrowsSpoilsNoAnswer)
{
    zul::setUnknownInterfaceHook([](const IID&, const char*) { throw std::runtime_error("no"); });
    EXPECT_EQ(ask<Asked>(unknown(3)), E_NOINTERFACE);
}

TEST_F(UnknownInterface, AHookMayAskItself)
{
    zul::setUnknownInterfaceHook([](const IID&, const char* className) {
        told.emplace_back(unknown(4), className);
        ask<Asked>(unknown(4));
    });
    EXPECT_EQ(ask<Asked>(unknown(4)), E_NOINTERFACE);
    EXPECT_EQ(told.size(), 1u);
}

TEST_F(UnknownInterface, ThreadsTellItOnce)
{
    static std::atomic<int> times;
    times = 0;
    zul::setUnknownInterfaceHook([](const IID&, const char*) { ++times; });
    constexpr int count = 8;
    std::vector<std::thread> threads;
    threads.reserve(count);
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([] {
            for (std::uint32_t number = 100; number < 120; ++number) {
                ask<Asked>(unknown(number));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(times, 20);
}

// The two tests below run this one in a process of its own.
TEST_F(UnknownInterface, IsNoInterfaceHoweverOftenItIsAsked)
{
    EXPECT_EQ(ask<Asked>(unknown(0xABC)), E_NOINTERFACE);
    EXPECT_EQ(ask<Asked>(unknown(0xABC)), E_NOINTERFACE);
    EXPECT_EQ(ask<Asked>(zul::iidOf<IEmailCheck>()), E_NOINTERFACE);
}

TEST_F(UnknownInterface, TheTraceHasALineForEachId)
{
    const std::string output = outputOf("IsNoInterfaceHoweverOftenItIsAsked", true);
    EXPECT_EQ(countOf("has no interface", output), 2u) << output;
    EXPECT_EQ(countOf("Zul_Automation: (anonymous namespace)::Asked has no interface "
                      "{00000ABC-AAAA-BBBB-0102-030405060708}\n",
                      output),
              1u)
        << output;
}

TEST_F(UnknownInterface, WithoutTheVariableNothingIsWritten)
{
    const std::string output = outputOf("IsNoInterfaceHoweverOftenItIsAsked", false);
    EXPECT_EQ(countOf("has no interface", output), 0u) << output;
    EXPECT_GT(countOf("PASSED", output), 0u) << output;
}
