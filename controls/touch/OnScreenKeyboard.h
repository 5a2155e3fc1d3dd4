// The full on-screen keyboard, Italian.
#pragma once

#include "controls/touch/KeyPanel.h"

#include <QVector>

QT_FORWARD_DECLARE_CLASS(QGridLayout)

namespace zul {

/// Letters with the accented ones, digits, a page of symbols, space, backspace, enter, arrows and hide. Shift
/// holds for one key; pressed twice it stays until it is pressed again. It stands at the window's lower edge,
/// or at its upper edge when it would cover its field.
/// A character's key is named "key" and the small letter or sign on it (keya, key1, keyè); the others keyShift,
/// keySymbols, keySpace, keyBackspace, keyEnter, keyLeft, keyRight, keyHide.
class OnScreenKeyboard : public KeyPanel
{
    Q_OBJECT

public:
    explicit OnScreenKeyboard(QWidget* parent = nullptr);

    /// Binds the keyboard to a field (a line or a text of many lines); null binds it to none.
    void attach(QWidget* field);

    [[nodiscard]] QSize sizeHint() const override;

    /// Leaves room for the keyboard below what the window's layout holds, and makes the window at least as wide, so
    /// that in touch mode the keyboard covers nothing. Called once, before the window is shown.
    void leaveRoomIn(QWidget* window) const;

protected:
    [[nodiscard]] QRect placed(const QRect& field, const QRect& window,
                               const QList<QRect>& taken) const override;
    [[nodiscard]] bool isLarge() const override { return true; }

private:
    enum class Shift
    {
        Off,
        Once,
        Locked
    };

    struct CharacterKey
    {
        QPushButton* button;
        QString plain;
        QString shifted;
        QString symbol;
    };

    void addCharacters(QGridLayout* keys);
    void addCharacter(QGridLayout* keys, int row, int column, const CharacterKey& key);
    void addOthers(QGridLayout* keys);
    void typeCharacter(int key);
    void pressShift();
    void pressSymbols();
    void captionKeys();
    [[nodiscard]] const QString& captionOf(const CharacterKey& key) const;

    QVector<CharacterKey> m_characters;
    QPushButton* m_shiftKey = nullptr;
    QPushButton* m_symbolsKey = nullptr;
    Shift m_shift = Shift::Off;
    bool m_symbols = false;
};

} // namespace zul
