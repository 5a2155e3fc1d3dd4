#include "controls/look/ScreenRoom.h"

#include <QScreen>
#include <QStyle>
#include <QWidget>

namespace zul {

namespace {

QSize frameOf(const QWidget* window)
{
    const QSize known = window->frameGeometry().size() - window->size();
    if (window->isVisible() || !known.isEmpty()) {
        return known;
    }
    const int edge = window->style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, window);
    const int title = window->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, window);
    return {2 * edge, title + edge};
}

} // namespace

QSize roomFor(const QWidget* window)
{
    return window->screen()->availableGeometry().size() - frameOf(window);
}

} // namespace zul
