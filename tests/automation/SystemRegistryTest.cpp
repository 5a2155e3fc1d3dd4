// Classes for all users, beside the user's own.
#include "base/Utf8.h"
#include "tests/automation/RegistryTest.h"

namespace {

class SystemRegistryTest : public RegistryTest
{
protected:
    SystemRegistryTest()
        : systemFolder(folder / "system à")
        , systemEnvironment("ZUL_AUTOMATION_SYSTEM_REGISTRY", systemFolder.c_str())
    {
        std::filesystem::create_directories(systemFolder);
    }

    void writeForAll(const char* name, const std::string& text) const
    {
        std::ofstream(systemFolder / name, std::ios::binary) << text;
    }
    static std::string entry(const std::string& progId, const std::string& library)
    {
        OLECHAR text[39];
        StringFromGUID2(sampleClass, text, 39);
        return "[" + zul::utf8FromUtf16(text) + "]\nProgID=" + progId + "\nLibrary=" + library + "\n";
    }
    static std::u16string progIdOfSample()
    {
        LPOLESTR text = nullptr;
        if (FAILED(ProgIDFromCLSID(sampleClass, &text))) {
            return {};
        }
        std::u16string result = text;
        CoTaskMemFree(text);
        return result;
    }

    const std::filesystem::path systemFolder;
    const ScopedEnvironment systemEnvironment;
};

TEST_F(SystemRegistryTest, AClassForAllUsersIsFound)
{
    zul::ComPtr<IEmailCheck> object;
    EXPECT_EQ(create(sampleClass, object), REGDB_E_CLASSNOTREG);
    writeForAll("sample.ini", entry("Zul_Sample.EmailCheck", ZUL_SAMPLE_COMPONENT));
    EXPECT_EQ(create(sampleClass, object), S_OK);
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(u"zul_sample.emailcheck", &clsid), S_OK);
    EXPECT_EQ(clsid, sampleClass);
    EXPECT_FALSE(std::filesystem::exists(file)) << "reading makes no file of the user's";
}

TEST_F(SystemRegistryTest, TheUsersOwnEntryComesFirstAndLeavesTheSystems)
{
    writeForAll("sample.ini", entry("Zul_Sample.Sistema", "/nowhere/libnone.so"));
    EXPECT_EQ(progIdOfSample(), u"Zul_Sample.Sistema");
    EXPECT_EQ(registerSample(), S_OK);
    EXPECT_EQ(progIdOfSample(), u"Zul_Sample.EmailCheck");
    zul::ComPtr<IEmailCheck> object;
    EXPECT_EQ(create(sampleClass, object), S_OK);
    object.reset();
    EXPECT_EQ(ZulUnregisterClass(sampleClass), S_OK);
    EXPECT_EQ(progIdOfSample(), u"Zul_Sample.Sistema");
}

TEST_F(SystemRegistryTest, FilesAreReadInTheOrderOfTheirNamesAndOtherNamesNever)
{
    writeForAll("20.ini", entry("Zul_Sample.Venti", ZUL_SAMPLE_COMPONENT));
    writeForAll("10.ini", entry("Zul_Sample.Dieci", ZUL_SAMPLE_COMPONENT));
    writeForAll("00.ini.dpkg-old", entry("Zul_Sample.Vecchio", ZUL_SAMPLE_COMPONENT));
    EXPECT_EQ(progIdOfSample(), u"Zul_Sample.Dieci");
}

TEST_F(SystemRegistryTest, WhatCannotBeReadTakesNothingFromTheOthers)
{
    writeForAll("00.ini", std::string("[\0]", 3));
    std::filesystem::create_directories(systemFolder / "05.ini");
    writeForAll("10.ini", entry("Zul_Sample.EmailCheck", ZUL_SAMPLE_COMPONENT));
    zul::ComPtr<IEmailCheck> object;
    EXPECT_EQ(create(sampleClass, object), S_OK);
}

} // namespace
