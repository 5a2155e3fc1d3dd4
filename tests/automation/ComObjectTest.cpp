#include <gtest/gtest.h>

#include <functional>

#include <servprov.h>

#include <Zul_Host.h>

#include "automation/ClassFactory.h"
#include "automation/ComObject.h"
#include "automation/Dispatch.h"

using zul::ComPtr;

namespace {

class Service final : public zul::ComObject<zul::Dispatching<IChangeTracker>, IServiceProvider>
{
public:
    std::function<void()> onDestroy;
    ~Service() override
    {
        if (onDestroy) {
            onDestroy();
        }
    }
    HRESULT STDMETHODCALLTYPE RowAdded(BSTR, LONG, _SqlConnection*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE QueryService(REFGUID, REFIID iid, void** object) override
    {
        return QueryInterface(iid, object);
    }

private:
    const zul::DispTable<IChangeTracker>& dispTable() const override
    {
        static const zul::DispTable table{
            zul::dispatch::method("RowAdded", 1, &IChangeTracker::RowAdded, {"table", "id", "connection"})};
        return table;
    }
};

class Unmakeable final : public zul::ComObject<IUnknown>
{
public:
    Unmakeable() { throw std::runtime_error("no"); }
};

} // namespace

TEST(ComObject, AnswersItsInterfacesAndNoOthers)
{
    const auto service = zul::makeCom<Service>();
    EXPECT_TRUE(service.as<IUnknown>());
    EXPECT_TRUE(service.as<IDispatch>());
    EXPECT_TRUE(service.as<IChangeTracker>());
    EXPECT_TRUE(service.as<IServiceProvider>());
    EXPECT_FALSE(service.as<IEmailCheck>());

    void* object = &object;
    EXPECT_EQ(service->QueryInterface(zul::iidOf<IEmailCheck>(), &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr) << "cleared";
    EXPECT_EQ(service->QueryInterface(zul::iidOf<IUnknown>(), nullptr), E_POINTER);
}

TEST(ComObject, HasOneIdentity)
{
    const auto service = zul::makeCom<Service>();
    EXPECT_TRUE(service.as<IServiceProvider>().as<IUnknown>() == service.as<IDispatch>().as<IUnknown>());
    EXPECT_TRUE(service.as<IServiceProvider>().as<IChangeTracker>() == service.as<IChangeTracker>());
}

TEST(ComObject, CountsInItsModuleWhileItLives)
{
    const long before = zul::moduleReferences();
    auto service = zul::makeCom<Service>();
    EXPECT_EQ(zul::moduleReferences(), before + 1);
    service.reset();
    EXPECT_EQ(zul::moduleReferences(), before);
}

TEST(ComObject, MayBeHandedOutByItsDestructor)
{
    int destroyed = 0;
    auto service = zul::makeCom<Service>();
    Service* const raw = service.get();
    service->onDestroy = [&] {
        ++destroyed;
        const ComPtr<IUnknown> once(static_cast<IChangeTracker*>(raw));
    };
    service.reset();
    EXPECT_EQ(destroyed, 1);
}

TEST(ComPtr, PutClearsFirst)
{
    int destroyed = 0;
    auto service = zul::makeCom<Service>();
    service->onDestroy = [&] { ++destroyed; };
    EXPECT_EQ(*service.put(), nullptr);
    EXPECT_EQ(destroyed, 1);
}

TEST(ComPtr, CopyToHandsOutAReference)
{
    const auto service = zul::makeCom<Service>();
    IUnknown* out = nullptr;
    EXPECT_EQ(service.as<IUnknown>().copyTo(&out), S_OK);
    EXPECT_EQ(out->Release(), 1u);
    EXPECT_EQ(service.as<IUnknown>().copyTo(nullptr), E_POINTER);
    EXPECT_EQ(ComPtr<IUnknown>().copyTo(&out), S_OK);
    EXPECT_EQ(out, nullptr);
}

TEST(ClassFactory, MakesObjectsButNoAggregates)
{
    const long before = zul::moduleReferences();
    {
        ComPtr<IClassFactory> factory;
        ASSERT_EQ(zul::getClassObject<Service>(GUID_NULL, GUID_NULL, zul::iidOf<IClassFactory>(),
                                               factory.putVoid()),
                  S_OK);
        ComPtr<IChangeTracker> object;
        EXPECT_EQ(factory->CreateInstance(nullptr, zul::iidOf<IChangeTracker>(), object.putVoid()), S_OK);
        EXPECT_TRUE(object);

        void* raw = &raw;
        EXPECT_EQ(factory->CreateInstance(object.get(), zul::iidOf<IUnknown>(), &raw), CLASS_E_NOAGGREGATION);
        EXPECT_EQ(raw, nullptr);
        raw = &raw;
        EXPECT_EQ(factory->CreateInstance(nullptr, zul::iidOf<IEmailCheck>(), &raw), E_NOINTERFACE);
        EXPECT_EQ(raw, nullptr);
        EXPECT_EQ(factory->CreateInstance(nullptr, zul::iidOf<IUnknown>(), nullptr), E_POINTER);

        EXPECT_EQ(factory->LockServer(1), S_OK);
        EXPECT_EQ(zul::moduleReferences(), before + 3);
        EXPECT_EQ(factory->LockServer(0), S_OK);
    }
    EXPECT_EQ(zul::moduleReferences(), before);
}

TEST(ClassFactory, KnowsOneClass)
{
    void* raw = &raw;
    EXPECT_EQ(
        zul::getClassObject<Service>(zul::iidOf<IUnknown>(), GUID_NULL, zul::iidOf<IClassFactory>(), &raw),
        CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(raw, nullptr);
    EXPECT_EQ(zul::getClassObject<Service>(GUID_NULL, GUID_NULL, zul::iidOf<IEmailCheck>(), &raw),
              E_NOINTERFACE);
    EXPECT_EQ(zul::getClassObject<Service>(GUID_NULL, GUID_NULL, zul::iidOf<IClassFactory>(), nullptr),
              E_POINTER);
}

TEST(ClassFactory, AConstructorThatThrowsIsAFailedCall)
{
    const long before = zul::moduleReferences();
    void* raw = nullptr;
    EXPECT_EQ(
        zul::makeCom<zul::ClassFactory<Unmakeable>>()->CreateInstance(nullptr, zul::iidOf<IUnknown>(), &raw),
        E_UNEXPECTED);
    EXPECT_EQ(zul::moduleReferences(), before);
}
