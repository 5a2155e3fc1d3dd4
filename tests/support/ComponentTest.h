// The fixture of every test that runs code of the component: a fresh fake host as the session's connection,
// settings of its own, the messages to the operator caught and answered, and the log's new lines.
#pragma once

#include "controls/notices/MessageSeam.h"
#include "hostlib/Error.h"
#include "session/Session.h"
#include "tests/support/FakeHost.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

QT_FORWARD_DECLARE_CLASS(QWidget)

// Texts in failure reports.
void PrintTo(const QString& text, std::ostream* out);
void PrintTo(const QStringList& texts, std::ostream* out);

namespace zul {

bool operator==(const OperatorMessage& left, const OperatorMessage& right);
void PrintTo(const OperatorMessage& message, std::ostream* out);

namespace test {

inline std::string utf8(const QString& text)
{
    return text.toStdString();
}

inline QString qs(const std::string& text)
{
    return QString::fromStdString(text);
}

/// A caption as it is read, without the mark of its key.
inline QString read(QString caption)
{
    return caption.remove(QLatin1Char('&'));
}

/// A message with an OK button and the title "Manager messaggi".
OperatorMessage told(const QString& text, MessageIcon icon = MessageIcon::Information);
/// A Yes/No question with that title.
OperatorMessage asked(const QString& text, MessageIcon icon = MessageIcon::Information);

/// The number of the Error that an action ends with; 0 when it ends well.
template <class Action>
long errorOf(Action&& action, QString* description = nullptr)
{
    try {
        action();
    } catch (const Error& error) {
        if (description != nullptr) {
            *description = error.description();
        }
        return error.number();
    }
    return 0;
}

class ComponentTest : public ::testing::Test
{
protected:
    ComponentTest();
    ~ComponentTest() override;

    /// The log's lines since the test began.
    QStringList log() const;
    /// Their procedure names, message texts and detail texts, " | " between them, without time and name.
    QStringList logged() const;
    static QString logFile();
    /// A file in the component's folder, which in tests is the folder of the test program.
    static QString inComponentFolder(const QString& name);

    const hostlib::SqlConnection& connection() const { return session().connection(); }

    /// Runs an action once, when a window of that name is the modal one. The window is closed after it when
    /// the action left it open. To be said before the window is opened.
    void onWindow(const QString& name, const std::function<void(QWidget* window)>& action);

    FakeHost host;
    std::vector<OperatorMessage> messages;
    /// Answers of the next questions; Yes when used up.
    std::vector<Answer> answers;
    /// Run while a message is shown.
    std::function<void(const OperatorMessage&)> whileAsked;

private:
    QObject m_watch; ///< ends the waiting for windows with the test
    QTemporaryDir m_settings;
    qint64 m_logBegin = 0;
};

} // namespace test
} // namespace zul
