// Texts that operators type, in the form in which the system keeps them.
#pragma once

#include <QString>

namespace zul {

/// Without the blanks (U+0020) at both ends. Every other white space, line breaks included, is text and stays.
[[nodiscard]] QString trimBlanks(const QString& text);

/// Every line break (CR LF, LF or CR) as CR LF, which is what messages and templates hold.
[[nodiscard]] QString withCrLf(const QString& text);

} // namespace zul
