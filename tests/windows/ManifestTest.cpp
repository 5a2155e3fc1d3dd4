// The component without registration: a context made of its manifest.
#include <gtest/gtest.h>

#include "tests/windows/Component.h"

using namespace zul;
using namespace zul::windows;

TEST(Manifest, MakesTheClassKnownWithoutRegistration)
{
    const Apartment apartment;
    CLSID clsid{};
    ASSERT_NE(CLSIDFromProgID(L"Zul_MessageBuilder.SmsCreator", &clsid), S_OK) << "it is registered";

    const std::wstring library = componentFile();
    const std::wstring manifest = library.substr(0, library.rfind(L'.')) + L".manifest";
    ACTCTXW description{};
    description.cbSize = sizeof description;
    description.lpSource = manifest.c_str();
    const HANDLE context = CreateActCtxW(&description);
    ASSERT_NE(context, INVALID_HANDLE_VALUE) << GetLastError();
    ULONG_PTR cookie = 0;
    ASSERT_TRUE(ActivateActCtx(context, &cookie));
    EXPECT_EQ(CLSIDFromProgID(L"Zul_MessageBuilder.SmsCreator", &clsid), S_OK);
    // The name leads to an identifier that the context has made; both make the object.
    ComPtr<_SmsCreator> creator;
    EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iidOf<_SmsCreator>(), creator.putVoid()),
              S_OK);
    creator = ComPtr<_SmsCreator>();
    EXPECT_EQ(CoCreateInstance(CLSID_SmsCreator, nullptr, CLSCTX_INPROC_SERVER, iidOf<_SmsCreator>(),
                               creator.putVoid()),
              S_OK);
    LONG user = -1;
    EXPECT_TRUE(creator && creator->get_idUtente(&user) == S_OK);
    EXPECT_EQ(user, 0);
    UINT count = 0;
    EXPECT_TRUE(creator && creator->GetTypeInfoCount(&count) == S_OK);
    EXPECT_EQ(count, 1u);
    creator = ComPtr<_SmsCreator>();
    DeactivateActCtx(0, cookie);
    ReleaseActCtx(context);
}
