#include "controls/gridtools/OutcomeTools.h"
#include "controls/notices/OutcomeList.h"
#include "controls/notices/OutcomeListProbe.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <gtest/gtest.h>

using namespace zul;
using namespace Qt::StringLiterals;

namespace {

class OutcomeToolsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        auto* column = new QVBoxLayout(&window);
        column->addWidget(&tools);
        column->addWidget(&list);
        tools.setList(&list);
        window.resize(800, 400);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    void run()
    {
        list.clear();
        for (const QString& line : lines) {
            list.append(line);
        }
        list.flush();
    }

    QString totals() { return window.findChild<QLabel*>(u"lblTotali"_s)->text(); }
    void click(const char* name) { window.findChild<QAbstractButton*>(QLatin1String(name))->click(); }
    QStringList shown()
    {
        QStringList texts;
        for (int row = 0; row < list.model()->rowCount(); ++row) {
            texts.append(list.model()->index(row, 0).data().toString());
        }
        return texts;
    }

    const QStringList lines{
        u"       - ****"_s, u"OK     - Preparato SMS per Rossi"_s,
        u"ERRORE - Saltata richiesta invio SMS per D'Orto; \"x\": numero cellulare non valido."_s,
        u"OK     - Preparato SMS per Neri"_s};
    QWidget window;
    OutcomeTools tools;
    OutcomeList list;
};

} // namespace

TEST_F(OutcomeToolsTest, TotalsFollowTheRun)
{
    EXPECT_EQ(totals(), QString());
    EXPECT_FALSE(window.findChild<QToolButton*>(u"cmdSalvaEsito"_s)->isEnabled());
    run();
    EXPECT_EQ(totals(), u"2 riusciti · 1 scartato: numero cellulare non valido 1"_s);
    list.clear();
    EXPECT_EQ(totals(), QString());
}

TEST_F(OutcomeToolsTest, OnlyFailuresLeavesOutTheOthersFromTheEyeOnly)
{
    run();
    click("chkSoloErrori");
    EXPECT_EQ(shown(), QStringList{lines.at(2)});
    EXPECT_EQ(list.count(), 4);
    EXPECT_EQ(OutcomeListProbe(&list).lineCount(), 4);
    EXPECT_EQ(OutcomeListProbe(&list).lineText(1), lines.at(1));
    list.append(u"OK     - Preparato SMS per Bianchi"_s);
    list.flush();
    EXPECT_EQ(shown().size(), 1);
    EXPECT_EQ(totals(), u"3 riusciti · 1 scartato: numero cellulare non valido 1"_s);
    list.append(u"ERR    - Verdi"_s);
    list.flush();
    EXPECT_EQ(shown().size(), 2);
    run();
    EXPECT_EQ(shown(), QStringList{lines.at(2)}) << "the next run, too";
    click("chkSoloErrori");
    EXPECT_EQ(shown(), lines);
}

TEST_F(OutcomeToolsTest, CopyTakesWhatIsHighlightedOrAllThatIsShown)
{
    run();
    click("cmdCopiaEsito");
    EXPECT_EQ(QApplication::clipboard()->text(), lines.join(u'\n') + u'\n');
    click("chkSoloErrori");
    click("cmdCopiaEsito");
    EXPECT_EQ(QApplication::clipboard()->text(), lines.at(2) + u'\n');
    click("chkSoloErrori");
    list.setCurrentIndex(list.model()->index(3, 0));
    click("cmdCopiaEsito");
    EXPECT_EQ(QApplication::clipboard()->text(), lines.at(3) + u'\n');
    click("chkSoloErrori");
    list.setCurrentIndex(list.model()->index(0, 0));
    QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), lines.at(2) + u'\n') << "the row's own line";
}

TEST_F(OutcomeToolsTest, SavesTagAndText)
{
    run();
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"esito.csv"_s);
    QTimer::singleShot(0, [&path] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(path);
        static_cast<QDialog*>(dialog)->accept();
    });
    click("cmdSalvaEsito");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(),
              QByteArray("\xEF\xBB\xBF"
                         "Esito;Descrizione\r\n;****\r\nOK;Preparato SMS per Rossi\r\n"
                         "ERRORE;\"Saltata richiesta invio SMS per D'Orto; \"\"x\"\": numero cellulare non "
                         "valido.\"\r\nOK;Preparato SMS per Neri\r\n"));
}

TEST_F(OutcomeToolsTest, AScreenReaderFindsTheLinesWithoutAnObjectForEach)
{
    list.clear();
    for (int i = 0; i < 200'000; ++i) {
        list.append(u"OK     - Preparato SMS per %1"_s.arg(i));
    }
    list.flush();
    QAccessibleInterface* own = QAccessible::queryAccessibleInterface(&list);
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(own->role(), QAccessible::List);
    EXPECT_EQ(own->text(QAccessible::Name), u"Esito della preparazione"_s);
    EXPECT_EQ(own->childCount(), 200'000);
    EXPECT_EQ(own->child(199'999)->text(QAccessible::Name), u"OK     - Preparato SMS per 199999"_s);
    EXPECT_TRUE(list.findChildren<QObject*>().size() < 100);
}
