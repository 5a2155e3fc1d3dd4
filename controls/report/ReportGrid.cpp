#include "controls/report/ReportGrid.h"

#include "controls/report/ReportGridColors.h"
#include "controls/report/ReportGridModel.h"
#include "controls/report/ReportGridView.h"
#include "controls/report/ReportGroupBox.h"
#include "controls/report/ReportHeader.h"
#include "grid/GridLayoutFile.h"

#include <QEvent>
#include <QMap>
#include <QMenu>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace zul {

struct ReportGrid::Parts
{
    ReportGridModel* model = nullptr;
    ReportGroupBox* groupBox = nullptr;
    ReportGridView* view = nullptr;
    ReportHeader* header = nullptr;
    bool touch = false;
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

void ReportGrid::redraw()
{
    m->view->viewport()->update();
    m->header->viewport()->update();
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
    m->view->viewport()->update();
    Q_EMIT checkChanged(record);
}

void ReportGrid::setAllChecked(bool checked)
{
    if (recordCount() == 0) {
        return;
    }
    m->model->setAllChecked(checked);
    Q_EMIT checkChanged(-1);
}

void ReportGrid::setSelectedChecked(bool checked)
{
    const QItemSelection highlighted = m->view->selectionModel()->selection();
    for (const QItemSelectionRange& range : highlighted) {
        m->model->setRowsChecked(range.top(), range.bottom(), checked);
    }
    if (!highlighted.isEmpty()) {
        m->model->checksChanged();
        Q_EMIT checkChanged(-1);
    }
}

size_t ReportGrid::checkedCount() const
{
    return m->model->checkedCount();
}

// --- Highlighted records

std::vector<uint32_t> ReportGrid::selectedRecords() const
{
    std::vector<std::pair<int, int>> ranges;
    const QItemSelection highlighted = m->view->selectionModel()->selection();
    for (const QItemSelectionRange& range : highlighted) {
        ranges.emplace_back(range.top(), range.bottom());
    }
    std::sort(ranges.begin(), ranges.end());
    std::vector<uint32_t> records;
    for (const auto& [top, bottom] : ranges) {
        for (int row = top; row <= bottom; ++row) {
            const int record = m->model->record(row);
            if (record >= 0) {
                records.push_back(static_cast<uint32_t>(record));
            }
        }
    }
    return records;
}

bool ReportGrid::hasSelection() const
{
    const QItemSelection highlighted = m->view->selectionModel()->selection();
    return std::any_of(highlighted.begin(), highlighted.end(), [this](const QItemSelectionRange& range) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            if (!m->model->isGroup(row)) {
                return true;
            }
        }
        return false;
    });
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

