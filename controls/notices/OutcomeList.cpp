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

constexpr qsizetype tagLength = 9;
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
        text.truncate(qMax(qsizetype{0}, qsizetype{inSight} * 2 / cell + tagLength));
        text.replace(u'\r', u' ').replace(u'\n', u' ').replace(u'\t', u' ');

        const bool wholeLine = kind == OutcomeKind::Continuation;
        const QString tag = wholeLine ? text : text.left(tagLength);
        painter->setPen(tagged);
        painter->drawText(line, textFlags, tag);
        if (!wholeLine) {
            painter->setPen(plain);
            painter->drawText(line.adjusted(option.fontMetrics.horizontalAdvance(tag), 0, 0, 0), textFlags,
                              text.mid(tagLength));
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

OutcomeKind outcomeKind(QStringView line)
{
    if (line.startsWith(u"OK     - ")) {
        return OutcomeKind::Success;
    }
    if (line.startsWith(u"ERRORE - ") || line.startsWith(u"ERR    - ")) {
        return OutcomeKind::Failure;
    }
    return OutcomeKind::Continuation;
}

OutcomeModel::OutcomeModel(QObject* parent)
    : QAbstractListModel(parent)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &OutcomeModel::announce);
}

void OutcomeModel::append(QStringView line)
{
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
    m_announced = 0;
    endResetModel();
}

void OutcomeModel::announce()
{
    m_timer.stop();
    const int count = m_store.count();
    if (count == m_announced) {
        return;
    }
    beginInsertRows({}, m_announced, count - 1);
    m_announced = count;
    endInsertRows();
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
    return m_store.line(index.row());
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
            text += line(row) + u'\n';
        }
    }
    if (!text.isEmpty()) {
        QApplication::clipboard()->setText(text);
    }
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
