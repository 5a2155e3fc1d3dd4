#include "mainwindow/PageTabs.h"

#include <QSignalBlocker>
#include <QTabBar>
#include <QToolButton>

namespace zul {

PageTabs::PageTabs(QWidget* parent)
    : QTabWidget(parent)
{
    // The buttons that scroll a bar without room are for the mouse; the arrow keys reach every tab.
    const auto scrollButtons = tabBar()->findChildren<QToolButton*>();
    for (QToolButton* button : scrollButtons) {
        button->setFocusPolicy(Qt::NoFocus);
    }
    connect(this, &QTabWidget::currentChanged, this, &PageTabs::stayOnShownPage);
}

void PageTabs::setPageShown(int page, bool shown)
{
    setTabVisible(page, shown);
    // The bar's own keys, its wheel and its shortcuts step over disabled tabs. The page itself is not disabled.
    tabBar()->setTabEnabled(page, shown);
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
