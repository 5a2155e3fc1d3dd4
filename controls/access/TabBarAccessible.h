// The tabs of a tab control for screen readers and other assistive tools.
#pragma once

QT_BEGIN_NAMESPACE
class QTabBar;
QT_END_NAMESPACE

namespace zul {

/// The bar is named after the tab control it belongs to, or after its pages where that has no name; a tab without a page
/// to be seen is not showing and cannot be pressed; the one in front is selected. Only bars given here are changed, not
/// those of the host. To be called before anybody has asked the bar for anything.
void describeTabs(QTabBar* bar);

} // namespace zul
