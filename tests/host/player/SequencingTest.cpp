// When the next command runs.
#include "tests/host/player/PlayedSession.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QEventLoop>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>

namespace {
using zul::host::test::Outcome;
using zul::host::test::play;
using zul::host::test::ScriptedHost;

QString answerOf(QMessageBox::StandardButton button)
{
    return button == QMessageBox::Yes ? QStringLiteral("yes") : QStringLiteral("no");
}

// A window with a button "cmdGo" and a label "lblLog".
class TestDialog : public QDialog
{
public:
    explicit TestDialog(const QString& name, std::function<void(TestDialog&)> go = {})
    {
        setObjectName(name);
        auto* column = new QVBoxLayout(this);
        auto* button = new QPushButton(QStringLiteral("Go"));
        button->setObjectName(QStringLiteral("cmdGo"));
        auto* second = new QPushButton(QStringLiteral("Close"));
        second->setObjectName(QStringLiteral("cmdClose"));
        auto* log = new QLabel;
        log->setObjectName(QStringLiteral("lblLog"));
        column->addWidget(button);
        column->addWidget(second);
        column->addWidget(log);
        connect(button, &QPushButton::clicked, this, [this, go = std::move(go)] {
            if (go) {
                go(*this);
            }
        });
        connect(second, &QPushButton::clicked, this, [this] {
            hide();
            setProperty("tag", "OK");
        });
    }
    void log(const QString& text)
    {
        auto* label = findChild<QLabel*>(QStringLiteral("lblLog"));
        label->setText(label->text() + text);
    }
};

void message(const QString& text)
{
    QMessageBox box(QMessageBox::Information, QStringLiteral("T"), text, QMessageBox::Ok);
    box.exec();
}

TEST(Sequencing, AHandlerThatYieldsLetsNothingRun)
{
    ScriptedHost host;
    host.opens("show", [] {
        TestDialog dialog(QStringLiteral("frmA"), [](TestDialog& self) {
            for (int i = 0; i < 20; ++i) {
                QCoreApplication::processEvents();
            }
            self.log(QStringLiteral("done"));
            message(QStringLiteral("after yielding"));
            for (int i = 0; i < 20; ++i) {
                QCoreApplication::processEvents();
            }
            self.log(QStringLiteral(" and done"));
        });
        dialog.exec();
    });
    const Outcome outcome = play(host, "call show\nclick cmdGo\nprint lblLog\nanswer ok\nprint lblLog\n");
    EXPECT_TRUE(outcome.errors.isEmpty()) << outcome.errors.join('\n').toStdString();
    EXPECT_EQ(outcome.result, 0);
    ASSERT_EQ(outcome.lines.size(), 7) << outcome.text();
    EXPECT_EQ(outcome.lines[0], QStringLiteral("window frmA shown"));
    EXPECT_TRUE(outcome.lines[1].startsWith(QStringLiteral("message "))) << outcome.text();
    EXPECT_TRUE(outcome.lines[2].contains(QStringLiteral("text=\"done\""))) << outcome.text();
    EXPECT_EQ(outcome.lines[3], QStringLiteral("answer ok"));
    EXPECT_TRUE(outcome.lines[4].contains(QStringLiteral("text=\"done and done\""))) << outcome.text();
    EXPECT_EQ(outcome.lines[5], QStringLiteral("window frmA hidden tag=\"\""));
    EXPECT_EQ(outcome.lines[6], QStringLiteral("return show empty"));
}

TEST(Sequencing, AHandlerThatWaitsInALoopOfItsOwnLetsNothingRun)
{
    ScriptedHost host;
    host.opens("show", [] {
        TestDialog dialog(QStringLiteral("frmA"), [](TestDialog& self) {
            QEventLoop loop;
            QTimer::singleShot(60, &loop, &QEventLoop::quit);
            loop.exec();
            self.log(QStringLiteral("done"));
        });
        dialog.exec();
    });
    const Outcome outcome = play(host, "call show\nclick cmdGo\nprint lblLog\n");
    EXPECT_TRUE(outcome.lines[1].contains(QStringLiteral("text=\"done\""))) << outcome.text();
}

TEST(Sequencing, DialogsNestThreeDeep)
{
    ScriptedHost host;
    host.opens("show", [] {
        TestDialog first(QStringLiteral("frmA"), [](TestDialog& a) {
            TestDialog second(QStringLiteral("frmB"), [](TestDialog& b) {
                TestDialog third(QStringLiteral("frmC"), [](TestDialog&) {});
                third.exec();
                b.log(QStringLiteral("back in B"));
            });
            second.exec();
            a.log(QStringLiteral("back in A"));
        });
        first.exec();
    });
    const Outcome outcome = play(host, "call show\n"
                                       "click cmdGo\n"
                                       "click cmdGo\n"
                                       "click cmdClose\n"
                                       "print lblLog\n"
                                       "click cmdClose\n"
                                       "print lblLog\n"
                                       "close\n"
                                       "call other\n");
    EXPECT_EQ(outcome.result, 0) << outcome.errors.join('\n').toStdString();
    ASSERT_EQ(outcome.lines.size(), 10) << outcome.text();
    EXPECT_EQ(outcome.lines[2], QStringLiteral("window frmC shown"));
    EXPECT_EQ(outcome.lines[3], QStringLiteral("window frmC hidden tag=\"OK\""));
    EXPECT_TRUE(outcome.lines[4].contains(QStringLiteral("\"back in B\""))) << outcome.text();
    EXPECT_EQ(outcome.lines[5], QStringLiteral("window frmB hidden tag=\"OK\""));
    EXPECT_TRUE(outcome.lines[6].contains(QStringLiteral("\"back in A\""))) << outcome.text();
    EXPECT_EQ(outcome.lines[7], QStringLiteral("window frmA hidden tag=\"\""));
    EXPECT_EQ(outcome.lines[8], QStringLiteral("return show empty"));
    EXPECT_EQ(outcome.lines[9], QStringLiteral("failed other 0x80020006"));
}

TEST(Sequencing, ABoxOpensFromAnotherBoxsHandler)
{
    ScriptedHost host;
    host.opens("show", [] {
        TestDialog dialog(QStringLiteral("frmA"), [](TestDialog& self) {
            QMessageBox outer(QMessageBox::Question, QStringLiteral("T"), QStringLiteral("first"),
                              QMessageBox::Yes | QMessageBox::No);
            QObject::connect(&outer, &QMessageBox::buttonClicked, &outer,
                             [] { message(QStringLiteral("second")); });
            self.log(answerOf(static_cast<QMessageBox::StandardButton>(outer.exec())));
            message(QStringLiteral("third"));
        });
        dialog.exec();
    });
    const Outcome outcome =
        play(host, "call show\nclick cmdGo\nanswer yes\nanswer ok\nprint lblLog\nanswer ok\nprint lblLog\n");
    EXPECT_EQ(outcome.result, 0) << outcome.errors.join('\n').toStdString();
    QStringList kinds;
    for (const QString& line : outcome.lines) {
        kinds.append(line.section(QLatin1Char(' '), 0, 0));
    }
    const QStringList expected{"window",  "message", "message", "answer", "answer", "message",
                               "control", "answer",  "control", "window", "return"};
    // The first box is answered when its handlers are through, which is after the second one was.
    EXPECT_EQ(kinds, expected) << outcome.text();
}

TEST(Sequencing, AWindowThatItsHandlerClosesFirstLetsTheHandlerEnd)
{
    ScriptedHost host;
    QStringList order;
    host.opens("show", [&] {
        TestDialog dialog(QStringLiteral("frmA"), [&](TestDialog& self) {
            self.hide();
            QCoreApplication::processEvents();
            message(QStringLiteral("farewell"));
            order.append(QStringLiteral("handler"));
        });
        dialog.exec();
        order.append(QStringLiteral("show"));
    });
    host.members.insert("mark", [&](const auto&) {
        order.append(QStringLiteral("mark"));
        return QStringLiteral("empty");
    });
    const Outcome outcome = play(host, "call show\nclick cmdGo\nanswer ok\ncall mark\n");
    EXPECT_EQ(outcome.result, 0) << outcome.errors.join('\n').toStdString();
    EXPECT_EQ(order, (QStringList{"handler", "show", "mark"})) << outcome.text();
}

TEST(Sequencing, HandlersThatAWindowQueuesRunBeforeTheNextCommand)
{
    ScriptedHost host;
    host.opens("show", [] {
        TestDialog dialog(QStringLiteral("frmA"), [](TestDialog& self) {
            QTimer::singleShot(0, &self, [&self] {
                QCoreApplication::processEvents();
                self.log(QStringLiteral("queued"));
            });
        });
        dialog.exec();
    });
    const Outcome outcome = play(host, "call show\nclick cmdGo\nprint lblLog\n");
    EXPECT_TRUE(outcome.lines[1].contains(QStringLiteral("text=\"queued\""))) << outcome.text();
}

TEST(Sequencing, ABoxOfAQueuedHandlerIsAnsweredAndTheSessionGoesOn)
{
    ScriptedHost host;
    host.opens("show", [] {
        TestDialog dialog(QStringLiteral("frmA"), [](TestDialog& self) {
            QTimer::singleShot(0, &self, [&self] {
                message(QStringLiteral("late"));
                self.log(QStringLiteral("answered"));
            });
        });
        dialog.exec();
    });
    const Outcome outcome = play(host, "call show\nclick cmdGo\nanswer ok\nprint lblLog\nclick cmdClose\n");
    EXPECT_EQ(outcome.result, 0) << outcome.errors.join('\n').toStdString();
    EXPECT_TRUE(outcome.lines[3].contains(QStringLiteral("text=\"answered\""))) << outcome.text();
}

TEST(Sequencing, AWindowThatIsModalWithoutALoopTakesCommandsToo)
{
    ScriptedHost host;
    QPointer<TestDialog> inner;
    host.opens("show", [&] {
        TestDialog dialog(QStringLiteral("frmA"), [&](TestDialog& self) {
            inner = new TestDialog(QStringLiteral("frmB"));
            inner->setParent(&self, inner->windowFlags());
            inner->setAttribute(Qt::WA_DeleteOnClose);
            inner->open();
        });
        dialog.exec();
    });
    const Outcome outcome = play(host, "call show\nclick cmdGo\nprint frmB\nclose\nprint frmA\nclose\n");
    EXPECT_EQ(outcome.result, 0) << outcome.errors.join('\n').toStdString();
    EXPECT_TRUE(outcome.lines[2].startsWith(QStringLiteral("control frmB "))) << outcome.text();
    EXPECT_TRUE(outcome.lines[4].startsWith(QStringLiteral("control frmA "))) << outcome.text();
}

TEST(Sequencing, TheEndClosesWhatIsOpen)
{
    ScriptedHost host;
    host.opens("show", [] {
        TestDialog first(QStringLiteral("frmA"), [](TestDialog&) {
            TestDialog second(QStringLiteral("frmB"), [](TestDialog&) { message(QStringLiteral("open")); });
            second.exec();
        });
        first.exec();
    });
    const Outcome outcome = play(host, "call show\nclick cmdGo\nclick cmdGo\n");
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.lines.mid(3), (QStringList{"answer ok", "window frmB hidden tag=\"\"",
                                                 "window frmA hidden tag=\"\"", "return show empty"}))
        << outcome.text();
}

