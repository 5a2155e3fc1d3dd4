#include "controls/gridtools/WrapLayout.h"

#include <algorithm>

namespace zul {

namespace {

bool expands(const QLayoutItem& item)
{
    return (item.expandingDirections() & Qt::Horizontal) != 0;
}

int heightAt(const QLayoutItem& item, int width)
{
    return item.hasHeightForWidth() ? item.heightForWidth(width) : item.sizeHint().height();
}

} // namespace

WrapLayout::~WrapLayout() = default;

void WrapLayout::addItem(QLayoutItem* item)
{
    m_items.emplace_back(item);
}

QLayoutItem* WrapLayout::itemAt(int index) const
{
    return index >= 0 && index < count() ? m_items[static_cast<size_t>(index)].get() : nullptr;
}

QLayoutItem* WrapLayout::takeAt(int index)
{
    if (index < 0 || index >= count()) {
        return nullptr;
    }
    QLayoutItem* taken = m_items[static_cast<size_t>(index)].release();
    m_items.erase(m_items.begin() + index);
    return taken;
}

std::vector<WrapLayout::Line> WrapLayout::linesFor(int width) const
{
    std::vector<Line> lines;
    int used = 0;
    for (const std::unique_ptr<QLayoutItem>& item : m_items) {
        if (item->isEmpty()) {
            continue;
        }
        const int own = item->sizeHint().width();
        if (lines.empty() || used + spacing() + own > width) {
            lines.push_back({item.get()});
            used = own;
        } else {
            lines.back().push_back(item.get());
            used += spacing() + own;
        }
    }
    return lines;
}

/// How wide each of a line's controls gets. Only one that has the line for itself may get less than it would like.
std::vector<int> WrapLayout::widthsOf(const Line& line, int width) const
{
    std::vector<int> widths;
    int spare = width - spacing() * (static_cast<int>(line.size()) - 1);
    for (const QLayoutItem* item : line) {
        widths.push_back(std::min(item->sizeHint().width(), width));
        spare -= widths.back();
    }
    for (size_t i = 0; i < line.size(); ++i) {
        if (spare > 0 && expands(*line[i])) {
            const int more = std::min(spare, line[i]->maximumSize().width() - widths[i]);
            widths[i] += more;
            spare -= more;
        }
    }
    return widths;
}

int WrapLayout::heightForWidth(int width) const
{
    const QMargins around = contentsMargins();
    const int room = width - around.left() - around.right();
    int height = around.top() + around.bottom() - spacing();
    for (const Line& line : linesFor(room)) {
        const std::vector<int> widths = widthsOf(line, room);
        int highest = 0;
        for (size_t i = 0; i < line.size(); ++i) {
            highest = std::max(highest, heightAt(*line[i], widths[i]));
        }
        height += highest + spacing();
    }
    return height;
}

QSize WrapLayout::minimumSize() const
{
    int widest = 0;
    for (const std::unique_ptr<QLayoutItem>& item : m_items) {
        if (!item->isEmpty()) {
            widest =
                std::max(widest, expands(*item) ? item->minimumSize().width() : item->sizeHint().width());
        }
    }
    const QMargins around = contentsMargins();
    return {widest + around.left() + around.right(), sizeHint().height()};
}

QSize WrapLayout::sizeHint() const
{
    QSize all(-spacing(), 0);
    for (const std::unique_ptr<QLayoutItem>& item : m_items) {
        if (!item->isEmpty()) {
            const QSize own = item->sizeHint();
            all.rwidth() += spacing() + own.width();
            all.setHeight(std::max(all.height(), heightAt(*item, own.width())));
        }
    }
    const QMargins around = contentsMargins();
    return all + QSize(around.left() + around.right(), around.top() + around.bottom());
}

void WrapLayout::setGeometry(const QRect& room)
{
    QLayout::setGeometry(room);
    const QRect inner = room.marginsRemoved(contentsMargins());
    int top = inner.top();
    for (const Line& line : linesFor(inner.width())) {
        const std::vector<int> widths = widthsOf(line, inner.width());
        std::vector<int> heights;
        for (size_t i = 0; i < line.size(); ++i) {
            heights.push_back(heightAt(*line[i], widths[i]));
        }
        const int height = *std::max_element(heights.begin(), heights.end());
        int left = inner.left();
        for (size_t i = 0; i < line.size(); ++i) {
            line[i]->setGeometry({left, top + (height - heights[i]) / 2, widths[i], heights[i]});
            left += widths[i] + spacing();
        }
        top += height + spacing();
    }
}

// --- FactsLabel

FactsLabel::FactsLabel(QWidget* parent)
    : QLabel(parent)
{
    setWordWrap(true);
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void FactsLabel::tell(const QString& text)
{
    if (text != this->text()) {
        setText(text);
        setToolTip(text);
    }
}

QSize FactsLabel::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    const int whole = metrics.horizontalAdvance(text());
    constexpr int step = 8;
    constexpr int any = 1 << 20;
    int width = whole / 2;
    while (width < whole && metrics.boundingRect(QRect(0, 0, width, any), Qt::TextWordWrap, text()).height() >
                                2 * metrics.lineSpacing()) {
        width += step;
    }
    return {std::min(width, whole) + step, 2 * metrics.lineSpacing()};
}

QSize FactsLabel::minimumSizeHint() const
{
    constexpr int letters = 12;
    return {fontMetrics().averageCharWidth() * letters, fontMetrics().lineSpacing()};
}

} // namespace zul
