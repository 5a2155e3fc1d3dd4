#include "host/session/LateCall.h"

#include "automation/ErrorInfo.h"
#include "host/session/AutomationText.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace zul::host {
namespace {
CallOutcome invoke(IDispatch* object, const QString& member, WORD flags, std::vector<Variant> arguments,
                   DISPID* named, UINT namedCount)
{
    CallOutcome outcome;
    const Bstr name = toBstr(member);
    OLECHAR* names = name.get();
    DISPID id = DISPID_UNKNOWN;
    outcome.code = object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(outcome.code)) {
        return outcome;
    }
    // Arguments travel from the last to the first.
    std::reverse(arguments.begin(), arguments.end());
    DISPPARAMS params{};
    params.rgvarg = arguments.data();
    params.cArgs = static_cast<UINT>(arguments.size());
    params.rgdispidNamedArgs = named;
    params.cNamedArgs = namedCount;
    EXCEPINFO exception{};
    UINT badArgument = 0;
    const HRESULT result = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params,
                                          flags == DISPATCH_PROPERTYPUT ? nullptr : outcome.value.put(),
                                          &exception, &badArgument);
    outcome.code = result;
    if (FAILED(result)) {
        const ErrorDetails details = takeErrorDetails(result, exception);
        outcome.code = details.code;
        outcome.description = toQString(details.description);
        outcome.value.clear();
    }
    return outcome;
}
} // namespace

CallOutcome callMember(IDispatch* object, const QString& member, std::vector<Variant> arguments)
{
    return invoke(object, member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, std::move(arguments), nullptr, 0);
}

CallOutcome putProperty(IDispatch* object, const QString& property, Variant value)
{
    std::vector<Variant> arguments;
    arguments.push_back(std::move(value));
    DISPID named = DISPID_PROPERTYPUT;
    return invoke(object, property, DISPATCH_PROPERTYPUT, std::move(arguments), &named, 1);
}

Variant valueOf(const Word& word)
{
    if (!word.quoted) {
        if (word.text == QLatin1String("true") || word.text == QLatin1String("false")) {
            return Variant::fromBool(word.text == QLatin1String("true"));
        }
        bool ok = false;
        const qlonglong number = word.text.toLongLong(&ok);
        if (ok && number >= std::numeric_limits<LONG>::min() && number <= std::numeric_limits<LONG>::max()) {
            return Variant::fromLong(static_cast<LONG>(number));
        }
        if (ok) {
            return Variant::fromInt64(number);
        }
    }
    return Variant::fromText(toBstr(word.text).view());
}

QString codeText(HRESULT code)
{
    return QStringLiteral("0x%1").arg(static_cast<quint32>(code), 8, 16, QLatin1Char('0'));
}
} // namespace zul::host
