#include "host/player/WindowWatcher.h"

#include "host/player/EventPrinter.h"
#include "host/player/ScenarioParser.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDynamicPropertyChangeEvent>
#include <QEvent>
#include <QMenu>
#include <QMessageBox>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QThread>

#include <memory>

namespace zul::host {

using namespace Qt::StringLiterals;

namespace {
bool isNotice(const QWidget* window)
{
    return window->property("zulNotice").toBool();
}

bool isForm(const QWidget* window)
{
    return window->objectName().startsWith(u"frm"_s);
}

/// Popups, tool tips and the like come and go with the control that they belong to.
bool isOrdinaryWindow(const QWidget* window)
{
    switch (window->windowType()) {
    case Qt::Popup:
    case Qt::ToolTip:
    case Qt::SplashScreen:
    case Qt::Desktop:
    case Qt::SubWindow:
        return false;
    default:
        return true;
    }
}

QString iconName(const QMessageBox* box)
{
    QString told = box->property("zulIcon").toString();
    if (!told.isEmpty()) {
        return told;
    }
    switch (box->icon()) {
    case QMessageBox::Information:
        return u"information"_s;
    case QMessageBox::Warning:
        return u"exclamation"_s;
    case QMessageBox::Critical:
        return u"critical"_s;
    case QMessageBox::Question:
        return u"question"_s;
    default:
        return u"none"_s;
    }
}

QString buttonsName(const QMessageBox* box)
{
    QString told = box->property("zulButtons").toString();
    if (!told.isEmpty()) {
        return told;
    }
    return box->standardButtons().testFlag(QMessageBox::Yes) ? u"yesno"_s : u"ok"_s;
}

QString toldOr(const QObject* object, const char* property, const QString& otherwise)
{
    const QVariant told = object->property(property);
    return told.isValid() ? told.toString() : otherwise;
}

/// The button's word in a scenario.
QString answerName(QMessageBox* box)
{
    QAbstractButton* clicked = box->clickedButton();
    if (clicked == nullptr) {
        return u"none"_s;
    }
    switch (box->standardButton(clicked)) {
    case QMessageBox::Ok:
        return u"ok"_s;
    case QMessageBox::Yes:
        return u"yes"_s;
    case QMessageBox::No:
        return u"no"_s;
    default:
        return clicked->objectName();
    }
}

QString noticeLine(const QWidget* notice)
{
    return u"notice shown heading=%1 text=%2"_s.arg(quoted(notice->property("heading").toString()),
                                                    quoted(notice->property("text").toString()));
}

QString progressLine(const QWidget* indicator)
{
    return u"progress visible=%1 caption=%2 value=%3"_s.arg(
        QString::number(indicator->isVisible() ? 1 : 0), quoted(indicator->property("caption").toString()),
        QString::number(indicator->property("value").toInt()));
}
} // namespace

WindowWatcher::WindowWatcher(EventPrinter& printer, QObject* parent)
    : QObject(parent)
    , m_printer(printer)
{
    m_flush.setSingleShot(true);
    m_flush.setInterval(0);
    connect(&m_flush, &QTimer::timeout, this, [this] { m_printer.flush(); });
    qApp->installEventFilter(this);
}

QWidget* WindowWatcher::topmostThat(bool (*counts)(const QWidget*)) const
{
    QWidget* last = nullptr;
    for (auto open = m_open.crbegin(); open != m_open.crend(); ++open) {
        QWidget* window = open->window;
        if (window == nullptr || !window->isVisible() || !counts(window)) {
            continue;
        }
        if (window->isModal()) {
            return window;
        }
        if (last == nullptr) {
            last = window;
        }
    }
    return last;
}

QWidget* WindowWatcher::topmost() const
{
    return topmostThat([](const QWidget*) { return true; });
}

QWidget* WindowWatcher::topmostForm() const
{
    return topmostThat(
        [](const QWidget* window) { return qobject_cast<const QMessageBox*>(window) == nullptr; });
}

QMessageBox* WindowWatcher::messageBox() const
{
    return qobject_cast<QMessageBox*>(topmost());
}

int WindowWatcher::levelWhenShown(const QWidget* window) const
{
    for (const Open& open : m_open) {
        if (open.window == window) {
            return open.level;
        }
    }
    return -1;
}

bool WindowWatcher::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::Show && type != QEvent::Hide && type != QEvent::DynamicPropertyChange) {
        return false;
    }
    auto* widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr || event->spontaneous()) {
        return false;
    }
    if (widget->objectName() == u"WaitPlease"_s) {
        watchProgress(widget);
        deferProgress(widget);
    }
    if (type == QEvent::DynamicPropertyChange && m_printer.isDeferred(widget) && isForm(widget)) {
        deferHidden(widget);
    }
    if (isNotice(widget)) {
        noticeEvent(widget, type);
        return false;
    }
    if (type != QEvent::DynamicPropertyChange && widget->isWindow() && isOrdinaryWindow(widget)) {
        type == QEvent::Show ? shown(widget) : hidden(widget);
    } else if (type == QEvent::Show && qobject_cast<QMenu*>(widget) != nullptr) {
        // That of a scroll bar, for one, comes back when something was chosen.
        Q_EMIT shownWithLoop();
    }
    return false;
}

