#include "automation/Bstr.h"
#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "base/DateText.h"
#include "host/database/Schema.h"
#include "host/services/AppPost.h"
#include "host/services/Services.h"

#include <array>

namespace zul::host {

namespace {

constexpr std::u16string_view sourceName = u"Zul_Host.AppConnector";

class AppConnector final : public ComObject<Dispatching<IAppConnector>>
{
public:
    explicit AppConnector(SessionPtr session)
        : m_session(std::move(session))
    {}

    HRESULT STDMETHODCALLTYPE Init(BSTR slug, BSTR salt) override
    {
        return hostGuard(sourceName, [&] {
            m_slug = utf8FromUtf16(textOf(slug));
            m_salt = utf8FromUtf16(textOf(salt));
            m_timeOuts = 0;
        });
    }

    HRESULT STDMETHODCALLTYPE SendToContact(BSTR email, DATE when, BSTR text, BSTR* errorText,
                                            VARIANT_BOOL* sent) override
    {
        return send(utf8FromUtf16(textOf(email)), when, text, errorText, sent);
    }

    HRESULT STDMETHODCALLTYPE SendToEverybody(BSTR text, DATE when, BSTR* errorText,
                                              VARIANT_BOOL* sent) override
    {
        return send(std::nullopt, when, text, errorText, sent);
    }

private:
    HRESULT send(std::optional<std::string> email, DATE when, BSTR text, BSTR* errorText, VARIANT_BOOL* sent)
    {
        if (errorText == nullptr || sent == nullptr) {
            return E_POINTER;
        }
        *errorText = nullptr;
        *sent = VARIANT_FALSE;
        return hostGuard(sourceName, [&] {
            const AppMessage message{m_slug, std::move(email), utf8FromUtf16(textOf(text)), when};
            std::string error;
            if (m_session->appUrl.empty()) {
                error = store(message);
            } else {
                error = post(message);
            }
            if (error.empty()) {
                *sent = VARIANT_TRUE;
            } else {
                *errorText = Bstr::fromUtf8(error).detach();
            }
        });
    }

    // A service that is silent is silent for the next contact too: a run would wait for hours.
    std::string post(const AppMessage& message)
    {
        const AppPatience& patience = m_session->appPatience;
        if (patience.timeOutsInARow > 0 && m_timeOuts >= patience.timeOutsInARow) {
            return m_lastTimeOut;
        }
        bool timedOut = false;
        std::string error = postAppMessage(m_session->appUrl, m_salt, message, patience.answer, &timedOut);
        m_timeOuts = timedOut ? m_timeOuts + 1 : 0;
        if (timedOut) {
            m_lastTimeOut = error;
        }
        return error;
    }

    // Without a service the message waits in a table, where whoever delivers it finds it.
    std::string store(const AppMessage& message)
    {
        try {
            Engine& engine = *m_session->engine;
            engine.ensureTable(outboxTable());
            static constexpr std::array<std::string_view, 4> columns{"Slug", "Email", "Testo", "Data"};
            const std::array<Value, 4> values{message.slug, message.email ? Value(*message.email) : Value(),
                                              message.text, DateValue{message.when}};
            std::int64_t id = 0;
            engine.addRow({"appOutbox", "id", columns, values}, id);
            return {};
        } catch (const EngineError& error) {
            return error.what();
        }
    }

    const DispTable<IAppConnector>& dispTable() const override
    {
        using namespace zul::dispatch;
        static const DispTable<IAppConnector> table{
            method("Init", 1, &IAppConnector::Init, {"slug", "salt"}),
            method("SendToContact", 2, &IAppConnector::SendToContact,
                   {"email", date("when"), "text", out("errorText")}),
            method("SendToEverybody", 3, &IAppConnector::SendToEverybody,
                   {"text", date("when"), out("errorText")}),
        };
        return table;
    }

    SessionPtr m_session;
    std::string m_slug;
    std::string m_salt;
    int m_timeOuts = 0; // in a row, since Init
    std::string m_lastTimeOut;
};

} // namespace

ComPtr<IAppConnector> makeAppConnector(SessionPtr session)
{
    return makeCom<AppConnector>(std::move(session));
}

} // namespace zul::host