TEST(Sequencing, TheEndClosesAWindowThatAHandlerLeftDisabled)
{
    ScriptedHost host;
    host.opens("show", [] {
        TestDialog dialog(QStringLiteral("frmA"), [](TestDialog& self) { self.setEnabled(false); });
        dialog.exec();
    });
    const Outcome outcome = play(host, "call show\nclick cmdGo\nprint frmA\n");
    EXPECT_EQ(outcome.result, 0) << outcome.errors.join('\n').toStdString();
    EXPECT_TRUE(outcome.lines[1].contains(QStringLiteral("enabled=0"))) << outcome.text();
    EXPECT_EQ(outcome.lines[2], QStringLiteral("window frmA hidden tag=\"\""));
}

TEST(Sequencing, TheEndClosesAWindowThatRefuses)
{
    class Stubborn : public TestDialog
    {
    public:
        using TestDialog::TestDialog;
        void closeEvent(QCloseEvent* event) override
        {
            message(QStringLiteral("no"));
            event->ignore();
        }
    };
    ScriptedHost host;
    host.opens("show", [] { Stubborn(QStringLiteral("frmA")).exec(); });
    const Outcome outcome = play(host, "call show\n");
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.lines.last(), QStringLiteral("return show empty"));
}

TEST(Sequencing, AFailedCommandClosesWhatIsOpenAndEndsThePlay)
{
    ScriptedHost host;
    bool ran = false;
    host.opens("show", [] {
        TestDialog dialog(QStringLiteral("frmA"), [](TestDialog&) { message(QStringLiteral("open")); });
        dialog.exec();
    });
    host.members.insert("mark", [&](const auto&) {
        ran = true;
        return QStringLiteral("empty");
    });
    const Outcome outcome = play(host, "# a comment\n\ncall show\nclick cmdGo\nclick cmdGo\ncall mark\n");
    EXPECT_EQ(outcome.result, 2);
    EXPECT_EQ(outcome.errors, QStringList{"line 5: a message box is open"});
    EXPECT_FALSE(ran);
    EXPECT_EQ(outcome.lines.last(), QStringLiteral("return show empty"));
}

TEST(Sequencing, AThousandCommandsDoNotPileUp)
{
    ScriptedHost host;
    int count = 0;
    int deepest = 0;
    host.members.insert("mark", [&](const auto&) {
        ++count;
        deepest = std::max(deepest, QThread::currentThread()->loopLevel());
        return QStringLiteral("empty");
    });
    std::string script;
    for (int i = 0; i < 1000; ++i) {
        script += "call mark\n";
    }
    EXPECT_EQ(play(host, script).result, 0);
    EXPECT_EQ(count, 1000);
    EXPECT_EQ(deepest, 1);
}

TEST(Sequencing, AnEmptyScenarioEnds)
{
    ScriptedHost host;
    const Outcome outcome = play(host, "");
    EXPECT_EQ(outcome.result, 0);
    EXPECT_TRUE(outcome.lines.isEmpty());
}
} // namespace
