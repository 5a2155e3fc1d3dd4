#include "session/frmTasti.h"

#include "controls/fields/ButtonKeys.h"
#include "controls/look/CommonLook.h"
#include "controls/look/Icons.h"
#include "session/FormHelpers.h"
#include "session/KeyTable.h"
#include "session/WindowMemory.h"

#include <QPushButton>
#include <QShortcut>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

QString asHtml(const std::vector<KeyTableSection>& sections)
{
    QString html;
    for (const KeyTableSection& section : sections) {
        html += u"<h3>%1</h3><table width=\"100%\" cellspacing=\"0\" cellpadding=\"4\">"_s.arg(
            section.title.toHtmlEscaped());
        for (const KeyTableRow& row : section.rows) {
            html += u"<tr><td width=\"36%\"><b>%1</b></td><td>%2</td></tr>"_s.arg(row.keys.toHtmlEscaped(),
                                                                                  row.action.toHtmlEscaped());
        }
        html += u"</table>"_s;
    }
    return html;
}

} // namespace

frmTasti::frmTasti(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(u"frmTasti"_s);
    setWindowTitle(u"Tasti"_s);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto* table = new QTextBrowser;
    table->setObjectName(u"txtTasti"_s);
    table->setAccessibleName(u"Tasti delle finestre"_s);
    auto* close = new QPushButton(u"&Chiudi"_s);
    close->setObjectName(u"cmdChiudi"_s);
    close->setAutoDefault(false);
    close->setProperty("primary", true);
    close->setIcon(icon(IconId::Close, IconTone::OnAccent));
    connect(close, &QPushButton::clicked, this, &QDialog::reject);

    constexpr int Margin = 12;
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(Margin, Margin, Margin, Margin);
    all->setSpacing(look::grid);
    all->addWidget(table, 1);
    all->addWidget(close, 0, Qt::AlignRight);
    setUpForm(this);
    new ButtonKeys(this);
    applyCommonLook(this, parent != nullptr && parent->window()->property("touch").toBool());
    table->setHtml(asHtml(keyTable()));
    resize(qRound(systemSized(560)), qRound(systemSized(520)));
    new WindowMemory(this, WindowMemory::Keeps::Size);
}

void frmTasti::openByF1(QWidget* form)
{
    auto* help = new QShortcut(QKeySequence(Qt::Key_F1), form);
    help->setAutoRepeat(false);
    connect(help, &QShortcut::activated, form, [form] {
        trapped(formProcedure(form->objectName(), u"KeyDown"_s), [&] { frmTasti(form).exec(); });
    });
}

} // namespace zul
