// A registration file of a test's own, and the sample component in it.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <dlfcn.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <oleauto.h>
#include <zulreg.h>

#include <Zul_Host.h>

#include "automation/ComPtr.h"
#include "tests/automation/SampleComponent.h"
#include "tests/automation/ScopedEnvironment.h"

class RegistryTest : public testing::Test
{
protected:
    RegistryTest()
        : folder(std::filesystem::temp_directory_path() / ("zul-registration-" + std::to_string(::getpid())))
        , file((folder / "nested" / "classes.ini").string())
        , environment("ZUL_AUTOMATION_REGISTRY", file.c_str())
    {
        std::filesystem::remove_all(folder);
        EXPECT_EQ(CoInitialize(nullptr), S_OK);
    }
    ~RegistryTest() override
    {
        CoFreeUnusedLibraries();
        CoUninitialize();
        SetErrorInfo(0, nullptr);
        std::error_code ignored;
        std::filesystem::permissions(folder / "nested", std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(folder, ignored);
    }

    std::string contents() const
    {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    void write(const std::string& text) const
    {
        std::filesystem::create_directories(std::filesystem::path(file).parent_path());
        std::ofstream(file, std::ios::binary) << text;
    }
    static HRESULT registerSample(const CLSID& clsid = sampleClass,
                                  const char* library = ZUL_SAMPLE_COMPONENT)
    {
        return ZulRegisterClass(clsid, u"Zul_Sample.EmailCheck", u"Un esempio", library);
    }
    static HRESULT create(const CLSID& clsid, zul::ComPtr<IEmailCheck>& object)
    {
        return CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, zul::iidOf<IEmailCheck>(),
                                object.putVoid());
    }
    static bool isLoaded(const char* library)
    {
        void* const handle = ::dlopen(library, RTLD_NOW | RTLD_NOLOAD);
        if (handle != nullptr) {
            ::dlclose(handle);
        }
        return handle != nullptr;
    }

    std::filesystem::path folder;
    std::string file;
    ScopedEnvironment environment;
};
