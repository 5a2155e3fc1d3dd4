// A tab control some of whose pages are hidden for a time.
#pragma once

#include <QTabWidget>

namespace zul {

/// A hidden page is reached by nothing but the step that shows it: not by the wheel, not by a key, not by an
/// assistive tool. (A plain tab control steps over disabled pages only, and into hidden ones.)
class PageTabs : public QTabWidget
{
    Q_OBJECT

public:
    explicit PageTabs(QWidget* parent = nullptr);

    /// Shows or hides a page. What stands on it keeps its own state, and is enabled or not as before.
    void setPageShown(int page, bool shown);

private:
    void stayOnShownPage(int page);
    bool anyPageShown() const;

    int m_lastShown = 0; ///< the page that was in front last
};

} // namespace zul
