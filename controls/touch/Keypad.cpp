#include "controls/touch/Keypad.h"

#include "controls/look/Icons.h"
#include "controls/touch/Placement.h"

#include <QEvent>
#include <QGridLayout>
#include <QLocale>
#include <QPushButton>

namespace zul {

using namespace Qt::StringLiterals;

Keypad::Keypad(QWidget* parent)
    : KeyPanel(parent)
{
    setAccessibleName(u"Tastierino numerico"_s);
    auto* keys = new QGridLayout(this);
    keys->setContentsMargins(4, 4, 4, 4);
    keys->setSpacing(4);
    for (int digit = 0; digit <= 9; ++digit) {
        const QString caption = QString::number(digit);
        QPushButton* key = makeKey(u"key"_s + caption, caption);
        connect(key, &QPushButton::clicked, this, [this, caption] { sendText(caption); });
        keys->addWidget(key, digit == 0 ? 3 : 2 - (digit - 1) / 3, digit == 0 ? 1 : (digit - 1) % 3);
    }
    QPushButton* minus = makeKey(u"keyMinus"_s, u"−"_s, u"Meno"_s);
    m_separator = makeKey(u"keySeparator"_s, {});
    QPushButton* backspace = makeIconKey(u"keyBackspace"_s, IconId::Backspace, u"Cancella carattere"_s);
    QPushButton* clear = makeKey(u"keyClear"_s, u"C"_s, u"Svuota"_s);
    QPushButton* next = makeIconKey(u"keyNext"_s, IconId::Next, u"Campo successivo"_s);
    QPushButton* close = makeIconKey(u"keyHide"_s, IconId::HideKeyboard, u"Nascondi"_s);
    backspace->setAutoRepeat(true);
    keys->addWidget(minus, 3, 0);
    keys->addWidget(m_separator, 3, 2);
    keys->addWidget(backspace, 0, 3);
    keys->addWidget(clear, 1, 3);
    keys->addWidget(next, 2, 3);
    keys->addWidget(close, 3, 3);
    const auto everyKey = findChildren<QPushButton*>();
    for (QPushButton* key : everyKey) {
        key->setMinimumSize(fingerSize, fingerSize);
    }

    connect(minus, &QPushButton::clicked, this, [this] { sendText(u"-"_s); });
    connect(m_separator, &QPushButton::clicked, this, [this] { sendText(m_separator->text()); });
    connect(backspace, &QPushButton::clicked, this, [this] { sendKey(Qt::Key_Backspace); });
    connect(clear, &QPushButton::clicked, this, [this] { clearField(); });
    connect(next, &QPushButton::clicked, this, [this] { sendKey(Qt::Key_Tab, u"\t"_s); });
    connect(close, &QPushButton::clicked, this, &QWidget::hide);
    captionSeparator();
}

void Keypad::attach(QWidget* field, bool date)
{
    m_date = date;
    captionSeparator();
    bind(field);
}

QSize Keypad::sizeHint() const
{
    const int side = 4 * fingerSize + 3 * 4 + 2 * 4 + 2;
    return {side, side};
}

QRect Keypad::placed(const QRect& field, const QRect& window, const QList<QRect>& taken) const
{
    return placeBeside(field, sizeHint().expandedTo(minimumSizeHint()),
                       window.adjusted(edge, edge, -edge, -edge), taken);
}

void Keypad::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LocaleChange) {
        captionSeparator();
    }
    KeyPanel::changeEvent(event);
}

void Keypad::captionSeparator()
{
    m_separator->setText(m_date ? u"/"_s : locale().decimalPoint());
    m_separator->setAccessibleName(m_date ? u"Barra"_s : u"Separatore decimale"_s);
}

} // namespace zul
