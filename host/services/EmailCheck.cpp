#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "host/services/EmailRules.h"
#include "host/services/Services.h"

namespace zul::host {

namespace {

class EmailCheck final : public ComObject<Dispatching<IEmailCheck>>
{
public:
    HRESULT STDMETHODCALLTYPE IsValid(BSTR email, VARIANT_BOOL* valid) override
    {
        if (valid == nullptr) {
            return E_POINTER;
        }
        *valid = VARIANT_FALSE;
        return hostGuard(u"Zul_Host.EmailCheck", [&] {
            *valid = isPlausibleEmail(utf8FromUtf16(textOf(email))) ? VARIANT_TRUE : VARIANT_FALSE;
        });
    }

private:
    const DispTable<IEmailCheck>& dispTable() const override
    {
        using namespace zul::dispatch;
        static const DispTable<IEmailCheck> table{method("IsValid", 1, &IEmailCheck::IsValid, {"email"})};
        return table;
    }
};

} // namespace

ComPtr<IEmailCheck> makeEmailCheck()
{
    return makeCom<EmailCheck>();
}

} // namespace zul::host
