// The names of keys.
#pragma once

#include <QString>
#include <Qt>

namespace zul::host {
/// One press of a key.
struct KeyPress
{
    int key = 0;
    Qt::KeyboardModifiers modifiers;
    QString text; // what it types; empty for keys that type nothing
};

/// The key of a name as Qt writes it ("Return", "F3", "Ctrl+A", "Shift+Tab", "PgDown"), or in its long form
/// ("Escape", "Delete", "PageDown"). Throws CommandError for any other text.
KeyPress keyPress(const QString& name);
} // namespace zul::host
