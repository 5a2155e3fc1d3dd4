#include "host/player/Commands.h"

#include "host/player/CommandError.h"
#include "host/player/ControlFinder.h"
#include "host/player/ControlPrinter.h"
#include "host/player/EventPrinter.h"
#include "host/player/GridProbe.h"
#include "host/player/Hands.h"
#include "host/player/HostPort.h"
#include "host/player/Keys.h"
#include "host/player/WindowWatcher.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QHash>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QWindow>

#include <algorithm>

namespace zul::host {

using namespace Qt::StringLiterals;

namespace {
int wholeNumber(const Word& word)
{
    bool ok = false;
    const int number = word.text.toInt(&ok);
    if (!ok) {
        throw CommandError{u"%1 is no whole number"_s.arg(quoted(word.text))};
    }
    return number;
}

/// A size that a picture of the window can still have.
int pixels(const Word& word)
{
    constexpr int most = 10'000;
    const int number = wholeNumber(word);
    if (number <= 0 || number > most) {
        throw CommandError{u"%1 is no size"_s.arg(number)};
    }
    return number;
}

void reachAndClick(QWidget* widget, const QPoint& point, Qt::KeyboardModifiers modifiers = {})
{
    hands::reach(widget, point);
    hands::click(widget, point, modifiers);
}

/// Where a row is clicked: inside what is seen of it, and not on its check box.
QPoint rowPoint(const GridProbe& grid, int row)
{
    const QRect seen = grid.rowRect(row) & grid.body()->rect();
    if (seen.isEmpty()) {
        throw CommandError{u"row %1 cannot be brought into view"_s.arg(row)};
    }
    const QRect check = grid.checkRectOrNothing(row);
    QPoint point = seen.center();
    if (check.contains(point)) {
        point.setX(check.right() + 4 <= seen.right() ? check.right() + 4
                                                     : std::max(seen.left(), check.left() - 4));
    }
    return point;
}

QTabBar* tabBarOf(QWidget* control)
{
    if (auto* tabs = qobject_cast<QTabWidget*>(control)) {
        return tabs->tabBar();
    }
    return qobject_cast<QTabBar*>(control);
}

/// Brings a tab of a bar that is too narrow for all of them into view, as the bar's scroll buttons would.
void showTab(QTabBar* bar, int index)
{
    for (const char* name : {"ScrollRightButton", "ScrollLeftButton"}) {
        auto* button = bar->findChild<QWidget*>(QLatin1String(name));
        for (int i = 0; i < bar->count() && !bar->rect().contains(bar->tabRect(index).center()) &&
                        button != nullptr && button->isVisible() && button->isEnabled();
             ++i) {
            hands::click(button, button->rect().center());
        }
    }
}

QAbstractButton* buttonOf(QMessageBox* box, const QString& name)
{
    if (auto* named = box->findChild<QAbstractButton*>(name)) {
        return named;
    }
    if (name == u"ok"_s) {
        return box->button(QMessageBox::Ok);
    }
    if (name == u"yes"_s) {
        return box->button(QMessageBox::Yes);
    }
    if (name == u"no"_s) {
        return box->button(QMessageBox::No);
    }
    return nullptr;
}
} // namespace

Commands::Commands(EventPrinter& printer, WindowWatcher& windows, HostPort& host)
    : m_printer(printer)
    , m_windows(windows)
    , m_host(host)
{}

const Commands::Entry* Commands::find(const QString& name)
{
    constexpr std::size_t any = static_cast<std::size_t>(-1);
    static const QHash<QString, Entry> table{
        {u"call"_s, {&Commands::call, 1, any, false}},
        {u"click"_s, {&Commands::click, 1, 1, false}},
        {u"type"_s, {&Commands::type, 2, 2, false}},
        {u"key"_s, {&Commands::key, 2, 2, false}},
        {u"focus"_s, {&Commands::focus, 1, 1, false}},
        {u"page"_s, {&Commands::page, 2, 2, false}},
        {u"choose"_s, {&Commands::choose, 2, 2, false}},
        {u"request"_s, {&Commands::request, 1, 1, false}},
        {u"clear"_s, {&Commands::clear, 1, 1, false}},
        {u"row"_s, {&Commands::row, 2, 3, false}},
        {u"doubleclick"_s, {&Commands::doubleClick, 2, 2, false}},
        {u"tick"_s, {&Commands::tick, 2, 2, false}},
        {u"sort"_s, {&Commands::sort, 2, 2, false}},
        {u"group"_s, {&Commands::group, 2, 2, false}},
        {u"ungroup"_s, {&Commands::ungroup, 1, 1, false}},
        {u"width"_s, {&Commands::width, 3, 3, false}},
        {u"move"_s, {&Commands::move, 3, 3, false}},
        {u"folder"_s, {&Commands::folder, 2, 2, false}},
        {u"answer"_s, {&Commands::answer, 1, 1, true}},
        {u"at"_s, {&Commands::at, 2, 3, false}},
        {u"wheel"_s, {&Commands::wheel, 3, 3, false}},
        {u"close"_s, {&Commands::close, 0, 0, false}},
        {u"resize"_s, {&Commands::resize, 2, 2, false}},
        {u"print"_s, {&Commands::print, 1, 1, true}},
        {u"rows"_s, {&Commands::rows, 1, 3, true}},
        {u"lines"_s, {&Commands::lines, 1, 1, true}},
        {u"sql"_s, {&Commands::sql, 1, 1, true}},
        {u"shot"_s, {&Commands::shot, 1, 1, true}},
    };
    const auto found = table.constFind(name);
    return found == table.constEnd() ? nullptr : &found.value();
}

void Commands::run(const std::vector<Word>& words)
{
    const QString& name = words.front().text;
    const Entry* entry = find(name);
    if (entry == nullptr) {
        throw CommandError{u"unknown command %1"_s.arg(quoted(name))};
    }
    const Arguments arguments(words.begin() + 1, words.end());
    if (arguments.size() < entry->least || arguments.size() > entry->most) {
        throw CommandError{u"%1 has the wrong number of words"_s.arg(name)};
    }
    if (m_windows.messageBox() != nullptr && !entry->besideMessage) {
        throw CommandError{u"a message box is open"_s};
    }
    (this->*entry->run)(arguments);
}

QWidget* Commands::usable(const Word& name) const
{
    return findUsableControl(m_windows.topmostForm(), name.text);
}

void Commands::call(const Arguments& arguments)
{
    const Arguments values(arguments.begin() + 1, arguments.end());
    m_printer.line(m_host.call(arguments[0].text, values));
}

void Commands::click(const Arguments& arguments)
{
    QWidget* control = usable(arguments[0]);
    reachAndClick(control, hands::clickPoint(control));
}

void Commands::focus(const Arguments& arguments)
{
    QWidget* part = keyboardPart(usable(arguments[0]));
    reachAndClick(part, hands::clickPoint(part));
}

void Commands::type(const Arguments& arguments)
{
    const QPointer<QWidget> part = keyboardPart(usable(arguments[0]));
    const QPointer<QWidget> window = part->window();
    reachAndClick(part, hands::clickPoint(part));
    if (!part || !window || !part->isVisible()) {
        return; // the click closed the window
    }
    if (!part->hasFocus() && window->focusWidget() != part) {
        throw CommandError{u"%1 does not take the keyboard"_s.arg(quoted(arguments[0].text))};
    }
    hands::key(window, Qt::Key_A, Qt::ControlModifier, u"\x01"_s);
    if (arguments[1].text.isEmpty()) {
        if (window) {
            hands::key(window, Qt::Key_Delete, {}, u"\x7f"_s);
        }
        return;
    }
    if (window) {
        hands::type(window, arguments[1].text);
    }
}

void Commands::key(const Arguments& arguments)
{
    QWidget* control = usable(arguments[0]);
    const KeyPress press = keyPress(arguments[1].text);
    QWidget* window = control->window();
    if (control != window) {
        QWidget* part = keyboardPart(control);
        if (window->focusWidget() != part && !part->isAncestorOf(window->focusWidget())) {
            part->setFocus(Qt::TabFocusReason);
        }
        QWidget* focused = window->focusWidget();
        if (focused == nullptr || (focused != part && !part->isAncestorOf(focused))) {
            throw CommandError{u"%1 does not take the keyboard"_s.arg(quoted(arguments[0].text))};
        }
    }
    hands::key(window, press.key, press.modifiers, press.text);
}

void Commands::page(const Arguments& arguments)
{
    QTabBar* bar = tabBarOf(usable(arguments[0]));
    if (bar == nullptr) {
        throw CommandError{u"%1 is no tab control"_s.arg(quoted(arguments[0].text))};
    }
    const int index = wholeNumber(arguments[1]);
    if (index < 0 || index >= bar->count()) {
        throw CommandError{u"there is no page %1"_s.arg(index)};
    }
    if (!bar->isTabVisible(index)) {
        throw CommandError{u"page %1 is hidden"_s.arg(index)};
    }
    if (!bar->isTabEnabled(index)) {
        throw CommandError{u"page %1 is disabled"_s.arg(index)};
    }
    showTab(bar, index);
    reachAndClick(bar, bar->tabRect(index).center());
}

void Commands::choose(const Arguments& arguments)
{
    const QPointer<QComboBox> list = qobject_cast<QComboBox*>(usable(arguments[0]));
    if (!list) {
        throw CommandError{u"%1 is no drop-down list"_s.arg(quoted(arguments[0].text))};
    }
    const int entry = list->findText(arguments[1].text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (entry < 0) {
        throw CommandError{u"there is no entry %1"_s.arg(quoted(arguments[1].text))};
    }
    reachAndClick(list, QPoint(list->width() - 8, list->height() / 2));
    const QPointer<QAbstractItemView> view = list ? list->view() : nullptr;
    if (!view || !view->isVisible()) {
        throw CommandError{u"%1 does not open"_s.arg(quoted(arguments[0].text))};
    }
    // The arrow keys walk to the entry, Return takes it: the mouse would have to wait until the list believes that
    // its opening click is over.
    view->setCurrentIndex(list->model()->index(entry, list->modelColumn(), list->rootModelIndex()));
    hands::key(view->window(), Qt::Key_Return, {}, u"\r"_s);
}

void Commands::clickPart(const Word& name, const char* part)
{
    auto* button = usable(name)->findChild<QWidget*>(QLatin1String(part));
    if (button == nullptr) {
        throw CommandError{u"%1 is no selector field"_s.arg(quoted(name.text))};
    }
    if (!button->isVisible() || !button->isEnabled()) {
        throw CommandError{u"the button of %1 is hidden or disabled"_s.arg(quoted(name.text))};
    }
    reachAndClick(button, button->rect().center());
}

void Commands::request(const Arguments& arguments)
{
    clickPart(arguments[0], "chooseButton");
}

void Commands::clear(const Arguments& arguments)
{
    clickPart(arguments[0], "clearButton");
}

void Commands::row(const Arguments& arguments)
{
    Qt::KeyboardModifiers modifiers;
    if (arguments.size() == 3) {
        const QString& with = arguments[2].text;
        if (with != u"ctrl"_s && with != u"shift"_s) {
            throw CommandError{u"%1 is neither ctrl nor shift"_s.arg(quoted(with))};
        }
        modifiers = with == u"ctrl"_s ? Qt::ControlModifier : Qt::ShiftModifier;
    }
    const GridProbe grid(usable(arguments[0]));
    const QPoint point = rowPoint(grid, wholeNumber(arguments[1]));
    reachAndClick(grid.body(), point, modifiers);
}

void Commands::doubleClick(const Arguments& arguments)
{
    const GridProbe grid(usable(arguments[0]));
    const QPoint point = rowPoint(grid, wholeNumber(arguments[1]));
    hands::reach(grid.body(), point);
    hands::doubleClick(grid.body(), point);
}

void Commands::tick(const Arguments& arguments)
{
    const GridProbe grid(usable(arguments[0]));
    reachAndClick(grid.body(), grid.checkRect(wholeNumber(arguments[1])).center());
}

void Commands::sort(const Arguments& arguments)
{
    const GridProbe grid(usable(arguments[0]));
    reachAndClick(grid.header(), grid.headerRect(wholeNumber(arguments[1])).center());
}

void Commands::group(const Arguments& arguments)
{
    const GridProbe grid(usable(arguments[0]));
    const QPoint from = grid.headerRect(wholeNumber(arguments[1])).center();
    QWidget* box = grid.groupBox();
    hands::reach(grid.header(), from);
    hands::drag(grid.header(), from, box, box->rect().center());
}

void Commands::ungroup(const Arguments& arguments)
{
    GridProbe(usable(arguments[0])).ungroupAll();
}

void Commands::width(const Arguments& arguments)
{
    const GridProbe grid(usable(arguments[0]));
    const QRect header = grid.headerRect(wholeNumber(arguments[1]));
    const int wanted = pixels(arguments[2]);
    const QPoint edge(header.right(), header.center().y());
    hands::reach(grid.header(), edge);
    hands::drag(grid.header(), edge, grid.header(), edge + QPoint(wanted - header.width(), 0));
}

void Commands::move(const Arguments& arguments)
{
    const GridProbe grid(usable(arguments[0]));
    const int column = wholeNumber(arguments[1]);
    const int position = wholeNumber(arguments[2]);
    const QRect from = grid.headerRect(column);
    const int there = grid.columnAt(position);
    if (there < 0) {
        throw CommandError{u"there is no visible position %1"_s.arg(position)};
    }
    if (there == column) {
        return;
    }
    const QRect target = grid.headerRect(there);
    // Let go beyond the middle of the column that stands there, seen from where the drag comes.
    const bool rightwards = grid.visiblePosition(column) < position;
    const QPoint end(rightwards ? target.right() - 2 : target.left() + 2, target.center().y());
    hands::reach(grid.header(), from.center());
    hands::drag(grid.header(), from.center(), grid.header(), end);
}

void Commands::folder(const Arguments& arguments)
{
    QWidget* tree = usable(arguments[0]);
    bool selected = false;
    if (tree->metaObject()->indexOfMethod("selectPath(QString)") < 0) {
        throw CommandError{u"%1 is no folder tree"_s.arg(quoted(arguments[0].text))};
    }
    QMetaObject::invokeMethod(tree, "selectPath", Qt::DirectConnection, Q_RETURN_ARG(bool, selected),
                              Q_ARG(QString, arguments[1].text));
    if (!selected) {
        throw CommandError{u"there is no folder %1"_s.arg(quoted(arguments[1].text))};
    }
}

void Commands::answer(const Arguments& arguments)
{
    QMessageBox* box = m_windows.messageBox();
    if (box == nullptr) {
        throw CommandError{u"no message box is open"_s};
    }
    QAbstractButton* button = buttonOf(box, arguments[0].text);
    if (button == nullptr || !button->isVisible() || !button->isEnabled()) {
        throw CommandError{u"the message box has no button %1"_s.arg(quoted(arguments[0].text))};
    }
    reachAndClick(button, button->rect().center());
}

QWidget* Commands::under(const Arguments& arguments, QPoint* point) const
{
    QWidget* popup = QApplication::activePopupWidget();
    QWidget* window = popup != nullptr ? popup : m_windows.topmostForm();
    if (window == nullptr) {
        throw CommandError{u"no window is open"_s};
    }
    *point = QPoint(wholeNumber(arguments[0]), wholeNumber(arguments[1]));
    if (!window->rect().contains(*point)) {
        throw CommandError{u"the window ends at %1, %2"_s.arg(window->width() - 1).arg(window->height() - 1)};
    }
    return window;
}

void Commands::at(const Arguments& arguments)
{
    QPoint point;
    QWidget* window = under(arguments, &point);
    const QString how = arguments.size() > 2 ? arguments[2].text : QString();
    if (how == u"right"_s) {
        hands::rightClick(window, point);
    } else if (how == u"double"_s) {
        hands::doubleClick(window, point);
    } else if (how.isEmpty()) {
        hands::click(window, point);
    } else {
        throw CommandError{u"%1 is neither right nor double"_s.arg(quoted(how))};
    }
}

void Commands::wheel(const Arguments& arguments)
{
    constexpr int mostSteps = 100;
    QPoint point;
    QWidget* window = under(arguments, &point);
    const int steps = wholeNumber(arguments[2]);
    if (steps == 0 || steps > mostSteps || steps < -mostSteps) {
        throw CommandError{u"%1 is no number of steps"_s.arg(steps)};
    }
    hands::wheel(window, point, steps);
}

void Commands::close(const Arguments& /*arguments*/)
{
    QWidget* window = m_windows.topmost();
    if (window == nullptr) {
        throw CommandError{u"no window is open"_s};
    }
    if (!window->isEnabled()) {
        throw CommandError{u"%1 is disabled"_s.arg(quoted(window->objectName()))};
    }
    window->windowHandle()->close();
}

void Commands::resize(const Arguments& arguments)
{
    const QSize size(pixels(arguments[0]), pixels(arguments[1]));
    QWidget* window = m_windows.topmost();
    if (window == nullptr) {
        throw CommandError{u"no window is open"_s};
    }
    window->resize(size);
}

void Commands::print(const Arguments& arguments)
{
    m_printer.line(controlLine(findControl(m_windows.topmostForm(), arguments[0].text)));
}

void Commands::rows(const Arguments& arguments)
{
    const GridProbe grid(findControl(m_windows.topmostForm(), arguments[0].text));
    const int all = grid.rowCount();
    const int from = arguments.size() > 1 ? wholeNumber(arguments[1]) : 0;
    const int count = arguments.size() > 2 ? wholeNumber(arguments[2]) : all;
    if (from < 0 || count < 0) {
        throw CommandError{u"rows are counted from 0"_s};
    }
    for (int row = from; row < all && row - from < count; ++row) {
        m_printer.line(grid.rowLine(row));
    }
}

void Commands::lines(const Arguments& arguments)
{
    for (const QString& line : listLines(findControl(m_windows.topmostForm(), arguments[0].text))) {
        m_printer.line(line);
    }
}

void Commands::sql(const Arguments& arguments)
{
    for (const QString& line : m_host.sql(arguments[0].text)) {
        m_printer.line(line);
    }
}

void Commands::shot(const Arguments& arguments)
{
    QWidget* window = m_windows.topmost();
    if (window == nullptr) {
        throw CommandError{u"no window is open"_s};
    }
    if (!window->grab().save(arguments[0].text, "PNG")) {
        throw CommandError{u"%1 cannot be written"_s.arg(quoted(arguments[0].text))};
    }
}

bool Commands::closeTopmost()
{
    if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
        menu->close();
        return true;
    }
    QWidget* window = m_windows.topmost();
    if (window == nullptr) {
        return false;
    }
    if (auto* box = qobject_cast<QMessageBox*>(window)) {
        for (const char* name : {"no", "ok", "yes"}) {
            if (QAbstractButton* button = buttonOf(box, QLatin1String(name))) {
                button->click();
                return true;
            }
        }
        box->hide();
        return true;
    }
    window->setEnabled(true);
    // A handler that refuses gets a second chance: it may have asked a question that was answered since.
    if (++m_closeTries[window] > 2) {
        window->hide();
        return true;
    }
    window->close();
    return true;
}
} // namespace zul::host
