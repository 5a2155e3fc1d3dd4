#include "controls/report/ReportGrid.h"

#include "controls/gridtools/GridFindBar.h"
#include "controls/report/GridHighlights.h"
#include "controls/report/GridMenu.h"
#include "controls/report/HeaderLayout.h"
#include "controls/report/ReportGridColors.h"
#include "controls/report/ReportGridModel.h"
#include "controls/report/ReportGridProbe.h"
#include "controls/report/ReportGridView.h"
#include "controls/report/ReportGroupBox.h"
#include "controls/report/ReportHeader.h"
#include "grid/GridLayoutFile.h"

#include <QEvent>
#include <QMenu>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace zul {

using namespace Qt::StringLiterals;

struct ReportGrid::Parts
{
    ReportGridModel* model = nullptr;
    ReportGroupBox* groupBox = nullptr;
    ReportGridView* view = nullptr;
    ReportHeader* header = nullptr;
    GridFindBar* findBar = nullptr;
    bool findEnabled = false;
    QObject* probe = nullptr;
};

ReportGrid::ReportGrid(QWidget* parent)
    : QWidget(parent)
    , m(std::make_unique<Parts>())
{
    m->model = new ReportGridModel(this);
    m->groupBox = new ReportGroupBox(m->model, this);
    m->view = new ReportGridView(m->model, this);
    m->header = m->view->header();
    m->header->setGroupBox(m->groupBox);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSpacing(0);
    layout->addWidget(m->groupBox);
    layout->addWidget(m->view, 1);
    setFocusProxy(m->view);
    m->view->installEventFilter(this);

    connect(m->header, &ReportHeader::sortRequested, this, [this](int column) {
        sortBy(column, column == sortColumn() && !isSortDescending());
        Q_EMIT columnLayoutChanged(SortChanged);
    });
    connect(m->header, &ReportHeader::groupRequested, this, [this](int column) {
        groupBy(column);
        Q_EMIT columnLayoutChanged(SortChanged);
    });
    connect(m->header, &ReportHeader::columnResized, this,
            [this] { Q_EMIT columnLayoutChanged(ColumnResized); });
    connect(m->header, &ReportHeader::columnMoved, this, [this] { Q_EMIT columnLayoutChanged(ColumnMoved); });
    connect(m->header, &ReportHeader::fitRequested, this, [this](int column) {
        m->header->stopSharing();
        m->header->setWidthOf(column, m->view->fittingWidth(column));
        Q_EMIT columnLayoutChanged(ColumnResized);
    });
    connect(m->header, &ReportHeader::menuRequested, this, &ReportGrid::showMenu);
    connect(m->view, &ReportGridView::menuRequested, this, &ReportGrid::showMenu);

    connect(m->groupBox, &ReportGroupBox::removeRequested, this, [this](int column) {
        ungroup(column);
        Q_EMIT columnLayoutChanged(SortChanged);
    });
    connect(m->groupBox, &ReportGroupBox::turnRequested, this, [this](int column) {
        std::vector<ReportSort> groups = m->model->groupColumns();
        for (ReportSort& group : groups) {
            group.descending = group.column == column ? !group.descending : group.descending;
        }
        keepingHighlights([&] { m->model->setGroupColumns(groups); });
        m->groupBox->groupsChanged();
        Q_EMIT columnLayoutChanged(SortChanged);
    });
    connect(m->groupBox, &ReportGroupBox::moveRequested, this, [this](int column, int position) {
        std::vector<int> columns = groupColumns();
        columns.erase(std::remove(columns.begin(), columns.end(), column), columns.end());
        columns.insert(columns.begin() + std::min(position, static_cast<int>(columns.size())), column);
        setGroups(columns);
        Q_EMIT columnLayoutChanged(SortChanged);
    });

    connect(m->view, &ReportGridView::recordDoubleClicked, this, &ReportGrid::recordDoubleClicked);
    connect(m->view, &ReportGridView::findRequested, this, &ReportGrid::openFindBar);
    connect(m->view, &ReportGridView::mouseReleasedOn, this, &ReportGrid::mouseReleasedOn);
    connect(m->view, &ReportGridView::keyPressed, this, &ReportGrid::gridKeyPressed);
    connect(m->view, &ReportGridView::checkToggled, this, &ReportGrid::checkChanged);
    connect(m->view, &ReportGridView::highlightChanged, this, &ReportGrid::selectionChanged);
}

ReportGrid::~ReportGrid() = default;

// --- Filling

void ReportGrid::deleteRecords()
{
    m->model->deleteRecords();
}

