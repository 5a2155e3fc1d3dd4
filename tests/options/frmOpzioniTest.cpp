#include "options/frmOpzioni.h"

#include "controls/fields/FolderTree.h"
#include "controls/look/Background.h"
#include "controls/notices/WaitNotice.h"
#include "controls/touch/OnScreenKeyboard.h"
#include "session/Registry.h"
#include "tests/support/AltKey.h"
#include "tests/support/ComponentTest.h"
#include "tests/support/OwnSettings.h"
#include "tests/support/SmallScreen.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

const QColor yellow(255, 255, 0);
const QColor white(255, 255, 255);
const QStringList providerFields{u"txtSMS_Prov_User"_s,     u"txtSMS_Prov_Pwd"_s,
                                 u"txtSMS_Prov_Mittente"_s, u"txtSMS_Prov_Soggetto"_s,
                                 u"txtSMS_Prov_ListId"_s,   u"txtSMS_Prov_ConsoleId"_s};
const QStringList keys{u"SMS_Aggiungi0039SeMancante"_s, u"SMS_InvioAutomatico"_s, u"SMS_Mailup_UserName"_s,
                       u"SMS_Mailup_Password"_s,        u"SMS_Mailup_From"_s,     u"SMS_Mailup_Subject"_s,
                       u"SMS_Mailup_ListId"_s,          u"SMS_Mailup_ConsoleId"_s};

class OpzioniTest : public ComponentTest
{
protected:
    OpzioniTest() { session().PathMainApplication = u"C:\\Gestionale"_s; }

    void open()
    {
        form = std::make_unique<frmOpzioni>();
        form->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    }

    template <class T>
    T* find(const QString& name)
    {
        T* found = form->findChild<T*>(name);
        EXPECT_NE(found, nullptr) << utf8(name);
        return found;
    }
    QLineEdit* field(const QString& name) { return find<QLineEdit>(name); }
    QString text(const QString& name) { return field(name)->text(); }
    bool ticked(const QString& name) { return find<QCheckBox>(name)->isChecked(); }
    void click(const QString& name) { QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton); }

    /// What a window manager does when the window over the form has gone.
    void comeBack()
    {
        form->activateWindow();
        ASSERT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == form.get(); }));
    }

    static void storeFolder(const QString& folder)
    {
        saveRegistry(QString::fromLatin1(RegistryKey), u"Options"_s, u"PathCartellaSMSSender"_s, folder);
    }
    static QString storedFolder()
    {
        return readRegistry(QString::fromLatin1(RegistryKey), u"Options"_s, u"PathCartellaSMSSender"_s,
                            u"(none)"_s);
    }

    /// The keys of the settings rows that were opened, in order.
    QStringList openedKeys() const
    {
        QStringList opened;
        for (const std::string& line : host.operations("open")) {
            opened.append(qs(line).section(u'\'', 1, 1));
        }
        return opened;
    }

    std::unique_ptr<frmOpzioni> form;
};

// ------------------------------------------------------------------------------------------------ loading

TEST_F(OpzioniTest, AnEmptySettingsTableShowsTheDefaultsAndHoldsThemAfterwards)
{
    open();
    EXPECT_EQ(form->windowTitle(), u"Impostazioni"_s);
    EXPECT_TRUE(ticked(u"chkSMS_Add0039"_s));
    EXPECT_FALSE(ticked(u"chkSMS_ZulSmsSenderAutoSend"_s));
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(text(providerFields[i]), QString());
    }
    EXPECT_EQ(text(u"txtSMS_Prov_ConsoleId"_s), u"22432"_s);
    EXPECT_EQ(text(u"txtPathSMSSender"_s), u"C:\\Gestionale\\ZulSmsSender"_s) << "no backslash at its end";
    EXPECT_EQ(host.settings().size(), 8U);
    EXPECT_EQ(host.settings()["SMS_Mailup_ConsoleId"], "22432");
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(OpzioniTest, EachSwitchIsReadTwiceAndTheFieldsInTheirOrder)
{
    for (const QString& key : keys) {
        host.settings()[utf8(key)] = "0";
    }
    form = std::make_unique<frmOpzioni>();
    EXPECT_EQ(openedKeys(), (QStringList{keys[0], keys[0], keys[1], keys[1], keys[2], keys[3], keys[4],
                                         keys[5], keys[6], keys[7]}));
    EXPECT_TRUE(host.operations("set").empty());
}

