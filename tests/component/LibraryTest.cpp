// The component's library as a host without Qt loads it.
#include "automation/ComPtr.h"
#include "tests/support/FakeHost.h"
#include "tests/support/LateBound.h"

#include <Zul_MessageBuilder.h>

#include <cstdlib>
#include <dlfcn.h>
#include <elf.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <sstream>

namespace zul {
namespace {

using namespace test;

using GetClassObject = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);
using Plain = HRESULT(STDMETHODCALLTYPE*)();

class LibraryTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite() { library = ::dlopen(ZUL_COMPONENT_LIBRARY, RTLD_NOW | RTLD_LOCAL); }

    void SetUp() override { ASSERT_NE(library, nullptr) << ::dlerror(); }

    template <class Function>
    static Function function(const char* name)
    {
        return reinterpret_cast<Function>(::dlsym(library, name));
    }

    static HRESULT getClassObject(REFCLSID clsid, REFIID iid, void** object)
    {
        return function<GetClassObject>("DllGetClassObject")(clsid, iid, object);
    }
    static HRESULT canUnloadNow() { return function<Plain>("DllCanUnloadNow")(); }

    static ComPtr<IClassFactory> factory()
    {
        ComPtr<IClassFactory> made;
        EXPECT_EQ(getClassObject(CLSID_SmsCreator, iidOf<IClassFactory>(), made.putVoid()), S_OK);
        return made;
    }

    static ComPtr<_SmsCreator> creator()
    {
        ComPtr<_SmsCreator> made;
        EXPECT_EQ(factory()->CreateInstance(nullptr, iidOf<_SmsCreator>(), made.putVoid()), S_OK);
        return made;
    }

    static void* library;
};

void* LibraryTest::library = nullptr;

/// The names that a shared library defines for others, from its dynamic symbol table.
std::set<std::string> exportedNames(const char* path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const auto* header = reinterpret_cast<const Elf64_Ehdr*>(bytes.data());
    const auto* sections = reinterpret_cast<const Elf64_Shdr*>(bytes.data() + header->e_shoff);
    std::set<std::string> names;
    for (int i = 0; i < header->e_shnum; ++i) {
        if (sections[i].sh_type != SHT_DYNSYM) {
            continue;
        }
        const char* texts = bytes.data() + sections[sections[i].sh_link].sh_offset;
        const auto* symbols = reinterpret_cast<const Elf64_Sym*>(bytes.data() + sections[i].sh_offset);
        for (std::size_t s = 0; s < sections[i].sh_size / sizeof(Elf64_Sym); ++s) {
            const bool isDefined = symbols[s].st_shndx != SHN_UNDEF;
            if (isDefined && ELF64_ST_BIND(symbols[s].st_info) != STB_LOCAL) {
                names.insert(texts + symbols[s].st_name);
            }
        }
    }
    return names;
}

TEST_F(LibraryTest, ExportsFourNamesAndNothingElse)
{
    EXPECT_EQ(exportedNames(ZUL_COMPONENT_LIBRARY),
              (std::set<std::string>{"DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer",
                                     "DllUnregisterServer"}));
}

TEST_F(LibraryTest, HandsOutTheFactoryOfItsOneClassOnly)
{
    void* object = this;
    EXPECT_EQ(getClassObject(iidOf<IUnknown>(), iidOf<IClassFactory>(), &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    object = this;
    EXPECT_EQ(getClassObject(CLSID_SmsCreator, iidOf<IRecordset>(), &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(getClassObject(CLSID_SmsCreator, iidOf<IClassFactory>(), nullptr), E_POINTER);
    EXPECT_EQ(factory()->CreateInstance(factory().get(), iidOf<IUnknown>(), &object), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(factory()->CreateInstance(nullptr, iidOf<IRecordset>(), &object), E_NOINTERFACE);
    EXPECT_EQ(factory()->CreateInstance(nullptr, iidOf<IUnknown>(), nullptr), E_POINTER);
}

TEST_F(LibraryTest, MayGoWhenNoObjectAndNoLockIsLeft)
{
    EXPECT_EQ(canUnloadNow(), S_OK);
    {
        const auto made = factory();
        EXPECT_EQ(canUnloadNow(), S_FALSE);
        made->LockServer(1);
    }
    EXPECT_EQ(canUnloadNow(), S_FALSE) << "locked";
    factory()->LockServer(0);
    EXPECT_EQ(canUnloadNow(), S_OK);
    ComPtr<IConnectionPoint> point;
    {
        const auto object = creator();
        EXPECT_EQ(canUnloadNow(), S_FALSE);
        ASSERT_EQ(object.as<IConnectionPointContainer>()->FindConnectionPoint(DIID___SmsCreator, point.put()),
                  S_OK);
    }
    EXPECT_EQ(canUnloadNow(), S_FALSE) << "a connection point outlives its object";
    point.reset();
    EXPECT_EQ(canUnloadNow(), S_OK);
}

TEST_F(LibraryTest, AnObjectIsUsedThroughItsTableAndLateBound)
{
    const auto object = creator();
    EXPECT_EQ(object->put_idUtente(7), S_OK);
    EXPECT_EQ(show(invoke(object.get(), idOf(object.get(), "idutente"), DISPATCH_PROPERTYGET, {}).value),
              "7");
    EXPECT_EQ(show(call(object.get(), "isOkPressed").value), "false");
    EXPECT_EQ(show(call(object.get(), "GetFormChoice").value), "''");
}

TEST_F(LibraryTest, RegistersItselfForTheUser)
{
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / "zul-library-test-classes.ini";
    std::filesystem::remove(file);
    ASSERT_EQ(::setenv("ZUL_AUTOMATION_REGISTRY", file.c_str(), 1), 0);
    EXPECT_EQ(function<Plain>("DllRegisterServer")(), S_OK);
    std::stringstream written;
    written << std::ifstream(file).rdbuf();
    EXPECT_NE(written.str().find("{B7A0C731-6521-48C8-8DA9-B7465A7FF35B}"), std::string::npos)
        << written.str();
    EXPECT_NE(written.str().find("ProgID=Zul_MessageBuilder.SmsCreator"), std::string::npos);
    EXPECT_NE(written.str().find(std::filesystem::canonical(ZUL_COMPONENT_LIBRARY).string()),
              std::string::npos);
    EXPECT_EQ(function<Plain>("DllUnregisterServer")(), S_OK);
    std::stringstream left;
    left << std::ifstream(file).rdbuf();
    EXPECT_EQ(left.str().find("B7A0C731"), std::string::npos);
    std::filesystem::remove(file);
}

// Last: a window stays with the library until the process ends.
TEST_F(LibraryTest, ZAfterAWindowWasMadeItStays)
{
    FakeHost host;
    EXPECT_EQ(canUnloadNow(), S_OK);
    {
        const auto object = creator();
        Bstr choice;
        // Loads the options dialog, in a host that has no Qt of its own.
        EXPECT_EQ(object->GetOptionsFormChoice(choice.put()), S_OK);
        EXPECT_TRUE(choice.isEmpty());
        VARIANT result{};
        EXPECT_EQ(object->DiscardOptionsForm(&result), S_OK);
    }
    EXPECT_EQ(canUnloadNow(), S_FALSE);
}

} // namespace
} // namespace zul
