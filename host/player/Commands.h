// The commands of a scenario.
#pragma once

#include "host/player/ScenarioParser.h"

#include <QHash>
#include <QPoint>
#include <QString>
#include <functional>
#include <vector>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul::host {
class EventPrinter;
class HostPort;
class WindowWatcher;

/// Carries out one command at a time on the windows as they are. Knows nothing of the order of commands.
class Commands
{
public:
    Commands(EventPrinter& printer, WindowWatcher& windows, HostPort& host);

    /// Works until the handlers that the command started have returned; modal windows may come and go meanwhile.
    /// The first word is the command's name. Throws CommandError when it cannot be done.
    void run(const std::vector<Word>& words);

    /// Closes the topmost window without a person's patience: a message box is answered, a disabled window is
    /// enabled first, and one that will not close is hidden. False when none is open.
    bool closeTopmost();

private:
    using Arguments = std::vector<Word>;
    struct Entry
    {
        void (Commands::*run)(const Arguments&);
        std::size_t least;
        std::size_t most;
        bool besideMessage; // also while a message box is open
    };
    static const Entry* find(const QString& name);

    void call(const Arguments& arguments);
    void click(const Arguments& arguments);
    void type(const Arguments& arguments);
    void key(const Arguments& arguments);
    void focus(const Arguments& arguments);
    void page(const Arguments& arguments);
    void choose(const Arguments& arguments);
    void request(const Arguments& arguments);
    void clear(const Arguments& arguments);
    void row(const Arguments& arguments);
    void doubleClick(const Arguments& arguments);
    void tick(const Arguments& arguments);
    void sort(const Arguments& arguments);
    void group(const Arguments& arguments);
    void ungroup(const Arguments& arguments);
    void width(const Arguments& arguments);
    void move(const Arguments& arguments);
    void folder(const Arguments& arguments);
    void answer(const Arguments& arguments);
    void at(const Arguments& arguments);
    void wheel(const Arguments& arguments);
    void close(const Arguments& arguments);
    void resize(const Arguments& arguments);
    void print(const Arguments& arguments);
    void rows(const Arguments& arguments);
    void lines(const Arguments& arguments);
    void sql(const Arguments& arguments);
    void shot(const Arguments& arguments);

    QWidget* usable(const Word& name) const;
    /// The topmost window, or the list or menu that is open over it, and a point inside.
    QWidget* under(const Arguments& arguments, QPoint* point) const;
    void clickPart(const Word& name, const char* part);

    EventPrinter& m_printer;
    WindowWatcher& m_windows;
    HostPort& m_host;
    QHash<QWidget*, int> m_closeTries; // the key is compared, never used
};
} // namespace zul::host