TEST_F(OpzioniTest, StoredTextsAreShownAsTheyAre)
{
    host.settings() = {{"SMS_Aggiungi0039SeMancante", "0"},
                       {"SMS_InvioAutomatico", "1"},
                       {"SMS_Mailup_UserName", "m'à 100% \"x\" 😀"},
                       {"SMS_Mailup_Password", " spazi "},
                       {"SMS_Mailup_From", std::string(10000, 'f')},
                       {"SMS_Mailup_Subject", std::nullopt},
                       {"SMS_Mailup_ListId", "3"},
                       {"SMS_Mailup_ConsoleId", ""}};
    storeFolder(u"C:\\Sender"_s);
    open();
    EXPECT_FALSE(ticked(u"chkSMS_Add0039"_s));
    EXPECT_TRUE(ticked(u"chkSMS_ZulSmsSenderAutoSend"_s));
    EXPECT_EQ(text(u"txtSMS_Prov_User"_s), u"m'à 100% \"x\" 😀"_s);
    EXPECT_EQ(text(u"txtSMS_Prov_Pwd"_s), u" spazi "_s);
    EXPECT_EQ(text(u"txtSMS_Prov_Mittente"_s).size(), 10000);
    EXPECT_EQ(text(u"txtSMS_Prov_Soggetto"_s), QString());
    EXPECT_EQ(text(u"txtSMS_Prov_ConsoleId"_s), QString()) << "empty is stored, not missing";
    EXPECT_EQ(text(u"txtPathSMSSender"_s), u"C:\\Sender"_s);
    EXPECT_EQ(field(u"txtSMS_Prov_Pwd"_s)->echoMode(), QLineEdit::Password);
    EXPECT_EQ(field(u"txtSMS_Prov_Pwd"_s)->displayText(), QString(7, u'*'));
}

TEST_F(OpzioniTest, AStoredEmptyFolderShowsTheDefaultOne)
{
    storeFolder(u""_s);
    open();
    EXPECT_EQ(text(u"txtPathSMSSender"_s), u"C:\\Gestionale\\ZulSmsSender"_s);
}

TEST_F(OpzioniTest, APrefixSwitchThatIsNoNumberIsPassedOverAndSaveWritesTheBox)
{
    host.settings()["SMS_Aggiungi0039SeMancante"] = "abc";
    open();
    EXPECT_TRUE(logged().isEmpty());
    EXPECT_EQ(text(u"txtSMS_Prov_ConsoleId"_s), u"22432"_s) << "the load went on";
    const bool shown = ticked(u"chkSMS_Add0039"_s);
    click(u"cmdSalva"_s);
    EXPECT_EQ(host.settings()["SMS_Aggiungi0039SeMancante"], shown ? "1" : "0");
}

TEST_F(OpzioniTest, AnAutoSendSwitchThatIsNoNumberEndsTheLoadWithAnError)
{
    for (const char* stored : {"abc", ""}) {
        host.settings()["SMS_InvioAutomatico"] = stored;
        open();
        EXPECT_TRUE(ticked(u"chkSMS_Add0039"_s)) << "read before it";
        for (const QString& name : providerFields) {
            EXPECT_EQ(text(name), QString());
        }
        EXPECT_EQ(text(u"txtPathSMSSender"_s), QString());
    }
    const QString entry =
        u"Form_Load | Error 13 (Type mismatch) in procedure Form_Load of Form frmOpzioni | "_s;
    EXPECT_EQ(logged(), (QStringList{entry, entry}));
    EXPECT_TRUE(messages.empty());
}

