// The C++ headers put every member into the slot that the type library says: a host written in any language
// calls through the table alone.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include <Zul_MessageBuilder.h>

#include "automation/ComObject.h"
#include "tests/idl/TypeLibrary.h"

namespace {

// Notes which member was called.
class RecordingCreator final : public zul::ComObject<_SmsCreator>
{
public:
    std::string called;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return note("GetTypeInfoCount"); }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return note("GetTypeInfo"); }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return note("GetIDsOfNames");
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override
    {
        return note("Invoke");
    }
    HRESULT STDMETHODCALLTYPE put_idUtente(LONG value) override
    {
        EXPECT_EQ(value, -7);
        return note("put idUtente");
    }
    HRESULT STDMETHODCALLTYPE get_idUtente(LONG*) override { return note("get idUtente"); }
    HRESULT STDMETHODCALLTYPE InitWhatToShow(VARIANT_BOOL*, VARIANT_BOOL*, VARIANT_BOOL*, VARIANT*) override
    {
        return note("InitWhatToShow");
    }
    HRESULT STDMETHODCALLTYPE InitWhatToSearch(VARIANT_BOOL*, VARIANT_BOOL*, VARIANT*) override
    {
        return note("InitWhatToSearch");
    }
    HRESULT STDMETHODCALLTYPE ShowForm(_SqlConnection**, BSTR*, VARIANT_BOOL*, VARIANT*) override
    {
        return note("ShowForm");
    }
    HRESULT STDMETHODCALLTYPE isOkPressed(VARIANT_BOOL*) override { return note("isOkPressed"); }
    HRESULT STDMETHODCALLTYPE DiscardForm(VARIANT*) override { return note("DiscardForm"); }
    HRESULT STDMETHODCALLTYPE EventoGrd_CaricaGrd(IDispatch**, BSTR*, BSTR*, BSTR*, BSTR*, BSTR*, BSTR*,
                                                  BSTR*, BSTR*, BSTR*, _Collection**) override
    {
        return note("EventoGrd_CaricaGrd");
    }
    HRESULT STDMETHODCALLTYPE ShowOptions(_SqlConnection**, BSTR*, VARIANT_BOOL*, VARIANT_BOOL*) override
    {
        return note("ShowOptions");
    }
    HRESULT STDMETHODCALLTYPE ShowCheckErrorSMSSend(_SqlConnection**, VARIANT_BOOL*, VARIANT_BOOL*) override
    {
        return note("ShowCheckErrorSMSSend");
    }
    HRESULT STDMETHODCALLTYPE DiscardOptionsForm(VARIANT*) override { return note("DiscardOptionsForm"); }
    HRESULT STDMETHODCALLTYPE GetOptionsFormChoice(BSTR*) override { return note("GetOptionsFormChoice"); }
    HRESULT STDMETHODCALLTYPE GetFormChoice(BSTR*) override { return note("GetFormChoice"); }

private:
    HRESULT note(const char* member)
    {
        called = member;
        return S_OK;
    }
};

void* slotOf(void* object, std::size_t slot)
{
    return (*static_cast<void***>(object))[slot];
}

} // namespace

TEST(Vtable, EveryMemberOfSmsCreatorStandsInTheSlotOfTheTypeLibrary)
{
    const TypeLibrary library = readTypeLibrary(std::string(ZUL_TLB_DIR) + "/Zul_MessageBuilder.tlb");
    const auto creator = zul::makeCom<RecordingCreator>();
    auto* const object = static_cast<void*>(static_cast<_SmsCreator*>(creator.get()));
    for (const LibraryFunction& function : library.types.at(0).functions) {
        const std::size_t slot = function.vtableOffset / sizeof(void*);
        std::string expected = function.name;
        if (function.invokeKind == 4) {
            expected.insert(0, "put ");
            using Put = HRESULT(STDMETHODCALLTYPE*)(void*, LONG);
            EXPECT_EQ(reinterpret_cast<Put>(slotOf(object, slot))(object, -7), S_OK);
        } else {
            expected.insert(0, function.invokeKind == 2 ? "get " : "");
            // Eleven pointers are enough for every member; what a member does not take it does not see.
            using Call = HRESULT(STDMETHODCALLTYPE*)(void*, void*, void*, void*, void*, void*, void*, void*,
                                                     void*, void*, void*, void*);
            EXPECT_EQ(reinterpret_cast<Call>(slotOf(object, slot))(object, nullptr, nullptr, nullptr, nullptr,
                                                                   nullptr, nullptr, nullptr, nullptr,
                                                                   nullptr, nullptr, nullptr),
                      S_OK);
        }
        EXPECT_EQ(creator->called, expected) << "slot " << slot;
    }
}

TEST(Vtable, TheFirstSevenSlotsAreThoseOfIDispatch)
{
    const auto creator = zul::makeCom<RecordingCreator>();
    auto* const object = static_cast<void*>(static_cast<_SmsCreator*>(creator.get()));
    using AddRef = ULONG(STDMETHODCALLTYPE*)(void*);
    EXPECT_EQ(reinterpret_cast<AddRef>(slotOf(object, 1))(object), 2u);
    EXPECT_EQ(reinterpret_cast<AddRef>(slotOf(object, 2))(object), 1u);
    using Count = HRESULT(STDMETHODCALLTYPE*)(void*, UINT*);
    EXPECT_EQ(reinterpret_cast<Count>(slotOf(object, 3))(object, nullptr), S_OK);
    EXPECT_EQ(creator->called, "GetTypeInfoCount");
    using Invoke = HRESULT(STDMETHODCALLTYPE*)(void*, DISPID, const IID*, LCID, WORD, DISPPARAMS*, VARIANT*,
                                               EXCEPINFO*, UINT*);
    EXPECT_EQ(reinterpret_cast<Invoke>(slotOf(object, 6))(object, 0, &GUID_NULL, 0, 1, nullptr, nullptr,
                                                          nullptr, nullptr),
              S_OK);
    EXPECT_EQ(creator->called, "Invoke");
}

TEST(Layout, TypesHaveTheSizesOfWindows)
{
    // Of a process of 64 bits, and of 32.
    const auto size = [](std::size_t wide, std::size_t narrow) { return sizeof(void*) == 8 ? wide : narrow; };
    EXPECT_EQ(sizeof(LONG), 4u);
    EXPECT_EQ(sizeof(HRESULT), 4u);
    EXPECT_EQ(sizeof(VARIANT_BOOL), 2u);
    EXPECT_EQ(sizeof(OLECHAR), 2u);
    EXPECT_EQ(sizeof(GUID), 16u);
    EXPECT_EQ(sizeof(VARIANT), size(24, 16));
    EXPECT_EQ(offsetof(VARIANT, llVal), 8u);
    EXPECT_EQ(offsetof(VARIANT, pRecInfo), size(16, 12));
    EXPECT_EQ(sizeof(DECIMAL), 16u);
    EXPECT_EQ(offsetof(DECIMAL, Lo64), 8u);
    EXPECT_EQ(sizeof(DISPPARAMS), size(24, 16));
    EXPECT_EQ(offsetof(DISPPARAMS, cNamedArgs), size(20, 12));
    EXPECT_EQ(sizeof(EXCEPINFO), size(64, 32));
    EXPECT_EQ(offsetof(EXCEPINFO, bstrSource), size(8, 4));
    EXPECT_EQ(offsetof(EXCEPINFO, scode), size(56, 28));
    EXPECT_EQ(sizeof(SAFEARRAY), size(32, 24));
    EXPECT_EQ(sizeof(ZulCell), 32u);
    EXPECT_EQ(offsetof(ZulCell, Text), 24u);
}