void ReportGrid::deleteColumns()
{
    m->model->deleteColumns();
    columnsChanged();
}

void ReportGrid::addColumn(const ReportColumn& column)
{
    addColumns({column});
}

void ReportGrid::addColumns(const std::vector<ReportColumn>& columns)
{
    m->model->addColumns(columns);
    columnsChanged();
}

/// Columns come at a fill, before any is sized or moved: so all begin anew.
void ReportGrid::columnsChanged()
{
    m->header->columnsChanged();
    m->header->setSortMark(m->model->sorting().column, m->model->sorting().descending);
    m->groupBox->groupsChanged();
    m->view->layoutChanged();
}

void ReportGrid::setFieldContents(const QHash<QString, QString>& contents)
{
    m->model->setFieldContents(contents);
}

ColumnStore& ReportGrid::store()
{
    return m->model->store();
}

const ColumnStore& ReportGrid::store() const
{
    return m->model->store();
}

void ReportGrid::populate()
{
    keepingHighlights([this] { m->model->populate(); });
}

// --- Reading

uint32_t ReportGrid::recordCount() const
{
    return m->model->store().rowCount();
}

int ReportGrid::columnCount() const
{
    return static_cast<int>(m->model->columns().size());
}

QString ReportGrid::columnField(int column) const
{
    return column >= 0 && column < columnCount() ? m->model->columns()[static_cast<size_t>(column)].field
                                                 : QString();
}

QString ReportGrid::columnCaption(int column) const
{
    return column >= 0 && column < columnCount() ? m->model->columns()[static_cast<size_t>(column)].caption
                                                 : QString();
}

bool ReportGrid::isColumnOffered(int column) const
{
    return column >= 0 && column < columnCount() && column != checkColumn() &&
           m->model->columns()[static_cast<size_t>(column)].visible;
}

QString ReportGrid::cellText(uint32_t record, int column) const
{
    return record < recordCount() && column >= 0 && column < columnCount() ? store().text(record, column)
                                                                           : QString();
}

bool ReportGrid::cellIsNumeric(uint32_t record, int column) const
{
    return record < recordCount() && column >= 0 && column < columnCount() &&
           store().isNumeric(record, column);
}

const std::vector<uint32_t>& ReportGrid::recordsInScreenOrder() const
{
    return m->model->recordsInOrder();
}

const std::vector<uint32_t>& ReportGrid::allRecordsInScreenOrder() const
{
    return m->model->allRecordsInOrder();
}

std::vector<int> ReportGrid::columnsInScreenOrder() const
{
    return m->header->shownColumns();
}

GridCounts ReportGrid::counts() const
{
    return {recordCount(), checkedCount(), highlightedCount(*m->view), recordsInScreenOrder().size(),
            isFiltered()};
}

// --- Checks

int ReportGrid::checkColumn() const
{
    return m->model->checkColumn();
}

bool ReportGrid::isChecked(uint32_t record) const
{
    return m->model->isChecked(record);
}

void ReportGrid::setChecked(uint32_t record, bool checked)
{
    if (record >= recordCount() || isChecked(record) == checked) {
        return;
    }
    m->model->setChecked(record, checked);
    m->model->forgetCheckUndo();
    m->view->viewport()->update();
    Q_EMIT checkChanged(record);
}

void ReportGrid::setAllChecked(bool checked)
{
    if (recordCount() == 0) {
        return;
    }
    m->model->rememberChecks();
    m->model->setAllChecked(checked);
    Q_EMIT checkChanged(-1);
}

void ReportGrid::setSelectedChecked(bool checked)
{
    const QItemSelection highlighted = m->view->selectionModel()->selection();
    if (!highlighted.isEmpty()) {
        m->model->rememberChecks();
    }
    for (const QItemSelectionRange& range : highlighted) {
        m->model->setRowsChecked(range.top(), range.bottom(), checked);
    }
    if (!highlighted.isEmpty()) {
        m->model->checksChanged();
        Q_EMIT checkChanged(-1);
    }
}

void ReportGrid::invertChecked()
{
    if (recordCount() > 0 && checkColumn() >= 0) {
        m->model->rememberChecks();
        m->model->invertChecks();
        Q_EMIT checkChanged(-1);
    }
}

void ReportGrid::undoChecked()
{
    if (canUndoChecked()) {
        m->model->undoChecks();
        Q_EMIT checkChanged(-1);
    }
}

bool ReportGrid::canUndoChecked() const
{
    return m->model->canUndoChecks();
}

