#include "controls/notices/OutcomeList.h"

#include "controls/look/CommonLook.h"
#include "controls/notices/OutcomeListProbe.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr int padding = 4;

/// The larger the list, the longer a batch: laying out a million rows takes a while.
constexpr int shortestBatch = 30; // milliseconds
constexpr int linesPerMillisecond = 4000;

QColor tagColor(OutcomeKind kind)
{
    switch (kind) {
    case OutcomeKind::Success:
        return QColor(0x1e, 0x7d, 0x34);
    case OutcomeKind::Failure:
        return QColor(0xb7, 0x1c, 0x1c);
    case OutcomeKind::Continuation:
        break;
    }
    return QColor(0x6b, 0x76, 0x81);
}

class OutcomeDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        QString text = index.data(Qt::DisplayRole).toString();
        const OutcomeKind kind = outcomeKind(text);
        const bool selected = (option.state & QStyle::State_Selected) != 0;
        painter->save();
        if (selected) {
            painter->fillRect(option.rect, option.palette.brush(QPalette::Active, QPalette::Highlight));
        }
        painter->setFont(option.font);
        const QRect line = option.rect.adjusted(padding, 0, 0, 0);
        const QColor plain = option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
        const QColor tagged = selected ? plain : tagColor(kind);

        // Only what is in sight is shaped: a line may have thousands of characters.
        const int cell = qMax(1, option.fontMetrics.averageCharWidth());
        const int inSight =
            option.widget != nullptr ? option.widget->width() - option.rect.x() : line.width();
        text.truncate(qMax(qsizetype{0}, qsizetype{inSight} * 2 / cell + outcomeTagLength));
        text.replace(u'\r', u' ').replace(u'\n', u' ').replace(u'\t', u' ');

        const bool wholeLine = kind == OutcomeKind::Continuation;
        const QString tag = wholeLine ? text : text.left(outcomeTagLength);
        painter->setPen(tagged);
        painter->drawText(line, textFlags, tag);
        if (!wholeLine) {
            painter->setPen(plain);
            painter->drawText(line.adjusted(option.fontMetrics.horizontalAdvance(tag), 0, 0, 0), textFlags,
                              text.mid(outcomeTagLength));
        }
        if ((option.state & QStyle::State_HasFocus) != 0 && !selected) {
            painter->setPen(option.palette.color(QPalette::Highlight));
            painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
        }
        painter->restore();
    }

private:
    static constexpr int textFlags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip;
};

} // namespace

OutcomeModel::OutcomeModel(QObject* parent)
    : QAbstractListModel(parent)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &OutcomeModel::announce);
}

void OutcomeModel::append(QStringView line)
{
    m_totals.add(line);
    if (outcomeKind(line) == OutcomeKind::Failure) {
        m_failures.push_back(m_store.count());
    }
    m_store.append(line);
    if (!m_timer.isActive()) {
        m_timer.start(shortestBatch + m_announced / linesPerMillisecond);
    }
}

void OutcomeModel::clear()
{
    m_timer.stop();
    beginResetModel();
    m_store.clear();
    m_totals.clear();
    m_failures = {};
    m_announced = 0;
    endResetModel();
}

void OutcomeModel::announce()
{
    m_timer.stop();
    const int count = rows();
    if (count > m_announced) {
        beginInsertRows({}, m_announced, count - 1);
        m_announced = count;
        endInsertRows();
    }
    Q_EMIT linesCame();
}

int OutcomeModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_announced;
}

QVariant OutcomeModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole) {
        return {};
    }
    return rowText(index.row());
}

QString OutcomeModel::rowText(int row) const
{
    if (!m_onlyFailures) {
        return m_store.line(row);
    }
    return static_cast<size_t>(row) < m_failures.size() ? m_store.line(m_failures[static_cast<size_t>(row)])
                                                        : QString();
}

void OutcomeModel::setOnlyFailures(bool only)
{
    m_timer.stop();
    beginResetModel();
    m_onlyFailures = only;
    m_announced = rows();
    endResetModel();
}

OutcomeList::OutcomeList(QWidget* parent)
    : QListView(parent)
    , m_model(new OutcomeModel(this))
{
    setModel(m_model);
    setItemDelegate(new OutcomeDelegate(this));
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    setFont(fixedFont());
    setAccessibleName(u"Esito della preparazione"_s);
    fitCells();
    connect(m_model, &QAbstractItemModel::rowsAboutToBeInserted, this,
            [this] { m_following = verticalScrollBar()->value() == verticalScrollBar()->maximum(); });
    connect(m_model, &QAbstractItemModel::rowsInserted, this, [this] {
        fitCells();
        if (m_following) {
            scrollToBottom();
        }
    });
    connect(m_model, &QAbstractItemModel::modelReset, this, &OutcomeList::fitCells);
    connect(m_model, &OutcomeModel::linesCame, this, &OutcomeList::linesCame);
}

void OutcomeList::append(const QString& line)
{
    m_model->append(line);
}

void OutcomeList::clear()
{
    m_model->clear();
}

/// All rows are as wide as the longest line would be, so no row is ever measured.
void OutcomeList::fitCells()
{
    const QFontMetrics metrics(font());
    const int width = (m_model->store().widest() + 1) * metrics.averageCharWidth() + 2 * padding;
    const QSize size(qMax(width, viewport()->width()), metrics.height() + 2);
    if (size != gridSize()) {
        setGridSize(size);
    }
}

void OutcomeList::copySelected() const
{
    QItemSelection selected = selectionModel()->selection();
    std::sort(selected.begin(), selected.end(),
              [](const QItemSelectionRange& left, const QItemSelectionRange& right) {
                  return left.top() < right.top();
              });
    QString text;
    for (const QItemSelectionRange& range : selected) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            text += m_model->rowText(row) + u'\n';
        }
    }
    if (!text.isEmpty()) {
        QApplication::clipboard()->setText(text);
    }
}

void OutcomeList::copyLines() const
{
    if (selectionModel()->hasSelection()) {
        copySelected();
        return;
    }
    const QStringList lines = shownLines();
    if (!lines.isEmpty()) {
        QApplication::clipboard()->setText(lines.join(u'\n') + u'\n');
    }
}

void OutcomeList::setOnlyFailures(bool only)
{
    m_model->setOnlyFailures(only);
}

QStringList OutcomeList::shownLines() const
{
    m_model->announce();
    QStringList lines;
    lines.reserve(m_model->rowCount());
    for (int row = 0; row < m_model->rowCount(); ++row) {
        lines.append(m_model->rowText(row));
    }
    return lines;
}

QString OutcomeList::totals() const
{
    return m_model->totals().text(QLocale());
}

QObject* OutcomeList::probe()
{
    if (m_probe == nullptr) {
        m_probe = new OutcomeListProbe(this);
    }
    return m_probe;
}

void OutcomeList::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy)) {
        copySelected();
        event->accept();
        return;
    }
    QListView::keyPressEvent(event);
}

void OutcomeList::contextMenuEvent(QContextMenuEvent* event)
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* copy = menu->addAction(u"Copia"_s, this, &OutcomeList::copySelected);
    copy->setEnabled(selectionModel()->hasSelection());
    QAction* all = menu->addAction(u"Seleziona tutto"_s, this, &QAbstractItemView::selectAll);
    all->setEnabled(count() > 0);
    menu->popup(event->globalPos());
}

void OutcomeList::changeEvent(QEvent* event)
{
    QListView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        fitCells();
    }
}

void OutcomeList::resizeEvent(QResizeEvent* event)
{
    QListView::resizeEvent(event);
    fitCells();
}

} // namespace zul
