// Starts the external program that delivers what was queued.
#pragma once

#include <QString>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

/// The full path of the sender program in a folder, composed with "\". One "\" is added at the folder's end
/// when it has none.
QString smsSenderPath(const QString& folder);

/// Starts ZULSms_Sender.exe from `path`, or from the session's PathCartellaSMSSender when that is empty. A
/// program that is not there is told to the operator. The result of the start itself is not checked.
/// @param owner the window that the operator's message belongs to
/// @return true when the program was there
bool AvviaSmsSender(bool passConnectionString, const QString& path, QWidget* owner) noexcept;

} // namespace zul
