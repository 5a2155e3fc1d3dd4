#include "controls/fields/SelectorField.h"

#include "controls/fields/FieldParts.h"
#include "controls/look/Icons.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QToolButton>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

const QString fieldKeys = u"Invio, F4 o Alt+Giù: scegli. Canc: svuota."_s;

} // namespace

SelectorField::SelectorField(QWidget* parent)
    : QWidget(parent)
    , m_textBox(new QLineEdit(this))
{
    m_textBox->setObjectName(u"textBox"_s);
    m_textBox->setReadOnly(true);
    m_textBox->setProperty("joinedField", true);
    m_textBox->setToolTip(fieldKeys);
    m_textBox->installEventFilter(this);
    QToolButton* choose =
        makeFieldButton(this, IconId::Dots, u"chooseButton"_s, u"Scegli…"_s, u"Invio, F4 o Alt+Giù"_s);
    QToolButton* clear = makeFieldButton(this, IconId::Clear, u"clearButton"_s, u"Svuota"_s, u"Canc"_s);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(m_textBox, 1);
    row->addWidget(choose);
    row->addWidget(clear);

    setFocusProxy(m_textBox);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);

    connect(choose, &QToolButton::clicked, this, [this] {
        m_textBox->setFocus(Qt::MouseFocusReason);
        Q_EMIT selectionRequested();
    });
    connect(clear, &QToolButton::clicked, this, [this] {
        m_textBox->setFocus(Qt::MouseFocusReason);
        Q_EMIT clearRequested();
    });
}

QString SelectorField::text() const
{
    return m_textBox->text();
}

void SelectorField::setText(const QString& text)
{
    m_textBox->setText(text);
    m_textBox->setCursorPosition(0); // the beginning of a long text says more than its end
    m_textBox->setToolTip(text.isEmpty() ? fieldKeys : text + u'\n' + fieldKeys);
}

void SelectorField::setSelection(int id, const QString& text)
{
    setSelectedId(id);
    setText(text);
}

bool SelectorField::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_textBox) {
        return QWidget::eventFilter(watched, event);
    }
    if (event->type() == QEvent::KeyPress && isEnabled()) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (handleKey(key->key(), key->modifiers())) {
            return true;
        }
    }
    if (event->type() == QEvent::MouseButtonDblClick && isEnabled()) {
        Q_EMIT selectionRequested();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool SelectorField::handleKey(int key, Qt::KeyboardModifiers modifiers)
{
    modifiers &= ~Qt::KeypadModifier;
    const bool plain = modifiers == Qt::NoModifier;
    const bool opens =
        key == Qt::Key_F4 || key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
    if ((plain && opens) || (modifiers == Qt::AltModifier && key == Qt::Key_Down)) {
        Q_EMIT selectionRequested();
        return true;
    }
    if (plain && (key == Qt::Key_Delete || key == Qt::Key_Backspace)) {
        Q_EMIT clearRequested();
        return true;
    }
    return false;
}

void SelectorField::showEvent(QShowEvent* event)
{
    lendAccessibleName(this, m_textBox, fieldKeys);
    QWidget::showEvent(event);
}

} // namespace zul
