// Registering, finding and loading components.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include <dlfcn.h>
#include <unistd.h>

#include <olectl.h>
#include <zulreg.h>

#include <Zul_Host.h>

#include "automation/Bstr.h"
#include "automation/ComPtr.h"
#include "automation/ErrorInfo.h"
#include "automation/Registration.h"
#include "base/Utf8.h"
#include "tests/automation/RegistryTest.h"

namespace fs = std::filesystem;
using zul::ComPtr;

namespace {

using Registration = RegistryTest;

constexpr CLSID otherClass{0x11111111, 0x2222, 0x3333, {4, 4, 5, 5, 5, 5, 5, 5}};

} // namespace

TEST_F(Registration, ARegisteredClassIsFoundLoadedAndMade)
{
    ASSERT_EQ(registerSample(), S_OK);
    CLSID clsid{};
    ASSERT_EQ(CLSIDFromProgID(u"zul_sample.EMAILCHECK", &clsid), S_OK);
    EXPECT_TRUE(clsid == sampleClass);
    ComPtr<IEmailCheck> object;
    ASSERT_EQ(create(clsid, object), S_OK);
    VARIANT_BOOL valid = VARIANT_FALSE;
    EXPECT_EQ(object->IsValid(zul::Bstr(u"a@b.it").get(), &valid), S_OK);
    EXPECT_EQ(valid, VARIANT_TRUE);
}

TEST_F(Registration, TheComponentRegistersItselfWithItsOwnPath)
{
    void* const library = ::dlopen(ZUL_SAMPLE_COMPONENT, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr);
    using Entry = HRESULT(STDAPICALLTYPE*)();
    const auto registerServer = reinterpret_cast<Entry>(::dlsym(library, "DllRegisterServer"));
    const auto unregisterServer = reinterpret_cast<Entry>(::dlsym(library, "DllUnregisterServer"));
    ASSERT_NE(registerServer, nullptr);
    EXPECT_EQ(registerServer(), S_OK);
    const std::string once = contents();
    EXPECT_EQ(registerServer(), S_OK);
    EXPECT_EQ(contents(), once) << "a second time changes nothing";
    EXPECT_NE(once.find("Library=" + fs::canonical(ZUL_SAMPLE_COMPONENT).string() + "\n"), std::string::npos)
        << once;
    EXPECT_NE(once.find("[{5B0F6E0C-1D3F-4C52-9A57-0C7B2F0A9D01}]\n"), std::string::npos) << once;

    ComPtr<IEmailCheck> object;
    EXPECT_EQ(create(sampleClass, object), S_OK);
    object.reset();
    EXPECT_EQ(unregisterServer(), S_OK);
    EXPECT_EQ(unregisterServer(), S_OK);
    EXPECT_EQ(create(sampleClass, object), REGDB_E_CLASSNOTREG);
    ::dlclose(library);
}

TEST_F(Registration, OtherEntriesAndCommentsStay)
{
    const std::string others =
        "; by hand\n\n[{11111111-2222-3333-0404-050505050505}]\nProgID=Other.Class\nLibrary=/x/"
        "città.so\nColour=red\nnonsense\n[not a class]\nkey=value\n";
    write(others);
    ASSERT_EQ(registerSample(), S_OK);
    EXPECT_EQ(contents().substr(0, others.size()), others);
    ASSERT_EQ(registerSample(), S_OK);
    EXPECT_EQ(contents().substr(0, others.size()), others);
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(u"Other.Class", &clsid), S_OK);
    EXPECT_TRUE(clsid == otherClass);
    ASSERT_EQ(ZulUnregisterClass(sampleClass), S_OK);
    EXPECT_EQ(contents(), others);
}

TEST_F(Registration, RegisteringAgainReplacesTheEntry)
{
    ASSERT_EQ(registerSample(sampleClass, "/old/place.so"), S_OK);
    ASSERT_EQ(registerSample(), S_OK);
    EXPECT_EQ(contents().find("/old/place.so"), std::string::npos);
    LPOLESTR progId = nullptr;
    ASSERT_EQ(ProgIDFromCLSID(sampleClass, &progId), S_OK);
    EXPECT_EQ(std::u16string(progId), u"Zul_Sample.EmailCheck");
    CoTaskMemFree(progId);
}

