// The two places of the main window where a text is typed and kept as a template.
#pragma once

#include <QObject>
#include <QString>

QT_FORWARD_DECLARE_CLASS(QWidget)

QT_BEGIN_NAMESPACE
namespace Ui {
class frmSMS;
}
QT_END_NAMESPACE

namespace zul {

/// "Nuovo testo" of the SMS page opens an editor in the selector's place and, pressed again, saves its text;
/// "Salva come modello" of the push page saves the free text. The full keyboard comes and goes with the SMS
/// editor in every mode, with the push text in touch mode only.
class TemplateEditors : public QObject
{
    Q_OBJECT

public:
    /// @param form owner of the questions
    TemplateEditors(Ui::frmSMS& ui, QWidget* form);

    /// The text of an SMS as it stands, as far as it is known without asking the host: what is typed in the editor while
    /// that is open, else the chosen template's. Empty when there is none.
    QString smsText() const;
    /// The chosen template's text, whatever stands in the editor: it is what a run sends.
    QString chosenSmsText() const;
    /// Whether the editor is open and holds a text.
    bool holdsUnsavedSms() const;
    /// Counts that text anew, below the box.
    void showSmsCount();

private:
    void connectPushText();
    void toggleSmsEditor();
    void showSmsEditor(bool show);
    void showKeyboard(QWidget* field);
    void savePushTemplate();

    Ui::frmSMS& m_ui;
    QWidget* m_form;
    int m_savedId = -1; ///< the template that the SMS editor saved last, whose display text is not its text
    QString m_savedText;
};

} // namespace zul
