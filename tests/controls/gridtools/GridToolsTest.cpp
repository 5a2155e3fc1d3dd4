// The bar above a grid's rows and the line under them.
#include "controls/gridtools/GridTools.h"
#include "controls/gridtools/GridFindBar.h"
#include "controls/notices/MessageSeam.h"
#include "controls/report/ReportGrid.h"
#include "controls/report/ReportGridView.h"

#include <QCheckBox>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <gtest/gtest.h>

#include <string>

using namespace zul;
using namespace Qt::StringLiterals;

namespace {

class GridToolsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        auto* column = new QVBoxLayout(&window);
        column->addWidget(&first);
        column->addWidget(&grid);
        column->addWidget(&tools);
        column->addWidget(&last);
        window.resize(900, 500);
        grid.addColumns({{u"IdCLiente"_s, u"Id"_s, 0, false, true, false},
                         {u"Selezione"_s, u"Selezione"_s, 76, true, true, true},
                         {u"Cliente"_s, u"Cliente"_s, 200, true, true, false},
                         {u"Paese"_s, u"Paese"_s, 120, true, true, false}});
        tools.setGrid(&grid, {u"cliente"_s, u"clienti"_s});
        fill(200);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        grid.setFocus();
    }

    void fill(int records)
    {
        grid.deleteRecords();
        for (int i = 0; i < records; ++i) {
            const std::string name = "Cliente " + std::to_string(i);
            const std::string town = i % 4 == 0 ? "Roma" : i % 4 == 1 ? "Forlì" : "=Cagliari; 'x'";
            grid.store().appendInteger(0, i);
            grid.store().appendText(2, name.data(), name.size());
            grid.store().appendText(3, town.data(), town.size());
            grid.store().endRow();
        }
        grid.populate();
    }

    template <typename Widget>
    Widget& part(const char* name)
    {
        auto* found = window.findChild<Widget*>(QLatin1String(name));
        if (found == nullptr) {
            throw std::runtime_error(std::string("no ") + name);
        }
        return *found;
    }

    QString counts()
    {
        QCoreApplication::processEvents();
        return part<QLabel>("lblConteggi").text();
    }

    QWidget& rows() { return *grid.findChild<ReportGridView*>(); }
    QLineEdit& text() { return part<QLineEdit>("txtTrova"); }
    bool barOpen()
    {
        const auto* bar = grid.findChild<GridFindBar*>();
        return bar != nullptr && bar->isVisible();
    }
    void openBar() { QTest::keyClick(&rows(), Qt::Key_F, Qt::ControlModifier); }
    QStringList shownNames()
    {
        QStringList names;
        for (const uint32_t record : grid.recordsInScreenOrder()) {
            names.append(grid.cellText(record, 2));
        }
        return names;
    }

    QWidget window;
    QPushButton first{u"Prima"_s};
    ReportGrid grid;
    GridTools tools;
    QPushButton last{u"Dopo"_s};
};

} // namespace

// --- Counts

