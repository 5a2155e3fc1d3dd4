// The selector fields of the main window: each is filled from a table through the lookup dialog.
#pragma once

#include "session/ComponentObject.h"

#include <QObject>
#include <QString>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

class SelectorField;

/// A selector field and how it takes a choice.
struct LookupField
{
    enum class Takes
    {
        Text,
        TextAndId
    };
    /// Recurrence and classification take the choice only after "OK"; the others after anything but "ESC", a
    /// dialog closed by its close button included. That is meant.
    enum class Accepts
    {
        OnlyOk,
        AllButEsc
    };

    SelectorField* field;
    QString control; ///< the control's name in reports, without an index
    QString table;   ///< what the dialog is asked to show
    Takes takes;
    Accepts accepts;
};

class LookupFields : public QObject
{
    Q_OBJECT

public:
    /// @param form owner of the dialogs
    explicit LookupFields(QWidget* form);

    /// The object that has the host fill the dialog's grid; not owned.
    void setFiller(ComponentObject* filler) { m_filler = filler; }

    /// Answers the field's two requests from now on.
    void add(const LookupField& lookup);

    /// What a clear request does: an empty text, and id -1 where the field takes an id.
    static void clear(SelectorField* field, LookupField::Takes takes);

Q_SIGNALS:
    /// A choice was accepted; the field holds it.
    void chosen(zul::SelectorField* field);

private:
    void requestSelection(const LookupField& lookup);

    QWidget* m_form;
    ComponentObject* m_filler = nullptr;
};

} // namespace zul
