#include "session/WindowMemory.h"

#include "session/Remembered.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QStringList>
#include <QWidget>
#include <algorithm>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype SizeParts = 2;     ///< width, height
constexpr qsizetype GeometryParts = 5; ///< and left, top, maximized
constexpr int LeastSeen = 100;         ///< of a window that is on a screen, in both directions

bool isSeen(const QRect& window)
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&](const QScreen* screen) {
        const QRect seen = screen->availableGeometry() & window;
        return seen.width() >= LeastSeen && seen.height() >= LeastSeen && seen.top() == window.top();
    });
}

} // namespace

WindowMemory::WindowMemory(QWidget* window, Keeps keeps)
    : QObject(window)
    , m_window(window)
    , m_keeps(keeps)
    , m_name(window->objectName() + u"_Geometria"_s)
{
    restore();
    window->installEventFilter(this);
}

bool WindowMemory::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_window && event->type() == QEvent::Hide && !event->spontaneous()) {
        save();
    }
    return false;
}

void WindowMemory::restore()
{
    QList<int> numbers;
    const QStringList parts = remembered(m_name).split(u',');
    for (const QString& part : parts) {
        bool ok = false;
        numbers.append(part.toInt(&ok));
        if (!ok) {
            return;
        }
    }
    if (numbers.size() < SizeParts) {
        return;
    }
    const QSize size = QSize(numbers[0], numbers[1]).expandedTo(m_window->minimumSize());
    m_window->resize(size);
    if (m_keeps == Keeps::Size || numbers.size() != GeometryParts) {
        return;
    }
    const QPoint place(numbers[2], numbers[3]);
    if (isSeen(QRect(place, size))) {
        m_window->move(place);
    }
    if (numbers[4] != 0) {
        m_window->setWindowState(m_window->windowState() | Qt::WindowMaximized);
    }
}

void WindowMemory::save() const
{
    const bool maximized = m_window->isMaximized();
    // The size to go back to is kept for a maximized window, not that of the screen.
    const QRect normal = maximized && m_window->normalGeometry().isValid()
                             ? m_window->normalGeometry()
                             : QRect(m_window->pos(), m_window->size());
    QString text = u"%1,%2"_s.arg(normal.width()).arg(normal.height());
    if (m_keeps == Keeps::SizeAndPlace) {
        text += u",%1,%2,%3"_s.arg(normal.x()).arg(normal.y()).arg(maximized ? 1 : 0);
    }
    remember(m_name, text);
}

} // namespace zul