/// Runs a change that resets the rows, and highlights again what was highlighted: by record, because rows
/// change places. Many single rows are not worth it; all rows are.
template <typename Change>
void ReportGrid::keepingHighlights(Change change)
{
    constexpr int64_t manyRows = 2000;
    int64_t rows = 0;
    const QItemSelection highlighted = m->view->selectionModel()->selection();
    for (const QItemSelectionRange& range : highlighted) {
        rows += range.height();
    }
    const bool all = rows > 0 && rows == m->model->rowCount();
    std::vector<uint32_t> records;
    if (rows <= manyRows) {
        records = selectedRecords();
    }
    const int64_t current = currentRecord();

    change();

    const int rowCount = m->model->rowCount();
    if (rowCount == 0 || (records.empty() && current < 0 && !all) ||
        (rows > 0 && m->view->selectionModel()->hasSelection())) {
        return; // nothing to highlight, or nothing was reset
    }
    QItemSelection again;
    int currentRow = -1;
    const int lastColumn = columnCount() - 1;
    if (all && records.empty()) {
        again.select(m->model->index(0, 0), m->model->index(rowCount - 1, lastColumn));
    }
    if (current >= 0) {
        currentRow = m->model->rowOfRecord(static_cast<uint32_t>(current));
    }
    if (!records.empty()) {
        std::vector<bool> wanted(recordCount(), false);
        for (const uint32_t record : records) {
            if (record < wanted.size()) {
                wanted[record] = true;
            }
        }
        for (int row = 0; row < rowCount; ++row) {
            const int first = row;
            for (int record = -1; row < rowCount; ++row) {
                record = m->model->record(row);
                if (record < 0 || !wanted[static_cast<size_t>(record)]) {
                    break;
                }
            }
            if (row > first) {
                again.append(
                    QItemSelectionRange(m->model->index(first, 0), m->model->index(row - 1, lastColumn)));
            }
        }
    }
    if (currentRow >= 0) {
        const QModelIndex index = m->model->index(currentRow, m->view->firstShownColumn());
        m->view->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    }
    if (!again.isEmpty()) {
        m->view->selectionModel()->select(again, QItemSelectionModel::ClearAndSelect);
    }
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

/// A column that groups leaves the header: its value stands in the group's row.
void ReportGrid::updateShownColumns()
{
    const std::vector<int> groups = groupColumns();
    for (int column = 0; column < columnCount(); ++column) {
        const bool grouped = std::find(groups.begin(), groups.end(), column) != groups.end();
        m->header->setColumnShown(column, !grouped && m->model->isColumnShown(column));
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

// --- Layout

LayoutSaved ReportGrid::saveLayout(const QString& path, const QString& section) const
{
    std::vector<ColumnLayout> layout;
    for (int column = 0; column < columnCount(); ++column) {
        ColumnLayout own;
        own.field = columnField(column);
        own.position = m->header->visualIndex(column);
        own.width = m->header->isShared(column) ? 0 : m->header->widthOf(column);
        own.visible = m->model->isColumnShown(column);
        layout.push_back(own);
    }
    return GridLayoutFile(path).write(section, layout);
}

bool ReportGrid::loadLayout(const QString& path, const QString& section)
{
    const std::optional<std::vector<ColumnLayout>> layout = GridLayoutFile(path).read(section);
    if (!layout) {
        return false;
    }
    // The n-th column of a name in the file is the n-th one of that name here.
    QMap<QString, int> seen;
    QMap<std::pair<QString, int>, const ColumnLayout*> saved;
    for (const ColumnLayout& own : *layout) {
        saved.insert({own.field, seen[own.field]++}, &own);
    }
    seen.clear();
    std::vector<std::pair<int, int>> order; // saved position, column
    std::vector<int> places;                // visual places of the columns that the file knows
    bool shares = false;
    for (int column = 0; column < columnCount(); ++column) {
        const QString field = columnField(column);
        const ColumnLayout* own = saved.value({field, seen[field]++}, nullptr);
        if (own == nullptr) {
            continue;
        }
        order.emplace_back(own->position, column);
        places.push_back(m->header->visualIndex(column));
        shares = shares || own->width == 0;
        const ReportColumn& described = m->model->columns()[static_cast<size_t>(column)];
        if (own->width > 0 && described.sizable) {
            m->header->setWidthOf(column, own->width);
        }
        m->model->setColumnShown(column, own->visible && described.visible);
    }
    if (order.empty()) {
        return false;
    }
    if (!shares) {
        m->header->stopSharing();
    }
    std::sort(order.begin(), order.end());
    std::sort(places.begin(), places.end());
    for (size_t i = 0; i < order.size(); ++i) {
        m->header->moveSection(m->header->visualIndex(order[i].second), places[i]);
    }
    updateShownColumns();
    return true;
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

bool ReportGrid::isTouchMode() const
{
    return m->touch;
}

void ReportGrid::setTouchMode(bool touch)
{
    m->touch = touch;
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

/// The menu of the header and of the rows: everything that the mouse does with headers, by key too.
void ReportGrid::showMenu(int column, const QPoint& globalPosition)
{
    if (columnCount() == 0) {
        return;
    }
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto changed = [this] { Q_EMIT columnLayoutChanged(SortChanged); };
    const std::vector<int> groups = groupColumns();
    const auto isGrouped = [groups](int own) {
        return std::find(groups.begin(), groups.end(), own) != groups.end();
    };
    const auto captionOf = [this](int own) {
        const QString caption = columnCaption(own).isEmpty() ? columnField(own) : columnCaption(own);
        return QString(caption).replace(QLatin1Char('&'), QLatin1String("&&"));
    };
    if (column >= 0) {
        menu->addAction(tr("Ordina in modo crescente"), this, [this, column, changed] {
            sortBy(column, false);
            changed();
        });
        menu->addAction(tr("Ordina in modo decrescente"), this, [this, column, changed] {
            sortBy(column, true);
            changed();
        });
        menu->addAction(tr("Raggruppa per questa colonna"), this, [this, column, changed] {
            groupBy(column);
            changed();
        });
    } else {
        QMenu* sort = menu->addMenu(tr("Ordina per"));
        QMenu* group = menu->addMenu(tr("Raggruppa per"));
        for (int own = 0; own < columnCount(); ++own) {
            if (!m->model->isColumnShown(own)) {
                continue;
            }
            QAction* by = sort->addAction(captionOf(own), this, [this, own, changed] {
                sortBy(own, own == sortColumn() && !isSortDescending());
                changed();
            });
            by->setCheckable(true);
            by->setChecked(own == sortColumn());
            QAction* with = group->addAction(captionOf(own), this, [this, own, changed, isGrouped] {
                if (isGrouped(own)) {
                    ungroup(own);
                } else {
                    groupBy(own);
                }
                changed();
            });
            with->setCheckable(true);
            with->setChecked(isGrouped(own));
        }
    }
    menu->addAction(tr("Non raggruppare"), this, &ReportGrid::ungroupAll)->setEnabled(!groups.empty());
    menu->addAction(tr("Apri tutti i gruppi"), this, [this] { m->model->setAllGroupsClosed(false); })
        ->setEnabled(!groups.empty());
    menu->addAction(tr("Chiudi tutti i gruppi"), this, [this] { m->model->setAllGroupsClosed(true); })
        ->setEnabled(!groups.empty());
    menu->addSeparator();
    QMenu* shown = menu->addMenu(tr("Colonne"));
    int shownColumns = 0;
    for (int own = 0; own < columnCount(); ++own) {
        shownColumns += m->model->isColumnShown(own) && !isGrouped(own) ? 1 : 0;
    }
    for (int own = 0; own < columnCount(); ++own) {
        if (!m->model->columns()[static_cast<size_t>(own)].visible) {
            continue; // not for the operator
        }
        QAction* show = shown->addAction(captionOf(own), this, [this, own](bool visible) {
            m->model->setColumnShown(own, visible);
            updateShownColumns();
            Q_EMIT columnLayoutChanged(ColumnShown);
        });
        show->setCheckable(true);
        show->setChecked(m->model->isColumnShown(own));
        // The last column shown stays, or there would be no header left to open this menu on.
        show->setEnabled(!isGrouped(own) && (!m->model->isColumnShown(own) || shownColumns > 1));
    }
    menu->popup(globalPosition);
}

// --- For tools that drive the window

QAbstractItemModel* ReportGrid::itemModel() const
{
    return m->model;
}

int ReportGrid::recordCountForTools() const
{
    return static_cast<int>(recordCount());
}

int ReportGrid::visibleRowCount() const
{
    return m->model->rowCount();
}

QRect ReportGrid::rowRect(int row)
{
    m->view->scrollToRow(row);
    return m->view->rowRect(row);
}

QWidget* ReportGrid::bodyViewport() const
{
    return m->view->viewport();
}

QRect ReportGrid::checkRect(int row)
{
    m->view->scrollToRow(row);
    m->view->scrollToColumn(checkColumn());
    return m->view->checkRect(row);
}

QWidget* ReportGrid::headerViewport() const
{
    return m->header->viewport();
}

QRect ReportGrid::headerRect(int column)
{
    if (visiblePosition(column) < 0) {
        return {};
    }
    m->view->scrollToColumn(column);
    return {m->header->sectionViewportPosition(column), 0, m->header->sectionSize(column),
            m->header->viewport()->height()};
}

QWidget* ReportGrid::groupBoxWidget() const
{
    return m->groupBox;
}

int ReportGrid::visiblePosition(int column) const
{
    return m->header->visiblePosition(column);
}

QStringList ReportGrid::rowTexts(int row) const
{
    QStringList texts;
    const int record = m->model->record(row);
    for (int column = 0; record >= 0 && column < columnCount(); ++column) {
        texts.append(store().text(static_cast<uint32_t>(record), column));
    }
    return texts;
}

QVariantList ReportGrid::rowCells(int row) const
{
    QVariantList cells;
    const int record = m->model->record(row);
    for (int column = 0; record >= 0 && column < columnCount(); ++column) {
        const auto own = static_cast<uint32_t>(record);
        cells.append(store().isNull(own, column) ? QVariant() : QVariant(store().text(own, column)));
    }
    return cells;
}

int ReportGrid::rowCheck(int row) const
{
    const int record = m->model->record(row);
    if (record < 0 || checkColumn() < 0) {
        return -1;
    }
    return isChecked(static_cast<uint32_t>(record)) ? 1 : 0;
}

bool ReportGrid::rowIsGroup(int row) const
{
    return m->model->isGroup(row);
}

QString ReportGrid::groupCaption(int row) const
{
    return m->model->groupCaption(row);
}

int ReportGrid::groupCount(int row) const
{
    return m->model->groupCount(row);
}

} // namespace zul
