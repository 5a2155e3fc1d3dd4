#include "host/services/FrmRicercaAvanzata.h"

#include <QComboBox>
#include <QDate>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

// The pictures stand in a static library, which nothing else would pull in; outside any namespace.
static void loadPictures()
{
    Q_INIT_RESOURCE(host);
}

namespace zul::host {

namespace {

constexpr int margin = 16;
constexpr int gap = 8;
constexpr int fieldHeight = 28;

// Flat, in the palette's own colours, so that a dark palette stays dark.
constexpr const char* look = R"(
QDialog, QScrollArea, QWidget#pnlRighe { background: palette(base); }
QScrollArea { border: 1px solid palette(mid); border-radius: 3px; }
QLabel#lblTitolo { font-size: 13pt; font-weight: 600; color: palette(text); }
QLabel#lblErrore { color: #c62828; }
QLabel, QRadioButton { color: palette(text); }
QLineEdit, QComboBox { border: 1px solid palette(mid); border-radius: 3px; padding: 2px 6px;
  background: palette(base); color: palette(text); min-height: 22px; }
QLineEdit:focus, QComboBox:focus { border: 1px solid palette(highlight); }
QComboBox::drop-down { border: 0; width: 20px; }
QComboBox::down-arrow { image: url(:/host/down.svg); width: 10px; height: 6px; }
QComboBox QAbstractItemView { background: palette(base); color: palette(text);
  selection-background-color: palette(highlight); selection-color: palette(highlighted-text); }
QPushButton { border: 1px solid palette(mid); border-radius: 3px; padding: 4px 16px; min-height: 18px;
  background: palette(base); color: palette(text); }
QPushButton:hover, QPushButton:focus { border-color: palette(highlight); }
QPushButton:pressed { background: palette(midlight); }
QPushButton#cmdOK { background: palette(highlight); color: palette(highlighted-text);
  border-color: palette(highlight); }
QToolButton { border: 1px solid transparent; border-radius: 3px; padding: 2px; color: palette(text); }
QToolButton:hover, QToolButton:focus { border-color: palette(mid); }
)";

QComboBox* comboBox(QWidget* parent, int width, const QString& accessibleName)
{
    auto* box = new QComboBox(parent);
    box->setFixedHeight(fieldHeight);
    box->setMinimumWidth(width);
    box->setAccessibleName(accessibleName);
    box->setMaxVisibleItems(20);
    return box;
}

} // namespace

FrmRicercaAvanzata::FrmRicercaAvanzata(QWidget* parent)
    : QDialog(parent)
{
    loadPictures();
    setObjectName(QStringLiteral("frmRicercaAvanzata"));
    setWindowTitle(QStringLiteral("Ricerca avanzata"));
    setStyleSheet(QString::fromUtf8(look));

    auto* title = new QLabel(QStringLiteral("Clienti che soddisfano"), this);
    title->setObjectName(QStringLiteral("lblTitolo"));
    m_all = new QRadioButton(QStringLiteral("tutte le condizioni"), this);
    m_all->setObjectName(QStringLiteral("optTutte"));
    m_all->setChecked(true);
    m_any = new QRadioButton(QStringLiteral("almeno una condizione"), this);
    m_any->setObjectName(QStringLiteral("optAlmenoUna"));
    auto* joining = new QHBoxLayout;
    joining->setSpacing(2 * gap);
    joining->addWidget(m_all);
    joining->addWidget(m_any);
    joining->addStretch();

    auto* panel = new QWidget(this);
    panel->setObjectName(QStringLiteral("pnlRighe"));
    m_lines = new QVBoxLayout;
    m_lines->setSpacing(gap);
    auto* panelLayout = new QVBoxLayout(panel);
    panelLayout->setContentsMargins(gap, gap, gap, gap);
    panelLayout->addLayout(m_lines);
    panelLayout->addStretch();
    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(panel);
    scroll->setMinimumSize(680, 5 * (fieldHeight + gap) + gap);
    // A row that was added is in sight.
    connect(scroll->verticalScrollBar(), &QScrollBar::rangeChanged, scroll->verticalScrollBar(),
            [bar = scroll->verticalScrollBar()](int, int last) { bar->setValue(last); });

    m_error = new QLabel(this);
    m_error->setObjectName(QStringLiteral("lblErrore"));
    m_error->setMinimumHeight(fontMetrics().height());

    auto* add = new QPushButton(QStringLiteral("Aggiungi condizione"), this);
    add->setObjectName(QStringLiteral("cmdAggiungi"));
    add->setAutoDefault(false);
    auto* cancel = new QPushButton(QStringLiteral("Annulla"), this);
    cancel->setObjectName(QStringLiteral("cmdAnnulla"));
    cancel->setAutoDefault(false);
    auto* ok = new QPushButton(QStringLiteral("Applica"), this);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(gap);
    buttons->addWidget(add);
    buttons->addStretch();
    buttons->addWidget(cancel);
    buttons->addWidget(ok);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(gap);
    layout->addWidget(title);
    layout->addLayout(joining);
    layout->addWidget(scroll, 1);
    layout->addWidget(m_error);
    layout->addLayout(buttons);

    connect(add, &QPushButton::clicked, this, &FrmRicercaAvanzata::addRow);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    addRow();
    setTabOrder(m_all, m_any);
    setTabOrder(add, cancel);
    setTabOrder(cancel, ok);
}

