#include "host/session/AutomationText.h"

#include "host/player/ScenarioParser.h"

namespace zul::host {
QString resultText(const VARIANT& value)
{
    constexpr LCID americanEnglish = 0x0409;
    switch (value.vt) {
    case VT_EMPTY:
        return QStringLiteral("empty");
    case VT_BOOL:
        return value.boolVal != VARIANT_FALSE ? QStringLiteral("true") : QStringLiteral("false");
    case VT_BSTR:
        return quoted(toQString(textOf(value.bstrVal)));
    default:
        break;
    }
    Variant copy(value);
    return SUCCEEDED(copy.changeType(VT_BSTR, americanEnglish)) ? toQString(copy.text())
                                                                : QStringLiteral("?");
}
} // namespace zul::host
