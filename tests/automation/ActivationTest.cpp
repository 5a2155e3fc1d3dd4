// Libraries that are loaded, asked and closed while others do the same.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <future>
#include <thread>
#include <vector>

#include "automation/Bstr.h"
#include "tests/automation/RegistryTest.h"
#include "tests/automation/SampleHooks.h"

using zul::ComPtr;

namespace {

using Activation = RegistryTest;

/// Does something that could block for ever; when it does, the program ends as failed, because nothing can go on.
void doOrEnd(const std::function<void()>& action)
{
    std::promise<void> done;
    std::thread watcher([&] {
        if (done.get_future().wait_for(std::chrono::seconds(60)) != std::future_status::ready) {
            std::fputs("blocked for a minute\n", stderr);
            std::_Exit(1);
        }
    });
    action();
    done.set_value();
    watcher.join();
}

void onAThread(const std::function<void()>& action)
{
    std::thread(action).join();
}

/// Hooks into the sample component's entry points while it is loaded.
void setHook(SampleHook hook)
{
    void* const library = ::dlopen(ZUL_SAMPLE_COMPONENT, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << ::dlerror();
    const auto set = reinterpret_cast<SetSampleHook>(::dlsym(library, "zulSetSampleHook"));
    ASSERT_NE(set, nullptr);
    set(hook);
    ::dlclose(library);
}

HRESULT makeAndUse()
{
    ComPtr<IEmailCheck> object;
    const HRESULT made = CoCreateInstance(sampleClass, nullptr, CLSCTX_INPROC_SERVER,
                                          zul::iidOf<IEmailCheck>(), object.putVoid());
    VARIANT_BOOL valid = VARIANT_FALSE;
    return FAILED(made) ? made : object->IsValid(zul::Bstr(u"a@b.it").get(), &valid);
}

ComPtr<IClassFactory> heldFactory;

} // namespace

TEST_F(Activation, ALibrarysInitialiserMayMakeObjectsOfOthers)
{
    ASSERT_EQ(registerSample(), S_OK);
    ASSERT_EQ(ZulRegisterClass(eagerClass, nullptr, nullptr, ZUL_EAGER_COMPONENT), S_OK);
    doOrEnd([] {
        ComPtr<IClassFactory> factory;
        EXPECT_EQ(
            CoGetClassObject(eagerClass, CLSCTX_ALL, nullptr, zul::iidOf<IClassFactory>(), factory.putVoid()),
            S_OK);
    });
    CoFreeUnusedLibraries();
    EXPECT_FALSE(isLoaded(ZUL_EAGER_COMPONENT));
    EXPECT_FALSE(isLoaded(ZUL_SAMPLE_COMPONENT)) << "loaded twice at a time, closed as often";
}

TEST_F(Activation, ALibraryThatIsBeingAskedForAClassIsNotClosed)
{
    ASSERT_EQ(registerSample(), S_OK);
    ASSERT_EQ(makeAndUse(), S_OK);
    setHook([](SampleEntry entry) {
        if (entry == SampleEntry::GetClassObject) {
            onAThread([] {
                CoFreeUnusedLibraries();
                CoFreeUnusedLibrariesEx(0, 0);
            });
            CoFreeUnusedLibraries();
        }
    });
    doOrEnd([] { EXPECT_EQ(makeAndUse(), S_OK); });
    EXPECT_TRUE(isLoaded(ZUL_SAMPLE_COMPONENT));
    setHook(nullptr);
    CoFreeUnusedLibraries();
    EXPECT_FALSE(isLoaded(ZUL_SAMPLE_COMPONENT));
}

TEST_F(Activation, ALibraryIsNotClosedOnAnAnswerThatIsNoLongerTrue)
{
    ASSERT_EQ(registerSample(), S_OK);
    ASSERT_EQ(makeAndUse(), S_OK);
    setHook([](SampleEntry entry) {
        if (entry == SampleEntry::CanUnloadNow && !heldFactory) {
            onAThread([] {
                CoInitialize(nullptr);
                EXPECT_EQ(CoGetClassObject(sampleClass, CLSCTX_ALL, nullptr, zul::iidOf<IClassFactory>(),
                                           heldFactory.putVoid()),
                          S_OK);
                CoUninitialize();
            });
        }
    });
    doOrEnd([] { CoFreeUnusedLibraries(); });
    ASSERT_TRUE(isLoaded(ZUL_SAMPLE_COMPONENT));
    ComPtr<IEmailCheck> object;
    ASSERT_TRUE(heldFactory);
    EXPECT_EQ(heldFactory->CreateInstance(nullptr, zul::iidOf<IEmailCheck>(), object.putVoid()), S_OK);
    setHook(nullptr);
    heldFactory.reset();
    object.reset();
}

TEST_F(Activation, WhileOtherThreadsUseObjectsAnUnusedLibraryStaysForAWhile)
{
    ASSERT_EQ(registerSample(), S_OK);
    ASSERT_EQ(makeAndUse(), S_OK);
    std::promise<void> initialized;
    std::promise<void> ended;
    std::thread other([&] {
        CoInitialize(nullptr);
        initialized.set_value();
        ended.get_future().wait();
        CoUninitialize();
    });
    initialized.get_future().wait();
    CoFreeUnusedLibraries();
    CoFreeUnusedLibraries();
    EXPECT_TRUE(isLoaded(ZUL_SAMPLE_COMPONENT)) << "the other thread may be on its way out of it";
    CoFreeUnusedLibrariesEx(20, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    ASSERT_EQ(makeAndUse(), S_OK);
    CoFreeUnusedLibrariesEx(20, 0);
    EXPECT_TRUE(isLoaded(ZUL_SAMPLE_COMPONENT)) << "it was used meanwhile";
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    CoFreeUnusedLibrariesEx(20, 0);
    EXPECT_FALSE(isLoaded(ZUL_SAMPLE_COMPONENT)) << "unused for longer than that";

    ASSERT_EQ(makeAndUse(), S_OK);
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_FALSE(isLoaded(ZUL_SAMPLE_COMPONENT)) << "whoever says 0 knows that nobody is in it";

    ASSERT_EQ(makeAndUse(), S_OK);
    ended.set_value();
    other.join();
    CoFreeUnusedLibraries();
    EXPECT_FALSE(isLoaded(ZUL_SAMPLE_COMPONENT)) << "no other thread is left";
}

TEST_F(Activation, ThreadsMakeObjectsWhileAnotherClosesLibraries)
{
    ASSERT_EQ(registerSample(), S_OK);
    CoUninitialize(); // so that there are moments in which no thread uses objects
    constexpr int rounds = 100;
    std::atomic<int> failures{0};
    std::atomic<bool> stop{false};
    std::thread closer([&] {
        while (!stop) {
            CoFreeUnusedLibraries();
        }
    });
    constexpr int threads = 4;
    std::vector<std::thread> users;
    users.reserve(threads);
    for (int i = 0; i < threads; ++i) {
        users.emplace_back([&] {
            for (int round = 0; round < rounds; ++round) {
                CoInitialize(nullptr);
                failures += makeAndUse() == S_OK ? 0 : 1;
                CoUninitialize();
                std::this_thread::yield();
            }
        });
    }
    for (std::thread& user : users) {
        user.join();
    }
    stop = true;
    closer.join();
    EXPECT_EQ(CoInitialize(nullptr), S_OK);
    EXPECT_EQ(failures, 0);
    CoFreeUnusedLibraries();
    EXPECT_FALSE(isLoaded(ZUL_SAMPLE_COMPONENT)) << "whoever loaded it a second time has closed that again";
}
