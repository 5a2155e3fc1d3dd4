#include "mainwindow/PageTabs.h"

#include <QSignalBlocker>
#include <QTabBar>

namespace zul {

PageTabs::PageTabs(QWidget* parent)
    : QTabWidget(parent)
{
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
        if (isTabVisible(page))
            return true;
    }
    return false;
}

} // namespace zul