TEST_F(OpzioniTest, AnAutoSendSwitchTooLargeIsAnOverflow)
{
    host.settings()["SMS_InvioAutomatico"] = "40000";
    open();
    EXPECT_EQ(logged(),
              QStringList{u"Form_Load | Error 6 (Overflow) in procedure Form_Load of Form frmOpzioni | "_s});
}

TEST_F(OpzioniTest, WithoutAConnectionItOpensAllTheSame)
{
    session() = Session();
    open();
    EXPECT_TRUE(form->isVisible());
    // A setting that cannot be read is empty, and an empty switch is no number.
    const QString unread =
        u"getDbValue | Error 91 (Object variable or With block variable not set) in procedure setDbValue of "
        "Modulo modSetup | "_s;
    EXPECT_EQ(logged(),
              (QStringList{
                  unread + keys[0], unread + keys[1],
                  u"Form_Load | Error 13 (Type mismatch) in procedure Form_Load of Form frmOpzioni | "_s}));
}

// ---------------------------------------------------------------------------------------------- the focus

TEST_F(OpzioniTest, ItOpensWithTheUserNameYellowAndTheKeyboardBoundToIt)
{
    open();
    EXPECT_EQ(form->focusWidget(), field(u"txtSMS_Prov_User"_s));
    EXPECT_EQ(effectiveBackground(field(u"txtSMS_Prov_User"_s)), yellow);
    EXPECT_EQ(find<OnScreenKeyboard>(u"keybT"_s)->attachedField(), field(u"txtSMS_Prov_User"_s));
    EXPECT_EQ(effectiveBackground(find<QCheckBox>(u"chkSMS_Add0039"_s)), white);
    EXPECT_EQ(effectiveBackground(find<QCheckBox>(u"chkSMS_ZulSmsSenderAutoSend"_s)), white);
    EXPECT_EQ(effectiveBackground(find<QGroupBox>(u"GroupBox2"_s)), white);
}

TEST_F(OpzioniTest, InTouchModeTheKeyboardCoversNothing)
{
    session().ShowTouchMode = true;
    open();
    const auto* keyboard = find<OnScreenKeyboard>(u"keybT"_s);
    ASSERT_TRUE(keyboard->isVisible());
    const auto place = [this](const QWidget* widget) {
        return QRect(widget->mapTo(form.get(), QPoint()), widget->size());
    };
    for (const QString& name : providerFields) {
        field(name)->setFocus();
        for (const char* other :
             {"GroupBox2", "chkSMS_Add0039", "chkSMS_ZulSmsSenderAutoSend", "txtPathSMSSender",
              "cmdSelezionaPath", "cmdSMS_TestSMSSender", "cmdSalva", "cmdAnnulla"}) {
            EXPECT_FALSE(place(keyboard).intersects(place(find<QWidget>(QLatin1String(other)))))
                << utf8(name) << ' ' << other;
        }
    }
    EXPECT_LE(form->height(), 768 - 40) << "with its title bar it stands on a small screen";
}

TEST_F(OpzioniTest, EachActivationGivesTheUserNameTheFocusAndItsColour)
{
    open();
    auto* user = field(u"txtSMS_Prov_User"_s);
    field(u"txtSMS_Prov_Soggetto"_s)->setFocus();
    ASSERT_EQ(effectiveBackground(user), white);
    onWindow(u"frmShowPath"_s,
             [](QWidget* chooser) { chooser->findChild<QPushButton*>(u"cmdCancella"_s)->click(); });
    click(u"cmdSelezionaPath"_s);
    comeBack();
    EXPECT_EQ(form->focusWidget(), user);
    EXPECT_EQ(effectiveBackground(user), yellow);
    EXPECT_EQ(find<OnScreenKeyboard>(u"keybT"_s)->attachedField(), user);
}