size_t ReportGrid::checkedCount() const
{
    return m->model->checkedCount();
}

// --- Highlighted records

std::vector<uint32_t> ReportGrid::selectedRecords() const
{
    return highlightedRecords(*m->view);
}

bool ReportGrid::hasSelection() const
{
    return highlightsRecords(*m->view);
}

int64_t ReportGrid::currentRecord() const
{
    const QModelIndex current = m->view->currentIndex();
    return current.isValid() ? m->model->record(current.row()) : -1;
}

void ReportGrid::setCurrentRecord(uint32_t record)
{
    const int row = m->model->rowOfRecord(record);
    if (row >= 0) {
        m->view->setCurrentIndex(m->model->index(row, m->view->firstShownColumn()));
        m->view->scrollToRow(row);
    }
}

void ReportGrid::clearSelection()
{
    m->view->clearSelection();
}

void ReportGrid::copySelection(CopyHeaders headers) const
{
    copyHighlighted(*m->view, headers);
}

/// Runs a change that may reset the rows, and highlights again what was highlighted.
template <typename Change>
void ReportGrid::keepingHighlights(Change change)
{
    const KeptHighlights kept(*m->view);
    change();
    kept.restore();
}

// --- Order, groups, filter

int ReportGrid::sortColumn() const
{
    return m->model->sorting().column;
}

bool ReportGrid::isSortDescending() const
{
    return m->model->sorting().descending;
}

void ReportGrid::sortBy(int column, bool descending)
{
    if (column < -1 || column >= columnCount()) {
        return;
    }
    keepingHighlights([&] { m->model->setSorting({column, descending}); });
    m->header->setSortMark(column, descending);
    m->groupBox->groupsChanged();
}

std::vector<int> ReportGrid::groupColumns() const
{
    std::vector<int> columns;
    for (const ReportSort& group : m->model->groupColumns()) {
        columns.push_back(group.column);
    }
    return columns;
}

void ReportGrid::groupBy(int column)
{
    std::vector<int> columns = groupColumns();
    if (column < 0 || column >= columnCount() || std::count(columns.begin(), columns.end(), column) > 0) {
        return;
    }
    columns.push_back(column);
    setGroups(columns);
}

void ReportGrid::ungroup(int column)
{
    std::vector<int> columns = groupColumns();
    columns.erase(std::remove(columns.begin(), columns.end(), column), columns.end());
    setGroups(columns);
}

void ReportGrid::ungroupAll()
{
    if (!m->model->groupColumns().empty()) {
        setGroups({});
        Q_EMIT columnLayoutChanged(SortChanged);
    }
}

void ReportGrid::setGroups(const std::vector<int>& columns)
{
    const std::vector<ReportSort> before = m->model->groupColumns();
    std::vector<ReportSort> groups;
    for (const int column : columns) {
        const auto known = std::find_if(before.begin(), before.end(),
                                        [column](const ReportSort& group) { return group.column == column; });
        groups.push_back(known == before.end() ? ReportSort{column, false} : *known);
    }
    keepingHighlights([&] { m->model->setGroupColumns(groups); });
    updateShownColumns();
    m->groupBox->groupsChanged();
}

void ReportGrid::setAllGroupsClosed(bool closed)
{
    m->model->setAllGroupsClosed(closed);
}

/// A column that groups leaves the header: its value stands in the group's row. Only the ticks stay where they are set.
void ReportGrid::updateShownColumns()
{
    const std::vector<int> groups = groupColumns();
    for (int column = 0; column < columnCount(); ++column) {
        const bool grouped = std::find(groups.begin(), groups.end(), column) != groups.end();
        const bool left = grouped && column != checkColumn();
        m->header->setColumnShown(column, !left && m->model->isColumnShown(column));
    }
    m->view->layoutChanged();
}

void ReportGrid::setTextFilter(const QString& text)
{
    keepingHighlights([&] { m->model->setTextFilter(text); });
}

QString ReportGrid::textFilter() const
{
    return m->model->textFilter();
}

void ReportGrid::setOnlyChecked(bool only)
{
    keepingHighlights([&] { m->model->setOnlyChecked(only); });
}

bool ReportGrid::showsOnlyChecked() const
{
    return m->model->showsOnlyChecked();
}

bool ReportGrid::isFiltered() const
{
    return m->model->isFiltered();
}

