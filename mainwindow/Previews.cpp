#include "mainwindow/Previews.h"

#include "controls/report/ReportGrid.h"
#include "mainwindow/FormAdapters.h"
#include "mainwindow/Pages.h"
#include "mainwindow/SendPages.h"
#include "mainwindow/TemplateEditors.h"
#include "mainwindow/frmAnteprima.h"
#include "messages/CreateSMS.h"
#include "messages/PushNotifications.h"
#include "session/FormHelpers.h"
#include "session/Session.h"
#include "ui_frmSMS.h"

#include <algorithm>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

std::vector<int> markedRows(const Recipients& rows)
{
    std::vector<int> marked;
    for (int row = 0; row < rows.count(); ++row) {
        if (rows.isMarked(row)) {
            marked.push_back(row);
        }
    }
    return marked;
}

/// The row with the focus; without one the first ticked, or the first of all.
int startRow(const ReportGrid& grid, const std::vector<int>& marked)
{
    const int64_t current = grid.currentRecord();
    const std::vector<uint32_t>& shown = grid.recordsInScreenOrder();
    const auto found =
        std::find_if(shown.begin(), shown.end(), [current](uint32_t record) { return record == current; });
    if (found != shown.end()) {
        return static_cast<int>(found - shown.begin());
    }
    return marked.empty() ? 0 : marked.front();
}

} // namespace

Previews::Previews(Ui::frmSMS& ui, const SendPages& choices, const TemplateEditors& editors, QWidget* form)
    : QObject(form)
    , m_ui(ui)
    , m_choices(choices)
    , m_editors(editors)
    , m_form(form)
{
    connect(m_ui.cmdAnteprima_0_, &QPushButton::clicked, this, [this] { show(PreviewKind::Sms); });
    connect(m_ui.cmdAnteprima_1_, &QPushButton::clicked, this, [this] { show(PreviewKind::Push); });
}

QString Previews::textOf(PreviewKind kind) const
{
    const SendChoices choices = m_choices.choices();
    if (kind == PreviewKind::Push) {
        return pushText(choices);
    }
    const bool editorIsOpen = !m_ui.txtTestoMessaggio_0_->isHidden();
    if (editorIsOpen || choices.idSms < 1) {
        return m_editors.smsText();
    }
    return readTemplateText(session().connection(), choices.idSms);
}

void Previews::show(PreviewKind kind)
{
    trapped(smsProcedure(u"cmdAnteprima_Click"_s), [&] {
        const GridRecipients rows(*m_ui.grdClienti);
        if (rows.count() == 0) {
            tellOperator(m_form, u"Per l'anteprima serve un cliente: eseguire prima la ricerca."_s);
            return;
        }
        const QString text = textOf(kind);
        if (text.isEmpty()) {
            tellOperator(m_form, u"Per l'anteprima serve un testo: sceglierlo o scriverlo."_s);
            return;
        }
        const std::vector<int> marked = markedRows(rows);
        const hostlib::SqlConnection connection = session().connection();
        frmAnteprima window(
            kind, marked, startRow(*m_ui.grdClienti, marked),
            [&](int row) { return previewMessage(connection, kind, rows, row, text); }, m_form);
        window.exec();
    });
}

} // namespace zul
