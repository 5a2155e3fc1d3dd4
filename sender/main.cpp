// A stand-in for the program that sends the queued messages. It stands where the host expects the real one and shows
// what that would send; it sends nothing.
#include "sender/SenderWindow.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    using namespace zul::sender;
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    const Parameters parameters = readParameters(arguments);
    const QString file = databaseFile(parameters.connectionString);
    const bool display =
        !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (parameters.list || !display) {
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