TEST_F(GridToolsTest, TheCountsAreAlwaysTrue)
{
    EXPECT_EQ(counts(), u"200 clienti · 0 selezionati · 0 evidenziati"_s);
    grid.setAllChecked(true);
    grid.setChecked(3, false);
    EXPECT_EQ(counts(), u"200 clienti · 199 selezionati · 0 evidenziati"_s);
    QTest::keyClick(&rows(), Qt::Key_Down);
    QTest::keyClick(&rows(), Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(counts(), u"200 clienti · 199 selezionati · 2 evidenziati"_s);
    grid.groupBy(3);
    QTest::keyClick(&rows(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(counts(), u"200 clienti · 199 selezionati · 200 evidenziati"_s)
        << "groups' rows are no clients";
    grid.ungroupAll();
    grid.clearSelection();
    grid.setTextFilter(u"Cliente 1"_s);
    EXPECT_EQ(counts(), u"200 clienti · 199 selezionati · 0 evidenziati · 111 mostrati"_s);
    fill(1);
    grid.setTextFilter({});
    EXPECT_EQ(counts(), u"1 cliente · 0 selezionati · 0 evidenziati"_s);
}

TEST_F(GridToolsTest, TheButtonsDoWhatTheySay)
{
    QTest::mouseClick(&part<QToolButton>("cmdInvertiSelezione"), Qt::LeftButton);
    EXPECT_EQ(grid.checkedCount(), 200U);
    QTest::mouseClick(&part<QToolButton>("cmdTrova"), Qt::LeftButton);
    EXPECT_TRUE(barOpen());
    EXPECT_TRUE(text().hasFocus());
    fill(0);
    counts();
    EXPECT_FALSE(part<QToolButton>("cmdInvertiSelezione").isEnabled());
    EXPECT_FALSE(part<QToolButton>("cmdEsporta").isEnabled());
}

// --- Find

TEST_F(GridToolsTest, CtrlFOpensTheBarOnlyWhereItIsEnabled)
{
    EXPECT_FALSE(barOpen());
    openBar();
    EXPECT_TRUE(barOpen());
    EXPECT_TRUE(text().hasFocus());
    ReportGrid plain;
    plain.addColumns({{u"Testo"_s, u"Testo"_s, 100, true, true, false}});
    plain.show();
    QTest::keyClick(plain.findChild<ReportGridView*>(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(plain.findChild<GridFindBar*>(), nullptr);
}

TEST_F(GridToolsTest, TypingGoesToTheFirstMatchAndKeysToTheOthers)
{
    openBar();
    QTest::keyClicks(&text(), u"cliente 19"_s);
    EXPECT_EQ(grid.currentRecord(), 19);
    EXPECT_EQ(part<QLabel>("lblTrovati").text(), u"11 corrispondenze"_s);
    QTest::keyClick(&text(), Qt::Key_Return);
    EXPECT_EQ(grid.currentRecord(), 190);
    QTest::keyClick(&text(), Qt::Key_F3);
    EXPECT_EQ(grid.currentRecord(), 191);
    QTest::keyClick(&text(), Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClick(&text(), Qt::Key_Up);
    EXPECT_EQ(grid.currentRecord(), 19);
    QTest::keyClick(&text(), Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(grid.currentRecord(), 199) << "from the other end";
    QTest::mouseClick(&part<QToolButton>("cmdTrovaSuccessivo"), Qt::LeftButton);
    EXPECT_EQ(grid.currentRecord(), 19);
    QTest::mouseClick(&part<QToolButton>("cmdTrovaPrecedente"), Qt::LeftButton);
    EXPECT_EQ(grid.currentRecord(), 199);
    QTest::keyClicks(&text(), u"zz"_s);
    EXPECT_EQ(part<QLabel>("lblTrovati").text(), u"Nessuna corrispondenza"_s);
    EXPECT_EQ(grid.currentRecord(), 199);
    EXPECT_EQ(grid.recordsInScreenOrder().size(), 200U) << "finding leaves nothing out";
}

TEST_F(GridToolsTest, FindsInEveryShownColumnAndInNoHiddenOne)
{
    openBar();
    for (const auto& [what, record] : std::initializer_list<std::pair<QString, int64_t>>{
             {u"FORLÌ"_s, 1}, {u"; 'X'"_s, 2}, {u"%"_s, -1}, {u"nte 77"_s, 77}}) {
        grid.setCurrentRecord(0);
        text().setText(what);
        EXPECT_EQ(grid.currentRecord(), record < 0 ? 0 : record) << what.toStdString();
    }
    grid.setColumnShown(3, false);
    grid.setCurrentRecord(0);
    text().setText(u"forlì"_s);
    EXPECT_EQ(part<QLabel>("lblTrovati").text(), u"Nessuna corrispondenza"_s);
}

TEST_F(GridToolsTest, AMatchInAClosedGroupOpensIt)
{
    grid.groupBy(3);
    grid.groupBy(2);
    grid.setAllGroupsClosed(true);
    openBar();
    text().setText(u"nte 5"_s);
    EXPECT_EQ(grid.cellText(static_cast<uint32_t>(grid.currentRecord()), 2), u"Cliente 50"_s)
        << "the first in the order of the groups";
}

TEST_F(GridToolsTest, OnlyMatchesAndOnlyTickedLeaveOutTheOthers)
{
    grid.setChecked(7, true);
    grid.setChecked(17, true);
    grid.setChecked(30, true);
    openBar();
    QTest::keyClicks(&text(), u"7"_s);
    part<QCheckBox>("chkSoloCorrispondenti").click();
    EXPECT_EQ(shownNames().size(), 38);
    part<QCheckBox>("chkSoloSelezionati").click();
    EXPECT_EQ(shownNames(), (QStringList{u"Cliente 7"_s, u"Cliente 17"_s}));
    EXPECT_EQ(counts(), u"200 clienti · 3 selezionati · 1 evidenziato · 2 mostrati"_s);
    part<QCheckBox>("chkSoloCorrispondenti").click();
    EXPECT_EQ(shownNames(), (QStringList{u"Cliente 7"_s, u"Cliente 17"_s, u"Cliente 30"_s}));
    grid.setChecked(17, false);
    EXPECT_EQ(shownNames().size(), 3) << "a row does not vanish under the pointer";
    grid.populate();
    EXPECT_EQ(shownNames(), (QStringList{u"Cliente 7"_s, u"Cliente 30"_s}));
    EXPECT_EQ(grid.allRecordsInScreenOrder().size(), 200U);

    QTest::keyClick(&text(), Qt::Key_Escape);
    EXPECT_FALSE(barOpen());
    EXPECT_TRUE(rows().hasFocus());
    EXPECT_EQ(shownNames().size(), 200);
    EXPECT_EQ(counts().count(u'·'), 2);
}

TEST_F(GridToolsTest, EscClosesTheBarFromEveryPartOfItAndStaysInIt)
{
    for (const char* name : {"txtTrova", "cmdTrovaSuccessivo", "chkSoloCorrispondenti", "cmdChiudiTrova"}) {
        openBar();
        part<QWidget>(name).setFocus();
        QTest::keyClick(&part<QWidget>(name), Qt::Key_Escape);
        EXPECT_FALSE(barOpen()) << name;
        EXPECT_TRUE(window.isVisible());
    }
    openBar();
    QTest::mouseClick(&part<QToolButton>("cmdChiudiTrova"), Qt::LeftButton);
    EXPECT_FALSE(barOpen());
}

TEST_F(GridToolsTest, EnterPressesAFocusedButtonOfTheBar)
{
    openBar();
    QTest::keyClicks(&text(), u"cliente 19"_s);
    auto& next = part<QToolButton>("cmdTrovaSuccessivo");
    next.setFocus();
    QTest::keyClick(&next, Qt::Key_Return);
    EXPECT_EQ(grid.currentRecord(), 190);
    auto& previous = part<QToolButton>("cmdTrovaPrecedente");
    previous.setFocus();
    QTest::keyClick(&previous, Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(grid.currentRecord(), 19);
    auto& only = part<QCheckBox>("chkSoloCorrispondenti");
    only.setFocus();
    QTest::keyClick(&only, Qt::Key_Return);
    EXPECT_FALSE(only.isChecked()) << "a box is ticked by the space bar";
    part<QToolButton>("cmdChiudiTrova").setFocus();
    QTest::keyClick(&part<QToolButton>("cmdChiudiTrova"), Qt::Key_Return);
    EXPECT_FALSE(barOpen());
}

TEST_F(GridToolsTest, ANewSearchShowsAllThatItFound)
{
    grid.setChecked(7, true);
    openBar();
    part<QCheckBox>("chkSoloSelezionati").click();
    EXPECT_EQ(shownNames().size(), 1);
    fill(50);
    EXPECT_EQ(shownNames().size(), 50);
    EXPECT_FALSE(part<QCheckBox>("chkSoloSelezionati").isChecked());
}

TEST_F(GridToolsTest, TabGoesThroughTheBarBetweenWhatIsAboveAndTheRows)
{
    openBar();
    first.setFocus();
    QStringList stops;
    for (int i = 0; i < 8; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        stops.append(QApplication::focusWidget()->objectName());
    }
    EXPECT_EQ(stops, (QStringList{u"txtTrova"_s, u"cmdTrovaPrecedente"_s, u"cmdTrovaSuccessivo"_s,
                                  u"chkSoloCorrispondenti"_s, u"chkSoloSelezionati"_s, u"cmdChiudiTrova"_s,
                                  QString(), QString()}));
    EXPECT_TRUE(last.hasFocus());
}

// --- Export

namespace {

/// Takes the place of the operator at the file dialog, and closes it when it is still there afterwards.
void answerFileDialog(const QString& path, const std::function<void()>& afterwards = {})
{
    QTimer::singleShot(0, [path, afterwards] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        if (path.isEmpty()) {
            dialog->reject();
            return;
        }
        dialog->findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(path);
        static_cast<QDialog*>(dialog)->accept();
        if (afterwards) {
            afterwards();
        }
    });
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not there");
}

} // namespace

TEST_F(GridToolsTest, ExportsWhatIsShownOrWhatIsTicked)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"clienti.csv"_s);
    grid.setChecked(2, true);
    grid.setChecked(100, true);
    grid.sortBy(2, true);
    grid.setTextFilter(u"nte 10"_s);
    answerFileDialog(folder.filePath(u"clienti"_s));
    tools.exportRows(GridTools::Rows::Shown);
    const QByteArray shown = contentOf(path);
    EXPECT_TRUE(shown.startsWith("\xEF\xBB\xBF"
                                 "Cliente;Paese\r\nCliente 109;Forlì\r\n"))
        << shown.toStdString();
    EXPECT_EQ(shown.count("\r\n"), 12);
    EXPECT_FALSE(shown.contains(";Sì"));

    answerFileDialog(folder.filePath(u"spuntati.csv"_s));
    tools.exportRows(GridTools::Rows::Ticked);
    EXPECT_EQ(contentOf(folder.filePath(u"spuntati.csv"_s)),
              QByteArray("\xEF\xBB\xBF"
                         "Cliente;Paese\r\nCliente 2;\"'=Cagliari; 'x'\"\r\nCliente 100;Roma\r\n"))
        << "hidden by the filter, and ticked all the same";

    answerFileDialog({});
    tools.exportRows(GridTools::Rows::Shown);
}

TEST_F(GridToolsTest, AFileThatIsThereIsReplacedOnlyWhenConfirmed)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"clienti.csv"_s);
    QFile before(path);
    ASSERT_TRUE(before.open(QIODevice::WriteOnly) && before.write("prima") == 5);
    before.close();
    QStringList asked;
    Answer answer = Answer::No;
    setAnswerer([&](const OperatorMessage& message) {
        asked.append(message.text);
        answerFileDialog({}); // after a No the dialog is there again
        return answer;
    });
    answerFileDialog(path);
    tools.exportRows(GridTools::Rows::Shown);
    EXPECT_EQ(contentOf(path), "prima");
    answer = Answer::Yes;
    setAnswerer([&](const OperatorMessage& message) {
        asked.append(message.text);
        return answer;
    });
    answerFileDialog(path);
    tools.exportRows(GridTools::Rows::Shown);
    setAnswerer({});
    EXPECT_EQ(contentOf(path).count("\r\n"), 201);
    EXPECT_EQ(asked, QStringList(2, u"Il file «clienti.csv» esiste già. Si desidera sostituirlo?"_s));
}

TEST_F(GridToolsTest, TheFileDialogSpeaksItalian)
{
    QStringList labels;
    QTimer::singleShot(0, &window, [&] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        for (const char* name : {"lookInLabel", "fileNameLabel", "fileTypeLabel"}) {
            labels.append(dialog->findChild<QLabel*>(QLatin1String(name))->text());
        }
        for (const auto* button : dialog->findChildren<QPushButton*>()) {
            labels.append(button->text());
        }
        dialog->reject();
    });
    tools.exportRows(GridTools::Rows::Shown);
    for (const char* text : {"Cerca in:", "&Nome del file:", "Tipo di file:", "&Salva", "Annulla"}) {
        EXPECT_TRUE(labels.contains(QString::fromUtf8(text))) << labels.join(u'|').toStdString();
    }
}

TEST_F(GridToolsTest, TheMenuTellsHowManyRowsEachChoiceHas)
{
    grid.setTextFilter(u"nte 10"_s);
    counts();
    QMenu* menu = part<QToolButton>("cmdEsporta").menu();
    Q_EMIT menu->aboutToShow();
    ASSERT_EQ(menu->actions().size(), 2);
    EXPECT_EQ(menu->actions().at(0)->text(), u"Righe mostrate (11)…"_s);
    EXPECT_EQ(menu->actions().at(1)->text(), u"Righe selezionate (0)…"_s);
    EXPECT_FALSE(menu->actions().at(1)->isEnabled());
}

TEST_F(GridToolsTest, CtrlEExportsWhatIsShown)
{
    counts(); // what can be done is known with them
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"tasti.csv"_s);
    answerFileDialog(path);
    QTest::keyClick(&rows(), Qt::Key_E, Qt::ControlModifier);
    EXPECT_EQ(contentOf(path).count("\r\n"), 201);
}

TEST_F(GridToolsTest, TheMenuOfTheRowsFindsAndExportsToo)
{
    grid.setChecked(1, true);
    counts();
    QStringList offered;
    QTimer::singleShot(0, &window, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        for (const QAction* action : menu->actions()) {
            if (action->isEnabled()) {
                offered.append(action->text());
            }
        }
        menu->close();
    });
    QContextMenuEvent byKey(QContextMenuEvent::Keyboard, QPoint(10, 10), rows().mapToGlobal(QPoint(10, 10)));
    QApplication::sendEvent(static_cast<ReportGridView&>(rows()).viewport(), &byKey);
    QCoreApplication::processEvents();
    EXPECT_TRUE(offered.contains(u"Trova e filtra…\tCtrl+F"_s)) << offered.join(u'|').toStdString();
    EXPECT_TRUE(offered.contains(u"Esporta le righe mostrate…"_s));
    EXPECT_TRUE(offered.contains(u"Esporta le righe selezionate…"_s));
}