TEST_F(OpzioniTest, AnotherProgramInFrontForAWhileLeavesTheFocusWhereItWas)
{
    open();
    auto* password = field(u"txtSMS_Prov_Pwd"_s);
    password->setFocus();
    QApplication::setActiveWindow(nullptr);
    QApplication::setActiveWindow(form.get());
    ASSERT_TRUE(form->isActiveWindow());
    EXPECT_EQ(form->focusWidget(), password);
    EXPECT_EQ(effectiveBackground(password), yellow);
}

TEST_F(OpzioniTest, TheKeyboardButtonShowsTheKeyboardAndPutsItAwayAndNothingIsCovered)
{
    open();
    auto* keyboard = find<OnScreenKeyboard>(u"keybT"_s);
    auto* toggle = find<QPushButton>(u"cmdTastiera"_s);
    ASSERT_FALSE(keyboard->isVisible()) << "without touch mode it is away at first";
    const QSize before = form->size();
    field(u"txtSMS_Prov_ListId"_s)->setFocus();
    click(u"cmdTastiera"_s);
    ASSERT_TRUE(keyboard->isVisible());
    EXPECT_TRUE(toggle->isChecked());
    EXPECT_EQ(form->focusWidget(), field(u"txtSMS_Prov_ListId"_s)) << "the focus stays";
    QTest::mouseClick(keyboard->findChild<QPushButton*>(u"keya"_s), Qt::LeftButton);
    EXPECT_EQ(text(u"txtSMS_Prov_ListId"_s), u"a"_s);
    const QRect covered = keyboard->geometry();
    EXPECT_TRUE(form->rect().contains(covered));
    for (const char* other : {"GroupBox2", "chkSMS_Add0039", "txtPathSMSSender", "cmdTastiera", "cmdSalva"}) {
        const auto* widget = find<QWidget>(QLatin1String(other));
        EXPECT_FALSE(covered.intersects(QRect(widget->mapTo(form.get(), QPoint()), widget->size()))) << other;
    }
    field(u"txtSMS_Prov_Pwd"_s)->setFocus();
    find<QCheckBox>(u"chkSMS_Add0039"_s)->setFocus();
    EXPECT_TRUE(keyboard->isVisible()) << "it stays until it is put away";
    click(u"cmdTastiera"_s);
    EXPECT_FALSE(keyboard->isVisible());
    EXPECT_FALSE(toggle->isChecked());
    EXPECT_EQ(form->size(), before);
}

TEST_F(OpzioniTest, TheKeyboardsOwnHideKeyReleasesTheButton)
{
    open();
    click(u"cmdTastiera"_s);
    auto* keyboard = find<OnScreenKeyboard>(u"keybT"_s);
    QTest::mouseClick(keyboard->findChild<QPushButton*>(u"keyHide"_s), Qt::LeftButton);
    EXPECT_FALSE(keyboard->isVisible());
    EXPECT_FALSE(find<QPushButton>(u"cmdTastiera"_s)->isChecked());
}

TEST_F(OpzioniTest, InTouchModeTheKeyboardIsShownAtFirstAndCanBePutAway)
{
    session().ShowTouchMode = true;
    open();
    EXPECT_TRUE(find<QPushButton>(u"cmdTastiera"_s)->isChecked());
    const QSize before = form->size();
    click(u"cmdTastiera"_s);
    EXPECT_FALSE(find<OnScreenKeyboard>(u"keybT"_s)->isVisible());
    EXPECT_EQ(form->size(), before) << "its room is kept";
    click(u"cmdTastiera"_s);
    EXPECT_TRUE(find<OnScreenKeyboard>(u"keybT"_s)->isVisible());
}

