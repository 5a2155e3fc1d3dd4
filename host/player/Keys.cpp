#include "host/player/Keys.h"

#include "host/player/CommandError.h"
#include "host/player/ScenarioParser.h"

#include <QKeySequence>

namespace zul::host {

using namespace Qt::StringLiterals;

namespace {
QString textOf(int key, Qt::KeyboardModifiers modifiers)
{
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return u"\r"_s;
    case Qt::Key_Escape:
        return u"\x1b"_s;
    case Qt::Key_Tab:
        return u"\t"_s;
    case Qt::Key_Backspace:
        return u"\b"_s;
    case Qt::Key_Delete:
        return u"\x7f"_s;
    default:
        break;
    }
    const bool types = key >= 0x20 && key <= 0xff && !modifiers.testFlag(Qt::ControlModifier) &&
                       !modifiers.testFlag(Qt::AltModifier) && !modifiers.testFlag(Qt::MetaModifier);
    if (!types) {
        return {};
    }
    const QChar c(static_cast<char16_t>(key));
    return modifiers.testFlag(Qt::ShiftModifier) ? QString(c) : QString(c.toLower());
}
} // namespace

KeyPress keyPress(const QString& name)
{
    const QKeySequence sequence = QKeySequence::fromString(name, QKeySequence::PortableText);
    const int key = sequence.count() == 1 ? sequence[0].key() : Qt::Key_unknown;
    if (key == Qt::Key_unknown || key == 0) {
        throw CommandError{u"unknown key %1"_s.arg(quoted(name))};
    }
    const Qt::KeyboardModifiers modifiers = sequence[0].keyboardModifiers();
    if (key == Qt::Key_Tab && modifiers.testFlag(Qt::ShiftModifier)) {
        return {Qt::Key_Backtab, modifiers, {}};
    }
    return {key, modifiers, textOf(key, modifiers)};
}
} // namespace zul::host
