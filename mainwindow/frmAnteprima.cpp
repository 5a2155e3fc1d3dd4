#include "mainwindow/frmAnteprima.h"

#include "controls/fields/ButtonKeys.h"
#include "controls/look/CommonLook.h"
#include "controls/look/Icons.h"
#include "messages/SmsCount.h"
#include "session/FormHelpers.h"
#include "session/WindowMemory.h"
#include "session/frmTasti.h"

#include <QBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <algorithm>
#include <utility>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* FormName = "frmAnteprima";

QLabel* label(const QString& name, const QString& accessibleName)
{
    auto* made = new QLabel;
    made->setObjectName(name);
    made->setAccessibleName(accessibleName);
    made->setTextFormat(Qt::PlainText);
    made->setWordWrap(true);
    return made;
}

QPushButton* command(const QString& name, const QString& caption, const QIcon& picture)
{
    auto* made = new QPushButton(picture, caption);
    made->setObjectName(name);
    made->setAutoDefault(false);
    return made;
}

} // namespace

frmAnteprima::frmAnteprima(PreviewKind kind, std::vector<int> marked, int row, Fill fill, QWidget* parent)
    : QDialog(parent)
    , m_kind(kind)
    , m_marked(std::move(marked))
    , m_fill(std::move(fill))
    , m_row(row)
    , m_customer(label(u"lblCliente"_s, u"Cliente"_s))
    , m_recipient(label(u"lblDestinatario"_s, u"Destinatario"_s))
    , m_position(label(u"lblPosizione"_s, u"Posizione"_s))
    , m_text(new QPlainTextEdit)
    , m_count(label(u"lblConta"_s, u"Lunghezza"_s))
    , m_hindrance(label(u"lblAvviso"_s, u"Avviso"_s))
    , m_previous(command(u"cmdPrecedente"_s, u"&Precedente"_s, icon(IconId::Previous)))
    , m_next(command(u"cmdSuccessivo"_s, u"&Successivo"_s, icon(IconId::Next)))
{
    setObjectName(QLatin1String(FormName));
    setWindowTitle(m_kind == PreviewKind::Sms ? u"Anteprima dell'SMS"_s : u"Anteprima della notifica push"_s);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    build();
    connect(m_previous, &QPushButton::clicked, this, [this] { turn(-1); });
    connect(m_next, &QPushButton::clicked, this, [this] { turn(1); });
    showRow(m_row);
    m_text->setFocus();
}

void frmAnteprima::build()
{
    m_text->setObjectName(u"txtAnteprima"_s);
    m_text->setAccessibleName(u"Messaggio"_s);
    m_text->setReadOnly(true);
    m_text->setTabChangesFocus(true);
    m_customer->setProperty("heading", true);
    m_recipient->setProperty("quiet", true);
    m_position->setProperty("quiet", true);
    m_count->setProperty("quiet", true);
    auto* close = command(u"cmdChiudi"_s, u"&Chiudi"_s, icon(IconId::Close, IconTone::OnAccent));
    close->setProperty("primary", true);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);

    auto* commands = new QHBoxLayout;
    commands->setSpacing(look::grid);
    commands->addWidget(m_previous);
    commands->addWidget(m_next);
    commands->addWidget(m_position, 1);
    commands->addWidget(close);
    constexpr int Margin = 12;
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(Margin, Margin, Margin, Margin);
    all->setSpacing(look::grid);
    for (QWidget* line : {static_cast<QWidget*>(m_customer), static_cast<QWidget*>(m_recipient)}) {
        all->addWidget(line);
    }
    all->addWidget(m_text, 1);
    all->addWidget(m_count);
    all->addWidget(m_hindrance);
    all->addLayout(commands);
    setUpForm(this);
    new ButtonKeys(this);
    frmTasti::openByF1(this);
    applyCommonLook(this, parentWidget() != nullptr && parentWidget()->window()->property("touch").toBool());
    constexpr int Width = 520;
    constexpr int Height = 360;
    resize(qRound(systemSized(Width)), qRound(systemSized(Height)));
    new WindowMemory(this, WindowMemory::Keeps::Size);
}

void frmAnteprima::showRow(int row)
{
    const MessagePreview preview = m_fill(row);
    const QLocale locale;
    m_row = row;
    m_customer->setText(preview.customer.trimmed().isEmpty() ? u"(senza nome)"_s
                                                             : preview.customer.trimmed());
    m_recipient->setText(preview.recipient.isEmpty() ? u"(nessun recapito)"_s : preview.recipient);
    m_text->setPlainText(preview.text);
    SmsCount count = countSms(preview.text);
    count.estimate = false; // what the host left in braces goes out so
    m_count->setText(m_kind == PreviewKind::Sms ? smsCountLine(count, locale)
                                                : characterCount(count.characters, locale));
    m_hindrance->setText(preview.hindrance);
    const auto place = std::lower_bound(m_marked.begin(), m_marked.end(), row);
    const bool ticked = place != m_marked.end() && *place == row;
    m_position->setText(!ticked ? u"non selezionato"_s
                        : m_marked.size() == 1
                            ? u"1 di 1 selezionato"_s
                            : u"%1 di %2 selezionati"_s.arg(locale.toString(place - m_marked.begin() + 1),
                                                            locale.toString(m_marked.size())));
    m_previous->setEnabled(neighbour(-1) >= 0);
    m_next->setEnabled(neighbour(1) >= 0);
}

int frmAnteprima::neighbour(int step) const
{
    if (step > 0) {
        const auto next = std::upper_bound(m_marked.begin(), m_marked.end(), m_row);
        return next == m_marked.end() ? -1 : *next;
    }
    const auto here = std::lower_bound(m_marked.begin(), m_marked.end(), m_row);
    return here == m_marked.begin() ? -1 : *(here - 1);
}

void frmAnteprima::turn(int step)
{
    trapped(formProcedure(QLatin1String(FormName), u"cmdSuccessivo_Click"_s), [&] {
        const int row = neighbour(step);
        if (row >= 0) {
            showRow(row);
        }
    });
}

} // namespace zul