TEST_F(Registration, AProgIdBelongsToOneClass)
{
    ASSERT_EQ(registerSample(), S_OK);
    EXPECT_EQ(registerSample(otherClass), E_INVALIDARG);
    EXPECT_EQ(ZulRegisterClass(otherClass, nullptr, nullptr, ZUL_SAMPLE_COMPONENT), S_OK)
        << "none is no ProgID";
}

TEST_F(Registration, RefusesWhatWouldSpoilTheFile)
{
    EXPECT_EQ(registerSample(sampleClass, nullptr), E_INVALIDARG);
    EXPECT_EQ(registerSample(sampleClass, "relative.so"), E_INVALIDARG);
    EXPECT_EQ(registerSample(sampleClass, "/two\nlines.so"), E_INVALIDARG);
    EXPECT_EQ(ZulRegisterClass(sampleClass, u"Two\nLines", nullptr, "/x.so"), E_INVALIDARG);
    EXPECT_EQ(ZulRegisterClass(sampleClass, nullptr, u"Two\r\nLines", "/x.so"), E_INVALIDARG);
    EXPECT_EQ(registerSample(sampleClass, "/blank.so "), E_INVALIDARG) << "would be read without the blank";
    EXPECT_EQ(ZulRegisterClass(sampleClass, u" Blank.Before", nullptr, "/x.so"), E_INVALIDARG);
    EXPECT_FALSE(fs::exists(file));
}

TEST_F(Registration, OddNamesAreKept)
{
    const std::string path = "/opt/O'Brien 100%/\"à è € 😀\"/[x]=y.so";
    ASSERT_EQ(ZulRegisterClass(sampleClass, u"Zul.Città", u"100% \"così\" = [sì]", path.c_str()), S_OK);
    ComPtr<IEmailCheck> object;
    EXPECT_EQ(create(sampleClass, object), CO_E_DLLNOTFOUND);
    EXPECT_NE(zul::utf8FromUtf16(zul::takeErrorDetails(CO_E_DLLNOTFOUND).description).find(path),
              std::string::npos);
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(u"zul.città", &clsid), S_OK);
}

TEST_F(Registration, WithoutAFileNothingIsRegistered)
{
    ComPtr<IEmailCheck> object;
    EXPECT_EQ(create(sampleClass, object), REGDB_E_CLASSNOTREG);
    EXPECT_NE(zul::utf8FromUtf16(zul::takeErrorDetails(REGDB_E_CLASSNOTREG).description).find(file),
              std::string::npos)
        << "the error says where it was looked for";
    CLSID clsid{1, 2, 3, {}};
    EXPECT_EQ(CLSIDFromProgID(u"Zul_Sample.EmailCheck", &clsid), CO_E_CLASSSTRING);
    EXPECT_TRUE(clsid == GUID_NULL);
    EXPECT_EQ(ZulUnregisterClass(sampleClass), S_OK);
    EXPECT_FALSE(fs::exists(file)) << "no file is made to say that nothing is in it";
}

TEST_F(Registration, ProgramIdsNeedPointers)
{
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(nullptr, &clsid), E_INVALIDARG);
    EXPECT_EQ(CLSIDFromProgID(u"x", nullptr), E_INVALIDARG);
    EXPECT_EQ(ProgIDFromCLSID(sampleClass, nullptr), E_INVALIDARG);
    EXPECT_EQ(CLSIDFromString(u"Not.Registered", &clsid), CO_E_CLASSSTRING);
    ASSERT_EQ(registerSample(), S_OK);
    EXPECT_EQ(CLSIDFromString(u"Zul_Sample.EmailCheck", &clsid), S_OK);
    EXPECT_TRUE(clsid == sampleClass);
}

TEST_F(Registration, AFileThatIsNoneIsToldApart)
{
    ComPtr<IEmailCheck> object;
    CLSID clsid{};
    write(std::string("[{5B0F6E0C-1D3F-4C52-9A57-0C7B2F0A9D01}]\0garbage", 47));
    EXPECT_EQ(create(sampleClass, object), REGDB_E_READREGDB);
    EXPECT_EQ(CLSIDFromProgID(u"x", &clsid), REGDB_E_READREGDB);
    const std::string before = contents();
    EXPECT_EQ(registerSample(), REGDB_E_READREGDB);
    EXPECT_EQ(contents(), before) << "what cannot be read is not overwritten";

    fs::remove(file);
    fs::create_directory(file);
    EXPECT_EQ(create(sampleClass, object), REGDB_E_READREGDB);
    EXPECT_EQ(registerSample(), REGDB_E_READREGDB);
}