TEST_F(OpzioniTest, OnASmallScreenItIsNoLargerThanItAndScrolls)
{
    for (const bool touch : {false, true}) {
        session().ShowTouchMode = touch;
        open();
        expectOnScreen(*form);
        for (const char* name : {"cmdSelezionaPath", "cmdSMS_TestSMSSender", "cmdAnnulla", "cmdSalva"}) {
            expectReachable(find<QPushButton>(QLatin1String(name)));
        }
        form->resize(1, 1);
        expectReachable(find<QPushButton>(u"cmdSalva"_s));
    }
}

TEST_F(OpzioniTest, TheSixProviderFieldsTurnYellowWithTheFocusAndWhiteWithoutIt)
{
    open();
    QString before;
    for (const QString& name : providerFields) {
        field(name)->setFocus();
        EXPECT_EQ(effectiveBackground(field(name)), yellow) << utf8(name);
        EXPECT_EQ(find<OnScreenKeyboard>(u"keybT"_s)->attachedField(), field(name));
        if (!before.isEmpty()) {
            EXPECT_EQ(effectiveBackground(field(before)), white) << utf8(before);
        }
        before = name;
    }
    field(u"txtPathSMSSender"_s)->setFocus();
    EXPECT_EQ(effectiveBackground(field(u"txtSMS_Prov_ConsoleId"_s)), white);
    EXPECT_NE(effectiveBackground(field(u"txtPathSMSSender"_s)), yellow) << "the folder is not one of them";
}

// ------------------------------------------------------------------------------------------------- saving

TEST_F(OpzioniTest, SaveWritesTheSettingsInTheirOrderAndThenTheRegistry)
{
    open();
    field(u"txtSMS_Prov_User"_s)->setText(u" L'utente 100% 😀 "_s);
    field(u"txtPathSMSSender"_s)->setText(u"C:\\Digitata"_s);
    find<QCheckBox>(u"chkSMS_Add0039"_s)->click();
    host.forgetOperations();
    click(u"cmdSalva"_s);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(form->choice(), u"OK"_s);
    EXPECT_EQ(host.operations("set"),
              (Lines{"set Valore='0'", "set Valore='0'", "set Valore=' L'utente 100% 😀 '", "set Valore=''",
                     "set Valore=''", "set Valore=''", "set Valore=''", "set Valore='22432'"}));
    EXPECT_EQ(openedKeys(), keys);
    EXPECT_EQ(storedFolder(), u"C:\\Digitata"_s) << "as typed, without a backslash added";
}

TEST_F(OpzioniTest, LongSettingsComeThroughOpeningAndSavingWhole)
{
    const std::string longText(40000, 'x');
    for (const QString& key : keys.mid(2)) {
        host.settings()[utf8(key)] = longText;
    }
    storeFolder(QString(40000, u'y'));
    open();
    EXPECT_EQ(text(u"txtSMS_Prov_User"_s).size(), 40000);
    click(u"cmdSalva"_s);
    for (const QString& key : keys.mid(2)) {
        EXPECT_EQ(host.settings()[utf8(key)], longText) << utf8(key);
    }
    EXPECT_EQ(storedFolder().size(), 40000);
}

TEST_F(OpzioniTest, WhatTheLoadDidNotReachIsStoredOnlyWhenItWasChanged)
{
    host.settings() = {{"SMS_InvioAutomatico", ""},
                       {"SMS_Mailup_UserName", "utente"},
                       {"SMS_Mailup_Password", "segreta"},
                       {"SMS_Mailup_From", "Ditta"}};
    storeFolder(u"C:\\Sender"_s);
    open();
    field(u"txtSMS_Prov_Mittente"_s)->setText(u"Nuova"_s);
    click(u"cmdSalva"_s);
    EXPECT_EQ(form->choice(), u"OK"_s);
    EXPECT_EQ(host.settings()["SMS_InvioAutomatico"], "0") << "it was read, though it was no number";
    EXPECT_EQ(host.settings()["SMS_Mailup_UserName"], "utente");
    EXPECT_EQ(host.settings()["SMS_Mailup_Password"], "segreta");
    EXPECT_EQ(host.settings()["SMS_Mailup_From"], "Nuova");
    EXPECT_EQ(storedFolder(), u"C:\\Sender"_s);
}

