// How the wrappers of hostlib call across the boundary: texts in and out, and failures as exceptions.
#pragma once

#include "automation/Bstr.h"
#include "automation/ErrorInfo.h"
#include "automation/Variant.h"
#include "hostlib/Ado.h"
#include "hostlib/Error.h"

#include <QDateTime>
#include <QString>

namespace zul::calls {

inline Bstr bstr(const QString& text)
{
    return Bstr(std::u16string_view(reinterpret_cast<const char16_t*>(text.utf16()),
                                    static_cast<std::size_t>(text.size())));
}

inline QString toQString(std::u16string_view text)
{
    return QString(reinterpret_cast<const QChar*>(text.data()), static_cast<qsizetype>(text.size()));
}

inline VARIANT_BOOL toBool(bool value)
{
    return value ? VARIANT_TRUE : VARIANT_FALSE;
}

/// Throws the error of a failed call, with the description that the other side left.
inline void check(HRESULT result)
{
    if (SUCCEEDED(result)) {
        return;
    }
    const ErrorDetails details = takeErrorDetails(result);
    throw Error(result, toQString(details.description));
}

/// The same on the way out: an error of the house as the one that the other side gets. A number that is no
/// result code becomes a control's error (0x800A0000 and the number).
ComError comError(const Error& error);

/// A call whose last argument gives a text back.
template <class Call>
QString text(Call&& call)
{
    Bstr result;
    check(call(result.put()));
    return toQString(result.view());
}

/// A call whose last argument gives a plain value back.
template <class T, class Call>
T value(Call&& call)
{
    T result{};
    check(call(&result));
    return result;
}

/// Days since 1899-12-30 with the time of day as the fraction; before that day the fraction still counts
/// forward, as automation dates do.
DATE toDate(const QDateTime& when);
DATE toDate(QDate day);
QDateTime fromDate(DATE date);

} // namespace zul::calls
