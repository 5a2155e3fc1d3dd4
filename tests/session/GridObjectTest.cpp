#include "session/GridObject.h"

#include "automation/ErrorInfo.h"
#include "controls/report/ReportGrid.h"
#include "controls/report/ReportGridProbe.h"
#include "tests/support/ComponentTest.h"
#include "tests/support/LateBound.h"

#include <QLocale>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class GridObjectTest : public ComponentTest
{
protected:
    void addColumns(int count)
    {
        for (int i = 0; i < count; ++i) {
            Bstr field(u"campo");
            Bstr caption(u"Titolo");
            ASSERT_EQ(object->AddColumn(field.get(), caption.get(), 0, VARIANT_TRUE, VARIANT_TRUE), S_OK);
        }
    }

    ComPtr<IRecordset> openRows(Rows rows)
    {
        host.answer("righe", std::move(rows));
        ComPtr<IConnection> database;
        EXPECT_EQ(host.connection()->get_Connection(database.put()), S_OK);
        ComPtr<IRecordset> opened;
        Bstr sql(u"righe");
        EXPECT_EQ(database->OpenRecordset(sql.get(), CursorStatic, LockReadOnly, opened.put()), S_OK);
        return opened;
    }

    /// The description that the last failed call left.
    static std::string lastError() { return utf8FromUtf16(takeErrorDetails(E_FAIL).description); }

    std::unique_ptr<ReportGrid> grid = std::make_unique<ReportGrid>();
    ComPtr<GridObject> object = makeCom<GridObject>(*grid);
};

TEST_F(GridObjectTest, AHostFillsAGridRowByRow)
{
    Bstr id(u"id");
    Bstr idCaption(u"Id");
    Bstr text_(u"Testo");
    Bstr textCaption(u"L'à 😀");
    EXPECT_EQ(object->DeleteRecords(), S_OK);
    EXPECT_EQ(object->DeleteColumns(), S_OK);
    EXPECT_EQ(object->AddColumn(id.get(), idCaption.get(), 50, VARIANT_FALSE, VARIANT_FALSE), S_OK);
    EXPECT_EQ(object->AddColumn(text_.get(), textCaption.get(), 0, VARIANT_TRUE, VARIANT_TRUE), S_OK);
    LONG record = -1;
    EXPECT_EQ(object->AddRecord(&record), S_OK);
    EXPECT_EQ(record, 0);
    EXPECT_EQ(object->SetItem(0, 0, number(7)), S_OK);
    EXPECT_EQ(object->SetItem(0, 1, text("Roma")), S_OK);
    EXPECT_EQ(object->AddRecord(&record), S_OK);
    EXPECT_EQ(record, 1);
    EXPECT_EQ(object->Populate(), S_OK);
    LONG count = 0;
    EXPECT_EQ(object->get_RecordCount(&count), S_OK);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(object->get_ColumnCount(&count), S_OK);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(probeOf(grid.get())->visibleRowCount(), 2);
    EXPECT_EQ(grid->cellText(0, 0), u"7"_s);
    EXPECT_EQ(grid->cellText(0, 1), u"Roma"_s);
    EXPECT_EQ(grid->cellText(1, 1), QString());
    EXPECT_EQ(grid->columnField(1), u"Testo"_s);
    EXPECT_EQ(grid->columnCaption(1), u"L'à 😀"_s);
    EXPECT_TRUE(probeOf(grid.get())->headerRect(0).isEmpty()) << "hidden";
}

TEST_F(GridObjectTest, WhatIsAddedShowsAfterPopulate)
{
    addColumns(1);
    LONG record = -1;
    object->AddRecord(&record);
    EXPECT_EQ(probeOf(grid.get())->visibleRowCount(), 0);
    object->Populate();
    EXPECT_EQ(probeOf(grid.get())->visibleRowCount(), 1);
}

