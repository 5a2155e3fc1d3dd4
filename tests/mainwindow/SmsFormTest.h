// The fixture of tests on the main window: the real window, worked with real keys and clicks.
#pragma once

#include "controls/fields/DateField.h"
#include "controls/fields/SelectorField.h"
#include "controls/look/Background.h"
#include "controls/notices/OutcomeList.h"
#include "controls/report/ReportGrid.h"
#include "controls/report/ReportGridProbe.h"
#include "controls/touch/Keypad.h"
#include "controls/touch/OnScreenKeyboard.h"
#include "mainwindow/frmSMS.h"
#include "session/ComponentObject.h"
#include "session/FormHelpers.h"
#include "tests/support/ComponentTest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>

namespace zul::test {

/// Fills a lookup grid as a host does.
class LookupFiller final : public ComponentObject
{
public:
    std::vector<std::pair<QString, QString>> rows{{QStringLiteral("7"), QStringLiteral("L'Aquila 😀")},
                                                  {QStringLiteral("8"), QStringLiteral("Roma")}};
    std::vector<GridRequest> requests;

    qint32 idUtente() const override { return 42; }
    void EventoGrd_CaricaGrd(ReportGrid& grid, const GridRequest& request) override
    {
        requests.push_back(request);
        grid.addColumn(
            {.field = QStringLiteral("id"), .caption = request.captions.value(0), .visible = false});
        grid.addColumn({.field = QStringLiteral("testo"), .caption = request.captions.value(1)});
        for (const auto& [id, text] : rows) {
            append(grid, 0, id);
            append(grid, 1, text);
            grid.store().endRow();
        }
        grid.populate();
    }

private:
    static void append(ReportGrid& grid, int column, const QString& value)
    {
        grid.store().appendText16(column, reinterpret_cast<const char16_t*>(value.utf16()),
                                  static_cast<std::size_t>(value.size()));
    }
};

class SmsFormTest : public ComponentTest
{
protected:
    SmsFormTest()
    {
        QFile::remove(layoutFile());
        host.offerAll();
    }
    ~SmsFormTest() override { QFile::remove(layoutFile()); }

    static QString layoutFile() { return inComponentFolder(QStringLiteral("Zul_MessageBuilderGrd.ini")); }

    void open(bool sms = true, bool mail = true, bool push = true)
    {
        form = std::make_unique<frmSMS>();
        form->setRefToClass(&filler);
        form->InitTipoMessaggio(sms, mail, push);
        form->InitRicercaRicorrenze(true);
        form->InitRicercaClassificazioni(true);
        form->setTouchMode(false);
        form->resize(1100, 800);
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

    QLineEdit* edit(const char* name) { return find<QLineEdit>(QLatin1String(name)); }
    QCheckBox* box(const char* name) { return find<QCheckBox>(QLatin1String(name)); }
    QRadioButton* radio(const char* name) { return find<QRadioButton>(QLatin1String(name)); }
    QPushButton* button(const char* name) { return find<QPushButton>(QLatin1String(name)); }
    DateField* dateField(const char* name) { return find<DateField>(QLatin1String(name)); }
    SelectorField* selector(const char* name) { return find<SelectorField>(QLatin1String(name)); }
    QTabWidget* tabs(const char* name) { return find<QTabWidget>(QLatin1String(name)); }
    QPlainTextEdit* freeText(int index)
    {
        return find<QPlainTextEdit>(QStringLiteral("txtTestoMessaggio(%1)").arg(index));
    }
    ReportGrid* grid() { return find<ReportGrid>(QStringLiteral("grdClienti")); }

    /// A click on a button; check boxes and radio buttons are clicked on their mark.
    void click(const char* name)
    {
        auto* clicked = find<QAbstractButton>(QLatin1String(name));
        EXPECT_TRUE(clicked->isVisible()) << name;
        const bool marked = qobject_cast<QPushButton*>(clicked) == nullptr;
        QTest::mouseClick(clicked, Qt::LeftButton, {}, marked ? QPoint(8, clicked->height() / 2) : QPoint());
    }

    void page(const char* name, int index)
    {
        QTabBar* bar = tabs(name)->tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(index).center());
        ASSERT_EQ(tabs(name)->currentIndex(), index);
    }

    void choose(const char* name)
    {
        QTest::mouseClick(selector(name)->findChild<QToolButton*>(QStringLiteral("chooseButton")),
                          Qt::LeftButton);
    }
    void clear(const char* name)
    {
        QTest::mouseClick(selector(name)->findChild<QToolButton*>(QStringLiteral("clearButton")),
                          Qt::LeftButton);
    }

    /// Answers the next lookup dialog: the row is chosen and confirmed.
    void lookupOk(int row = 0)
    {
        onWindow(QStringLiteral("frmRicercaGenerica"), [row](QWidget* dialog) {
            dialog->findChild<ReportGrid*>(QStringLiteral("grdRicerca"))
                ->setCurrentRecord(static_cast<uint32_t>(row));
            dialog->findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
        });
    }
    void lookupEsc()
    {
        onWindow(QStringLiteral("frmRicercaGenerica"), [](QWidget* dialog) {
            dialog->findChild<QPushButton*>(QStringLiteral("cmdAnnulla"))->click();
        });
    }
    void lookupClosed()
    {
        onWindow(QStringLiteral("frmRicercaGenerica"), [](QWidget* dialog) { dialog->close(); });
    }

    /// A row of the result grid's query.
    static std::vector<Variant> customer(int id, const char* name, const char* mobile, const char* email)
    {
        return {number(id), text(""), text(name),   text("Roma"), text("RM"), number(46), text("M"),
                null(),     null(),   text(mobile), text(email),  null(),     null()};
    }

    void scriptCustomers(std::vector<std::vector<Variant>> rows)
    {
        host.answer(
            "FROM tabSpoolReportStat2 INNER JOIN tabClienti",
            {{"IdCLiente", "Selezione", "Cliente", "Paese", "Provincia", "Eta", "Sesso", "DataNascita",
              "Telefono", "Telefono2", "email", "MailCommerciale", "MailAmministrazione"},
             std::move(rows)});
    }

    /// Searches without a criterion and forgets how.
    void search()
    {
        click("cmdElabora");
        host.forgetOperations();
    }

    void clickRow(int row, Qt::KeyboardModifiers modifiers = {})
    {
        // Beside the check box, which is a column of its own.
        const QRect rect = probeOf(grid())->rowRect(row);
        const QRect check = probeOf(grid())->checkRect(row);
        QTest::mouseClick(probeOf(grid())->bodyViewport(), Qt::LeftButton, modifiers,
                          QPoint(check.right() + 80, rect.center().y()));
    }
    void tick(int row)
    {
        QTest::mouseClick(probeOf(grid())->bodyViewport(), Qt::LeftButton, {},
                          probeOf(grid())->checkRect(row).center());
    }
    QString marks()
    {
        QString result;
        for (uint32_t record = 0; record < grid()->recordCount(); ++record) {
            result += grid()->isChecked(record) ? u'x' : u'-';
        }
        return result;
    }

    QStringList lines()
    {
        auto* list = find<OutcomeList>(QStringLiteral("List_INFO"));
        QStringList all;
        for (int i = 0; i < list->count(); ++i) {
            all.append(list->line(i));
        }
        return all;
    }

    LookupFiller filler;
    std::unique_ptr<frmSMS> form;
};

} // namespace zul::test
