// A stand-in for the program that sends the queued messages. It stands where the host expects the real one and shows
// what that would send; it sends nothing.
#include "sender/Display.h"
#include "sender/SenderWindow.h"

#include <QApplication>

#include <cstdio>

namespace {

// Asked of Qt, which takes them from the system where a program's own are in the code page and lose what it has not.
QStringList argumentsOf(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return QCoreApplication::arguments().mid(1);
}

} // namespace

int main(int argc, char** argv)
{
    using namespace zul::sender;
    const Parameters parameters = readParameters(argumentsOf(argc, argv));
    const QString file = databaseFile(parameters.connectionString);
    if (parameters.list || !hasDisplay()) {
        // Nobody could see or close a window: the queue is read, and what goes wrong is told by the exit code.
        try {
            for (const QueuedMessage& message : readQueue(file)) {
                if (parameters.list) {
                    std::fprintf(stdout, "%s\n", queueLine(message).toUtf8().constData());
                }
            }
            return 0;
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
            return 1;
        }
    }
    int programOnly = 1;
    QApplication application(programOnly, argv);
    SenderWindow window(file);
    window.show();
    return QApplication::exec();
}
