// The two places of the main window where a text is typed and kept as a template.
#pragma once

#include <QObject>

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

private:
    void connectPushText();
    void toggleSmsEditor();
    void showSmsEditor(bool show);
    void showKeyboard(QWidget* field);
    void savePushTemplate();

    Ui::frmSMS& m_ui;
    QWidget* m_form;
};

} // namespace zul
