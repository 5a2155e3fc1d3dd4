// What the component writes into the registry, and that it takes all of it away.
#include <gtest/gtest.h>

#include <vector>

#include "automation/ClassesKey.h"
#include "automation/Uuid.h"
#include "tests/windows/Component.h"

using namespace zul::windows;

namespace {

constexpr const wchar_t* classes = L"Software\\Classes";

bool contains(const std::string& text, const std::string& line)
{
    return text.find(line) != std::string::npos;
}

std::string difference(const std::string& before, const std::string& after)
{
    return before == after ? "" : after;
}

} // namespace

TEST(Registration, ForOneUserIsCompleteAndLeavesNothing)
{
    const std::string machine = dump(HKEY_LOCAL_MACHINE, classes);
    const std::string before = dump(HKEY_CURRENT_USER, classes);
    ASSERT_EQ(install(true, L"user"), S_OK);
    const std::string registered = dump(HKEY_CURRENT_USER, classes);
    const std::string key = "Software\\Classes\\CLSID\\{B7A0C731-6521-48C8-8DA9-B7465A7FF35B}";
    EXPECT_TRUE(contains(registered, key + "\\InprocServer32 | ThreadingModel = Apartment\n"));
    EXPECT_TRUE(contains(registered, key + "\\ProgID |  = Zul_MessageBuilder.SmsCreator.1\n"));
    EXPECT_TRUE(
        contains(registered, key + "\\VersionIndependentProgID |  = Zul_MessageBuilder.SmsCreator\n"));
    EXPECT_TRUE(contains(registered, key + "\\TypeLib |  = {B3AEBC3A-1B5D-49DD-9826-0C82602E8BE8}\n"));
    EXPECT_TRUE(contains(registered, "Software\\Classes\\Zul_MessageBuilder.SmsCreator\\CurVer |  = "
                                     "Zul_MessageBuilder.SmsCreator.1\n"));
    EXPECT_TRUE(contains(registered, "Software\\Classes\\Interface\\{6804283C-F80E-4C49-9478-A7AC4BC7D2CE}"
                                     "\\ProxyStubClsid32 |  = {00020424-0000-0000-C000-000000000046}\n"));
    EXPECT_TRUE(contains(registered, "\\TypeLib\\{B3AEBC3A-1B5D-49DD-9826-0C82602E8BE8}\\1.0\\409\\win"));
    EXPECT_EQ(dump(HKEY_LOCAL_MACHINE, classes), machine) << "the machine's part needs an administrator";

    EXPECT_EQ(install(true, L"/i:USER"), S_OK) << "again, and in any case of letters";
    EXPECT_EQ(difference(registered, dump(HKEY_CURRENT_USER, classes)), "");
    EXPECT_EQ(install(false, L"user"), S_OK);
    EXPECT_EQ(difference(before, dump(HKEY_CURRENT_USER, classes)), "");
    EXPECT_EQ(install(false, L"user"), S_OK) << "there was nothing any more";
}

TEST(Registration, AUsersOwnEmptyKeysGoAndOtherClassesStay)
{
    zul::ClassesKey own(zul::RegistryScope::User);
    own.set(L"CLSID\\{00000000-0000-0000-0000-00000000BEEF}", L"", L"another");
    const std::string before = dump(HKEY_CURRENT_USER, classes);
    ASSERT_EQ(install(true, L"user"), S_OK);
    EXPECT_EQ(install(false, L"user"), S_OK);
    EXPECT_EQ(difference(before, dump(HKEY_CURRENT_USER, classes)), "");
    own.removeTree(L"CLSID\\{00000000-0000-0000-0000-00000000BEEF}");
    EXPECT_EQ(install(false, L"user"), S_OK);
    EXPECT_FALSE(contains(dump(HKEY_CURRENT_USER, classes), "Software\\Classes\\CLSID\n"));
    EXPECT_EQ(own.result(), S_OK);
}

