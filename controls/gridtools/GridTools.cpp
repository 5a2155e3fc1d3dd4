#include "controls/gridtools/GridTools.h"

#include "controls/gridtools/CsvExport.h"
#include "controls/gridtools/WrapLayout.h"
#include "controls/look/Icons.h"
#include "controls/report/ReportGrid.h"
#include "grid/CsvFile.h"

#include <QAction>
#include <QMenu>
#include <QTimer>
#include <QToolButton>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

QToolButton* makeTool(QWidget* parent, const QString& objectName, const QString& text, const QString& toolTip)
{
    auto* tool = new QToolButton(parent);
    tool->setObjectName(objectName);
    tool->setText(text);
    tool->setToolTip(toolTip);
    tool->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    tool->setFocusPolicy(Qt::NoFocus);
    return tool;
}

std::vector<uint32_t> recordsOf(const ReportGrid& grid, GridTools::Rows rows)
{
    if (rows == GridTools::Rows::Shown) {
        return grid.recordsInScreenOrder();
    }
    std::vector<uint32_t> ticked;
    ticked.reserve(grid.checkedCount());
    for (const uint32_t record : grid.allRecordsInScreenOrder()) {
        if (grid.isChecked(record)) {
            ticked.push_back(record);
        }
    }
    return ticked;
}

} // namespace

GridTools::GridTools(QWidget* parent)
    : QWidget(parent)
    , m_counts(new FactsLabel(this))
    , m_find(makeTool(this, u"cmdTrova"_s, u"Trova"_s, u"Trova e filtra nell'elenco (Ctrl+F)"_s))
    , m_invert(
          makeTool(this, u"cmdInvertiSelezione"_s, u"Inverti selezione"_s,
                   u"Seleziona le righe non selezionate e viceversa, anche quelle nascoste dal filtro"_s))
    , m_export(makeTool(this, u"cmdEsporta"_s, u"Esporta"_s, u"Salva le righe in un file CSV"_s))
{
    m_counts->setObjectName(u"lblConteggi"_s);
    m_find->setIcon(icon(IconId::Search));
    m_export->setIcon(icon(IconId::Save));
    auto* menu = new QMenu(m_export);
    m_export->setMenu(menu);
    m_export->setPopupMode(QToolButton::InstantPopup);
    connect(menu, &QMenu::aboutToShow, this, &GridTools::fillExportMenu);
    auto* row = new WrapLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    for (QWidget* part : std::initializer_list<QWidget*>{m_counts, m_find, m_invert, m_export}) {
        row->addWidget(part);
    }
}

void GridTools::setGrid(ReportGrid* grid, const GridNoun& noun)
{
    m_grid = grid;
    m_noun = noun;
    grid->setFindEnabled(true);
    m_counts->setAccessibleDescription(u"Conteggi dell'elenco"_s);
    connect(grid, &ReportGrid::checkChanged, this, &GridTools::countLater);
    connect(grid, &ReportGrid::selectionChanged, this, &GridTools::countLater);
    connect(m_find, &QToolButton::clicked, grid, &ReportGrid::openFindBar);
    connect(m_invert, &QToolButton::clicked, grid, &ReportGrid::invertChecked);
    // The key is named only: the rows take it themselves.
    auto* find = new QAction(u"Trova e filtra…\tCtrl+F"_s, this);
    connect(find, &QAction::triggered, grid, &ReportGrid::openFindBar);
    grid->addAction(find);
    m_exportShown = addCommand(u"Esporta le righe mostrate…"_s, Rows::Shown);
    m_exportShown->setShortcut(Qt::CTRL | Qt::Key_E);
    m_exportShown->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    m_exportShown->setAutoRepeat(false);
    m_exportTicked = addCommand(u"Esporta le righe selezionate…"_s, Rows::Ticked);
    count();
}

QAction* GridTools::addCommand(const QString& text, Rows rows)
{
    auto* command = new QAction(text, this);
    connect(command, &QAction::triggered, this, [this, rows] { exportRows(rows); });
    m_grid->addAction(command);
    return command;
}

/// A run takes off a hundred thousand ticks before anything is painted: they are counted once.
void GridTools::countLater()
{
    if (!m_counting) {
        m_counting = true;
        QTimer::singleShot(0, this, &GridTools::count);
    }
}

void GridTools::count()
{
    m_counting = false;
    const GridCounts counts = m_grid->counts();
    m_counts->tell(countsText(counts, m_noun, QLocale()));
    m_invert->setEnabled(counts.records > 0);
    m_export->setEnabled(counts.records > 0);
    m_exportShown->setEnabled(counts.shown > 0);
    m_exportTicked->setEnabled(counts.ticked > 0);
}

void GridTools::fillExportMenu()
{
    QMenu* menu = m_export->menu();
    menu->clear();
    const GridCounts counts = m_grid->counts();
    const auto add = [&](const QString& text, size_t count, Rows rows) {
        QAction* action = menu->addAction(text.arg(QLocale().toString(static_cast<qulonglong>(count))), this,
                                          [this, rows] { exportRows(rows); });
        action->setEnabled(count > 0);
    };
    add(u"Righe mostrate (%1)…"_s, counts.shown, Rows::Shown);
    add(u"Righe selezionate (%1)…"_s, counts.ticked, Rows::Ticked);
}

void GridTools::exportRows(Rows rows)
{
    const QString path = askCsvFile(window(), m_noun.several + u".csv"_s);
    if (path.isEmpty()) {
        return;
    }
    const std::vector<uint32_t> records = recordsOf(*m_grid, rows);
    CsvContent content{m_grid->store(), {}, records};
    for (const int column : m_grid->columnsInScreenOrder()) {
        if (column != m_grid->checkColumn()) {
            content.columns.push_back({column, m_grid->columnCaption(column)});
        }
    }
    exportCsv(window(), path, content);
}

} // namespace zul
