// A note on a single field: in its tool tip and its accessible description.
#pragma once

#include <QObject>
#include <QString>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

/// Adds a note to what a field's tool tip and accessible description say already; these may go on to change. A field
/// made of parts (a selector, a date) has the note at its text box.
class FieldNote : public QObject
{
public:
    /// Owned by the field.
    explicit FieldNote(QWidget* field);

    /// Where the text of a field stands: the field itself, or the part of it that is typed into.
    static QWidget* textBox(QWidget* field);

    /// @param text empty: no note
    /// @param unusable the field is drawn as one whose text cannot be used: its text box has the dynamic property
    ///        "unusable"
    void set(const QString& text, bool unusable);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void apply();
    QString noted(const QString& own) const;

    QWidget* m_box; ///< the field, or its text box
    QString m_text;
    QString m_ownToolTip;
    QString m_ownDescription;
    bool m_applying = false;
};

} // namespace zul
