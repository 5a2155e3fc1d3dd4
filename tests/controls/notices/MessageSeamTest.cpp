#include "controls/notices/MessageSeam.h"

#include "controls/look/CommonLook.h"
#include "tests/support/SmallScreen.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

using zul::Answer;
using zul::MessageButtons;
using zul::MessageIcon;
using zul::OperatorMessage;

namespace {

using namespace Qt::StringLiterals;

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
            if (box == nullptr || worked) {
                return;
            }
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

const OperatorMessage question{u"Proseguire?"_s, MessageIcon::Information, u"Manager messaggi"_s,
                               MessageButtons::YesNo};
const OperatorMessage notice{u"Fatto."_s, MessageIcon::Exclamation, u"Manager messaggi"_s,
                             MessageButtons::Ok};

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
    EXPECT_EQ(seen, (QStringList{u"Proseguire?"_s, u"Fatto."_s}));
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
        EXPECT_EQ(box.objectName(), u"messageBox"_s);
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.icon(), QMessageBox::Information);
        EXPECT_EQ(box.windowTitle(), u"Manager messaggi"_s);
        EXPECT_EQ(box.property("zulIcon").toString(), u"information"_s);
        EXPECT_EQ(box.property("zulButtons").toString(), u"yesno"_s);
        EXPECT_EQ(box.findChild<QPushButton*>(u"yes"_s)->text(), u"Sì"_s);
        EXPECT_EQ(box.findChild<QPushButton*>(u"no"_s)->text(), u"No"_s);
        EXPECT_TRUE(box.findChild<QPushButton*>(u"yes"_s)->isDefault());
        EXPECT_EQ(box.accessibleDescription(), u"Proseguire?"_s);
        click(box, "no");
    });
    askWhile(notice, [](QMessageBox& box) {
        EXPECT_EQ(box.property("zulIcon").toString(), u"exclamation"_s);
        EXPECT_EQ(box.property("zulButtons").toString(), u"ok"_s);
        EXPECT_EQ(box.findChild<QPushButton*>(u"ok"_s)->text(), u"OK"_s);
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
        askWhile({u"x"_s, icon.first, {}, MessageButtons::Ok}, [&icon](QMessageBox& box) {
            EXPECT_EQ(box.property("zulIcon").toString(), QLatin1String(icon.second));
            click(box, "ok");
        });
    }
}

TEST_F(MessageSeamTest, WithoutATitleTheApplicationsIsShown)
{
    askWhile({u"x"_s, MessageIcon::None, {}, MessageButtons::Ok}, [](QMessageBox& box) {
        EXPECT_EQ(box.windowTitle(), u"Zul_MessageBuilder"_s);
        EXPECT_EQ(box.property("zulTitle").toString(), u"Zul_MessageBuilder"_s);
        click(box, "ok");
    });
}

TEST_F(MessageSeamTest, LineBreaksAreShownAsSuchAndTheTextIsToldAsGiven)
{
    const QString text = u"Testo?\r\n\r\n<b>L'à</b> & 100% \"€\" 😀"_s;
    askWhile({text, MessageIcon::Question, {}, MessageButtons::Ok}, [&text](QMessageBox& box) {
        EXPECT_EQ(box.text(), u"Testo?\n\n<b>L'à</b> & 100% \"€\" 😀"_s);
        EXPECT_EQ(box.property("zulText").toString(), text);
        click(box, "ok");
    });
}

TEST_F(MessageSeamTest, CtrlCCopiesTheText)
{
    QClipboard& clipboard = *QApplication::clipboard();
    for (const QString& text : {u"Numero 'à' <b>\"50%\"</b> 😀\r\n\r\nProseguire?"_s, QString(10'000, u'x')}) {
        clipboard.setText(u"altro"_s);
        askWhile({text, MessageIcon::Question, {}, MessageButtons::YesNo}, [](QMessageBox& box) {
            QTest::keyClick(box.focusWidget() != nullptr ? box.focusWidget() : &box, Qt::Key_C,
                            Qt::ControlModifier);
            EXPECT_TRUE(box.isVisible());
            click(box, "no");
        });
        EXPECT_EQ(clipboard.text(), QString(text).replace(u"\r\n"_s, u"\n"_s));
    }
}

TEST_F(MessageSeamTest, AVeryLongTextIsScrolledAndTheButtonsStayInReach)
{
    QString text;
    while (text.size() < 10000) {
        text += u"parola "_s;
    }
    askWhile({text, MessageIcon::Information, {}, MessageButtons::YesNo}, [](QMessageBox& box) {
        EXPECT_LT(box.height(), 600);
        EXPECT_LT(box.width(), 1024);
        EXPECT_NE(box.findChild<QScrollArea*>(), nullptr);
        click(box, "yes");
    });
}

TEST_F(MessageSeamTest, OnASmallScreenTheButtonsStandOnItWhateverTheText)
{
    const QString texts[] = {
        u"Fatto."_s,
        u"parola "_s.repeated(200),      // just short of what is long everywhere
        u"riga\r\n"_s.repeated(24),      // so are its lines
        u"indirizzo"_s.repeated(150),    // nowhere to break
        u"Testo lungo. "_s.repeated(800) // long everywhere
    };
    for (const bool touch : {false, true}) {
        zul::applyCommonLook(&window, touch);
        for (const QString& text : texts) {
            SCOPED_TRACE(text.left(20).toStdString());
            askWhile({text, MessageIcon::Information, {}, MessageButtons::YesNo}, [](QMessageBox& box) {
                zul::test::expectOnScreen(box);
                for (const char* name : {"yes", "no"}) {
                    auto* button = box.findChild<QPushButton*>(QLatin1String(name));
                    EXPECT_EQ(button->visibleRegion().boundingRect(), button->rect()) << name;
                }
                EXPECT_FALSE(box.findChild<QLabel*>(u"qt_msgbox_label"_s)->visibleRegion().isEmpty());
                click(box, "no");
            });
        }
    }
}

TEST_F(MessageSeamTest, AScrolledTextIsReadOnWithTheKeyboard)
{
    askWhile({u"riga\n"_s.repeated(200), MessageIcon::Information, {}, MessageButtons::YesNo},
             [](QMessageBox& box) {
                 auto* scroll = box.findChild<QScrollArea*>();
                 ASSERT_NE(scroll, nullptr);
                 const QScrollBar* bar = scroll->verticalScrollBar();
                 QTest::keyClick(box.focusWidget(), Qt::Key_End);
                 EXPECT_EQ(bar->value(), bar->maximum());
                 QTest::keyClick(box.focusWidget(), Qt::Key_Home);
                 EXPECT_EQ(bar->value(), 0);
                 QTest::keyClick(box.focusWidget(), Qt::Key_PageDown);
                 EXPECT_GT(bar->value(), 0);
                 QTest::keyClick(box.focusWidget(), Qt::Key_PageUp);
                 EXPECT_EQ(bar->value(), 0);
                 // No stop without a name: Tab goes from button to button.
                 QTest::keyClick(box.focusWidget(), Qt::Key_Tab);
                 EXPECT_EQ(box.focusWidget()->objectName(), u"no"_s);
                 QTest::keyClick(box.focusWidget(), Qt::Key_Tab);
                 EXPECT_EQ(box.focusWidget()->objectName(), u"yes"_s);
                 click(box, "no");
             });
}
