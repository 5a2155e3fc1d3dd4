#include "host/player/ControlPrinter.h"

#include "host/player/CommandError.h"
#include "host/player/ControlFinder.h"
#include "host/player/ScenarioParser.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTextEdit>
#include <QToolButton>

namespace zul::host {

using namespace Qt::StringLiterals;

namespace {
/// A caption as it reads on the screen, without the mark of its shortcut.
QString caption(const QString& text)
{
    QString shown;
    shown.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'&' && i + 1 < text.size()) {
            ++i;
        }
        shown += text[i];
    }
    return shown;
}

QString tabState(const QTabWidget* tabs)
{
    QStringList pages;
    for (int i = 0; i < tabs->count(); ++i) {
        if (tabs->isTabVisible(i)) {
            pages.append(caption(tabs->tabText(i)));
        }
    }
    return u" page=%1 pages=%2"_s.arg(QString::number(tabs->currentIndex()), quotedList(pages));
}

QString textState(const QString& text)
{
    return u" text="_s + quoted(text);
}

/// What a control of its kind holds.
QString state(const QWidget* control)
{
    if (control->isWindow()) {
        return textState(control->windowTitle()) + u" tag="_s + quoted(control->property("tag").toString());
    }
    if (const auto* tabs = qobject_cast<const QTabWidget*>(control)) {
        return tabState(tabs);
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(control)) {
        const bool hasValue = qobject_cast<const QCheckBox*>(control) != nullptr ||
                              qobject_cast<const QRadioButton*>(control) != nullptr;
        return (hasValue ? u" value=%1"_s.arg(button->isChecked() ? 1 : 0) : QString()) +
               textState(caption(button->text()));
    }
    if (const auto* group = qobject_cast<const QGroupBox*>(control)) {
        return textState(caption(group->title()));
    }
    if (const auto* label = qobject_cast<const QLabel*>(control); label && label->buddy()) {
        return textState(caption(label->text()));
    }
    if (const QVariant id = control->property("selectedId"); id.isValid()) {
        return u" id=%1"_s.arg(id.toInt()) + textState(control->property("text").toString());
    }
    if (const auto* list = qobject_cast<const QComboBox*>(control)) {
        return textState(list->currentText());
    }
    if (const auto* edit = qobject_cast<const QPlainTextEdit*>(control)) {
        return textState(edit->toPlainText());
    }
    if (const auto* edit = qobject_cast<const QTextEdit*>(control)) {
        return textState(edit->toPlainText());
    }
    if (const QVariant text = control->property("text"); text.isValid()) {
        return textState(text.toString());
    }
    return {};
}

/// The colour behind the control: its own, else what shines through from the next control that paints one.
QColor background(const QWidget* control)
{
    for (const QWidget* around = control; around != nullptr; around = around->parentWidget()) {
        const auto own = around->property("background").value<QColor>();
        if (own.isValid()) {
            return own;
        }
        const QPalette::ColorRole role = around->backgroundRole();
        const bool paints =
            around->isWindow() || around->autoFillBackground() || role == QPalette::Base ||
            (role == QPalette::Button && (qobject_cast<const QPushButton*>(around) != nullptr ||
                                          qobject_cast<const QToolButton*>(around) != nullptr));
        if (paints) {
            return around->palette().color(role);
        }
    }
    return {};
}
} // namespace

QString controlLine(const QWidget* control)
{
    return u"control %1 visible=%2 enabled=%3"_s.arg(control->objectName(),
                                                     QString::number(isShown(control) ? 1 : 0),
                                                     QString::number(control->isEnabled() ? 1 : 0)) +
           state(control) + u" background="_s + background(control).name();
}

QStringList listLines(const QWidget* control)
{
    QStringList texts;
    int count = 0;
    if (QObject* probe = probeOf(control, "lineCount()")) {
        QMetaObject::invokeMethod(probe, "lineCount", Qt::DirectConnection, Q_RETURN_ARG(int, count));
        for (int i = 0; i < count; ++i) {
            QString text;
            QMetaObject::invokeMethod(probe, "lineText", Qt::DirectConnection, Q_RETURN_ARG(QString, text),
                                      Q_ARG(int, i));
            texts.append(text);
        }
    } else if (const auto* view = qobject_cast<const QAbstractItemView*>(control); view && view->model()) {
        for (int i = 0; i < view->model()->rowCount(view->rootIndex()); ++i) {
            texts.append(view->model()->index(i, 0, view->rootIndex()).data().toString());
        }
    } else if (const auto* list = qobject_cast<const QComboBox*>(control)) {
        for (int i = 0; i < list->count(); ++i) {
            texts.append(list->itemText(i));
        }
    } else {
        throw CommandError{u"\"%1\" is no list"_s.arg(control->objectName())};
    }
    QStringList lines;
    lines.reserve(texts.size());
    for (int i = 0; i < texts.size(); ++i) {
        lines.append(u"line %1 %2"_s.arg(QString::number(i), quoted(texts[i])));
    }
    return lines;
}
} // namespace zul::host
