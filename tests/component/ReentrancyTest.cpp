// Calls that come while a window is on the screen: from the host's own code in an event, or from its timers.
#include "controls/fields/SelectorField.h"
#include "session/Registry.h"
#include "tests/component/SmsCreatorTest.h"

#include <QPointer>
#include <QPushButton>
#include <gtest/gtest.h>

#include <utility>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

const QString alreadyShown =
    u"funShowForm | Error 5 (Invalid procedure call or argument) in procedure funShowForm of "
    "Modulo modMain | "_s;

class ReentrancyTest : public SmsCreatorTest
{};

TEST_F(ReentrancyTest, AMainWindowOnTheScreenIsNotShownAgain)
{
    onWindow(u"frmSMS"_s, [&](QWidget* window) {
        const QPointer<QWidget> watched = window;
        EXPECT_EQ(showForm(), S_OK);
        EXPECT_TRUE(watched && watched->isVisible());
    });
    EXPECT_EQ(showForm(), S_OK);
    EXPECT_EQ(logged(), QStringList{alreadyShown});
    EXPECT_EQ(formChoice(), u"ESC"_s) << "the first showing ended as it should";
}

TEST_F(ReentrancyTest, TheSessionTakesWhatARefusedCallBroughtAndTheWindowTakesNothing)
{
    FakeHost another;
    another.userName() = "un altro";
    whatToShow(true, true, false);
    onWindow(u"frmSMS"_s, [&](QWidget* window) {
        auto* age = window->findChild<QCheckBox*>(u"chkANA_Eta"_s);
        age->setChecked(true);
        saveRegistry(QString::fromLatin1(RegistryKey), QString::fromLatin1(RegistrySection),
                     QString::fromLatin1(RegistryPathCartellaSMSSender), u"D:\\Invio"_s);
        whatToShow(true, true, true);
        hostConnection = another.connection();
        EXPECT_EQ(showForm(u"D:\\Altro"), S_OK);
        EXPECT_EQ(session().connection().userName(), u"un altro"_s);
        EXPECT_EQ(session().PathMainApplication, u"D:\\Altro"_s);
        EXPECT_EQ(session().PathCartellaSMSSender, u"D:\\Invio"_s);
        EXPECT_TRUE(age->isChecked());
        EXPECT_FALSE(window->findChild<QTabWidget*>(u"TabControlTipo"_s)->isTabVisible(1));
        EXPECT_EQ(formChoice(), QString());
    });
    showForm();
    EXPECT_EQ(logged(), QStringList{alreadyShown});
    EXPECT_EQ(formChoice(), u"ESC"_s) << "the first showing ended as it should";
}

TEST_F(ReentrancyTest, AWindowShownByAnotherObjectKeepsTheObjectThatShowedIt)
{
    onWindow(u"frmSMS"_s, [&](QWidget* window) {
        const ComPtr<SmsCreatorObject> first = std::exchange(creator, makeCom<SmsCreatorObject>());
        EXPECT_EQ(showForm(), S_OK);
        creator = first;
        int events = 0;
        advise(makeCom<Sink>([&](DISPID, const auto&) { return ++events, S_OK; }));
        onWindow(u"frmRicercaGenerica"_s,
                 [](QWidget* lookup) { lookup->findChild<QPushButton*>(u"cmdAnnulla"_s)->click(); });
        Q_EMIT window->findChild<SelectorField*>(u"cntrLOC_Comune"_s)->selectionRequested();
        EXPECT_EQ(events, 1);
    });
    showForm();
    EXPECT_EQ(logged(), QStringList{alreadyShown});
}

TEST_F(ReentrancyTest, ADiscardOfTheMainWindowWhileItIsShownDoesNothing)
{
    onWindow(u"frmSMS"_s, [&](QWidget* window) {
        const QPointer<QWidget> watched = window;
        discardForm();
        EXPECT_TRUE(watched && watched->isVisible());
    });
    showForm();
    EXPECT_EQ(formChoice(), u"ESC"_s);
}

