#include "controls/notices/MessageSeam.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

using zul::Answer;
using zul::MessageButtons;
using zul::MessageIcon;
using zul::OperatorMessage;

namespace {

class MessageSeamTest : public ::testing::Test
{
protected:
    void SetUp() override { zul::setAnswerer({}); }
    void TearDown() override { zul::setAnswerer({}); }

    // Asks, and lets the function work the box that comes up.
    template <class Work>
    Answer askWhile(const OperatorMessage& message, Work work)
    {
        bool worked = false;
        QTimer watch;
        QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr || worked)
                return;
            worked = true;
            work(*box);
        });
        watch.start(0);
        const Answer answer = zul::ask(&window, message);
        EXPECT_TRUE(worked);
        return answer;
    }

    static void click(QMessageBox& box, const char* name)
    {
        auto* button = box.findChild<QPushButton*>(QLatin1String(name));
        ASSERT_NE(button, nullptr) << name;
        QTest::mouseClick(button, Qt::LeftButton);
    }

    QWidget window;
};

const OperatorMessage question{QStringLiteral("Proseguire?"), MessageIcon::Information,
                               QStringLiteral("Manager messaggi"), MessageButtons::YesNo};
const OperatorMessage notice{QStringLiteral("Fatto."), MessageIcon::Exclamation,
                             QStringLiteral("Manager messaggi"), MessageButtons::Ok};

} // namespace

TEST_F(MessageSeamTest, AnInstalledAnswererIsAskedInsteadOfTheOperator)
{
    QStringList seen;
    zul::setAnswerer([&seen](const OperatorMessage& message) {
        seen.append(message.text);
        return message.buttons == MessageButtons::YesNo ? Answer::No : Answer::Ok;
    });
    EXPECT_EQ(zul::ask(nullptr, question), Answer::No);
    EXPECT_EQ(zul::ask(&window, notice), Answer::Ok);
    EXPECT_EQ(seen, (QStringList{QStringLiteral("Proseguire?"), QStringLiteral("Fatto.")}));
}

TEST_F(MessageSeamTest, TheQuestionIsAnsweredByItsButtons)
{
    EXPECT_EQ(askWhile(question, [](QMessageBox& box) { click(box, "yes"); }), Answer::Yes);
    EXPECT_EQ(askWhile(question, [](QMessageBox& box) { click(box, "no"); }), Answer::No);
    EXPECT_EQ(askWhile(notice, [](QMessageBox& box) { click(box, "ok"); }), Answer::Ok);
}

TEST_F(MessageSeamTest, KeysAnswerEnterWithTheFirstButtonAndEscapeWithTheLast)
{
    EXPECT_EQ(askWhile(question, [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); }),
              Answer::Yes);
    EXPECT_EQ(askWhile(question, [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }),
              Answer::No);
    EXPECT_EQ(askWhile(notice, [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }), Answer::Ok);
    EXPECT_EQ(askWhile(question, [](QMessageBox& box) { box.close(); }), Answer::No);
}

TEST_F(MessageSeamTest, TheBoxSpeaksItalianAndTellsWhatItIs)
{
    askWhile(question, [](QMessageBox& box) {
        EXPECT_EQ(box.objectName(), QStringLiteral("messageBox"));
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.icon(), QMessageBox::Information);
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Manager messaggi"));
        EXPECT_EQ(box.property("zulIcon").toString(), QStringLiteral("information"));
        EXPECT_EQ(box.property("zulButtons").toString(), QStringLiteral("yesno"));
        EXPECT_EQ(box.findChild<QPushButton*>(QStringLiteral("yes"))->text(), QStringLiteral("Sì"));
        EXPECT_EQ(box.findChild<QPushButton*>(QStringLiteral("no"))->text(), QStringLiteral("No"));
        EXPECT_TRUE(box.findChild<QPushButton*>(QStringLiteral("yes"))->isDefault());
        EXPECT_EQ(box.accessibleDescription(), QStringLiteral("Proseguire?"));
        click(box, "no");
    });
    askWhile(notice, [](QMessageBox& box) {
        EXPECT_EQ(box.property("zulIcon").toString(), QStringLiteral("exclamation"));
        EXPECT_EQ(box.property("zulButtons").toString(), QStringLiteral("ok"));
        EXPECT_EQ(box.findChild<QPushButton*>(QStringLiteral("ok"))->text(), QStringLiteral("OK"));
        click(box, "ok");
    });
}

TEST_F(MessageSeamTest, EveryIconHasItsName)
{
    const std::pair<MessageIcon, const char*> icons[] = {{MessageIcon::None, "none"},
                                                         {MessageIcon::Information, "information"},
                                                         {MessageIcon::Exclamation, "exclamation"},
                                                         {MessageIcon::Critical, "critical"},
                                                         {MessageIcon::Question, "question"}};
    for (const auto& icon : icons) {
        askWhile({QStringLiteral("x"), icon.first, {}, MessageButtons::Ok}, [&icon](QMessageBox& box) {
            EXPECT_EQ(box.property("zulIcon").toString(), QLatin1String(icon.second));
            click(box, "ok");
        });
    }
}

TEST_F(MessageSeamTest, WithoutATitleTheApplicationsIsShown)
{
    askWhile({QStringLiteral("x"), MessageIcon::None, {}, MessageButtons::Ok}, [](QMessageBox& box) {
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Zul_MessageBuilder"));
        EXPECT_EQ(box.property("zulTitle").toString(), QStringLiteral("Zul_MessageBuilder"));
        click(box, "ok");
    });
}

TEST_F(MessageSeamTest, LineBreaksAreShownAsSuchAndTheTextIsToldAsGiven)
{
    const QString text = QStringLiteral("Testo?\r\n\r\n<b>L'à</b> & 100% \"€\" 😀");
    askWhile({text, MessageIcon::Question, {}, MessageButtons::Ok}, [&text](QMessageBox& box) {
        EXPECT_EQ(box.text(), QStringLiteral("Testo?\n\n<b>L'à</b> & 100% \"€\" 😀"));
        EXPECT_EQ(box.property("zulText").toString(), text);
        click(box, "ok");
    });
}

TEST_F(MessageSeamTest, AVeryLongTextIsScrolledAndTheButtonsStayInReach)
{
    QString text;
    while (text.size() < 10000)
        text += QStringLiteral("parola ");
    askWhile({text, MessageIcon::Information, {}, MessageButtons::YesNo}, [](QMessageBox& box) {
        EXPECT_LT(box.height(), 600);
        EXPECT_LT(box.width(), 1024);
        EXPECT_NE(box.findChild<QScrollArea*>(), nullptr);
        click(box, "yes");
    });
}
