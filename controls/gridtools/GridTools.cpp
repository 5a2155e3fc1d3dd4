#include "controls/gridtools/GridTools.h"

#include "controls/look/Icons.h"
#include "controls/notices/MessageSeam.h"
#include "controls/report/ReportGrid.h"
#include "grid/CsvFile.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QProgressDialog>
#include <QStandardPaths>
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
    , m_counts(new QLabel(this))
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
    // The counts give way: what can be done stays to be seen in a narrow window.
    m_counts->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    row->addWidget(m_counts, 1);
    row->addWidget(m_find);
    row->addWidget(m_invert);
    row->addWidget(m_export);
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
    count();
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
    const QString text = countsText(counts, m_noun, QLocale());
    if (text != m_counts->text()) {
        m_counts->setText(text);
        m_counts->setToolTip(text);
    }
    m_invert->setEnabled(counts.records > 0);
    m_export->setEnabled(counts.records > 0);
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
    QFileDialog dialog(window(), u"Esporta l'elenco"_s);
    dialog.setObjectName(u"dialogoEsporta"_s);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilter(u"File CSV (*.csv)"_s);
    dialog.setDefaultSuffix(u"csv"_s);
    dialog.setDirectory(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    dialog.selectFile(m_noun.several + u".csv"_s);
    if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
        writeFile(dialog.selectedFiles().first(), rows);
    }
}

void GridTools::writeFile(const QString& path, Rows rows)
{
    const std::vector<uint32_t> records = recordsOf(*m_grid, rows);
    CsvContent content{m_grid->store(), {}, records};
    for (const int column : m_grid->columnsInScreenOrder()) {
        if (column != m_grid->checkColumn()) {
            content.columns.push_back({column, m_grid->columnCaption(column)});
        }
    }
    QProgressDialog progress(u"Esportazione in corso…"_s, u"Annulla"_s, 0, static_cast<int>(records.size()),
                             window());
    progress.setObjectName(u"avanzamentoEsporta"_s);
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(400);
    const CsvResult result = writeCsv(path, content, [&progress](size_t done) {
        progress.setValue(static_cast<int>(done));
        return !progress.wasCanceled();
    });
    progress.reset();
    if (!result.written && !result.why.isEmpty()) {
        ask(window(), notice(u"Esportazione non riuscita: "_s + result.why, MessageIcon::Exclamation));
    }
}

} // namespace zul