TEST_F(OpzioniTest, ASettingThatCouldNotBeReadIsStoredOnlyWhenItWasChanged)
{
    host.settings() = {{"SMS_Aggiungi0039SeMancante", "1"}, {"SMS_Mailup_Password", "segreta"}};
    host.failWhere("descrizione='SMS_Aggiungi0039SeMancante' static", E_FAIL, u"no");
    host.failWhere("descrizione='SMS_Mailup_Password' static", E_FAIL, u"no");
    open();
    EXPECT_FALSE(ticked(u"chkSMS_Add0039"_s));
    EXPECT_EQ(text(u"txtSMS_Prov_Pwd"_s), QString());
    host.noFailures();
    click(u"cmdSalva"_s);
    EXPECT_EQ(host.settings()["SMS_Aggiungi0039SeMancante"], "1");
    EXPECT_EQ(host.settings()["SMS_Mailup_Password"], "segreta");
    EXPECT_EQ(host.settings()["SMS_Mailup_ConsoleId"], "22432") << "the others are stored as ever";
    EXPECT_EQ(logged().size(), 2) << "each failed reading is in the log";
}

TEST_F(OpzioniTest, AFailingWriteDoesNotRollBackTheOthers)
{
    open();
    host.forgetOperations();
    host.failNth("update", 3, E_FAIL, u"no");
    field(u"txtSMS_Prov_Mittente"_s)->setText(u"Ditta"_s);
    click(u"cmdSalva"_s);
    EXPECT_EQ(host.settings()["SMS_Mailup_From"], "Ditta");
    EXPECT_EQ(logged(), QStringList{u"setDbValue | Error -2147467259 (no) in procedure setDbValue of Modulo "
                                    "modSetup | "_s});
    EXPECT_EQ(form->choice(), u"OK"_s);
}

TEST_F(OpzioniTest, AFolderThatCannotBeStoredIsLoggedAndTheDialogStaysOpen)
{
    open();
    loseOwnSettings();
    field(u"txtSMS_Prov_Mittente"_s)->setText(u"Ditta"_s);
    click(u"cmdSalva"_s);
    ASSERT_EQ(logged().size(), 1);
    EXPECT_TRUE(logged().first().startsWith(u"cmdSalva_Click | Error 75 ("_s));
    EXPECT_TRUE(logged().first().endsWith(u") in procedure cmdSalva_Click of Form frmOpzioni | "_s));
    EXPECT_EQ(host.settings()["SMS_Mailup_From"], "Ditta") << "what was written before stays written";
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(form->choice(), QString());
}

TEST_F(OpzioniTest, CancelWritesNothing)
{
    open();
    field(u"txtSMS_Prov_User"_s)->setText(u"x"_s);
    host.forgetOperations();
    click(u"cmdAnnulla"_s);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(form->choice(), u"ESC"_s);
    EXPECT_TRUE(host.operations().empty());
    EXPECT_EQ(storedFolder(), u"(none)"_s);
}

TEST_F(OpzioniTest, EscapeIsItsCancel)
{
    for (const QString& where : {u"txtSMS_Prov_User"_s, u"chkSMS_Add0039"_s, u"cmdSalva"_s}) {
        open();
        field(u"txtSMS_Prov_User"_s)->setText(u"x"_s);
        host.forgetOperations();
        find<QWidget>(where)->setFocus();
        QTest::keyClick(find<QWidget>(where), Qt::Key_Escape);
        EXPECT_FALSE(form->isVisible()) << utf8(where);
        EXPECT_EQ(form->choice(), u"ESC"_s);
        EXPECT_TRUE(host.operations().empty());
    }
}

