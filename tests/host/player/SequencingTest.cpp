// When the next command runs.
#include "tests/host/player/PlayedSession.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QEventLoop>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>

namespace {

using namespace Qt::StringLiterals;
using zul::host::test::Outcome;
using zul::host::test::play;
using zul::host::test::ScriptedHost;

QString answerOf(QMessageBox::StandardButton button)
{
    return button == QMessageBox::Yes ? u"yes"_s : u"no"_s;
}

/// A window with a button "cmdGo" and a label "lblLog".
class TestDialog : public QDialog
{
public:
    explicit TestDialog(const QString& name, std::function<void(TestDialog&)> go = {})
    {
        setObjectName(name);
        auto* column = new QVBoxLayout(this);
        auto* button = new QPushButton(u"Go"_s);
        button->setObjectName(u"cmdGo"_s);
        auto* second = new QPushButton(u"Close"_s);
        second->setObjectName(u"cmdClose"_s);
        auto* log = new QLabel;
        log->setObjectName(u"lblLog"_s);
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
        auto* label = findChild<QLabel*>(u"lblLog"_s);
        label->setText(label->text() + text);
    }
};

void message(const QString& text)
{
    QMessageBox box(QMessageBox::Information, u"T"_s, text, QMessageBox::Ok);
    box.exec();
}

TEST(Sequencing, AHandlerThatYieldsLetsNothingRun)
{
    ScriptedHost host;
    host.opens("show", [] {
        TestDialog dialog(u"frmA"_s, [](TestDialog& self) {
            for (int i = 0; i < 20; ++i) {
                QCoreApplication::processEvents();
            }
            self.log(u"done"_s);
            message(u"after yielding"_s);
            for (int i = 0; i < 20; ++i) {
                QCoreApplication::processEvents();
            }
            self.log(u" and done"_s);
        });
        dialog.exec();
    });
    const Outcome outcome = play(host, "call show\nclick cmdGo\nprint lblLog\nanswer ok\nprint lblLog\n");
    EXPECT_TRUE(outcome.errors.isEmpty()) << outcome.errors.join('\n').toStdString();
    EXPECT_EQ(outcome.result, 0);
    ASSERT_EQ(outcome.lines.size(), 7) << outcome.text();
    EXPECT_EQ(outcome.lines[0], u"window frmA shown"_s);
    EXPECT_TRUE(outcome.lines[1].startsWith(u"message "_s)) << outcome.text();
    EXPECT_TRUE(outcome.lines[2].contains(u"text=\"done\""_s)) << outcome.text();
    EXPECT_EQ(outcome.lines[3], u"answer ok"_s);
    EXPECT_TRUE(outcome.lines[4].contains(u"text=\"done and done\""_s)) << outcome.text();
    EXPECT_EQ(outcome.lines[5], u"window frmA hidden tag=\"\""_s);
    EXPECT_EQ(outcome.lines[6], u"return show empty"_s);
}

TEST(Sequencing, AHandlerThatWaitsInALoopOfItsOwnLetsNothingRun)
{
    ScriptedHost host;
    host.opens("show", [] {
        TestDialog dialog(u"frmA"_s, [](TestDialog& self) {
            QEventLoop loop;
            QTimer::singleShot(60, &loop, &QEventLoop::quit);
            loop.exec();
            self.log(u"done"_s);
        });
        dialog.exec();
    });
    const Outcome outcome = play(host, "call show\nclick cmdGo\nprint lblLog\n");
    EXPECT_TRUE(outcome.lines[1].contains(u"text=\"done\""_s)) << outcome.text();
}

void chooseFromMenu(TestDialog& dialog)
{
    QMenu menu;
    menu.addAction(u"first"_s);
    const QAction* chosen = menu.exec(dialog.mapToGlobal(QPoint(0, 0)));
    dialog.log(chosen != nullptr ? chosen->text() : u"none"_s);
}

TEST(Sequencing, AMenuThatIsWaitedForIsWorked)
{
    ScriptedHost host;
    host.opens("show", [] { TestDialog(u"frmA"_s, chooseFromMenu).exec(); });
    const Outcome outcome = play(host, "call show\nclick cmdGo\nprint lblLog\nat 8 8\nprint lblLog\n");
    EXPECT_EQ(outcome.result, 0) << outcome.errors.join('\n').toStdString();
    ASSERT_EQ(outcome.lines.size(), 5) << outcome.text();
    EXPECT_TRUE(outcome.lines[1].contains(u"text=\"\""_s)) << outcome.text();
    EXPECT_TRUE(outcome.lines[2].contains(u"text=\"first\""_s)) << outcome.text();
    EXPECT_EQ(outcome.lines[4], u"return show empty"_s);
}

TEST(Sequencing, AMenuThatIsWaitedForIsClosedAtTheEnd)
{
    ScriptedHost host;
    QString log;
    host.opens("show", [&log] {
        TestDialog dialog(u"frmA"_s, chooseFromMenu);
        dialog.exec();
        log = dialog.findChild<QLabel*>(u"lblLog"_s)->text();
    });
    const Outcome outcome = play(host, "call show\nclick cmdGo\n");
    EXPECT_EQ(outcome.result, 0) << outcome.errors.join('\n').toStdString();
    EXPECT_EQ(log, u"none"_s);
    EXPECT_EQ(outcome.lines, (QStringList{u"window frmA shown"_s, u"window frmA hidden tag=\"\""_s,
                                          u"return show empty"_s}));
}

TEST(Sequencing, DialogsNestThreeDeep)
{
    ScriptedHost host;
    host.opens("show", [] {
        TestDialog first(u"frmA"_s, [](TestDialog& a) {
            TestDialog second(u"frmB"_s, [](TestDialog& b) {
                TestDialog third(u"frmC"_s, [](TestDialog&) {});
                third.exec();
                b.log(u"back in B"_s);
            });
            second.exec();
            a.log(u"back in A"_s);
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
    EXPECT_EQ(outcome.lines[2], u"window frmC shown"_s);
    EXPECT_EQ(outcome.lines[3], u"window frmC hidden tag=\"OK\""_s);
    EXPECT_TRUE(outcome.lines[4].contains(u"\"back in B\""_s)) << outcome.text();
    EXPECT_EQ(outcome.lines[5], u"window frmB hidden tag=\"OK\""_s);
    EXPECT_TRUE(outcome.lines[6].contains(u"\"back in A\""_s)) << outcome.text();
    EXPECT_EQ(outcome.lines[7], u"window frmA hidden tag=\"\""_s);
    EXPECT_EQ(outcome.lines[8], u"return show empty"_s);
    EXPECT_EQ(outcome.lines[9], u"failed other 0x80020006"_s);
}

TEST(Sequencing, ABoxOpensFromAnotherBoxsHandler)
{
    ScriptedHost host;
    host.opens("show", [] {
        TestDialog dialog(u"frmA"_s, [](TestDialog& self) {
            QMessageBox outer(QMessageBox::Question, u"T"_s, u"first"_s, QMessageBox::Yes | QMessageBox::No);
            QObject::connect(&outer, &QMessageBox::buttonClicked, &outer, [] { message(u"second"_s); });
            self.log(answerOf(static_cast<QMessageBox::StandardButton>(outer.exec())));
            message(u"third"_s);
        });
        dialog.exec();
    });
    const Outcome outcome =
        play(host, "call show\nclick cmdGo\nanswer yes\nanswer ok\nprint lblLog\nanswer ok\nprint lblLog\n");
    EXPECT_EQ(outcome.result, 0) << outcome.errors.join('\n').toStdString();
    QStringList kinds;
    for (const QString& line : outcome.lines) {
        kinds.append(line.section(u' ', 0, 0));
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
        TestDialog dialog(u"frmA"_s, [&](TestDialog& self) {
            self.hide();
            QCoreApplication::processEvents();
            message(u"farewell"_s);
            order.append(u"handler"_s);
        });
        dialog.exec();
        order.append(u"show"_s);
    });
    host.members.insert("mark", [&](const auto&) {
        order.append(u"mark"_s);
        return u"empty"_s;
    });
    const Outcome outcome = play(host, "call show\nclick cmdGo\nanswer ok\ncall mark\n");
    EXPECT_EQ(outcome.result, 0) << outcome.errors.join('\n').toStdString();
    EXPECT_EQ(order, (QStringList{"handler", "show", "mark"})) << outcome.text();
}

TEST(Sequencing, HandlersThatAWindowQueuesRunBeforeTheNextCommand)
{
    ScriptedHost host;
    host.opens("show", [] {
        TestDialog dialog(u"frmA"_s, [](TestDialog& self) {
            QTimer::singleShot(0, &self, [&self] {
                QCoreApplication::processEvents();
                self.log(u"queued"_s);
            });
        });
        dialog.exec();
    });
    const Outcome outcome = play(host, "call show\nclick cmdGo\nprint lblLog\n");
    EXPECT_TRUE(outcome.lines[1].contains(u"text=\"queued\""_s)) << outcome.text();
}

TEST(Sequencing, ABoxOfAQueuedHandlerIsAnsweredAndTheSessionGoesOn)
{
    ScriptedHost host;
    host.opens("show", [] {
        TestDialog dialog(u"frmA"_s, [](TestDialog& self) {
            QTimer::singleShot(0, &self, [&self] {
                message(u"late"_s);
                self.log(u"answered"_s);
            });
        });
        dialog.exec();
    });
    const Outcome outcome = play(host, "call show\nclick cmdGo\nanswer ok\nprint lblLog\nclick cmdClose\n");
    EXPECT_EQ(outcome.result, 0) << outcome.errors.join('\n').toStdString();
    EXPECT_TRUE(outcome.lines[3].contains(u"text=\"answered\""_s)) << outcome.text();
}

TEST(Sequencing, AWindowThatIsModalWithoutALoopTakesCommandsToo)
{
    ScriptedHost host;
    QPointer<TestDialog> inner;
    host.opens("show", [&] {
        TestDialog dialog(u"frmA"_s, [&](TestDialog& self) {
            inner = new TestDialog(u"frmB"_s);
            inner->setParent(&self, inner->windowFlags());
            inner->setAttribute(Qt::WA_DeleteOnClose);
            inner->open();
        });
        dialog.exec();
    });
    const Outcome outcome = play(host, "call show\nclick cmdGo\nprint frmB\nclose\nprint frmA\nclose\n");
    EXPECT_EQ(outcome.result, 0) << outcome.errors.join('\n').toStdString();
    EXPECT_TRUE(outcome.lines[2].startsWith(u"control frmB "_s)) << outcome.text();
    EXPECT_TRUE(outcome.lines[4].startsWith(u"control frmA "_s)) << outcome.text();
}

TEST(Sequencing, TheEndClosesWhatIsOpen)
{
    ScriptedHost host;
    host.opens("show", [] {
        TestDialog first(u"frmA"_s, [](TestDialog&) {
            TestDialog second(u"frmB"_s, [](TestDialog&) { message(u"open"_s); });
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
        TestDialog dialog(u"frmA"_s, [](TestDialog& self) { self.setEnabled(false); });
        dialog.exec();
    });
    const Outcome outcome = play(host, "call show\nclick cmdGo\nprint frmA\n");
    EXPECT_EQ(outcome.result, 0) << outcome.errors.join('\n').toStdString();
    EXPECT_TRUE(outcome.lines[1].contains(u"enabled=0"_s)) << outcome.text();
    EXPECT_EQ(outcome.lines[2], u"window frmA hidden tag=\"\""_s);
}

TEST(Sequencing, TheEndClosesAWindowThatRefuses)
{
    class Stubborn : public TestDialog
    {
    public:
        using TestDialog::TestDialog;
        void closeEvent(QCloseEvent* event) override
        {
            message(u"no"_s);
            event->ignore();
        }
    };
    ScriptedHost host;
    host.opens("show", [] { Stubborn(u"frmA"_s).exec(); });
    const Outcome outcome = play(host, "call show\n");
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.lines.last(), u"return show empty"_s);
}

TEST(Sequencing, AFailedCommandClosesWhatIsOpenAndEndsThePlay)
{
    ScriptedHost host;
    bool ran = false;
    host.opens("show", [] {
        TestDialog dialog(u"frmA"_s, [](TestDialog&) { message(u"open"_s); });
        dialog.exec();
    });
    host.members.insert("mark", [&](const auto&) {
        ran = true;
        return u"empty"_s;
    });
    const Outcome outcome = play(host, "# a comment\n\ncall show\nclick cmdGo\nclick cmdGo\ncall mark\n");
    EXPECT_EQ(outcome.result, 2);
    EXPECT_EQ(outcome.errors, QStringList{"line 5: a message box is open"});
    EXPECT_FALSE(ran);
    EXPECT_EQ(outcome.lines.last(), u"return show empty"_s);
}

TEST(Sequencing, AThousandCommandsDoNotPileUp)
{
    ScriptedHost host;
    int count = 0;
    int deepest = 0;
    host.members.insert("mark", [&](const auto&) {
        ++count;
        deepest = std::max(deepest, QThread::currentThread()->loopLevel());
        return u"empty"_s;
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
