#include "tests/support/ComponentTest.h"

#include "session/Platform.h"
#include "tests/support/OwnSettings.h"

#include <QApplication>
#include <QFile>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <ostream>

void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

void PrintTo(const QStringList& texts, std::ostream* out)
{
    for (const QString& text : texts) {
        *out << "\n    " << text.toStdString();
    }
}

namespace zul {

bool operator==(const OperatorMessage& left, const OperatorMessage& right)
{
    return left.text == right.text && left.icon == right.icon && left.title == right.title &&
           left.buttons == right.buttons;
}

void PrintTo(const OperatorMessage& message, std::ostream* out)
{
    *out << "{icon " << static_cast<int>(message.icon) << ", buttons " << static_cast<int>(message.buttons)
         << ", title \"" << message.title.toStdString() << "\", text \"" << message.text.toStdString()
         << "\"}";
}

namespace test {

namespace {

constexpr int pollMilliseconds = 5;

/// Waits until the window is the modal one, then acts on it.
void actOnWindow(const QString& name, const std::function<void(QWidget*)>& action, QObject* guard)
{
    QTimer::singleShot(pollMilliseconds, guard, [=] {
        const QPointer<QWidget> window = QApplication::activeModalWidget();
        if (!window || window->objectName() != name) {
            actOnWindow(name, action, guard);
            return;
        }
        action(window);
        if (window && window->isVisible()) {
            window->setEnabled(true);
            window->close();
        }
    });
}

} // namespace

OperatorMessage told(const QString& text, MessageIcon icon)
{
    return {.text = text,
            .icon = icon,
            .title = QStringLiteral("Manager messaggi"),
            .buttons = MessageButtons::Ok};
}

OperatorMessage asked(const QString& text, MessageIcon icon)
{
    return {.text = text,
            .icon = icon,
            .title = QStringLiteral("Manager messaggi"),
            .buttons = MessageButtons::YesNo};
}

ComponentTest::ComponentTest()
{
    useOwnSettings(m_settings.path());
    session() = Session();
    session().setConnessione(hostlib::SqlConnection(host.connection()));
    m_logBegin = QFile(logFile()).size();
    setAnswerer([this](const OperatorMessage& message) {
        messages.push_back(message);
        if (whileAsked) {
            whileAsked(message);
        }
        if (message.buttons == MessageButtons::Ok) {
            return Answer::Ok;
        }
        if (answers.empty()) {
            return Answer::Yes;
        }
        const Answer answer = answers.front();
        answers.erase(answers.begin());
        return answer;
    });
}

ComponentTest::~ComponentTest()
{
    setAnswerer({});
    session() = Session();
}

QString ComponentTest::inComponentFolder(const QString& name)
{
    return platform::componentFolder() + QLatin1Char('/') + name;
}

QString ComponentTest::logFile()
{
    return inComponentFolder(QStringLiteral("Zul_Messagebuilder.log"));
}

QStringList ComponentTest::log() const
{
    QFile file(logFile());
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    file.seek(m_logBegin);
    // Windows ends them with two characters.
    QStringList lines = QString::fromUtf8(file.readAll()).remove(QLatin1Char('\r')).split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty()) {
        lines.removeLast();
    }
    return lines;
}

QStringList ComponentTest::logged() const
{
    QStringList entries;
    const QStringList lines = log();
    for (const QString& line : lines) {
        entries.append(line.section(QStringLiteral(" | "), 2));
    }
    return entries;
}

void ComponentTest::onWindow(const QString& name, const std::function<void(QWidget*)>& action)
{
    actOnWindow(name, action, &m_watch);
}

} // namespace test
} // namespace zul
