#include "automation/ComObject.h"
#include "tests/support/fake/EarlyBound.h"
#include "tests/support/fake/Services.h"

namespace zul::test {

namespace {

class FakeAppConnector final : public ComObject<EarlyBound<IAppConnector>>
{
public:
    explicit FakeAppConnector(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE Init(BSTR slug, BSTR salt) override
    {
        return m_state->perform("init", utf8(slug) + "|" + utf8(salt));
    }
    HRESULT STDMETHODCALLTYPE SendToContact(BSTR email, DATE, BSTR message, BSTR* errorText,
                                            VARIANT_BOOL* sent) override
    {
        return send("push", utf8(email) + "|" + utf8(message), errorText, sent);
    }
    HRESULT STDMETHODCALLTYPE SendToEverybody(BSTR message, DATE, BSTR* errorText,
                                              VARIANT_BOOL* sent) override
    {
        return send("pushall", utf8(message), errorText, sent);
    }

private:
    HRESULT send(const std::string& kind, const std::string& words, BSTR* errorText, VARIANT_BOOL* sent)
    {
        *errorText = nullptr;
        *sent = VARIANT_FALSE;
        if (const HRESULT result = m_state->perform(kind, words); FAILED(result)) {
            return result;
        }
        const std::string error = FakeHost::State::next(m_state->connectorErrors, std::string());
        if (error.empty()) {
            *sent = VARIANT_TRUE;
        } else {
            *errorText = Bstr::fromUtf8(error).detach();
        }
        return S_OK;
    }

    StatePtr m_state;
};

} // namespace

ComPtr<IAppConnector> makeAppConnector(StatePtr state)
{
    return makeCom<FakeAppConnector>(std::move(state));
}

} // namespace zul::test
