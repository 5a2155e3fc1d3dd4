// The component's folder, for a host that loads the library by a relative name and goes elsewhere.
#include "automation/Bstr.h"
#include "automation/ComPtr.h"
#include "tests/support/TemporaryFolder.h"

#include <Zul_MessageBuilder.h>

#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace zul {
namespace {

using GetClassObject = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);

TEST(ComponentFolderTest, IsWhereTheLibraryWasLoadedFromWhateverItsName)
{
    // A name is a name: its "\" and ".." lead nowhere.
    const host::TemporaryFolder outer;
    const std::filesystem::path folder = std::filesystem::path(outer.path()) / "in" / "a\\..\\..\\b à";
    std::filesystem::create_directories(folder);
    std::filesystem::copy_file(ZUL_COMPONENT_LIBRARY, folder / "component.so");

    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder);
    void* const library = ::dlopen("./component.so", RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << ::dlerror();
    std::filesystem::current_path("/");

    const auto getClassObject = reinterpret_cast<GetClassObject>(::dlsym(library, "DllGetClassObject"));
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(getClassObject(CLSID_SmsCreator, iidOf<IClassFactory>(), factory.putVoid()), S_OK);
    ComPtr<_SmsCreator> creator;
    ASSERT_EQ(factory->CreateInstance(nullptr, iidOf<_SmsCreator>(), creator.putVoid()), S_OK);
    // Without a connection the options dialog cannot read its settings, which is in the log.
    Bstr choice;
    ASSERT_EQ(creator->GetOptionsFormChoice(choice.put()), S_OK);
    VARIANT result{};
    creator->DiscardOptionsForm(&result);
    std::filesystem::current_path(before);

    std::ifstream log(folder / "Zul_Messagebuilder.log");
    ASSERT_TRUE(log) << "the log stands beside the library";
    const std::string text{std::istreambuf_iterator<char>(log), {}};
    EXPECT_NE(text.find("Form_Load"), std::string::npos) << text;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(outer.path())) {
        EXPECT_TRUE(entry.path() == folder.parent_path() || entry.path() == folder ||
                    entry.path().parent_path() == folder)
            << entry.path();
    }
}

} // namespace
} // namespace zul
