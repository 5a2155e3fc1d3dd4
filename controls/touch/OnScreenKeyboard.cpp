#include "controls/touch/OnScreenKeyboard.h"

#include "controls/look/Icons.h"
#include "controls/touch/Placement.h"

#include <QGridLayout>
#include <QPointer>
#include <QPushButton>

#include <array>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// A row of keys: what they type, what they type with shift, and on the page of symbols.
struct Row
{
    QStringView plain;
    QStringView shifted;
    QStringView symbols;
};

constexpr std::array<Row, 4> rows{{
    {u"1234567890'ì", u"!\"£$%&/()=?Ì", u"1234567890'ì"},
    {u"qwertyuiopè+@", u"QWERTYUIOPÈ*@", u"!\"£$%&/()=?^°"},
    {u"asdfghjklòàù", u"ASDFGHJKLÒÀÙ", u"@#€[]{}<>*+§"},
    {u"zxcvbnm,.-é", u"ZXCVBNM;:_É", u"\\|~_-:;,.ç`"},
}};

constexpr int columnsOfKey = 2; // every key spans two columns, so that rows can stand half a key apart
constexpr int lastColumn = 26;

} // namespace

OnScreenKeyboard::OnScreenKeyboard(QWidget* parent)
    : KeyPanel(parent)
{
    setAccessibleName(u"Tastiera"_s);
    auto* keys = new QGridLayout(this);
    keys->setContentsMargins(4, 4, 4, 4);
    keys->setSpacing(4);
    for (int column = 0; column < lastColumn; ++column) {
        keys->setColumnStretch(column, 1);
    }
    addCharacters(keys);
    addOthers(keys);
    captionKeys();
    const auto everyKey = findChildren<QPushButton*>();
    for (QPushButton* key : everyKey) {
        key->setMinimumSize(24, 32);
    }
}

void OnScreenKeyboard::attach(QWidget* field)
{
    bind(field);
}

QSize OnScreenKeyboard::sizeHint() const
{
    constexpr int keysAcross = lastColumn / columnsOfKey;
    constexpr int keysDown = 5;
    return {keysAcross * (fingerSize + 4) + 6, keysDown * (fingerSize + 4) + 6};
}

void OnScreenKeyboard::leaveRoomIn(QWidget* window) const
{
    QLayout* const layout = window->layout();
    QMargins margins = layout->contentsMargins();
    window->setMinimumWidth(sizeHint().width() + margins.left() + margins.right());
    margins.setBottom(margins.bottom() + sizeHint().height());
    layout->setContentsMargins(margins);
}

QRect OnScreenKeyboard::placed(const QRect& field, const QRect& window, const QList<QRect>& taken) const
{
    return placeAtBottom(field, sizeHint(), window.adjusted(edge, edge, -edge, -edge), taken);
}

void OnScreenKeyboard::addCharacter(QGridLayout* keys, int row, int column, const CharacterKey& key)
{
    const int index = static_cast<int>(m_characters.size());
    m_characters.append(key);
    connect(key.button, &QPushButton::clicked, this, [this, index] { typeCharacter(index); });
    keys->addWidget(key.button, row, column, 1, columnsOfKey);
}

void OnScreenKeyboard::addCharacters(QGridLayout* keys)
{
    constexpr int shiftWidth = 4;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        int column = row + 1 == rows.size() ? shiftWidth : 0;
        for (qsizetype i = 0; i < rows[row].plain.size(); ++i) {
            const QString plain(rows[row].plain[i]);
            QPushButton* button = makeKey(u"key"_s + plain, plain);
            addCharacter(keys, static_cast<int>(row), column,
                         {button, plain, QString(rows[row].shifted[i]), QString(rows[row].symbols[i])});
            column += columnsOfKey;
        }
    }
}

