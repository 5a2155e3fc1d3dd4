#include "mainwindow/PageTabs.h"

#include "controls/access/TabBarAccessible.h"
#include "controls/look/CommonLook.h"

#include <QPainter>
#include <QSignalBlocker>
#include <QToolButton>

namespace zul {

PageBar::PageBar(QWidget* parent)
    : QTabBar(parent)
{
    describeTabs(this);
    // The buttons that scroll a bar without room are for the mouse; the arrow keys reach every tab.
    const auto scrollButtons = findChildren<QToolButton*>();
    for (QToolButton* button : scrollButtons) {
        button->setFocusPolicy(Qt::NoFocus);
    }
}

void PageBar::setMark(int tab, const QString& text)
{
    setTabToolTip(tab, text);
    if (text.isEmpty()) {
        m_marked.removeAll(tab);
        setAccessibleTabName(tab, QString());
    } else {
        if (!m_marked.contains(tab)) {
            m_marked.append(tab);
        }
        setAccessibleTabName(tab, tabText(tab).remove(u'&') + QStringLiteral(", ") + text);
    }
    update(tabRect(tab));
}

void PageBar::paintEvent(QPaintEvent* event)
{
    QTabBar::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(accentColor());
    constexpr int Size = 6;
    constexpr int FromEdge = 2;
    for (const int tab : m_marked) {
        if (!isTabVisible(tab)) {
            continue;
        }
        const QRect room = tabRect(tab);
        painter.drawEllipse(room.right() - FromEdge - Size, room.top() + FromEdge, Size, Size);
    }
}

PageTabs::PageTabs(QWidget* parent)
    : QTabWidget(parent)
    , m_bar(new PageBar(this))
{
    m_bar->setObjectName(tabBar()->objectName());
    m_bar->setDrawBase(false);
    setTabBar(m_bar);
    connect(this, &QTabWidget::currentChanged, this, &PageTabs::stayOnShownPage);
}

void PageTabs::setPageShown(int page, bool shown)
{
    setTabVisible(page, shown);
    // The bar's own keys, its wheel and its shortcuts step over disabled tabs. The page itself is not disabled.
    m_bar->setTabEnabled(page, shown);
}

void PageTabs::turnPage(int step)
{
    for (int page = currentIndex() + step; page >= 0 && page < count(); page += step) {
        if (isTabVisible(page)) {
            setCurrentIndex(page);
            return;
        }
    }
}

void PageTabs::stayOnShownPage(int page)
{
    if (isTabVisible(page) || !anyPageShown()) {
        m_lastShown = page;
        return;
    }
    const QSignalBlocker blocker(this);
    setCurrentIndex(m_lastShown);
}

bool PageTabs::anyPageShown() const
{
    for (int page = 0; page < count(); ++page) {
        if (isTabVisible(page)) {
            return true;
        }
    }
    return false;
}

} // namespace zul