TEST_F(Registration, AnEntryWithoutALibraryIsToldApart)
{
    write("[{5B0F6E0C-1D3F-4C52-9A57-0C7B2F0A9D01}]\nProgID=X.Y\n");
    ComPtr<IEmailCheck> object;
    EXPECT_EQ(create(sampleClass, object), REGDB_E_INVALIDVALUE);
    write("[{5B0F6E0C-1D3F-4C52-9A57-0C7B2F0A9D01}]\nLibrary=relative.so\n");
    EXPECT_EQ(create(sampleClass, object), REGDB_E_INVALIDVALUE);
}

TEST_F(Registration, FilesFromOtherSystemsAreRead)
{
    write("[{5b0f6e0c-1d3f-4c52-9a57-0c7b2f0a9d01}]\r\n ProgID = A.B \r\nLibrary = " ZUL_SAMPLE_COMPONENT
          "\r\n");
    ComPtr<IEmailCheck> object;
    EXPECT_EQ(create(sampleClass, object), S_OK);
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(u"a.b", &clsid), S_OK);
}

TEST_F(Registration, AFolderThatCannotBeMadeIsAFailedWrite)
{
    fs::create_directories(folder);
    std::ofstream(folder / "nested") << "a file where the folder should be";
    EXPECT_EQ(registerSample(), REGDB_E_WRITEREGDB);
    EXPECT_FALSE(zul::takeErrorDetails(REGDB_E_WRITEREGDB).description.empty());
    fs::remove(folder / "nested");
}

TEST_F(Registration, WhoMayReadTheFileStays)
{
    const auto permissions = [&] { return fs::status(file).permissions(); };
    write("; by hand\n");
    for (const auto given : {fs::perms(0640), fs::perms(0600), fs::perms(0644)}) {
        fs::permissions(file, given);
        ASSERT_EQ(registerSample(), S_OK);
        EXPECT_EQ(permissions(), given);
    }
    fs::remove(file);
    ASSERT_EQ(registerSample(), S_OK);
    EXPECT_EQ(permissions(), fs::perms(0644)) << "a file that was named may be meant for others";
}

TEST_F(Registration, WritesThroughALink)
{
    fs::create_directories(fs::path(file).parent_path());
    const fs::path real = folder / "real.ini";
    std::ofstream(real) << "; real\n";
    fs::create_symlink(real, file);
    ASSERT_EQ(registerSample(), S_OK);
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_EQ(contents().substr(0, 7), "; real\n");
}

