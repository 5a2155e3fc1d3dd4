// How a modal window was left. Hosts and other windows read it as a text; nobody else does.
#pragma once

#include <QString>

namespace zul {

enum class FormChoice
{
    None,      ///< not left yet, or left by a way that decides nothing: ""
    Confirmed, ///< "OK"
    Cancelled, ///< "ESC"
};

QString textOf(FormChoice choice);

/// The choice that a text stands for, to the letter: "ok" is none.
FormChoice formChoice(const QString& text);

} // namespace zul