void FrmRicercaAvanzata::addRow()
{
    Row row;
    row.line = new QWidget(this);
    row.field = comboBox(row.line, 190, QStringLiteral("Campo"));
    for (const SearchField& field : searchFields()) {
        row.field->addItem(QString::fromUtf8(field.label));
    }
    row.comparison = comboBox(row.line, 160, QStringLiteral("Confronto"));
    row.value = new QLineEdit(row.line);
    row.value->setFixedHeight(fieldHeight);
    row.value->setAccessibleName(QStringLiteral("Valore"));
    // The line keeps its shape where a comparison wants no value.
    QSizePolicy keeps = row.value->sizePolicy();
    keeps.setRetainSizeWhenHidden(true);
    row.value->setSizePolicy(keeps);
    row.remove = new QToolButton(row.line);
    row.remove->setText(QStringLiteral("✕"));
    row.remove->setFixedSize(fieldHeight, fieldHeight);
    row.remove->setToolTip(QStringLiteral("Togli la condizione"));
    row.remove->setAccessibleName(QStringLiteral("Togli la condizione"));
    auto* layout = new QHBoxLayout(row.line);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(gap);
    layout->addWidget(row.field);
    layout->addWidget(row.comparison);
    layout->addWidget(row.value, 1);
    layout->addWidget(row.remove);
    m_lines->addWidget(row.line);
    row.line->show();
    m_rows.push_back(row);
    nameRows();
    offerComparisons(row);
    connect(row.field, &QComboBox::currentIndexChanged, this, [this, row] { offerComparisons(row); });
    connect(row.comparison, &QComboBox::currentIndexChanged, this, [this, row] { adaptValue(row); });
    connect(row.remove, &QToolButton::clicked, this, [this, line = row.line] { removeRow(line); });
    connect(row.value, &QLineEdit::textEdited, m_error, &QLabel::clear);
    row.field->setFocus();
}

void FrmRicercaAvanzata::removeRow(QWidget* line)
{
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [&](const Row& row) { return row.line == line; });
    if (found == m_rows.end()) {
        return;
    }
    m_rows.erase(found);
    m_lines->removeWidget(line);
    line->hide();
    // Its own button is still being clicked.
    line->deleteLater();
    for (QWidget* child : line->findChildren<QWidget*>()) {
        child->setObjectName({});
    }
    m_error->clear();
    if (m_rows.empty()) {
        addRow();
    } else {
        nameRows();
    }
}

void FrmRicercaAvanzata::nameRows()
{
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const QString number = QStringLiteral("(%1)").arg(i);
        m_rows[i].field->setObjectName("cbbCampo" + number);
        m_rows[i].comparison->setObjectName("cbbConfronto" + number);
        m_rows[i].value->setObjectName("txtValore" + number);
        m_rows[i].remove->setObjectName("cmdTogli" + number);
    }
}

// A comparison that the new field knows too stays chosen.
void FrmRicercaAvanzata::offerComparisons(const Row& row)
{
    const QString chosen = row.comparison->currentText();
    const SearchField& field = searchFields()[static_cast<std::size_t>(row.field->currentIndex())];
    {
        const QSignalBlocker blocker(row.comparison);
        row.comparison->clear();
        for (const SearchComparison comparison : comparisonsFor(field.kind)) {
            row.comparison->addItem(comparisonLabel(comparison), static_cast<int>(comparison));
        }
        row.comparison->setCurrentIndex(std::max(0, row.comparison->findText(chosen)));
    }
    adaptValue(row);
}

void FrmRicercaAvanzata::adaptValue(const Row& row)
{
    const SearchField& field = searchFields()[static_cast<std::size_t>(row.field->currentIndex())];
    row.value->setVisible(takesValue(static_cast<SearchComparison>(row.comparison->currentData().toInt())));
    row.value->setPlaceholderText(field.kind == SearchKind::Date
                                      ? QLocale().toString(QDate(1980, 12, 31), QLocale::ShortFormat)
                                      : QString());
    m_error->clear();
}

SearchRow FrmRicercaAvanzata::searchRow(const Row& row) const
{
    return {row.field->currentIndex(), static_cast<SearchComparison>(row.comparison->currentData().toInt()),
            row.value->text()};
}

void FrmRicercaAvanzata::accept()
{
    std::vector<SearchRow> rows;
    rows.reserve(m_rows.size());
    std::transform(m_rows.begin(), m_rows.end(), std::back_inserter(rows),
                   [this](const Row& row) { return searchRow(row); });
    const SearchResult result = buildSearch(rows, m_all->isChecked(), QLocale());
    if (!result.error.isEmpty()) {
        m_error->setText(result.error);
        QLineEdit* const value = m_rows[static_cast<std::size_t>(result.row)].value;
        value->setFocus();
        value->selectAll();
        return;
    }
    m_error->clear();
    m_sql = result.sql;
    QDialog::accept();
}

} // namespace zul::host