TEST_F(OpzioniTest, EnterPressesAFocusedButtonAndNoOther)
{
    open();
    QTest::keyClick(field(u"txtSMS_Prov_User"_s), Qt::Key_Return);
    EXPECT_TRUE(form->isVisible()) << "there is no default button";
    auto* save = find<QPushButton>(u"cmdSalva"_s);
    save->setFocus();
    QTest::keyClick(save, Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(form->choice(), u"OK"_s);
    open();
    auto* cancel = find<QPushButton>(u"cmdAnnulla"_s);
    cancel->setFocus();
    QTest::keyClick(cancel, Qt::Key_Return);
    EXPECT_EQ(form->choice(), u"ESC"_s);
}

TEST_F(OpzioniTest, EveryFieldAndCommandHasAnAltLetterOfItsOwn)
{
    open();
    QStringList letters;
    for (const auto* label : form->findChildren<QLabel*>()) {
        if (label->buddy() != nullptr) {
            letters.append(label->text().section(u'&', 1).left(1).toUpper());
        }
    }
    for (const auto* command : form->findChildren<QAbstractButton*>()) {
        if (!command->text().isEmpty() && command->focusPolicy() != Qt::NoFocus) {
            letters.append(command->text().section(u'&', 1).left(1).toUpper());
        }
    }
    EXPECT_EQ(letters.size(), 13);
    EXPECT_FALSE(letters.contains(QString()));
    EXPECT_EQ(letters.removeDuplicates(), 0);
    pressAlt(form.get(), Qt::Key_W);
    EXPECT_EQ(form->focusWidget(), field(u"txtSMS_Prov_Pwd"_s));
    pressAlt(form.get(), Qt::Key_A);
    EXPECT_EQ(form->choice(), u"ESC"_s);
}

TEST_F(OpzioniTest, TheCloseButtonLeavesNoChoice)
{
    open();
    host.forgetOperations();
    form->close();
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(form->choice(), QString());
    EXPECT_TRUE(host.operations().empty());
}

// ------------------------------------------------------------------------------------- folder and sender

TEST_F(OpzioniTest, AChosenFolderEndsInOneBackslash)
{
    QTemporaryDir folder;
    open();
    onWindow(u"frmShowPath"_s, [&](QWidget* chooser) {
        EXPECT_TRUE(chooser->findChild<FolderTree*>(u"FolderTreeview1"_s)->selectPath(folder.path()));
        chooser->findChild<QPushButton*>(u"cmdOK"_s)->click();
    });
    click(u"cmdSelezionaPath"_s);
    const QString shown = text(u"txtPathSMSSender"_s);
    EXPECT_TRUE(shown.endsWith(u'\\'));
    EXPECT_FALSE(shown.endsWith(u"\\\\"_s));
    EXPECT_EQ(QString(shown).replace(u'\\', u'/'), folder.path() + u'/');
    EXPECT_EQ(storedFolder(), u"(none)"_s) << "nothing is written before Save";
}

TEST_F(OpzioniTest, TheChooserStartsAtTheFolderInTheField)
{
    QTemporaryDir first;
    QTemporaryDir second;
    open();
    for (const QTemporaryDir* folder : {&first, &second}) {
        // As the field keeps it: with backslashes, one of them at its end.
        field(u"txtPathSMSSender"_s)->setText(folder->path().replace(u'/', u'\\') + u'\\');
        QString shown;
        onWindow(u"frmShowPath"_s, [&](QWidget* chooser) {
            shown = chooser->findChild<FolderTree*>(u"FolderTreeview1"_s)->selectedPath();
            chooser->findChild<QPushButton*>(u"cmdCancella"_s)->click();
        });
        click(u"cmdSelezionaPath"_s);
        EXPECT_EQ(shown, folder->path());
    }
}

TEST_F(OpzioniTest, ACancelledOrClosedChooserLeavesTheFieldAlsoAfterAnEarlierOk)
{
    QTemporaryDir folder;
    open();
    onWindow(u"frmShowPath"_s, [&](QWidget* chooser) {
        chooser->findChild<FolderTree*>(u"FolderTreeview1"_s)->selectPath(folder.path());
        chooser->findChild<QPushButton*>(u"cmdOK"_s)->click();
    });
    click(u"cmdSelezionaPath"_s);
    field(u"txtPathSMSSender"_s)->setText(u"prima"_s);
    onWindow(u"frmShowPath"_s,
             [](QWidget* chooser) { chooser->findChild<QPushButton*>(u"cmdCancella"_s)->click(); });
    click(u"cmdSelezionaPath"_s);
    EXPECT_EQ(text(u"txtPathSMSSender"_s), u"prima"_s);
    onWindow(u"frmShowPath"_s, [](QWidget* chooser) { chooser->close(); });
    click(u"cmdSelezionaPath"_s);
    EXPECT_EQ(text(u"txtPathSMSSender"_s), u"prima"_s);
}

TEST_F(OpzioniTest, AFolderThatHasGoneMeanwhileDoesNotCount)
{
    auto folder = std::make_unique<QTemporaryDir>();
    open();
    const QString before = text(u"txtPathSMSSender"_s);
    onWindow(u"frmShowPath"_s, [&](QWidget* chooser) {
        chooser->findChild<FolderTree*>(u"FolderTreeview1"_s)->selectPath(folder->path());
        folder.reset();
        chooser->findChild<QPushButton*>(u"cmdOK"_s)->click();
    });
    click(u"cmdSelezionaPath"_s);
    EXPECT_EQ(text(u"txtPathSMSSender"_s), before);
}

TEST_F(OpzioniTest, TheTestStartsTheSenderFromTheFolderTypedAndShowsANotice)
{
    QTemporaryDir folder;
    QFile program(folder.filePath(u"ZULSms_Sender.exe"_s));
    ASSERT_TRUE(program.open(QIODevice::WriteOnly));
    program.close();
    host.offer(Service::ProgramStarter);
    session().PathCartellaSMSSender = u"C:\\Salvata"_s;
    open();
    // Every path of the component is composed with "\".
    field(u"txtPathSMSSender"_s)->setText(folder.path().replace(u'/', u'\\'));
    click(u"cmdSMS_TestSMSSender"_s);
    EXPECT_EQ(host.operations("start"), Lines{"start " + utf8(QDir::toNativeSeparators(program.fileName())) +
                                              "| -connectionstring:Provider=Fake;Data Source=memory"});
    const auto* notice = form->findChild<WaitNotice*>();
    ASSERT_NE(notice, nullptr);
    EXPECT_TRUE(notice->isVisible());
    EXPECT_EQ(notice->heading(), u"Caricamento avviato..."_s);
    EXPECT_EQ(notice->text(),
              u"Il programma di gestione degli SMS è stato avviato. Attendere il caricamento..."_s);
    EXPECT_TRUE(form->isVisible());
    EXPECT_TRUE(messages.empty());
    for (const QString& name : {u"cmdAnnulla"_s, u"cmdSalva"_s}) {
        const auto* under = find<QPushButton>(name);
        const QRect place(under->mapTo(form.get(), QPoint()), under->size());
        EXPECT_FALSE(notice->geometry().intersects(place)) << utf8(name);
    }
}

TEST_F(OpzioniTest, ATestThatFailsIsToldOnceAndShowsNoNotice)
{
    open();
    field(u"txtPathSMSSender"_s)->setText(u"C:\\Manca"_s);
    click(u"cmdSMS_TestSMSSender"_s);
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_TRUE(messages[0].text.contains(u"C:\\Manca\\ZULSms_Sender.exe"_s));
    EXPECT_EQ(form->findChild<WaitNotice*>(), nullptr);
}

} // namespace
} // namespace zul
