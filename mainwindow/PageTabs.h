// A tab control some of whose pages are hidden for a time, and some of which carry a mark.
#pragma once

#include <QTabBar>
#include <QTabWidget>
#include <QVector>

namespace zul {

/// The bar: draws a dot at the upper right corner of a tab that is marked. Nothing moves for it.
class PageBar : public QTabBar
{
    Q_OBJECT

public:
    explicit PageBar(QWidget* parent);

    /// Marks a tab, or takes its mark away where the text is empty.
    /// @param text what the mark says: in the tab's tool tip and, behind its caption, in its accessible name
    void setMark(int tab, const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVector<int> m_marked;
};

/// A hidden page is reached by nothing but the step that shows it: not by the wheel, not by a key, not by an
/// assistive tool. (A plain tab control steps over disabled pages only, and into hidden ones.)
class PageTabs : public QTabWidget
{
    Q_OBJECT

public:
    explicit PageTabs(QWidget* parent = nullptr);

    /// Shows or hides a page. What stands on it keeps its own state, and is enabled or not as before.
    void setPageShown(int page, bool shown);

    /// Goes on to the next shown page, or back; at the last one nothing happens.
    void turnPage(int step);

    /// See PageBar.
    void setMark(int page, const QString& text) { m_bar->setMark(page, text); }

private:
    void stayOnShownPage(int page);
    bool anyPageShown() const;

    PageBar* m_bar;
    int m_lastShown = 0; ///< the page that was in front last
};

} // namespace zul
