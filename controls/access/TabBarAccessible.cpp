#include "controls/access/TabBarAccessible.h"

#include <QAccessibleWidget>
#include <QPointer>
#include <QTabBar>
#include <QTabWidget>

#include <vector>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* described = "zulDescribedTabs";

QString captionOf(const QTabBar& bar, int tab)
{
    const QString name = bar.accessibleTabName(tab);
    return name.isEmpty() ? bar.tabText(tab).remove(u'&') : name;
}

/// One tab.
class TabAccessible : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    TabAccessible(QTabBar* bar, int tab)
        : m_bar(bar)
        , m_tab(tab)
    {}

    int tab() const { return m_tab; }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    bool isValid() const override { return m_bar && m_tab < m_bar->count(); }
    QObject* object() const override { return nullptr; }
    QAccessible::Role role() const override { return QAccessible::PageTab; }
    void setText(QAccessible::Text, const QString&) override {}
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(m_bar); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QWindow* window() const override { return m_bar ? m_bar->window()->windowHandle() : nullptr; }

    QString text(QAccessible::Text kind) const override
    {
        return !isValid()                         ? QString()
               : kind == QAccessible::Name        ? captionOf(*m_bar, m_tab)
               : kind == QAccessible::Description ? m_bar->tabToolTip(m_tab)
                                                  : QString();
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        const bool front = m_bar->currentIndex() == m_tab;
        state.invisible = !m_bar->isVisible() || !m_bar->isTabVisible(m_tab);
        state.disabled = !m_bar->isEnabled() || !m_bar->isTabEnabled(m_tab);
        state.selectable = true;
        state.selected = front;
        state.focusable = !state.invisible && !state.disabled;
        state.focused = front && m_bar->hasFocus();
        return state;
    }

    QRect rect() const override
    {
        if (!isValid() || !m_bar->isTabVisible(m_tab)) {
            return {};
        }
        const QRect place = m_bar->tabRect(m_tab);
        return {m_bar->mapToGlobal(place.topLeft()), place.size()};
    }

    QStringList actionNames() const override
    {
        return isValid() && m_bar->isEnabled() && m_bar->isTabVisible(m_tab) && m_bar->isTabEnabled(m_tab)
                   ? QStringList{pressAction()}
                   : QStringList();
    }
    void doAction(const QString& action) override
    {
        if (actionNames().contains(action)) {
            m_bar->setCurrentIndex(m_tab);
        }
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QPointer<QTabBar> m_bar;
    int m_tab;
};

/// The bar. Its children are all tabs, by their index, so that what the bar itself tells of a tab reaches the right one.
class TabBarAccessible : public QAccessibleWidget
{
public:
    explicit TabBarAccessible(QTabBar* bar)
        : QAccessibleWidget(bar, QAccessible::PageTabList)
    {}
    ~TabBarAccessible() override
    {
        for (const QAccessible::Id id : m_tabs) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }
    TabBarAccessible(const TabBarAccessible&) = delete;
    TabBarAccessible& operator=(const TabBarAccessible&) = delete;

    QString text(QAccessible::Text kind) const override
    {
        if (kind != QAccessible::Name) {
            return QAccessibleWidget::text(kind);
        }
        const QWidget* owner = bar().parentWidget();
        if (owner != nullptr && !owner->accessibleName().isEmpty()) {
            return owner->accessibleName();
        }
        QStringList pages;
        for (int tab = 0; tab < bar().count(); ++tab) {
            if (bar().isTabVisible(tab)) {
                pages.append(captionOf(bar(), tab));
            }
        }
        return pages.join(u", "_s);
    }

    int childCount() const override { return bar().count(); }

    QAccessibleInterface* child(int index) const override
    {
        if (index < 0 || index >= bar().count()) {
            return nullptr;
        }
        while (static_cast<size_t>(index) >= m_tabs.size()) {
            auto* made = new TabAccessible(&bar(), static_cast<int>(m_tabs.size()));
            m_tabs.push_back(QAccessible::registerAccessibleInterface(made));
        }
        return QAccessible::accessibleInterface(m_tabs[static_cast<size_t>(index)]);
    }

    QAccessibleInterface* childAt(int x, int y) const override
    {
        return child(bar().tabAt(bar().mapFromGlobal(QPoint(x, y))));
    }

    QAccessibleInterface* focusChild() const override
    {
        return bar().hasFocus() ? child(bar().currentIndex()) : nullptr;
    }

    int indexOfChild(const QAccessibleInterface* child) const override
    {
        const auto* tab = dynamic_cast<const TabAccessible*>(child);
        return tab != nullptr && tab->parent() == this ? tab->tab() : -1;
    }

private:
    QTabBar& bar() const { return *static_cast<QTabBar*>(widget()); }

    mutable std::vector<QAccessible::Id> m_tabs;
};

QAccessibleInterface* makeTabBarAccessible(const QString& className, QObject* object)
{
    if (className != u"QTabBar"_s || !object->property(described).toBool()) {
        return nullptr;
    }
    return new TabBarAccessible(static_cast<QTabBar*>(object));
}

} // namespace

void describeTabs(QTabBar* bar)
{
    static const bool installed = [] {
        QAccessible::installFactory(makeTabBarAccessible);
        return true;
    }();
    Q_UNUSED(installed)
    bar->setProperty(described, true);
}

} // namespace zul
