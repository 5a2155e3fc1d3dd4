// "Anteprima" of the send pages: a message as one customer would get it.
#pragma once

#include "messages/MessagePreview.h"

#include <QObject>

QT_FORWARD_DECLARE_CLASS(QWidget)

QT_BEGIN_NAMESPACE
namespace Ui {
class frmSMS;
}
QT_END_NAMESPACE

namespace zul {

class SendPages;
class TemplateEditors;

/// Each of the two buttons opens the window of the preview at the row that has the focus in the result grid, or at the
/// first ticked one. The host is asked when a button is pressed, and not before.
class Previews : public QObject
{
    Q_OBJECT

public:
    /// @param form owner of the window
    Previews(Ui::frmSMS& ui, const SendPages& choices, const TemplateEditors& editors, QWidget* form);

private:
    void show(PreviewKind kind);
    /// The text that the run would take. An SMS template is read anew, as the run reads it.
    QString textOf(PreviewKind kind) const;

    Ui::frmSMS& m_ui;
    const SendPages& m_choices;
    const TemplateEditors& m_editors;
    QWidget* m_form;
};

} // namespace zul
