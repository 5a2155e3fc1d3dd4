#include "controls/gridtools/GridFindBar.h"

#include "controls/fields/ButtonKeys.h"
#include "controls/gridtools/WrapLayout.h"
#include "controls/look/Icons.h"
#include "controls/report/ReportGrid.h"

#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QToolButton>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

QToolButton* makeButton(QWidget* bar, IconId iconId, const QString& objectName, const QString& name,
                        const QString& keys)
{
    auto* button = new QToolButton(bar);
    button->setObjectName(objectName);
    button->setIcon(icon(iconId));
    button->setToolTip(name + u" ("_s + keys + u')');
    button->setAccessibleName(name);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

QString noMatch()
{
    return u"Nessuna corrispondenza"_s;
}

} // namespace

GridFindBar::GridFindBar(ReportGrid* grid)
    : QWidget(grid)
    , m_grid(grid)
    , m_text(new QLineEdit(this))
    , m_matches(new QLabel(this))
    , m_previous(
          makeButton(this, IconId::Previous, u"cmdTrovaPrecedente"_s, u"Precedente"_s, u"Maiusc+Invio"_s))
    , m_next(makeButton(this, IconId::Next, u"cmdTrovaSuccessivo"_s, u"Successivo"_s, u"Invio"_s))
    , m_onlyMatches(new QCheckBox(u"Solo i corrispondenti"_s, this))
    , m_onlyTicked(new QCheckBox(u"Solo i selezionati"_s, this))
    , m_close(makeButton(this, IconId::Clear, u"cmdChiudiTrova"_s, u"Chiudi e mostra tutto"_s, u"Esc"_s))
{
    setObjectName(u"barraTrova"_s);
    setAccessibleName(u"Trova nell'elenco"_s);
    m_text->setObjectName(u"txtTrova"_s);
    m_text->setPlaceholderText(u"Trova nelle colonne mostrate"_s);
    m_text->setAccessibleName(u"Testo da trovare"_s);
    m_text->setMaximumWidth(260);
    m_text->installEventFilter(this);
    m_matches->setObjectName(u"lblTrovati"_s);
    m_matches->setProperty("quiet", true);
    m_onlyMatches->setObjectName(u"chkSoloCorrispondenti"_s);
    m_onlyTicked->setObjectName(u"chkSoloSelezionati"_s);
    m_matches->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    auto* row = new WrapLayout(this);
    row->setContentsMargins(4, 4, 4, 4);
    row->setSpacing(4);
    for (QWidget* part : std::initializer_list<QWidget*>{m_text, m_previous, m_next, m_matches, m_onlyMatches,
                                                         m_onlyTicked, m_close}) {
        row->addWidget(part);
    }
    new ButtonKeys(this);
    hide();

    connect(m_text, &QLineEdit::textChanged, this, &GridFindBar::textChanged);
    connect(m_previous, &QToolButton::clicked, this, [this] { find(false); });
    connect(m_next, &QToolButton::clicked, this, [this] { find(true); });
    connect(m_onlyMatches, &QCheckBox::toggled, this, &GridFindBar::filter);
    connect(m_onlyTicked, &QCheckBox::toggled, this, &GridFindBar::filter);
    connect(m_close, &QToolButton::clicked, this, &GridFindBar::closeBar);
    connect(grid, &ReportGrid::selectionChanged, this, &GridFindBar::gridChanged);
}

void GridFindBar::open()
{
    m_onlyTicked->setVisible(m_grid->checkColumn() >= 0);
    show();
    // Room for every answer: what stands behind it does not move while one types.
    m_matches->setMinimumWidth(m_matches->fontMetrics().horizontalAdvance(noMatch()));
    m_text->selectAll();
    m_text->setFocus(Qt::ShortcutFocusReason);
}

void GridFindBar::closeBar()
{
    hide();
    m_text->clear();
    m_onlyMatches->setChecked(false);
    m_onlyTicked->setChecked(false);
    m_grid->setFocus(Qt::OtherFocusReason);
}

QList<QWidget*> GridFindBar::stops() const
{
    return {m_text, m_previous, m_next, m_onlyMatches, m_onlyTicked, m_close};
}

void GridFindBar::textChanged()
{
    filter();
    const QString text = m_text->text();
    if (text.isEmpty()) {
        m_matches->clear();
        return;
    }
    // A row that holds what was typed so far stays, while it holds what is typed now.
    tellMatches(m_grid->findText(text, ReportGrid::Find::Here));
}

void GridFindBar::filter()
{
    m_grid->setTextFilter(m_onlyMatches->isChecked() ? m_text->text() : QString());
    m_grid->setOnlyChecked(m_onlyTicked->isChecked());
}

void GridFindBar::find(bool forward)
{
    if (!m_text->text().isEmpty()) {
        tellMatches(
            m_grid->findText(m_text->text(), forward ? ReportGrid::Find::Next : ReportGrid::Find::Previous));
    }
}

void GridFindBar::tellMatches(bool found)
{
    const auto count = static_cast<qulonglong>(m_grid->matchCount(m_text->text()));
    m_matches->setText(!found       ? noMatch()
                       : count == 1 ? u"1 corrispondenza"_s
                                    : u"%1 corrispondenze"_s.arg(QLocale().toString(count)));
}

/// A new search takes all ticks away, and with them the choice to see only those.
void GridFindBar::gridChanged()
{
    if (m_onlyTicked->isChecked() && !m_grid->showsOnlyChecked()) {
        const QSignalBlocker blocker(m_onlyTicked);
        m_onlyTicked->setChecked(false);
    }
}

bool GridFindBar::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_text || event->type() != QEvent::KeyPress) {
        return QWidget::eventFilter(watched, event);
    }
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool shift = key->modifiers().testFlag(Qt::ShiftModifier);
    switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        find(!shift);
        return true;
    case Qt::Key_Down:
        find(true);
        return true;
    case Qt::Key_Up:
        find(false);
        return true;
    default:
        return QWidget::eventFilter(watched, event);
    }
}

void GridFindBar::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        closeBar();
    } else if (event->key() == Qt::Key_F3) {
        find(!event->modifiers().testFlag(Qt::ShiftModifier));
    } else if (event->matches(QKeySequence::Find)) {
        open();
    } else {
        QWidget::keyPressEvent(event);
    }
}

} // namespace zul
