#include "mainwindow/TemplateEditors.h"

#include "base/OperatorText.h"
#include "controls/fields/FocusPaint.h"
#include "controls/look/Icons.h"
#include "mainwindow/FieldNote.h"
#include "mainwindow/Pages.h"
#include "messages/SmsCount.h"
#include "messages/salvaMessaggio.h"
#include "session/FormHelpers.h"
#include "session/Session.h"
#include "ui_frmSMS.h"

#include <QLineEdit>
#include <QLocale>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr int ImageNewText = 3; ///< numbers of the shared image list
constexpr int ImageConfirm = 9;

/// The index in the report is not filled in, as it never was.
Procedure clickProcedure()
{
    return {u"cmdNuovoTestoSMS_Click"_s, u") in procedure cmdNuovoTestoSMS(index)_Click of Form frmSMS"_s,
            QString::fromLatin1(SmsFormName)};
}

} // namespace

TemplateEditors::TemplateEditors(Ui::frmSMS& ui, QWidget* form)
    : QObject(form)
    , m_ui(ui)
    , m_form(form)
{
    m_ui.cmdNuovoTestoSMS_0_->setIcon(imageListIcon(ImageNewText));
    m_ui.cmdNuovoTestoSMS_1_->setIcon(icon(IconId::Save));
    m_ui.txtTestoMessaggio_0_->hide();
    connect(m_ui.cmdNuovoTestoSMS_0_, &QPushButton::clicked, this,
            [this] { trapped(clickProcedure(), [&] { toggleSmsEditor(); }); });
    connect(m_ui.cmdNuovoTestoSMS_1_, &QPushButton::clicked, this,
            [this] { trapped(clickProcedure(), [&] { savePushTemplate(); }); });
    connect(m_ui.txtTestoMessaggio_0_, &QPlainTextEdit::textChanged, this, &TemplateEditors::showSmsCount);
    // A selector raises no signal of its own for what the window writes into it.
    connect(qobject_cast<QLineEdit*>(FieldNote::textBox(m_ui.cntrMessaggio_0_)), &QLineEdit::textChanged,
            this, &TemplateEditors::showSmsCount);
    connectPushText();
}

QString TemplateEditors::smsText() const
{
    if (!m_ui.txtTestoMessaggio_0_->isHidden()) {
        return templateText(m_ui.txtTestoMessaggio_0_->toPlainText());
    }
    return chosenSmsText();
}

bool TemplateEditors::holdsUnsavedSms() const
{
    return !m_ui.txtTestoMessaggio_0_->isHidden() &&
           !templateText(m_ui.txtTestoMessaggio_0_->toPlainText()).isEmpty();
}

QString TemplateEditors::chosenSmsText() const
{
    const int id = m_ui.cntrMessaggio_0_->selectedId();
    if (id < 1) {
        return {};
    }
    return id == m_savedId ? m_savedText : m_ui.cntrMessaggio_0_->text();
}

void TemplateEditors::showSmsCount()
{
    trapped(smsProcedure(u"showSmsCount"_s),
            [&] { m_ui.lblContaSMS->setText(smsCountLine(countSms(smsText()), QLocale())); });
}

void TemplateEditors::connectPushText()
{
    auto* texts = new FocusPaint(this);
    texts->watch(m_ui.txtTestoMessaggio_1_, FocusSelect::Nothing, FocusPaint::Paint::No);
    connect(texts, &FocusPaint::entered, this, [this](QWidget* field) {
        trapped(smsProcedure(u"txtTestoMessaggio_GotFocus"_s), [&] {
            if (session().ShowTouchMode) {
                showKeyboard(field);
            }
        });
    });
    connect(texts, &FocusPaint::left, this, [this] {
        trapped(smsProcedure(u"txtTestoMessaggio_LostFocus"_s), [&] {
            if (session().ShowTouchMode && m_ui.txtTestoMessaggio_0_->isHidden()) {
                m_ui.Virtual_Keyboard->hide();
            }
        });
    });
}

void TemplateEditors::toggleSmsEditor()
{
    if (m_ui.txtTestoMessaggio_0_->isHidden()) {
        showSmsEditor(true);
        return;
    }
    const QString text = templateText(m_ui.txtTestoMessaggio_0_->toPlainText());
    if (!text.isEmpty()) {
        if (!askOperator(m_form,
                         u"Si conferma la preparazione dell'sms con il seguente testo?\r\n\r\n"_s + text)) {
            return;
        }
        const qint32 id = salvaMessaggio(session().connectionOrNone(), text);
        if (id > 0) {
            m_savedId = id;
            m_savedText = text;
            m_ui.cntrMessaggio_0_->setSelection(id, u"SMS ("_s + text + u')');
        }
    }
    showSmsEditor(false);
}

void TemplateEditors::showSmsEditor(bool show)
{
    m_ui.cmdNuovoTestoSMS_0_->setIcon(imageListIcon(show ? ImageConfirm : ImageNewText));
    m_ui.txtTestoMessaggio_0_->setVisible(show);
    m_ui.cntrMessaggio_0_->setVisible(!show);
    showSmsCount();
    if (!show) {
        m_ui.Virtual_Keyboard->hide();
        return;
    }
    showKeyboard(m_ui.txtTestoMessaggio_0_);
    m_ui.txtTestoMessaggio_0_->setFocus();
}

void TemplateEditors::showKeyboard(QWidget* field)
{
    m_ui.Virtual_Keyboard->attach(field);
    m_ui.Virtual_Keyboard->show();
    m_ui.Virtual_Keyboard->raise();
}

void TemplateEditors::savePushTemplate()
{
    const QString text = templateText(m_ui.txtTestoMessaggio_1_->toPlainText());
    if (text.isEmpty()) {
        return;
    }
    if (!askOperator(m_form,
                     u"Si desidera salvare il testo inserito come nuovo modello?\r\n\r\nTesto: "_s + text)) {
        return;
    }
    const qint32 id = salvaMessaggio(session().connectionOrNone(), text);
    if (id > 0) {
        m_ui.cntrMessaggio_1_->setSelection(id, text);
    }
}

} // namespace zul
