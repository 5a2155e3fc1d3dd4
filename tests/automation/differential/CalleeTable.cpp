// Late-bound calls by the table-driven dispatcher.
#include "automation/Dispatch.h"
#include "tests/automation/differential/Callee.h"

namespace differential {

namespace {

const zul::DispTable<ICalls>& table()
{
    using namespace zul::dispatch;
    static const zul::DispTable members{
        propget("Item", 0, &ICalls::get_Item, {"Index"}),
        propput("Item", 0, &ICalls::put_Item, {"Index", "value"}),
        propget("Number", 1, &ICalls::get_Number),
        propput("Number", 1, &ICalls::put_Number, {"NewNumber"}),
        method("TakeLong", 10, &ICalls::TakeLong, {"value"}),
        method("TakeShort", 11, &ICalls::TakeShort, {integer("value")}),
        method("TakeBoolean", 12, &ICalls::TakeBoolean, {"value"}),
        method("TakeByte", 13, &ICalls::TakeByte, {"value"}),
        method("TakeLarge", 14, &ICalls::TakeLarge, {"value"}),
        method("TakeFloat", 15, &ICalls::TakeFloat, {"value"}),
        method("TakeDouble", 16, &ICalls::TakeDouble, {"value"}),
        method("TakeDate", 17, &ICalls::TakeDate, {date("value")}),
        method("TakeText", 19, &ICalls::TakeText, {"value"}),
        method("TakeColour", 20, &ICalls::TakeColour, {"value"}),
        method("TakeVariant", 21, &ICalls::TakeVariant, {"value"}),
        method("TakeDispatch", 22, &ICalls::TakeDispatch, {"value"}),
        method("TakeUnknown", 23, &ICalls::TakeUnknown, {"value"}),
        method("TakeCalls", 24, &ICalls::TakeCalls, {"value"}),
        method("ReadLong", 30, &ICalls::ReadLong, {"value"}),
        method("ReadBoolean", 31, &ICalls::ReadBoolean, {"value"}),
        method("ReadDouble", 32, &ICalls::ReadDouble, {"value"}),
        method("ReadDate", 33, &ICalls::ReadDate, {date("value")}),
        method("ReadText", 34, &ICalls::ReadText, {"value"}),
        method("ReadVariant", 35, &ICalls::ReadVariant, {"value"}),
        method("ReadDispatch", 36, &ICalls::ReadDispatch, {"value"}),
        method("Subtract", 40, &ICalls::Subtract, {"a", "b", "c"}),
        method("Add", 41, &ICalls::Add, {"item", optional("key"), optional("before")}),
        method("Send", 42, &ICalls::Send, {"to", out("errorText")}),
        method("Nothing", 43, &ICalls::Nothing),
        method("Fail", 44, &ICalls::Fail, {"code"}),
        method("ResultVariant", 45, &ICalls::ResultVariant),
        method("ResultDate", 46, &ICalls::ResultDate),
        method("ResultObject", 47, &ICalls::ResultObject),
        method("ResultBoolean", 48, &ICalls::ResultBoolean),
    };
    return members;
}

class TableCallee final : public Callee
{
public:
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID,
                                            DISPID* ids) override
    {
        return zul::dispatch::getIdsOfNames(table().members(), riid, names, count, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argErr) override
    {
        return zul::dispatch::invoke(table().members(), static_cast<ICalls*>(this), id, riid, lcid, flags,
                                     params, result, exception, argErr);
    }
};

} // namespace

Callee* makeCallee(const std::string&)
{
    static TableCallee callee;
    return &callee;
}

} // namespace differential