TEST_F(ReentrancyTest, EveryQuestionIsAnsweredWhileTheMainWindowIsShown)
{
    onWindow(u"frmSMS"_s, [&](QWidget*) {
        EXPECT_FALSE(isOkPressed());
        EXPECT_EQ(formChoice(), QString());
        LONG id = -1;
        EXPECT_EQ(creator->get_idUtente(&id), S_OK);
        EXPECT_EQ(creator->put_idUtente(7), S_OK);
    });
    showForm();
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(ReentrancyTest, TheOtherWindowsMayBeShownOverTheMainOne)
{
    std::string shown;
    onWindow(u"frmSMS"_s, [&](QWidget*) {
        onWindow(u"frmOpzioni"_s, [&](QWidget* window) {
            shown += "opzioni ";
            window->findChild<QPushButton*>(u"cmdAnnulla"_s)->click();
        });
        EXPECT_TRUE(showOptions());
        EXPECT_EQ(optionsChoice(), u"ESC"_s);
        onWindow(u"frmCheckSendError"_s, [&](QWidget* window) {
            shown += "verifica";
            window->findChild<QPushButton*>(u"cmdChiudi"_s)->click();
        });
        EXPECT_EQ(showCheck(), S_OK);
    });
    showForm();
    EXPECT_EQ(shown, "opzioni verifica");
    EXPECT_EQ(formChoice(), u"ESC"_s);
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(ReentrancyTest, TheOptionsDialogIsNotShownAgainAndADiscardClosesIt)
{
    onWindow(u"frmOpzioni"_s, [&](QWidget* window) {
        const QPointer<QWidget> watched = window;
        EXPECT_FALSE(showOptions());
        EXPECT_TRUE(watched && watched->isVisible());
        discardOptions();
        EXPECT_TRUE(watched && !watched->isVisible()) << "closed, but not destroyed under its own handlers";
    });
    EXPECT_TRUE(showOptions());
    EXPECT_EQ(topLevel("frmOpzioni"), nullptr) << "the discard has taken effect";
    EXPECT_EQ(logged(), QStringList{u"funShowOptionsForm | Error 5 (Invalid procedure call or argument) in "
                                    "procedure funShowOptionsForm of Modulo modMain | "_s});
}

TEST_F(ReentrancyTest, TheSendErrorCheckReportsUnderTheNameOfShowOptions)
{
    onWindow(u"frmCheckSendError"_s, [&](QWidget* window) {
        EXPECT_EQ(showCheck(), S_OK);
        EXPECT_TRUE(window->isVisible());
        window->findChild<QPushButton*>(u"cmdChiudi"_s)->click();
    });
    EXPECT_EQ(showCheck(), S_OK);
    EXPECT_EQ(logged(),
              QStringList{u"ShowOptions | Error 5 (Invalid procedure call or argument) in procedure "
                          "ShowOptions of Modulo di classe SmsCreator | "_s});
}

TEST_F(ReentrancyTest, ASinkThatCallsBackIntoTheComponentWhileItFillsALookup)
{
    std::string calls;
    advise(makeCom<Sink>([&](DISPID, const auto&) {
        calls += "a";
        EXPECT_EQ(showForm(), S_OK);
        discardForm();
        EXPECT_EQ(formChoice(), QString());
        onWindow(u"frmOpzioni"_s,
                 [](QWidget* window) { window->findChild<QPushButton*>(u"cmdAnnulla"_s)->click(); });
        EXPECT_TRUE(showOptions());
        discardOptions();
        return S_OK;
    }));
    advise(makeCom<Sink>([&](DISPID, const auto&) { return calls += "b", S_OK; }));
    onWindow(u"frmSMS"_s, [&](QWidget* window) {
        onWindow(u"frmRicercaGenerica"_s,
                 [](QWidget* lookup) { lookup->findChild<QPushButton*>(u"cmdAnnulla"_s)->click(); });
        Q_EMIT window->findChild<SelectorField*>(u"cntrLOC_Comune"_s)->selectionRequested();
        EXPECT_TRUE(window->isVisible());
    });
    showForm();
    EXPECT_EQ(calls, "ab");
    EXPECT_EQ(logged(), QStringList{alreadyShown});
    EXPECT_EQ(formChoice(), u"ESC"_s);
}

TEST_F(ReentrancyTest, AHostThatLetsGoOfTheComponentWhileTheWindowIsShown)
{
    SmsCreatorObject* object = creator.get();
    onWindow(u"frmSMS"_s, [&](QWidget* window) {
        creator.reset();
        onWindow(u"frmRicercaGenerica"_s,
                 [](QWidget* lookup) { lookup->findChild<QPushButton*>(u"cmdAnnulla"_s)->click(); });
        Q_EMIT window->findChild<SelectorField*>(u"cntrLOC_Comune"_s)->selectionRequested();
    });
    _SqlConnection* connectionObject = hostConnection.get();
    Bstr path(u"x");
    VARIANT_BOOL touch = VARIANT_FALSE;
    VARIANT result{};
    EXPECT_EQ(object->ShowForm(&connectionObject, path.inOut(), &touch, &result), S_OK);
    creator = makeCom<SmsCreatorObject>();
    EXPECT_EQ(formChoice(), u"ESC"_s);
}

} // namespace
} // namespace zul
