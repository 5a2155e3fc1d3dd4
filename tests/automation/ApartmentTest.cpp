#include <gtest/gtest.h>

#include <thread>

#include <objbase.h>

namespace {

// Apartments belong to a thread; each test has one of its own.
template <typename Test>
void onAThread(Test test)
{
    std::thread(test).join();
}

} // namespace

TEST(Apartment, OfTheSameKindIsEnteredTwice)
{
    onAThread([] {
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
        EXPECT_EQ(CoInitialize(nullptr), S_FALSE);
        CoUninitialize();
        CoUninitialize();
    });
}

TEST(Apartment, OfAnotherKindIsRefusedUntilTheFirstIsLeft)
{
    onAThread([] {
        ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), RPC_E_CHANGED_MODE);
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_FALSE)
            << "the refusal needs no balance";
        CoUninitialize();
        CoUninitialize();
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        EXPECT_EQ(CoInitialize(nullptr), RPC_E_CHANGED_MODE);
        CoUninitialize();
    });
}
