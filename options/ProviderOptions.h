// How the stored options become the state of the options dialog.
#pragma once

#include <QString>
#include <optional>

namespace zul {

/// A text as a 16-bit whole number, by the user's rules for numbers; halves go to the even number.
/// @throws Error 13 when it is no number, the empty text included; 6 when it does not fit
qint16 toInt16(const QString& text);

/// The prefix switch as stored: nothing when the text is not numeric, and the check box keeps its designed
/// state then.
std::optional<qint16> prefixSwitch(const QString& stored);

/// The auto-send switch as stored. Unlike the prefix switch the text is converted before anybody asks
/// whether it is numeric, so a text that is not ends the load. That is meant.
/// @throws Error as toInt16
qint16 autoSendSwitch(const QString& stored);

/// The folder that the dialog proposes when none is stored: no "\" at its end.
QString defaultSenderFolder(const QString& pathMainApplication);

/// A chosen folder as it goes into the field: it ends in exactly one "\".
QString chosenFolder(const QString& path);

} // namespace zul
