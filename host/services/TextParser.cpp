#include "automation/Bstr.h"
#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "base/DateText.h"
#include "host/services/CustomerData.h"
#include "host/services/PlaceholderText.h"
#include "host/services/Services.h"

#include <QDate>
#include <QLocale>

namespace zul::host {

namespace {

constexpr std::u16string_view sourceName = u"Zul_Host.TextParser";

// A birthday as the user writes dates, the year always in full.
std::u16string birthText(const CustomerData& customer)
{
    if (!customer.birth) {
        return {};
    }
    const CivilDay day = civilFromDate(*customer.birth);
    const QLocale locale;
    QString format = locale.dateFormat(QLocale::ShortFormat);
    if (!format.contains(QLatin1String("yyyy"))) {
        format.replace(QLatin1String("yy"), QLatin1String("yyyy"));
    }
    return locale.toString(QDate(day.year, day.month, day.day), format).toStdU16String();
}

// Counted as everywhere in the system: by calendar years, so that everybody ages on 1 January.
std::u16string ageText(const CustomerData& customer)
{
    if (!customer.birth) {
        return {};
    }
    const int age = civilFromDate(currentDate()).year - civilFromDate(*customer.birth).year;
    return utf16FromUtf8(std::to_string(age));
}

std::optional<std::u16string> valueOf(std::u16string_view name, const CustomerData& customer,
                                      std::u16string_view classification)
{
    if (name == u"Cliente") {
        return customer.name();
    }
    if (name == u"RagioneSociale1") {
        return customer.firstName;
    }
    if (name == u"RagioneSociale2") {
        return customer.secondName;
    }
    if (name == u"Paese") {
        return customer.place;
    }
    if (name == u"Provincia") {
        return customer.province;
    }
    if (name == u"Eta") {
        return ageText(customer);
    }
    if (name == u"DataNascita") {
        return birthText(customer);
    }
    if (name == u"Telefono2") {
        return customer.mobile;
    }
    if (name == u"email") {
        return customer.email;
    }
    if (name == u"Classificazione") {
        return std::u16string(classification);
    }
    return std::nullopt;
}

class TextParser final : public ComObject<Dispatching<ITextParser>>
{
public:
    explicit TextParser(SessionPtr session)
        : m_session(std::move(session))
    {}

    HRESULT STDMETHODCALLTYPE Parse(BSTR text, ICustomer* customer, BSTR classificazione,
                                    BSTR* parsed) override
    {
        if (parsed == nullptr) {
            return E_POINTER;
        }
        *parsed = nullptr;
        if (customer == nullptr) {
            return reportError(E_POINTER, u"no customer", sourceName);
        }
        return hostGuard(sourceName, [&] {
            const std::u16string_view source = textOf(text);
            if (source.find(u'{') == std::u16string_view::npos) {
                *parsed = Bstr(source).detach();
                return;
            }
            const CustomerData data = dataOf(customer);
            *parsed = Bstr(fillPlaceholders(source, [&](std::u16string_view name) {
                          return valueOf(name, data, textOf(classificazione));
                      })).detach();
        });
    }

private:
    // Our own customer object has read everything already; of any other its id is enough to read it.
    CustomerData dataOf(ICustomer* customer) const
    {
        if (const auto own = queryFor<ICustomerData>(customer)) {
            return own->customerData();
        }
        LONG id = 0;
        throwIfFailed(customer->get_Id(&id));
        return readCustomer(*m_session->engine, id).value_or(CustomerData());
    }

    const DispTable<ITextParser>& dispTable() const override
    {
        using namespace zul::dispatch;
        static const DispTable<ITextParser> table{
            method("Parse", 1, &ITextParser::Parse, {"text", "customer", "classificazione"}),
        };
        return table;
    }

    SessionPtr m_session;
};

} // namespace

ComPtr<ITextParser> makeTextParser(SessionPtr session)
{
    return makeCom<TextParser>(std::move(session));
}

} // namespace zul::host