bool ReportGrid::findText(const QString& text, Find from)
{
    const std::vector<uint32_t>& order = recordsInScreenOrder();
    const auto current = std::find(order.begin(), order.end(), static_cast<uint32_t>(currentRecord()));
    size_t place = 0;
    if (currentRecord() >= 0 && current != order.end()) {
        place = static_cast<size_t>(current - order.begin()) + (from == Find::Next ? 1 : 0);
    }
    const int64_t record = m->model->findRecord(text, place, from != Find::Previous);
    if (record < 0) {
        return false;
    }
    const auto own = static_cast<uint32_t>(record);
    if (m->model->rowOfRecord(own) < 0) {
        m->model->openGroupsOf(own);
    }
    setCurrentRecord(own);
    return true;
}

size_t ReportGrid::matchCount(const QString& text) const
{
    return m->model->matchCount(text);
}

void ReportGrid::setFindEnabled(bool enabled)
{
    m->findEnabled = enabled;
}

void ReportGrid::openFindBar()
{
    if (!m->findEnabled) {
        return;
    }
    if (m->findBar == nullptr) {
        m->findBar = new GridFindBar(this);
        auto* rows = static_cast<QVBoxLayout*>(layout());
        rows->insertWidget(rows->indexOf(m->view), m->findBar);
        // The Tab key goes through the bar before it comes to the rows.
        QWidget* before = m->view->previousInFocusChain();
        while (before != m->view && before->focusPolicy() == Qt::NoFocus) {
            before = before->previousInFocusChain();
        }
        const QList<QWidget*> stops = m->findBar->stops();
        for (QWidget* stop : stops) {
            QWidget::setTabOrder(before, stop);
            before = stop;
        }
        QWidget::setTabOrder(before, m->view);
    }
    m->findBar->open();
}

// --- Layout

LayoutSaved ReportGrid::saveLayout(const QString& path, const QString& section) const
{
    return GridLayoutFile(path).write(section, headerLayout(*m->header, *m->model));
}

bool ReportGrid::loadLayout(const QString& path, const QString& section)
{
    const std::optional<std::vector<ColumnLayout>> layout = GridLayoutFile(path).read(section);
    if (!layout || !applyHeaderLayout(*layout, *m->header, *m->model)) {
        return false;
    }
    updateShownColumns();
    return true;
}

bool ReportGrid::isColumnShown(int column) const
{
    return m->model->isColumnShown(column);
}

void ReportGrid::setColumnShown(int column, bool shown)
{
    if (isColumnOffered(column)) {
        m->model->setColumnShown(column, shown);
        updateShownColumns();
    }
}

void ReportGrid::resetColumns()
{
    for (int column = 0; column < columnCount(); ++column) {
        m->model->setColumnShown(column, m->model->columns()[static_cast<size_t>(column)].visible);
    }
    m->header->columnsChanged();
    updateShownColumns();
}

// --- Look

void ReportGrid::setEmptyText(const QString& text)
{
    m->view->setEmptyText(text);
}

void ReportGrid::setGroupHint(const QString& text)
{
    m->groupBox->setHint(text);
}

void ReportGrid::setSortCaptionPrefix(const QString& text)
{
    m->groupBox->setSortCaptionPrefix(text);
}

void ReportGrid::setGridFont(const QFont& font)
{
    m->groupBox->setFont(font);
    m->view->setFont(font);
    m->header->setFont(font);
    m->groupBox->updateGeometry();
    m->view->layoutChanged();
}

void ReportGrid::setFlatHeader(bool flat)
{
    m->header->setFlat(flat);
}

void ReportGrid::setRowLines(bool lines)
{
    m->view->setRowLines(lines);
}

void ReportGrid::setCellPadding(int pixels)
{
    m->view->setCellPadding(pixels);
}

void ReportGrid::setRowPadding(int pixels)
{
    m->view->setRowPadding(pixels);
}

void ReportGrid::setGroupBoxVisible(bool visible)
{
    m->groupBox->setVisible(visible);
}

void ReportGrid::setTouchMode(bool touch)
{
    m->groupBox->setTouch(touch);
    m->view->setTouch(touch);
}

bool ReportGrid::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m->view && (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)) {
        update(); // the frame shows where the focus is
    }
    return QWidget::eventFilter(watched, event);
}

void ReportGrid::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const bool focused = m->view->hasFocus();
    painter.setPen(focused ? accentColor() : frameColor());
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void ReportGrid::showMenu(int column, const QPoint& globalPosition)
{
    if (columnCount() > 0) {
        makeGridMenu(*this, column)->popup(globalPosition);
    }
}

QObject* ReportGrid::probe()
{
    if (m->probe == nullptr) {
        m->probe = new ReportGridProbe(this);
    }
    return m->probe;
}

} // namespace zul