TEST_F(GridObjectTest, EveryTypeOfAutomationIsTaken)
{
    addColumns(1);
    LONG record = -1;
    Variant small;
    small.vt = VT_I2;
    small.iVal = -3;
    Variant decimal = real(1.5);
    ASSERT_EQ(decimal.changeType(VT_DECIMAL), S_OK);
    Variant money = real(2.25);
    ASSERT_EQ(money.changeType(VT_CY), S_OK);
    Variant unsignedByte;
    unsignedByte.vt = VT_UI1;
    unsignedByte.bVal = 200;
    LONG long_ = 12;
    const std::vector<Variant> values{
        text("L'à 😀"),       number(-7),    small,         Variant::fromInt64(5000000000),
        real(2.5),           boolean(true), date(45000.0), null(),
        Variant(),           decimal,       money,         unsignedByte,
        Variant::ref(&long_)};
    for (const Variant& value : values) {
        object->AddRecord(&record);
        EXPECT_EQ(object->SetItem(record, 0, value), S_OK) << value.vt;
    }
    object->Populate();
    const ColumnStore& store = grid->store();
    EXPECT_EQ(store.text(0, 0), u"L'à 😀"_s);
    EXPECT_EQ(store.integer(1, 0), -7);
    EXPECT_EQ(store.integer(2, 0), -3);
    EXPECT_EQ(store.integer(3, 0), 5000000000);
    EXPECT_EQ(store.real(4, 0), 2.5);
    EXPECT_EQ(store.kind(5, 0), CellKind::Boolean);
    EXPECT_TRUE(store.boolean(5, 0));
    EXPECT_EQ(store.kind(6, 0), CellKind::Date);
    EXPECT_EQ(store.real(6, 0), 45000.0);
    EXPECT_TRUE(store.isNull(7, 0));
    EXPECT_TRUE(store.isNull(8, 0));
    EXPECT_EQ(store.real(9, 0), 1.5);
    EXPECT_EQ(store.real(10, 0), 2.25);
    EXPECT_EQ(store.text(11, 0), u"200"_s);
    EXPECT_EQ(store.integer(12, 0), 12);
}

TEST_F(GridObjectTest, AValueThatCannotBeShownIsATypeMismatch)
{
    addColumns(1);
    LONG record = -1;
    object->AddRecord(&record);
    EXPECT_TRUE(FAILED(object->SetItem(0, 0, Variant::fromUnknown(host.connection().get()))));
    EXPECT_EQ(grid->cellText(0, 0), QString());
}

TEST_F(GridObjectTest, RecordsAndColumnsThatAreNotThereAreABadIndex)
{
    addColumns(1);
    LONG record = -1;
    object->AddRecord(&record);
    for (const auto& [row, column] :
         {std::pair<LONG, LONG>{-1, 0}, {1, 0}, {0, -1}, {0, 1}, {2147483647, 0}}) {
        EXPECT_EQ(object->SetItem(row, column, number(1)), DISP_E_BADINDEX) << row << "," << column;
        EXPECT_EQ(lastError(), "There is no such record or column");
    }
}

TEST_F(GridObjectTest, AWidthBelowZeroIsRefused)
{
    Bstr name(u"x");
    EXPECT_EQ(object->AddColumn(name.get(), name.get(), -1, VARIANT_TRUE, VARIANT_TRUE), E_INVALIDARG);
    EXPECT_EQ(grid->columnCount(), 0);
    EXPECT_EQ(object->AddColumn(nullptr, nullptr, 0, VARIANT_TRUE, VARIANT_TRUE), S_OK)
        << "a null text is empty";
}

TEST_F(GridObjectTest, NullPointersAreRefused)
{
    EXPECT_EQ(object->AddRecord(nullptr), E_POINTER);
    EXPECT_EQ(object->get_RecordCount(nullptr), E_POINTER);
    EXPECT_EQ(object->get_ColumnCount(nullptr), E_POINTER);
    EXPECT_EQ(object->FillFromRecordset(nullptr), E_POINTER);
}

class GridFillTest : public GridObjectTest, public ::testing::WithParamInterface<bool>
{
protected:
    GridFillTest() { host.giveRowReader(GetParam()); }
};

TEST_P(GridFillTest, ARowSetFillsTheGridFieldsInOrder)
{
    addColumns(2);
    const auto rows = openRows({{"a", "b"}, {{number(1), text("L'à 😀")}, {number(2), null()}}});
    EXPECT_EQ(object->FillFromRecordset(rows.get()), S_OK);
    EXPECT_EQ(object->Populate(), S_OK);
    ASSERT_EQ(grid->recordCount(), 2U);
    EXPECT_EQ(probeOf(grid.get())->rowTexts(0), (QStringList{u"1"_s, u"L'à 😀"_s}));
    EXPECT_EQ(probeOf(grid.get())->rowTexts(1), (QStringList{u"2"_s, QString()}));
}

TEST_P(GridFillTest, TheRowSetStaysTheHosts)
{
    addColumns(1);
    const auto rows = openRows({{"a"}, {{number(1)}}});
    EXPECT_EQ(object->FillFromRecordset(rows.get()), S_OK);
    EXPECT_EQ(host.openRowSets(), 1) << "who opened it closes it";
    VARIANT_BOOL eof = VARIANT_FALSE;
    EXPECT_EQ(rows->get_Eof(&eof), S_OK);
    EXPECT_EQ(eof, VARIANT_TRUE);
}

