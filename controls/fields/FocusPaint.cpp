#include "controls/fields/FocusPaint.h"

#include "controls/look/Background.h"

#include <QApplication>
#include <QEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace zul {

namespace {

constexpr int selectedLength = 100;

QWidget* textBoxOf(QWidget* input)
{
    QWidget* box = input;
    while (box->focusProxy() != nullptr) {
        box = box->focusProxy();
    }
    return box;
}

QTextCursor firstCharacters(const QTextDocument& document, QTextCursor cursor)
{
    const int end = qMin(selectedLength, document.characterCount() - 1);
    cursor.setPosition(0);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    return cursor;
}

void selectFirst(QWidget* input)
{
    QWidget* box = textBoxOf(input);
    if (auto* line = qobject_cast<QLineEdit*>(box)) {
        line->setSelection(0, selectedLength);
    } else if (auto* text = qobject_cast<QPlainTextEdit*>(box)) {
        text->setTextCursor(firstCharacters(*text->document(), text->textCursor()));
    } else if (auto* rich = qobject_cast<QTextEdit*>(box)) {
        rich->setTextCursor(firstCharacters(*rich->document(), rich->textCursor()));
    }
}

bool hasSelection(QWidget* input)
{
    const auto* line = qobject_cast<QLineEdit*>(textBoxOf(input));
    return line != nullptr && line->hasSelectedText();
}

} // namespace

void paintFocusIn(QWidget* input, FocusSelect select)
{
    if (input == nullptr) {
        return;
    }
    setBackground(input, focusedInputColor());
    if (select == FocusSelect::First100) {
        selectFirst(input);
    }
}

void paintFocusOut(QWidget* input)
{
    setBackground(input, idleInputColor());
}

FocusPaint::FocusPaint(QObject* parent)
    : QObject(parent)
{
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { focusChanged(now); });
}

void FocusPaint::watch(QWidget* input, FocusSelect select, Paint paint)
{
    if (input == nullptr) {
        return;
    }
    for (Input& known : m_inputs) {
        if (known.widget == input) {
            known.select = select;
            known.paint = paint;
            return;
        }
    }
    m_inputs.append({input, select, paint});
    textBoxOf(input)->installEventFilter(this);
}

QWidget* FocusPaint::current() const
{
    return m_current;
}

const FocusPaint::Input* FocusPaint::find(const QWidget* widget) const
{
    for (const Input& input : m_inputs) {
        if (widget != nullptr && input.widget == widget) {
            return &input;
        }
    }
    return nullptr;
}

const FocusPaint::Input* FocusPaint::findAround(QWidget* widget) const
{
    for (QWidget* around = widget; around != nullptr; around = around->parentWidget()) {
        if (const Input* input = find(around)) {
            return input;
        }
        if (around->isWindow()) {
            break;
        }
    }
    return nullptr;
}

void FocusPaint::leaveCurrent()
{
    QWidget* leaving = m_current;
    m_current.clear();
    m_mouseEntry = false;
    if (leaving == nullptr) {
        return;
    }
    const Input* input = find(leaving);
    if (input != nullptr && input->paint == Paint::Yes) {
        paintFocusOut(leaving);
    }
    Q_EMIT left(leaving);
}

void FocusPaint::focusChanged(QWidget* now)
{
    if (now == nullptr) {
        return; // the program lost the focus; the input gets it back
    }
    const Input* found = findAround(now);
    if (found == nullptr) {
        if (m_current && now->window() == m_current->window()) {
            leaveCurrent();
        }
        return;
    }
    if (found->widget == m_current) {
        return;
    }
    const Input entering = *found;
    leaveCurrent();
    if (!entering.widget) {
        return; // somebody who heard of the leaving destroyed it
    }
    m_current = entering.widget;
    m_mouseEntry =
        entering.select == FocusSelect::First100 && (QGuiApplication::mouseButtons() & Qt::LeftButton) != 0;
    if (entering.paint == Paint::Yes) {
        paintFocusIn(entering.widget, entering.select);
    } else if (entering.select == FocusSelect::First100) {
        selectFirst(entering.widget);
    }
    Q_EMIT entered(entering.widget);
}

bool FocusPaint::eventFilter(QObject* watched, QEvent* event)
{
    // A mouse press gives the focus first and then moves the cursor, which takes the selection away again.
    if (event->type() == QEvent::MouseButtonRelease && m_mouseEntry && m_current &&
        watched == textBoxOf(m_current)) {
        m_mouseEntry = false;
        if (!hasSelection(m_current)) {
            selectFirst(m_current);
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace zul