void OnScreenKeyboard::addOthers(QGridLayout* keys)
{
    QPushButton* backspace = makeIconKey(u"keyBackspace"_s, IconId::Backspace, u"Cancella carattere"_s);
    QPushButton* enter = makeIconKey(u"keyEnter"_s, IconId::Enter, u"Invio"_s);
    QPushButton* space = makeKey(u"keySpace"_s, {}, u"Spazio"_s);
    QPushButton* left = makeIconKey(u"keyLeft"_s, IconId::Previous, u"A sinistra"_s);
    QPushButton* right = makeIconKey(u"keyRight"_s, IconId::Next, u"A destra"_s);
    QPushButton* close = makeIconKey(u"keyHide"_s, IconId::HideKeyboard, u"Nascondi"_s);
    m_shiftKey = makeIconKey(u"keyShift"_s, IconId::Shift, u"Maiuscole"_s);
    m_symbolsKey = makeKey(u"keySymbols"_s, u"#+="_s, u"Simboli"_s);
    m_shiftKey->setCheckable(true);
    m_symbolsKey->setCheckable(true);
    backspace->setAutoRepeat(true);
    left->setAutoRepeat(true);
    right->setAutoRepeat(true);

    keys->addWidget(backspace, 0, 24, 1, 2);
    keys->addWidget(enter, 2, 24, 1, 2);
    keys->addWidget(m_shiftKey, 3, 0, 1, 4);
    keys->addWidget(m_symbolsKey, 4, 0, 1, 4);
    keys->addWidget(left, 4, 4, 1, 2);
    keys->addWidget(space, 4, 6, 1, 14);
    keys->addWidget(right, 4, 20, 1, 2);
    keys->addWidget(close, 4, 22, 1, 4);

    connect(backspace, &QPushButton::clicked, this, [this] { sendKey(Qt::Key_Backspace); });
    connect(enter, &QPushButton::clicked, this, [this] { sendKey(Qt::Key_Return, u"\r"_s); });
    connect(space, &QPushButton::clicked, this, [this] { sendText(u" "_s); });
    connect(left, &QPushButton::clicked, this, [this] { sendKey(Qt::Key_Left); });
    connect(right, &QPushButton::clicked, this, [this] { sendKey(Qt::Key_Right); });
    connect(close, &QPushButton::clicked, this, &QWidget::hide);
    connect(m_shiftKey, &QPushButton::clicked, this, &OnScreenKeyboard::pressShift);
    connect(m_symbolsKey, &QPushButton::clicked, this, &OnScreenKeyboard::pressSymbols);
}

const QString& OnScreenKeyboard::captionOf(const CharacterKey& key) const
{
    if (m_symbols) {
        return key.symbol;
    }
    return m_shift == Shift::Off ? key.plain : key.shifted;
}

void OnScreenKeyboard::typeCharacter(int key)
{
    const QPointer<OnScreenKeyboard> self(this);
    sendText(QString(captionOf(m_characters[key])));
    if (self && m_shift == Shift::Once) {
        m_shift = Shift::Off;
        captionKeys();
    }
}

void OnScreenKeyboard::pressShift()
{
    switch (m_shift) {
    case Shift::Off:
        m_shift = Shift::Once;
        break;
    case Shift::Once:
        m_shift = Shift::Locked;
        break;
    case Shift::Locked:
        m_shift = Shift::Off;
        break;
    }
    m_symbols = false;
    captionKeys();
}

void OnScreenKeyboard::pressSymbols()
{
    m_symbols = !m_symbols;
    captionKeys();
}

void OnScreenKeyboard::captionKeys()
{
    for (const CharacterKey& key : m_characters) {
        const QString& caption = captionOf(key);
        // A single ampersand would be taken for the mark of a shortcut.
        key.button->setText(caption == u"&" ? u"&&"_s : caption);
        key.button->setAccessibleName(caption);
    }
    m_shiftKey->setChecked(m_shift != Shift::Off);
    m_shiftKey->setToolTip(m_shift == Shift::Locked ? u"Maiuscole bloccate"_s : u"Maiuscole"_s);
    m_symbolsKey->setChecked(m_symbols);
}

} // namespace zul