TEST_F(Registration, SeveralWritersLoseNothing)
{
    std::vector<std::thread> writers;
    for (unsigned i = 0; i < 8; ++i) {
        writers.emplace_back([i] {
            const std::u16string progId = u"Zul.Class" + std::u16string(1, static_cast<char16_t>(u'0' + i));
            EXPECT_EQ(ZulRegisterClass({i, 0, 0, {}}, progId.c_str(), nullptr, "/x.so"), S_OK);
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    for (unsigned i = 0; i < 8; ++i) {
        const std::u16string progId = u"Zul.Class" + std::u16string(1, static_cast<char16_t>(u'0' + i));
        CLSID clsid{};
        EXPECT_EQ(CLSIDFromProgID(progId.c_str(), &clsid), S_OK);
        EXPECT_EQ(clsid.Data1, i);
    }
}

TEST_F(Registration, LibrariesThatAreNoComponentsAreToldApart)
{
    ComPtr<IEmailCheck> object;
    ASSERT_EQ(registerSample(sampleClass, "/nonexistent/libZul.so"), S_OK);
    EXPECT_EQ(create(sampleClass, object), CO_E_DLLNOTFOUND);
    EXPECT_NE(zul::takeErrorDetails(CO_E_DLLNOTFOUND).description.find(u"/nonexistent/libZul.so"),
              std::u16string::npos);
    ASSERT_EQ(registerSample(sampleClass, ZUL_SAMPLE_LIBRARY), S_OK);
    EXPECT_EQ(create(sampleClass, object), CO_E_ERRORINDLL);
    ASSERT_EQ(ZulRegisterClass(strangeClass, nullptr, nullptr, ZUL_SAMPLE_COMPONENT), S_OK);
    EXPECT_EQ(create(strangeClass, object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_FALSE(object);
}

TEST_F(Registration, CallsAreChecked)
{
    ASSERT_EQ(registerSample(), S_OK);
    void* raw = this;
    EXPECT_EQ(CoCreateInstance(sampleClass, nullptr, CLSCTX_LOCAL_SERVER, IID_IUnknown, &raw),
              REGDB_E_CLASSNOTREG);
    EXPECT_EQ(raw, nullptr);
    EXPECT_EQ(CoCreateInstance(sampleClass, nullptr, CLSCTX_ALL, IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(CoGetClassObject(sampleClass, CLSCTX_ALL, nullptr, IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(CoGetClassObject(sampleClass, CLSCTX_ALL, this, IID_IUnknown, &raw), E_INVALIDARG);
    EXPECT_EQ(CoCreateInstance(sampleClass, nullptr, CLSCTX_ALL, zul::iidOf<IIdGenerator>(), &raw),
              E_NOINTERFACE);
    ComPtr<IEmailCheck> object;
    ASSERT_EQ(create(sampleClass, object), S_OK);
    EXPECT_EQ(CoCreateInstance(sampleClass, object.get(), CLSCTX_ALL, IID_IUnknown, &raw),
              CLASS_E_NOAGGREGATION);
}

TEST_F(Registration, ObjectsNeedAnInitializedThread)
{
    ASSERT_EQ(registerSample(), S_OK);
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_FALSE) << "already";
    CoUninitialize();
    std::thread([] {
        ComPtr<IEmailCheck> object;
        EXPECT_EQ(create(sampleClass, object), CO_E_NOTINITIALIZED);
        CoUninitialize();
        EXPECT_EQ(CoInitialize(nullptr), S_OK);
        EXPECT_EQ(create(sampleClass, object), S_OK);
        object.reset();
        CoUninitialize();
    }).join();
    EXPECT_EQ(CoInitialize(this), E_INVALIDARG);
}

TEST_F(Registration, ALibraryIsUnloadedWhenNothingOfItLives)
{
    ASSERT_EQ(registerSample(), S_OK);
    ComPtr<IEmailCheck> object;
    ASSERT_EQ(create(sampleClass, object), S_OK);
    CoFreeUnusedLibraries();
    EXPECT_TRUE(isLoaded(ZUL_SAMPLE_COMPONENT)) << "an object lives";
    object.reset();

    ComPtr<IClassFactory> factory;
    ASSERT_EQ(
        CoGetClassObject(sampleClass, CLSCTX_ALL, nullptr, zul::iidOf<IClassFactory>(), factory.putVoid()),
        S_OK);
    EXPECT_EQ(factory->LockServer(1), S_OK);
    ComPtr<IClassFactory> second = factory;
    factory.reset();
    CoFreeUnusedLibraries();
    EXPECT_TRUE(isLoaded(ZUL_SAMPLE_COMPONENT)) << "the factory lives";
    EXPECT_EQ(second->LockServer(0), S_OK);
    second.reset();
    CoFreeUnusedLibraries();
    EXPECT_FALSE(isLoaded(ZUL_SAMPLE_COMPONENT));
    EXPECT_EQ(create(sampleClass, object), S_OK) << "and loaded again";
}

TEST(RegistrationPath, IsTheUsersOwn)
{
    const fs::path folder = fs::temp_directory_path() / ("zul-home-" + std::to_string(::getpid()));
    const ScopedEnvironment none("ZUL_AUTOMATION_REGISTRY", nullptr);
    const ScopedEnvironment home("HOME", (folder / "home").c_str());
    {
        const ScopedEnvironment data("XDG_DATA_HOME", (folder / "data").c_str());
        EXPECT_EQ(ZulRegisterClass(sampleClass, nullptr, nullptr, "/x.so"), S_OK);
        EXPECT_TRUE(fs::exists(folder / "data/Zul/automation-classes.ini"));
    }
    const ScopedEnvironment data("XDG_DATA_HOME", nullptr);
    EXPECT_EQ(ZulRegisterClass(sampleClass, nullptr, nullptr, "/x.so"), S_OK);
    const fs::path file = folder / "home/.local/share/Zul/automation-classes.ini";
    EXPECT_TRUE(fs::exists(file));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0600));
    fs::remove_all(folder);
}
