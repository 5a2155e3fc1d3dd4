// A host with Qt: it lends its application to the component.
extern "C" int showMainWindowOfComponent(int (*ticks)(), int (*drawn)());

#include <QApplication>
#include <QPainter>
#include <QTimer>
#include <QWidget>

namespace {

int ticks = 0;
int drawn = 0;

class OwnWindow : public QWidget
{
protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter(this).fillRect(20 + ticks % 10 * 20, 50, 15, 15, Qt::darkGreen);
        ++drawn;
    }
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    OwnWindow window;
    window.setWindowTitle(QStringLiteral("Gestionale Qt"));
    window.resize(240, 120);
    window.show();
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &window, [&window] {
        ++ticks;
        window.update();
    });
    timer.start(50);
    int result = 1;
    QTimer::singleShot(300, &window, [&result] {
        result = showMainWindowOfComponent([] { return ticks; }, [] { return drawn; });
        QCoreApplication::quit();
    });
    QApplication::exec();
    return result;
}
