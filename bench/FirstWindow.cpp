// How long a host waits for its first window of the component, from the moment in which it asks for the class, beside the
// first empty window of Qt: FirstWindow component|empty. The first paint of a window counts; it is closed then. Both begin
// without an application object, as a host does that has none. The connection is the one of the page for host authors.
#define main example_main
#include "docs/examples/embed/host.cpp"
#undef main

#include "bench/Measure.h"

#include <QApplication>
#include <QDialog>
#include <QTimer>

namespace {

class FirstPaint : public QObject
{
public:
    explicit FirstPaint(QObject* application)
        : QObject(application)
    {}

    static zul::bench::Times painted;
    static bool isPainted;

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override
    {
        const auto* const widget = qobject_cast<QWidget*>(receiver);
        if (!isPainted && event->type() == QEvent::Paint && widget != nullptr && widget->isWindow()) {
            isPainted = true;
            QTimer::singleShot(0, this, [] {
                painted = zul::bench::now();
                for (QWidget* window : QApplication::topLevelWidgets()) {
                    window->close();
                }
            });
        }
        return false;
    }
};

zul::bench::Times FirstPaint::painted;
bool FirstPaint::isPainted = false;

// Whoever makes the application object: the component's, or the one below.
void watch()
{
    QCoreApplication* const application = QCoreApplication::instance();
    application->installEventFilter(new FirstPaint(application));
}
Q_COREAPP_STARTUP_FUNCTION(watch)

bool showComponent()
{
    CLSID clsid{};
    _SmsCreator* component = nullptr;
    CoInitialize(nullptr);
    if (FAILED(CLSIDFromProgID(u"Zul_MessageBuilder.SmsCreator", &clsid)) ||
        FAILED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID__SmsCreator,
                                reinterpret_cast<void**>(&component)))) {
        return false;
    }
    VARIANT nothing;
    VariantInit(&nothing);
    VARIANT_BOOL no = VARIANT_FALSE;
    _SqlConnection* connection = new HostConnection;
    BSTR folder = SysAllocString(u"/opt/example");
    component->ShowForm(&connection, &folder, &no, &nothing);
    SysFreeString(folder);
    component->Release();
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    const bool component = argc > 1 && std::strcmp(argv[1], "component") == 0;
    const zul::bench::Times start = zul::bench::now();
    if (component) {
        if (!showComponent()) {
            std::fputs("The component cannot be created.\n", stderr);
            return 1;
        }
    } else {
        const QApplication application(argc, argv);
        QDialog().exec();
    }
    zul::bench::printRun(FirstPaint::painted - start, 1);
    zul::bench::printPeak();
    return FirstPaint::isPainted ? 0 : 1;
}
