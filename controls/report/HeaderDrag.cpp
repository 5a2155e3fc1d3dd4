#include "controls/report/HeaderDrag.h"

#include "controls/look/CommonLook.h"

#include <QHeaderView>
#include <QLabel>

namespace zul {

namespace {

constexpr int dropBand = 48; // how far above or below the header a drop still counts as on it

} // namespace

void HeaderDrag::begin(int column, const QString& caption, const QPoint& position)
{
    m_column = column;
    auto* ghost = new QLabel(caption, m_header.window());
    ghost->setAttribute(Qt::WA_TransparentForMouseEvents);
    ghost->setFont(m_header.font());
    ghost->setContentsMargins(8, 4, 8, 4);
    ghost->setAutoFillBackground(true);
    QPalette colors = m_header.palette();
    colors.setColor(QPalette::Window, accentColor());
    colors.setColor(QPalette::WindowText, Qt::white);
    ghost->setPalette(colors);
    ghost->adjustSize();
    ghost->show();
    m_ghost = ghost;
    follow(position);
}

void HeaderDrag::follow(const QPoint& position)
{
    if (m_ghost) {
        m_ghost->move(m_header.viewport()->mapTo(m_header.window(), position) + QPoint(10, 6));
        m_ghost->raise();
    }
    if (m_groupBox) {
        m_groupBox->setDropTarget(overGroupBox(position));
    }
    const int column = dropColumnAt(position);
    const int marked = column == m_column ? -1 : column;
    if (marked != m_marked) {
        m_marked = marked;
        m_header.viewport()->update();
    }
}

void HeaderDrag::end()
{
    delete m_ghost.data();
    m_marked = -1;
    if (m_groupBox) {
        m_groupBox->setDropTarget(false);
    }
}

bool HeaderDrag::overGroupBox(const QPoint& position) const
{
    return m_groupBox && m_groupBox->isVisible() &&
           m_groupBox->rect().contains(m_groupBox->mapFromGlobal(m_header.viewport()->mapToGlobal(position)));
}

int HeaderDrag::dropColumnAt(const QPoint& position) const
{
    if (overGroupBox(position) || position.y() < -dropBand ||
        position.y() > m_header.viewport()->height() + dropBand) {
        return -1;
    }
    const int column = m_header.logicalIndexAt(position.x());
    if (column >= 0) {
        return column;
    }
    const int count = m_header.count();
    const bool behind = m_header.isRightToLeft() ? position.x() < 0 : position.x() > 0;
    const int step = behind ? -1 : 1;
    for (int visual = behind ? count - 1 : 0; visual >= 0 && visual < count; visual += step) {
        if (!m_header.isSectionHidden(m_header.logicalIndex(visual))) {
            return m_header.logicalIndex(visual);
        }
    }
    return -1;
}

} // namespace zul