TEST_P(GridFillTest, FieldsPastTheLastColumnAreLeftOutAndMissingOnesAreEmpty)
{
    addColumns(2);
    EXPECT_EQ(
        object->FillFromRecordset(openRows({{"a", "b", "c"}, {{text("1"), text("2"), text("3")}}}).get()),
        S_OK);
    EXPECT_EQ(object->FillFromRecordset(openRows({{"a"}, {{text("4")}}}).get()), S_OK);
    object->Populate();
    EXPECT_EQ(probeOf(grid.get())->rowTexts(0), (QStringList{u"1"_s, u"2"_s}));
    EXPECT_EQ(probeOf(grid.get())->rowTexts(1), (QStringList{u"4"_s, QString()}));
}

TEST_P(GridFillTest, AFailingRowSetGivesItsOwnErrorAndKeepsTheRowsSoFar)
{
    addColumns(1);
    const auto rows = openRows({{"a"}, {{number(1)}, {number(2)}}});
    host.failAtRow(2, static_cast<HRESULT>(0x80040E14), u"connection lost");
    EXPECT_EQ(object->FillFromRecordset(rows.get()), static_cast<HRESULT>(0x80040E14));
    EXPECT_EQ(lastError(), "connection lost");
    EXPECT_EQ(grid->recordCount(), 1U);
}

INSTANTIATE_TEST_SUITE_P(RowReader, GridFillTest, ::testing::Bool(),
                         [](const auto& given) { return given.param ? "with" : "without"; });

TEST_F(GridObjectTest, AfterTheGridHasGoneEveryMemberFailsAndNothingWorse)
{
    const auto rows = openRows({{"a"}, {{number(1)}}});
    grid.reset();
    LONG value = 5;
    Bstr name(u"x");
    EXPECT_EQ(object->DeleteRecords(), E_FAIL);
    EXPECT_EQ(lastError(), "The grid is no longer there");
    EXPECT_EQ(object->DeleteColumns(), E_FAIL);
    EXPECT_EQ(object->AddColumn(name.get(), name.get(), 0, VARIANT_TRUE, VARIANT_TRUE), E_FAIL);
    EXPECT_EQ(object->AddRecord(&value), E_FAIL);
    EXPECT_EQ(value, -1);
    EXPECT_EQ(object->SetItem(0, 0, number(1)), E_FAIL);
    EXPECT_EQ(object->FillFromRecordset(rows.get()), E_FAIL);
    EXPECT_EQ(object->Populate(), E_FAIL);
    EXPECT_EQ(object->get_RecordCount(&value), E_FAIL);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(object->get_ColumnCount(&value), E_FAIL);
}

TEST_F(GridObjectTest, LateBoundItAnswersToItsNames)
{
    IDispatch* late = object.get();
    EXPECT_EQ(idOf(late, "deleterecords"), 1);
    EXPECT_EQ(idOf(late, "ColumnCount"), 9);
    const Variant field = text("campo");
    const Variant caption = text("Titolo");
    const Variant width = number(10);
    const Variant yes = boolean(true);
    EXPECT_EQ(call(late, "AddColumn", {field, caption, width, yes, yes}).result, S_OK);
    EXPECT_EQ(show(call(late, "AddRecord").value), "0");
    const Variant zero = number(0);
    const Variant five = number(5);
    EXPECT_EQ(call(late, "SetItem", {zero, zero, caption}).result, S_OK);
    EXPECT_EQ(call(late, "SetItem", {five, zero, caption}).result, DISP_E_EXCEPTION);
    EXPECT_EQ(call(late, "Populate").result, S_OK);
    EXPECT_EQ(show(invoke(late, 8, DISPATCH_PROPERTYGET, {}).value), "1");
    EXPECT_EQ(grid->cellText(0, 0), u"Titolo"_s);
    const auto rows = openRows({{"a"}, {{text("riga")}}});
    const Variant recordset = Variant::fromDispatch(rows.get());
    EXPECT_EQ(call(late, "FillFromRecordset", {recordset}).result, S_OK);
    EXPECT_EQ(grid->cellText(1, 0), u"riga"_s);
    EXPECT_EQ(call(late, "FillFromRecordset", {five}).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(call(late, "NonEsiste").result, DISP_E_MEMBERNOTFOUND);
}

} // namespace
} // namespace zul