TEST_F(GridToolsTest, InANarrowWindowEverythingIsSeenWhole)
{
    grid.setAllChecked(true);
    openBar();
    QTest::keyClicks(&text(), u"cliente"_s);
    part<QCheckBox>("chkSoloCorrispondenti").click();
    counts();
    for (const int width : {900, 600, 420, 320}) {
        window.resize(width, 500);
        QCoreApplication::processEvents();
        ASSERT_EQ(window.width(), width);
        const auto* bar = grid.findChild<GridFindBar*>();
        for (const QWidget* around : std::initializer_list<const QWidget*>{bar, &tools}) {
            for (const QWidget* part :
                 around->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
                EXPECT_TRUE(around->rect().contains(part->geometry()))
                    << width << ' ' << part->objectName().toStdString();
                const QSize needed = part->hasHeightForWidth() ? QSize(0, part->heightForWidth(part->width()))
                                                               : part->sizeHint();
                EXPECT_EQ(part->size().expandedTo(needed), part->size())
                    << width << ' ' << part->objectName().toStdString();
            }
        }
    }
}

TEST_F(GridToolsTest, AnExportThatFailsIsTold)
{
    QStringList told;
    setAnswerer([&told](const OperatorMessage& message) {
        told.append(message.text);
        return Answer::Ok;
    });
    const QTemporaryDir folder;
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"liste"_s));
    answerFileDialog(folder.filePath(u"liste/clienti.csv"_s),
                     [&folder] { QDir(folder.path()).rmdir(u"liste"_s); });
    tools.exportRows(GridTools::Rows::Shown);
    setAnswerer({});
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told.first().startsWith(u"Esportazione non riuscita: "_s)) << told.first().toStdString();
}