TEST(Registration, ForAllUsersIsCompleteAndLeavesNothing)
{
    const std::string user = dump(HKEY_CURRENT_USER, classes);
    const std::string before = dump(HKEY_LOCAL_MACHINE, classes);
    ASSERT_EQ(registerForAll(true), S_OK);
    const std::string registered = dump(HKEY_LOCAL_MACHINE, classes);
    EXPECT_TRUE(contains(registered, "CLSID\\{B7A0C731-6521-48C8-8DA9-B7465A7FF35B}\\InprocServer32"));
    EXPECT_EQ(dump(HKEY_CURRENT_USER, classes), user);
    EXPECT_EQ(registerForAll(false), S_OK);
    EXPECT_EQ(difference(before, dump(HKEY_LOCAL_MACHINE, classes)), "");
}

TEST(Registration, LeavesAnInterfaceOfAnotherMakerAlone)
{
    // The collection's interface belongs to an automation run-time library that may be there already.
    const std::wstring key =
        std::wstring(classes) + L"\\Interface\\{A4C46780-499F-101B-BB78-00AA00383CBB}\\TypeLib";
    const std::wstring other = L"{000204EF-0000-0000-C000-000000000046}";
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), nullptr, REG_SZ, other.c_str(),
                              static_cast<DWORD>((other.size() + 1) * sizeof(wchar_t))),
              ERROR_SUCCESS);
    const std::string before = dump(HKEY_CURRENT_USER, classes);
    ASSERT_EQ(install(true, L"user"), S_OK);
    EXPECT_TRUE(contains(
        dump(HKEY_CURRENT_USER, classes),
        "{A4C46780-499F-101B-BB78-00AA00383CBB}\\TypeLib |  = {000204EF-0000-0000-C000-000000000046}\n"));
    EXPECT_EQ(install(false, L"user"), S_OK);
    EXPECT_EQ(difference(before, dump(HKEY_CURRENT_USER, classes)), "");
    zul::ClassesKey own(zul::RegistryScope::User);
    own.removeTree(L"Interface\\{A4C46780-499F-101B-BB78-00AA00383CBB}");
    own.removeIfEmpty(L"Interface");
    own.removeIfEmpty(L"");
}

TEST(Registration, EveryTypeLibraryLoadsByItsId)
{
    const Apartment apartment;
    const Registered registered;
    for (const wchar_t* const id :
         {L"{B3AEBC3A-1B5D-49DD-9826-0C82602E8BE8}", L"{3C8B6C61-7C1B-4F0B-9A0B-5C1D2A6E4F10}",
          L"{3C8B6C61-7C1B-4F0B-9A0B-5C1D2A6E4F30}", L"{3C8B6C61-7C1B-4F0B-9A0B-5C1D2A6E4F40}"}) {
        GUID guid{};
        ASSERT_EQ(IIDFromString(id, &guid), S_OK);
        zul::ComPtr<ITypeLib> library;
        EXPECT_EQ(LoadRegTypeLib(guid, 1, 0, 0x0409, library.put()), S_OK) << guid.Data4[7];
    }
}

TEST(Registration, TheFileSaysItsVersion)
{
    const std::wstring file = componentFile();
    std::vector<char> data(GetFileVersionInfoSizeW(file.c_str(), nullptr));
    ASSERT_FALSE(data.empty());
    ASSERT_TRUE(GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(data.size()), data.data()));
    void* found = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(data.data(), L"\\", &found, &length));
    const auto& version = *static_cast<const VS_FIXEDFILEINFO*>(found);
    EXPECT_EQ(std::to_string(HIWORD(version.dwFileVersionMS)) + "." +
                  std::to_string(LOWORD(version.dwFileVersionMS)) + "." +
                  std::to_string(HIWORD(version.dwFileVersionLS)),
              ZUL_VERSION);
    ASSERT_TRUE(VerQueryValueW(data.data(), L"\\StringFileInfo\\041004B0\\ProductVersion", &found, &length));
    const std::wstring wanted(ZUL_VERSION, ZUL_VERSION + sizeof ZUL_VERSION - 1);
    EXPECT_EQ(std::wstring(static_cast<const wchar_t*>(found)), wanted);
}