void WindowWatcher::noticeEvent(QWidget* notice, QEvent::Type type)
{
    if (type == QEvent::Show && !m_notices.contains(notice)) {
        m_notices.insert(notice);
        connect(
            notice, &QObject::destroyed, this, [this, notice] { noticeGone(notice); },
            Qt::SingleShotConnection);
        m_printer.line(noticeLine(notice));
    } else if (type == QEvent::Hide) {
        noticeGone(notice);
    }
}

void WindowWatcher::noticeGone(QWidget* notice)
{
    if (m_notices.remove(notice)) {
        m_printer.line(u"notice hidden"_s);
    }
}

void WindowWatcher::shown(QWidget* window)
{
    m_open.removeIf([window](const Open& open) { return open.window == nullptr || open.window == window; });
    m_open.append({window, QThread::currentThread()->loopLevel()});
    if (auto* box = qobject_cast<QMessageBox*>(window)) {
        messageShown(box);
    } else if (isForm(window)) {
        m_printer.line(u"window %1 shown"_s.arg(window->objectName()));
    }
    if (window->isModal()) {
        Q_EMIT shownWithLoop();
    }
}

void WindowWatcher::hidden(QWidget* window)
{
    m_open.removeIf([window](const Open& open) { return open.window == nullptr || open.window == window; });
    if (!isForm(window) || qobject_cast<QMessageBox*>(window) != nullptr) {
        return;
    }
    deferHidden(window);
    connect(
        window, &QObject::destroyed, this, [this] { m_printer.flush(); }, Qt::SingleShotConnection);
}

void WindowWatcher::deferHidden(QWidget* window)
{
    // A dying window tells nothing any more: what its tag was is kept for that case.
    m_printer.defer(window, [name = window->objectName(), alive = QPointer<QWidget>(window),
                             kept = window->property("tag").toString()] {
        return u"window %1 hidden tag=%2"_s.arg(name,
                                                quoted(alive ? alive->property("tag").toString() : kept));
    });
}

void WindowWatcher::messageShown(QMessageBox* box)
{
    m_printer.line(u"message icon=%1 title=%2 text=%3 buttons=%4"_s.arg(
        iconName(box), quoted(toldOr(box, "zulTitle", box->windowTitle())),
        quoted(toldOr(box, "zulText", box->text())), buttonsName(box)));
    connect(
        box, &QDialog::finished, this, [this, box] { m_printer.line(u"answer %1"_s.arg(answerName(box))); },
        Qt::SingleShotConnection);
}

void WindowWatcher::watchProgress(QWidget* indicator)
{
    if (indicator->property("zulPlayerWatches").toBool()) {
        return;
    }
    indicator->setProperty("zulPlayerWatches", true);
    const QMetaMethod changed = metaObject()->method(
        metaObject()->indexOfMethod(QMetaObject::normalizedSignature("progressChanged()")));
    for (const char* name : {"caption", "value"}) {
        const QMetaObject* type = indicator->metaObject();
        const int index = type->indexOfProperty(name);
        if (index >= 0 && type->property(index).hasNotifySignal()) {
            connect(indicator, type->property(index).notifySignal(), this, changed, Qt::UniqueConnection);
        }
    }
}

void WindowWatcher::progressChanged()
{
    deferProgress(static_cast<QWidget*>(sender()));
}

void WindowWatcher::deferProgress(QWidget* indicator)
{
    // Shown for the first time only when it was ever visible: a hidden indicator says nothing of itself.
    m_printer.defer(indicator, [this, watched = QPointer<QWidget>(indicator)] {
        QString line = watched ? progressLine(watched) : QString();
        const bool neverSeen = m_lastProgress.isEmpty() && watched && !watched->isVisible();
        if (line.isEmpty() || neverSeen || line == m_lastProgress) {
            return QString();
        }
        m_lastProgress = line;
        return line;
    });
    // When the run yields to the user interface, the operator sees the state, and so does the reader.
    m_flush.start();
}
} // namespace zul::host
