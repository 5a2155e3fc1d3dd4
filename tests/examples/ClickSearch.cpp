// Loaded before a host: when the component's main window is there, it clicks "Ricerca" as an operator would, answers what
// asks, says how many rows the grid shows, and closes the window.
#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include <cstdio>

namespace {

using namespace Qt::StringLiterals;

QAbstractButton* searchButton()
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* const button = window->findChild<QAbstractButton*>(u"cmdElabora"_s);
        if (button != nullptr && window->isVisible()) {
            return button;
        }
    }
    return nullptr;
}

void say(const QString& text)
{
    std::printf("%s\n", text.toUtf8().constData());
    std::fflush(stdout);
}

void look()
{
    static bool clicked = false;
    if (auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
        say(u"box "_s + box->text());
        box->reject();
        return;
    }
    QAbstractButton* const button = searchButton();
    if (button == nullptr) {
        return;
    }
    if (!clicked) {
        clicked = true;
        button->click();
        say(u"searched"_s);
        return;
    }
    for (QWidget* widget : button->window()->findChildren<QWidget*>()) {
        QAccessibleInterface* const told =
            widget->isVisible() ? QAccessible::queryAccessibleInterface(widget) : nullptr;
        if (told != nullptr && told->tableInterface() != nullptr) {
            say(u"rows %1"_s.arg(told->tableInterface()->rowCount()));
        }
    }
    button->window()->close();
}

void watch()
{
    auto* const timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, &look);
    timer->start(200);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(watch)
