#include "options/frmCheckSendError.h"

#include "controls/look/Background.h"
#include "controls/report/ReportGrid.h"
#include "controls/report/ReportGridProbe.h"
#include "controls/touch/OnScreenKeyboard.h"
#include "session/FormHelpers.h"
#include "tests/ftp/ScriptedServer.h"
#include "tests/support/AltKey.h"
#include "tests/support/ComponentTest.h"
#include "tests/support/QueuedInput.h"
#include "tests/support/SmallScreen.h"

#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>
#include <utility>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

OperatorMessage plain(const QString& text, MessageIcon icon = MessageIcon::None)
{
    return {.text = text, .icon = icon, .title = u"Zul_MessageBuilder"_s, .buttons = MessageButtons::Ok};
}

const OperatorMessage downloaded = plain(u"Download completato"_s);
const OperatorMessage notConnected = plain(u"connessione non riuscia"_s);

class CheckSendErrorTest : public ComponentTest
{
protected:
    CheckSendErrorTest() { QFile::remove(report()); }
    ~CheckSendErrorTest() override { QFile::remove(report()); }

    static QString report() { return inComponentFolder(u"export.txt"_s); }

    static void writeReport(const QByteArray& content)
    {
        QFile file(report());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    static QByteArray readReport()
    {
        QFile file(report());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }

    QRect placeOf(const char* name) const
    {
        const auto* const widget = form->findChild<QWidget*>(QLatin1String(name));
        return {widget->mapTo(form.get(), QPoint()), widget->size()};
    }

    void open()
    {
        form = std::make_unique<frmCheckSendError>();
        form->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
        host.forgetOperations();
    }

    template <class T>
    T* find(const char* name)
    {
        T* found = form->findChild<T*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    void fill(const QString& server, const QString& port, const QString& user = u"u"_s,
              const QString& password = u"p"_s)
    {
        find<QLineEdit>("txtFTP_Server")->setText(server);
        find<QLineEdit>("txtFTP_Port")->setText(port);
        find<QLineEdit>("txtFTP_User")->setText(user);
        find<QLineEdit>("txtFTP_Password")->setText(password);
    }

    void click(const char* name) { QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton); }

    /// Runs the test against a server that is not there, with a report left from an earlier day.
    void checkOldReport(const QByteArray& content)
    {
        writeReport(content);
        open();
        fill(u"127.0.0.1"_s, closedPort());
        click("cmdSMS_TestSMS");
        EXPECT_EQ(messages, std::vector<OperatorMessage>{notConnected});
    }

    /// A port on which nobody listens any more.
    static QString closedPort()
    {
        const ScriptedServer gone;
        return qs(gone.portText());
    }

    void customer(const char* searched, std::vector<std::vector<Variant>> rows)
    {
        host.answer(std::string("telefono2 like '%") + searched + "%'",
                    {{"IdCliente", "Telefono2", "RagioneSociale1"}, std::move(rows)});
    }

    ReportGrid* grid() { return find<ReportGrid>("grid_result"); }

    QStringList shownRows()
    {
        QStringList rows;
        for (int row = 0; row < probeOf(grid())->visibleRowCount(); ++row) {
            rows.append(probeOf(grid())->rowTexts(row).join(u'|'));
        }
        return rows;
    }

    static std::string query(const char* searched)
    {
        return std::string("open  select * from tabclienti where telefono2 like '%") + searched +
               "%' static read-only";
    }

    std::unique_ptr<frmCheckSendError> form;
};

// ----------------------------------------------------------------------------------- the form's own life

TEST_F(CheckSendErrorTest, InTouchModeTheKeyboardCoversNothing)
{
    session().ShowTouchMode = true;
    open();
    for (const char* field : {"txtFTP_Server", "txtFTP_Port", "txtFTP_User", "txtFTP_Password"}) {
        form->findChild<QWidget*>(QLatin1String(field))->setFocus();
        ASSERT_TRUE(form->findChild<QWidget*>(u"keybT"_s)->isVisible()) << field;
        for (const char* other :
             {"GroupBox2", "cmdSMS_TestSMS", "grid_result", "cmdSMS_ClearAccount", "cmdChiudi"}) {
            EXPECT_FALSE(placeOf("keybT").intersects(placeOf(other))) << field << ' ' << other;
        }
    }
    EXPECT_GE(placeOf("grid_result").height(), 120);
    EXPECT_LE(form->height(), 768 - 40) << "with its title bar it stands on a small screen";
}

TEST_F(CheckSendErrorTest, TheFourSettingsAreReadInTheirOrderAndShown)
{
    host.settings() = {{"SMS_CHECK_FTP_SERVER", "ftp.x.it"}, {"SMS_CHECK_FTP_USER", "L'utente 😀"}};
    form = std::make_unique<frmCheckSendError>();
    QStringList opened;
    for (const std::string& line : host.operations("open")) {
        opened.append(qs(line).section(u'\'', 1, 1));
    }
    EXPECT_EQ(opened, (QStringList{u"SMS_CHECK_FTP_SERVER"_s, u"SMS_CHECK_FTP_PORT"_s,
                                   u"SMS_CHECK_FTP_USER"_s, u"SMS_CHECK_FTP_Password"_s}));
    EXPECT_EQ(find<QLineEdit>("txtFTP_Server")->text(), u"ftp.x.it"_s);
    EXPECT_EQ(find<QLineEdit>("txtFTP_Port")->text(), QString()) << "there is no default port";
    EXPECT_EQ(find<QLineEdit>("txtFTP_User")->text(), u"L'utente 😀"_s);
}

TEST_F(CheckSendErrorTest, ItsTextsAreKeptAsTheyAreMisspelt)
{
    open();
    EXPECT_EQ(form->windowTitle(), u"Impostazioni"_s);
    EXPECT_EQ(find<QGroupBox>("GroupBox2")->title(), u"Provider FTP "_s);
    EXPECT_EQ(find<QLabel>("lblTest")->text(),
              u"Il test verrà fatto tra i numeri di telefono utlizzati nell'arco della scorsa settimana "_s);
    EXPECT_EQ(read(find<QPushButton>("cmdSMS_TestSMS")->text()), u"Test"_s);
    EXPECT_EQ(read(find<QPushButton>("cmdSMS_ClearAccount")->text()), u"Disabilita Numeri"_s);
    EXPECT_EQ(read(find<QPushButton>("cmdChiudi")->text()), u"Chiudi"_s);
    EXPECT_EQ(effectiveBackground(form.get()), QColor(Qt::white));
    EXPECT_EQ(effectiveBackground(find<QGroupBox>("GroupBox2")), QColor(Qt::white));
}

TEST_F(CheckSendErrorTest, TheKeyboardFollowsTheFocusAndNoColourDoes)
{
    open();
    for (const char* name : {"txtFTP_Port", "txtFTP_User", "txtFTP_Password", "txtFTP_Server"}) {
        auto* field = find<QLineEdit>(name);
        field->setFocus();
        EXPECT_EQ(find<OnScreenKeyboard>("keybT")->attachedField(), field);
        EXPECT_NE(effectiveBackground(field), QColor(255, 255, 0)) << name;
    }
}

TEST_F(CheckSendErrorTest, EveryCloseStoresTheFieldsInTheirOrder)
{
    for (const bool byButton : {true, false}) {
        open();
        fill(u"s"_s, u"1"_s, u"u'😀"_s, u"p"_s);
        if (byButton) {
            click("cmdChiudi");
        } else {
            form->close();
        }
        EXPECT_FALSE(form->isVisible());
        EXPECT_EQ(tagOf(form.get()), byButton ? u"ESC"_s : QString());
        EXPECT_EQ(host.operations("set"),
                  (Lines{"set Valore='s'", "set Valore='1'", "set Valore='u'😀'", "set Valore='p'"}));
    }
    EXPECT_EQ(host.settings()["SMS_CHECK_FTP_Password"], "p");
}

TEST_F(CheckSendErrorTest, EachActivationAppliesTheCommonAppearance)
{
    open();
    auto* group = find<QGroupBox>("GroupBox2");
    EXPECT_TRUE(group->autoFillBackground());
    group->setAutoFillBackground(false);
    QWidget other;
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_FALSE(group->autoFillBackground());
    other.close();
    form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    EXPECT_TRUE(group->autoFillBackground());
}

TEST_F(CheckSendErrorTest, TheKeyboardButtonShowsTheKeyboardAndPutsItAway)
{
    for (const bool touch : {false, true}) {
        session().ShowTouchMode = touch;
        open();
        auto* keyboard = find<OnScreenKeyboard>("keybT");
        EXPECT_EQ(keyboard->isVisible(), touch) << "shown at first in touch mode";
        click("cmdTastiera");
        EXPECT_EQ(keyboard->isVisible(), !touch);
        for (const char* other :
             {"GroupBox2", "grid_result", "cmdSMS_ClearAccount", "cmdTastiera", "cmdChiudi"}) {
            EXPECT_FALSE(keyboard->isVisible() && keyboard->geometry().intersects(placeOf(other))) << other;
        }
        click("cmdTastiera");
        EXPECT_EQ(keyboard->isVisible(), touch);
    }
}

TEST_F(CheckSendErrorTest, OnASmallScreenItIsNoLargerThanItAndScrolls)
{
    open();
    expectOnScreen(*form);
    for (const char* name : {"cmdSMS_TestSMS", "cmdSMS_ClearAccount", "cmdChiudi"}) {
        expectReachable(find<QPushButton>(name));
    }
}

TEST_F(CheckSendErrorTest, LongSettingsComeThroughOpeningAndClosingWhole)
{
    const std::string longText(40000, 'x');
    host.settings() = {{"SMS_CHECK_FTP_SERVER", longText}, {"SMS_CHECK_FTP_Password", longText}};
    open();
    click("cmdChiudi");
    EXPECT_EQ(host.settings()["SMS_CHECK_FTP_SERVER"], longText);
    EXPECT_EQ(host.settings()["SMS_CHECK_FTP_Password"], longText);
}

TEST_F(CheckSendErrorTest, ASettingThatCouldNotBeReadIsStoredOnlyWhenItWasChanged)
{
    host.settings() = {{"SMS_CHECK_FTP_SERVER", "ftp.x.it"},
                       {"SMS_CHECK_FTP_PORT", "21"},
                       {"SMS_CHECK_FTP_USER", "utente"},
                       {"SMS_CHECK_FTP_Password", "segreta"}};
    host.failWhere("tabImpostazioni", E_FAIL, u"no");
    open();
    EXPECT_EQ(logged().size(), 4) << "each failed reading is in the log";
    host.noFailures();
    find<QLineEdit>("txtFTP_User")->setText(u"altro"_s);
    click("cmdChiudi");
    EXPECT_EQ(host.settings()["SMS_CHECK_FTP_SERVER"], "ftp.x.it");
    EXPECT_EQ(host.settings()["SMS_CHECK_FTP_PORT"], "21");
    EXPECT_EQ(host.settings()["SMS_CHECK_FTP_USER"], "altro");
    EXPECT_EQ(host.settings()["SMS_CHECK_FTP_Password"], "segreta");
}

TEST_F(CheckSendErrorTest, EscapeIsItsClose)
{
    for (const bool inGrid : {false, true}) {
        open();
        fill(u"s"_s, u"1"_s);
        if (inGrid) {
            QTest::keyClick(probeOf(grid())->bodyViewport(), Qt::Key_Escape);
        } else {
            QTest::keyClick(find<QLineEdit>("txtFTP_Server"), Qt::Key_Escape);
        }
        EXPECT_FALSE(form->isVisible());
        EXPECT_EQ(tagOf(form.get()), u"ESC"_s);
        EXPECT_EQ(host.operations("set").size(), 4U) << "the fields are stored at every close";
    }
}

TEST_F(CheckSendErrorTest, EveryFieldAndCommandHasAnAltLetterOfItsOwn)
{
    open();
    QStringList letters;
    for (const auto* label : form->findChildren<QLabel*>()) {
        if (label->buddy() != nullptr) {
            letters.append(label->text().section(u'&', 1).left(1).toUpper());
        }
    }
    for (const auto* command : form->findChildren<QPushButton*>()) {
        if (command->focusPolicy() != Qt::NoFocus) {
            letters.append(command->text().section(u'&', 1).left(1).toUpper());
        }
    }
    EXPECT_EQ(letters.size(), 8);
    EXPECT_FALSE(letters.contains(QString()));
    EXPECT_EQ(letters.removeDuplicates(), 0);
    pressAlt(form.get(), Qt::Key_C);
    EXPECT_FALSE(form->isVisible());
}

TEST_F(CheckSendErrorTest, EnterPressesAFocusedButton)
{
    open();
    auto* test = find<QPushButton>("cmdSMS_TestSMS");
    test->setFocus();
    QTest::keyClick(test, Qt::Key_Return);
    EXPECT_EQ(messages.size(), 1U);
    auto* close = find<QPushButton>("cmdChiudi");
    close->setFocus();
    QTest::keyClick(close, Qt::Key_Return);
    EXPECT_FALSE(form->isVisible());
}

// ----------------------------------------------------------------------------------------------- the test

TEST_F(CheckSendErrorTest, ServerUserAndPasswordAreNeededThePortIsNot)
{
    open();
    for (const auto& [server, user, password] :
         {std::tuple{QString(), u"u"_s, u"p"_s}, {u"s"_s, QString(), u"p"_s}, {u"s"_s, u"u"_s, QString()}}) {
        messages.clear();
        fill(server, u"21"_s, user, password);
        click("cmdSMS_TestSMS");
        EXPECT_EQ(messages, std::vector<OperatorMessage>{
                                plain(u"Attenzione impostazioni non valide"_s, MessageIcon::Information)});
    }
    EXPECT_TRUE(host.operations().empty());
}

TEST_F(CheckSendErrorTest, APortThatIsNoNumberEndsTheTestWithAnError)
{
    writeReport("333\n");
    open();
    fill(u"127.0.0.1"_s, QString());
    click("cmdSMS_TestSMS");
    fill(u"127.0.0.1"_s, u"40000"_s);
    click("cmdSMS_TestSMS");
    EXPECT_TRUE(messages.empty());
    const QString tail = u") in procedure cmdSMS_TestSMS_Click of Form frmCheckSendError | "_s;
    EXPECT_EQ(logged(), (QStringList{u"cmdSMS_TestSMS_Click | Error 13 (Type mismatch"_s + tail,
                                     u"cmdSMS_TestSMS_Click | Error 6 (Overflow"_s + tail}));
    EXPECT_TRUE(host.operations("open").empty()) << "the old report is not read";
}

TEST_F(CheckSendErrorTest, TheReportIsFetchedAndItsCustomersAreListed)
{
    ScriptedServer server;
    server.files["/export.txt"] = "393331234567\r\n3287654321\r\n\r\n391\r\n000";
    customer("333123456", {{number(1), text("+39 333123456"), text("D'Amico 100% \"à\" 😀")},
                           {number(2), text("3331234569"), text("Secondo")}});
    customer("3287654321", {{number(3), text("3287654321"), null()}});
    customer("", {{number(9), text("tutti"), text("Tutti")}});
    open();
    fill(u"127.0.0.1"_s, QString::number(static_cast<qint16>(server.port())));
    click("cmdSMS_TestSMS");
    EXPECT_EQ(messages, std::vector<OperatorMessage>{downloaded});
    EXPECT_EQ(host.operations(),
              (Lines{query("333123456"), query("3287654321"), query(""), query(""), query("000")}));
    EXPECT_EQ(shownRows(), (QStringList{u"+39 333123456|D'Amico 100% \"à\" 😀"_s, u"3287654321|"_s}))
        << "the first customer of each number; none for an empty search";
    EXPECT_EQ(host.openRowSets(), 0);
    ASSERT_EQ(grid()->columnCount(), 2);
    EXPECT_EQ(grid()->columnCaption(0), u"Numero telefono"_s);
    EXPECT_EQ(grid()->columnCaption(1), u"Regione sociale"_s);
    EXPECT_EQ(probeOf(grid())->headerRect(0).width(), 250);
    EXPECT_EQ(probeOf(grid())->headerRect(1).width(), 300);
    // A transfer of text brings the line breaks of this system.
    EXPECT_EQ(readReport(), QByteArray("393331234567\n3287654321\n\n391\n000")) << "it stays on the disk";
}

TEST_F(CheckSendErrorTest, AFailedDownloadIsToldAsCompletedAndTheEarlierReportIsReadAgain)
{
    ScriptedServer server;
    customer("111", {{number(1), text("111"), text("Vecchio")}});
    writeReport("111\n");
    open();
    fill(u"127.0.0.1"_s, QString::number(static_cast<qint16>(server.port())));
    click("cmdSMS_TestSMS");
    EXPECT_EQ(messages, std::vector<OperatorMessage>{downloaded});
    EXPECT_EQ(shownRows(), QStringList{u"111|Vecchio"_s});
    EXPECT_EQ(readReport(), QByteArray("111\n"));
}

TEST_F(CheckSendErrorTest, ADownloadThatBrokeOffIsReadByNobody)
{
    // Half a number is another customer's.
    const auto cutTheReport = [](ScriptedServer& server) {
        server.on["RETR"] = [](auto& client, const auto&) {
            client.reply("150 here it comes");
            client.openData();
            client.sendData("111\r\n3933");
            client.closeData();
            client.hangUp();
        };
    };
    {
        ScriptedServer server;
        cutTheReport(server);
        open();
        fill(u"127.0.0.1"_s, QString::number(static_cast<qint16>(server.port())));
        click("cmdSMS_TestSMS");
    }
    EXPECT_EQ(messages, std::vector<OperatorMessage>{downloaded}) << "its message is the same";
    EXPECT_TRUE(host.operations("open").empty());
    EXPECT_EQ(readReport(), QByteArray("(none)")) << "no half file is left";
    EXPECT_EQ(logged(), QStringList{u"cmdSMS_TestSMS_Click | Error 53 (File not found) in procedure "
                                    "cmdSMS_TestSMS_Click of Form frmCheckSendError | "_s});

    writeReport("222\n");
    {
        ScriptedServer server;
        cutTheReport(server);
        open();
        fill(u"127.0.0.1"_s, QString::number(static_cast<qint16>(server.port())));
        click("cmdSMS_TestSMS");
    }
    EXPECT_EQ(host.operations("open"), Lines{query("222")}) << "the earlier report";
    EXPECT_EQ(readReport(), QByteArray("222\n"));
}

TEST_F(CheckSendErrorTest, ARefusedLoginIsAFailedConnection)
{
    ScriptedServer server;
    server.loginReply = "530 no";
    writeReport("111\n");
    open();
    fill(u"127.0.0.1"_s, QString::number(static_cast<qint16>(server.port())));
    click("cmdSMS_TestSMS");
    EXPECT_EQ(messages, std::vector<OperatorMessage>{notConnected});
    EXPECT_EQ(host.operations("open"), Lines{query("111")}) << "the earlier report is read all the same";
}

TEST_F(CheckSendErrorTest, WithoutAnyReportTheTestEndsWithFileNotFound)
{
    open();
    fill(u"127.0.0.1"_s, closedPort());
    click("cmdSMS_TestSMS");
    EXPECT_EQ(messages, std::vector<OperatorMessage>{notConnected});
    EXPECT_EQ(logged(), QStringList{u"cmdSMS_TestSMS_Click | Error 53 (File not found) in procedure "
                                    "cmdSMS_TestSMS_Click of Form frmCheckSendError | "_s});
    EXPECT_EQ(readReport(), QByteArray("(none)")) << "none is made";
}

TEST_F(CheckSendErrorTest, WithoutAConnectionTheOldReportIsReadAndLookedUp)
{
    customer("222", {{number(1), text("222"), text("Trovato")}});
    checkOldReport("222\n");
    EXPECT_EQ(shownRows(), QStringList{u"222|Trovato"_s});
}

TEST_F(CheckSendErrorTest, ALine39EndsTheTestAndTheGridKeepsTheRowsSoFarUnshown)
{
    customer("222", {{number(1), text("222"), text("Prima")}});
    checkOldReport("222\n39\n333\n");
    EXPECT_EQ(logged(), QStringList{u"cmdSMS_TestSMS_Click | Error 5 (Invalid procedure call or argument) in "
                                    "procedure cmdSMS_TestSMS_Click of Form frmCheckSendError | "_s});
    EXPECT_EQ(host.operations("open"), Lines{query("222")});
    EXPECT_EQ(grid()->recordCount(), 1U);
    EXPECT_EQ(probeOf(grid())->visibleRowCount(), 0) << "without the final repopulation";
}

TEST_F(CheckSendErrorTest, ANumberWithAnApostropheEndsTheTestAndIsNotSent)
{
    customer("222", {{number(1), text("222"), text("Uno")}});
    checkOldReport("222\n33'3\n222\n");
    EXPECT_EQ(host.operations("open"), Lines{query("222")});
    EXPECT_EQ(grid()->recordCount(), 1U);
    EXPECT_EQ(logged(),
              QStringList{u"cmdSMS_TestSMS_Click | Error 5 (A number with an apostrophe is not sent to "
                          "the database) in procedure cmdSMS_TestSMS_Click of Form frmCheckSendError | "_s});
}

TEST_F(CheckSendErrorTest, WhatIsClickedWhileATestRunsComesToNothing)
{
    customer("222", {{number(1), text("222"), text("Uno")}});
    bool queued = false;
    host.during("'%222%'", [&] {
        if (std::exchange(queued, true)) {
            return;
        }
        queueClick(find<QPushButton>("cmdSMS_TestSMS"));
        queueClick(find<QPushButton>("cmdSMS_ClearAccount"));
    });
    checkOldReport("222\n");
    QCoreApplication::processEvents();
    EXPECT_EQ(messages.size(), 1U) << "one test";
    EXPECT_TRUE(host.operations("execute").empty());
    EXPECT_EQ(shownRows(), QStringList{u"222|Uno"_s});
}

TEST_F(CheckSendErrorTest, EscapeEndsATestBetweenTwoLinesAndTheLogSaysSo)
{
    customer("222", {{number(1), text("222"), text("Uno")}});
    QString title;
    int searched = 0;
    host.during("'%222%'", [&] {
        title = form->windowTitle();
        // From the second line on half a second has passed, and so the title tells how far it is.
        QTest::qSleep(searched == 0 ? 600 : 60);
        if (++searched == 3) {
            queueKey(form.get(), Qt::Key_Escape);
            // A close waits until the run is over.
            QMetaObject::invokeMethod(
                form.get(), [this] { form->close(); }, Qt::QueuedConnection);
        }
    });
    checkOldReport("222\n222\n222\n222\n222\n222\n222\n222\n");
    EXPECT_EQ(searched, 3);
    EXPECT_EQ(title, u"%1 - riga 2 (25%) - Esc interrompe"_s.arg(form->windowTitle()));
    EXPECT_EQ(shownRows(), (QStringList{u"222|Uno"_s, u"222|Uno"_s, u"222|Uno"_s}));
    ASSERT_EQ(log().size(), 1);
    EXPECT_TRUE(log()[0].contains(
        u"cmdSMS_TestSMS_Click | Interrotto dall'operatore dopo la riga 3 di export.txt."_s))
        << utf8(log()[0]);
    QTRY_VERIFY(!form->isVisible());
}

TEST_F(CheckSendErrorTest, ASecondTestBeginsWithAnEmptyGrid)
{
    customer("222", {{number(1), text("222"), text("Uno")}});
    checkOldReport("222\n");
    click("cmdSMS_TestSMS");
    EXPECT_EQ(shownRows(), QStringList{u"222|Uno"_s});
    EXPECT_EQ(grid()->columnCount(), 2);
}

// ------------------------------------------------------------------------------------------ the disabling

TEST_F(CheckSendErrorTest, DisableRunsOneStatementPerRowAndEmptiesTheGrid)
{
    customer("222", {{number(1), text("+39 222"), text("Uno")}});
    customer("333", {{number(2), text("33\"3 %"), text("Due")}});
    checkOldReport("222\n333\n");
    host.forgetOperations();
    messages.clear();
    click("cmdSMS_ClearAccount");
    const auto statement = [](const std::string& phone) {
        return "execute update tabclienti set notecliente = isnull(notecliente, '') + ' Numero non valido :' "
               "+ '" +
               phone + "' , Telefono2='' where  telefono2 = '" + phone + "'";
    };
    EXPECT_EQ(host.operations(), (Lines{statement("+39 222"), statement("33\"3 %")})) << "no transaction";
    EXPECT_TRUE(messages.empty()) << "nothing is asked";
    EXPECT_EQ(grid()->recordCount(), 0U);
    EXPECT_EQ(grid()->columnCount(), 0);
}

TEST_F(CheckSendErrorTest, DisableWithAnEmptyGridRunsNothingAndTakesTheColumnsAway)
{
    checkOldReport("000\n");
    ASSERT_EQ(grid()->columnCount(), 2);
    host.forgetOperations();
    click("cmdSMS_ClearAccount");
    EXPECT_TRUE(host.operations().empty());
    EXPECT_EQ(grid()->columnCount(), 0);
    click("cmdSMS_ClearAccount");
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(CheckSendErrorTest, EveryStatementWaitsForADatabaseObjectThatIsStillExecuting)
{
    customer("222", {{number(1), text("222"), text("Uno")}});
    writeReport("222\n333\n");
    open();
    fill(u"127.0.0.1"_s, closedPort());
    // Busy for one question before each statement.
    QStringList asked;
    form->setDatabaseObject([&] {
        asked.append(QString::number(host.operations().size()));
        return asked.size() % 2 == 1;
    });
    click("cmdSMS_TestSMS");
    EXPECT_EQ(asked, (QStringList{u"0"_s, u"0"_s, u"1"_s, u"1"_s}));
    asked.clear();
    host.forgetOperations();
    click("cmdSMS_ClearAccount");
    EXPECT_EQ(asked, (QStringList{u"0"_s, u"0"_s}));
    EXPECT_EQ(host.operations("execute").size(), 1U);
}

TEST_F(CheckSendErrorTest, AListedNumberWithAnApostropheEndsTheDisablingAndIsNotSent)
{
    customer("222", {{number(1), text("222"), text("Uno")}});
    customer("333", {{number(2), text("33'3"), text("Due")}});
    checkOldReport("222\n333\n");
    host.forgetOperations();
    click("cmdSMS_ClearAccount");
    EXPECT_EQ(host.operations("execute").size(), 1U) << "what was done before stays done";
    EXPECT_EQ(shownRows().size(), 2);
    EXPECT_EQ(logged(),
              QStringList{u"cmdSMS_ClearAccount_Click | Error 5 (A number with an apostrophe is not "
                          "sent to the database) in procedure cmdSMS_ClearAccount_Click of Form "
                          "frmCheckSendError | "_s});
}

TEST_F(CheckSendErrorTest, AFailingDisableKeepsTheGridAndWhatWasDone)
{
    customer("222", {{number(1), text("222"), text("Uno")}});
    customer("333", {{number(2), text("333"), text("Due")}});
    checkOldReport("222\n333\n");
    host.forgetOperations();
    host.failNth("execute", 2, E_FAIL, u"no");
    click("cmdSMS_ClearAccount");
    EXPECT_EQ(host.operations("execute").size(), 2U);
    EXPECT_EQ(shownRows().size(), 2);
    EXPECT_EQ(logged(), QStringList{u"cmdSMS_ClearAccount_Click | Error -2147467259 (no) in procedure "
                                    "cmdSMS_ClearAccount_Click of Form frmCheckSendError | "_s});
}

} // namespace
} // namespace zul
