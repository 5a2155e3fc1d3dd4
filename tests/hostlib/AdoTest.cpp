#include "hostlib/Ado.h"

#include "automation/ComObject.h"
#include "hostlib/Error.h"
#include "tests/support/ComponentTest.h"
#include "tests/support/fake/EarlyBound.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <vector>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using ado::Cursor;
using ado::Lock;
using ado::Value;
using Lines = std::vector<std::string>;

/// The number of the error that an action throws, 0 for none; its description goes into the text.
class AdoTest : public ComponentTest
{
protected:
    ado::Connection database() { return connection().connection(); }
    ado::Recordset open(const std::string& sql = "select")
    {
        return database().open(qs(sql), Cursor::Static, Lock::ReadOnly);
    }
};

/// Rows of a host that does not keep the contract.
class LyingRows final : public ComObject<EarlyBound<IRecordset>, IRowReader>
{
public:
    LONG count = 1;
    const ZulCell* cells = nullptr;

    HRESULT STDMETHODCALLTYPE get_Eof(VARIANT_BOOL* value) override
    {
        *value = VARIANT_FALSE;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_FieldCount(LONG* value) override
    {
        *value = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE FieldName(LONG, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Value(VARIANT, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_Value(VARIANT, VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE MoveNext() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE AddNew() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Update() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Close() override { return S_OK; }
    // Says that all went well, whatever the sink says.
    HRESULT STDMETHODCALLTYPE ReadRows(IRowSink* sink) override
    {
        sink->Row(count, cells);
        return S_OK;
    }
};

TEST_F(AdoTest, StatementsGoThroughAsTheyAre)
{
    database().execute(u"update t set a='L''Aquila 100% \"à\" € 😀'"_s);
    EXPECT_EQ(host.operations(), Lines{"execute update t set a='L''Aquila 100% \"à\" € 😀'"});
    EXPECT_EQ(database().connectionString(), u"Provider=Fake;Data Source=memory"_s);
}

TEST_F(AdoTest, ARowThatTheContractDoesNotKnowIsAnError)
{
    const auto* const letters = reinterpret_cast<const unsigned char*>("ab");
    const struct
    {
        const char* what;
        ZulCell cell;
        long error;
    } cases[] = {
        {"NULL", {CellNull, 0, 0, 0, nullptr}, 0},
        {"a text", {CellText, 2, 0, 0, letters}, 0},
        {"an empty text", {CellText, 0, 0, 0, nullptr}, 0},
        {"a length below zero", {CellText, -2, 0, 0, letters}, 13},
        {"a text that is nowhere", {CellText, 2, 0, 0, nullptr}, 13},
        {"a kind beyond the last", {CellBoolean + 1, 0, 1, 0, nullptr}, 13},
        {"a kind before the first", {-1, 0, 1, 0, nullptr}, 13},
    };
    const auto lies = makeCom<LyingRows>();
    ado::Recordset rows{ComPtr<IRecordset>(lies.get())};
    const auto read = [&] { rows.readRows([](long, const ZulCell*) {}); };
    for (const auto& c : cases) {
        lies->cells = &c.cell;
        EXPECT_EQ(errorOf(read), c.error) << c.what;
    }
    lies->cells = nullptr;
    EXPECT_EQ(errorOf(read), 91) << "a row without cells";
    for (const LONG count : {LONG{-1}, LONG{32'768}, std::numeric_limits<LONG>::max()}) {
        lies->count = count;
        EXPECT_EQ(errorOf(read), 9) << count;
    }
}

TEST_F(AdoTest, CursorsAndLocksHaveTheirNames)
{
    database().open(u"a"_s, Cursor::ForwardOnly, Lock::ReadOnly);
    database().open(u"b"_s, Cursor::Keyset, Lock::Optimistic);
    database().open(u"c"_s, Cursor::Dynamic, Lock::Pessimistic);
    database().open(u"d"_s, Cursor::Static, Lock::ReadOnly);
    EXPECT_EQ(host.operations(), (Lines{"open a forward-only read-only", "open b keyset optimistic",
                                        "open c dynamic pessimistic", "open d static read-only"}));
    EXPECT_EQ(host.openRowSets(), 0) << "a row set closes itself at the end of its life";
}

TEST_F(AdoTest, ErrorsKeepTheProvidersNumberAndText)
{
    constexpr auto code = static_cast<HRESULT>(0x80040E14);
    const auto expectError = [&](const char* kind, auto&& action) {
        host.failNth(kind, 1, code, u"L'oggetto 'à' 100% 😀 non è valido.");
        QString description;
        EXPECT_EQ(errorOf(action, &description), static_cast<long>(code)) << kind;
        EXPECT_EQ(description, u"L'oggetto 'à' 100% 😀 non è valido."_s) << kind;
    };
    expectError("execute", [&] { database().execute(u"x"_s); });
    expectError("open", [&] { open(); });
    expectError("connection", [&] { database(); });
    expectError("connectionstring", [&] { database().connectionString(); });
    expectError("begin", [&] { database().begin(); });
    expectError("commit", [&] { database().commit(); });
    expectError("rollback", [&] { database().rollback(); });
    expectError("addnew", [&] { open().addNew(); });
    expectError("set", [&] { open().set(u"a"_s, qint32{1}); });
    expectError("update", [&] { open().update(); });
    expectError("close", [&] { open().close(); });
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(AdoTest, AFailureWithoutAnErrorObjectStillSaysSomething)
{
    QString description;
    EXPECT_EQ(errorOf([&] { open().fieldName(3); }, &description), static_cast<long>(DISP_E_BADINDEX));
    EXPECT_EQ(description, u"no such field"_s);
    host.failNth("execute", 1, E_ACCESSDENIED, u"");
    errorOf([&] { database().execute(u"x"_s); }, &description);
    EXPECT_FALSE(description.isEmpty());
}

TEST_F(AdoTest, ANumberOfFieldsThatNoRowSetHasIsAnError)
{
    for (const long count : {-1L, -0x7FFFFFFFL - 1, 0x7FFFFFFFL, 32768L}) {
        host.fieldCounts() = {count};
        EXPECT_EQ(errorOf([&] { open().fieldCount(); }), 9) << count;
    }
    host.fieldCounts() = {32767, 0};
    EXPECT_EQ(open().fieldCount(), 32767);
    EXPECT_EQ(open().fieldCount(), 0);
}

TEST_F(AdoTest, FieldsAreReadByNameInAnyCase)
{
    Variant small;
    small.vt = VT_I2;
    small.iVal = -7;
    host.answer("select", {{"Long", "Small", "Big", "Real", "Flag", "Day", "Text", "Null"},
                           {{number(5), small, Variant::fromInt64(5000000000), real(2.5), boolean(true),
                             date(45000.25), text("L'à 😀"), null()}}});
    ado::Recordset row = open();
    ASSERT_FALSE(row.eof());
    EXPECT_EQ(row.fieldCount(), 8);
    EXPECT_EQ(row.fieldName(6), u"Text"_s);
    EXPECT_EQ(row.value(u"LONG"_s), Value(qint32{5}));
    EXPECT_EQ(row.value(u"small"_s), Value(qint16{-7}));
    EXPECT_EQ(row.value(u"Big"_s), Value(qint64{5000000000}));
    EXPECT_EQ(row.value(u"Real"_s), Value(2.5));
    EXPECT_EQ(row.value(u"Flag"_s), Value(true));
    EXPECT_EQ(row.value(u"Day"_s), Value(QDateTime(QDate(2023, 3, 15), QTime(6, 0), Qt::UTC)));
    EXPECT_EQ(row.value(u"Text"_s), Value(u"L'à 😀"_s));
    EXPECT_TRUE(row.isNull(u"Null"_s));
    EXPECT_EQ(row.text(u"Null"_s), u""_s);
    EXPECT_FALSE(row.text(u"Null"_s).isNull());
    EXPECT_EQ(row.text(u"Null"_s, u"altro"_s), u"altro"_s);
    EXPECT_EQ(row.integer(u"Null"_s, 9), 9);
    EXPECT_EQ(row.integer(u"Small"_s, 9), -7);
    EXPECT_NE(errorOf([&] { row.value(u"missing"_s); }), 0);
    row.moveNext();
    EXPECT_TRUE(row.eof());
    EXPECT_NE(errorOf([&] { row.value(u"Long"_s); }), 0);
}

TEST_F(AdoTest, ADecimalComesAsADouble)
{
    Variant decimal = text("12,50");
    Variant value(real(12.5));
    ASSERT_EQ(value.changeType(VT_DECIMAL), S_OK);
    host.answer("select", {{"d"}, {{value}}});
    EXPECT_EQ(open().value(u"d"_s), Value(12.5));
}

TEST_F(AdoTest, ValuesAreWrittenWithTheirTypes)
{
    ado::Recordset row = open();
    row.addNew();
    row.set(u"a"_s, std::monostate{});
    row.set(u"b"_s, true);
    row.set(u"c"_s, qint16{-1});
    row.set(u"d"_s, qint32{-1});
    row.set(u"e"_s, qint64{1});
    row.set(u"f"_s, 1.5);
    row.set(u"g"_s, ado::dayValue(QDate(2025, 3, 7)));
    row.set(u"h"_s, QDateTime(QDate(2025, 3, 7), QTime(1, 2, 3), Qt::UTC));
    row.set(u"i"_s, u"L'à 😀"_s);
    row.set(u"j"_s, QString());
    row.update();
    EXPECT_EQ(host.operations(), (Lines{"open select static read-only", "addnew", "set a=NULL", "set b=true",
                                        "set c=-1s", "set d=-1", "set e=1l", "set f=1.5", "set g=2025-03-07",
                                        "set h=<moment>", "set i='L'à 😀'", "set j=''", "update"}));
}

TEST_F(AdoTest, AClosedRowSetSaysSoAndNothingWorse)
{
    host.answer("select", {{"a"}, {{number(1)}}});
    const auto expectClosed = [](ado::Recordset& row, const char* which) {
        const std::vector<std::function<void()>> members{
            [&] { row.eof(); },
            [&] { row.moveNext(); },
            [&] { row.fieldCount(); },
            [&] { row.fieldName(0); },
            [&] { row.value(u"a"_s); },
            [&] { row.text(u"a"_s); },
            [&] { row.integer(u"a"_s, 0); },
            [&] { row.isNull(u"a"_s); },
            [&] { row.addNew(); },
            [&] { row.set(u"a"_s, qint32{1}); },
            [&] { row.update(); },
            [&] { row.close(); },
            [&] { row.readRows([](long, const ZulCell*) { FAIL(); }); },
        };
        for (std::size_t i = 0; i < members.size(); ++i) {
            QString description;
            EXPECT_EQ(errorOf(members[i], &description), 3704) << which << " member " << i;
            EXPECT_EQ(description, u"Operation is not allowed when the object is closed."_s);
        }
    };
    ado::Recordset row = open();
    row.close();
    expectClosed(row, "closed");
    EXPECT_EQ(row.object(), nullptr);

    ado::Recordset first = open();
    const ado::Recordset second = std::move(first);
    expectClosed(first, "moved away"); // NOLINT(bugprone-use-after-move): that is what is asked here
    EXPECT_FALSE(second.eof());
    EXPECT_EQ(host.operations(), (Lines{"open select static read-only", "open select static read-only"}));
    EXPECT_EQ(host.openRowSets(), 1);
}

TEST_F(AdoTest, ARowSetThatCannotBeClosedIsStillThere)
{
    host.answer("select", {{"a"}, {{number(1)}}});
    host.failNth("close", 1, E_FAIL, u"no");
    ado::Recordset row = open();
    EXPECT_NE(errorOf([&] { row.close(); }), 3704);
    EXPECT_FALSE(row.eof());
    row.close();
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(AdoTest, KeysAreCountedOnUntilTheyAreUsedUp)
{
    EXPECT_EQ(ado::keyAfter(0), 1);
    EXPECT_EQ(ado::keyAfter(-3), -2);
    EXPECT_EQ(ado::keyAfter(2147483646), 2147483647);
    EXPECT_EQ(errorOf([] { ado::keyAfter(2147483647); }), 6);
}

TEST_F(AdoTest, TrueIsOneInATextAndMinusOneAsANumber)
{
    Variant truth = boolean(true);
    host.answer("select", {{"yes", "no"}, {{truth, boolean(false)}}});
    ado::Recordset row = open();
    EXPECT_EQ(row.text(u"yes"_s), u"1"_s);
    EXPECT_EQ(row.text(u"no"_s), u"0"_s);
    EXPECT_EQ(row.integer(u"yes"_s, 0), -1);
    EXPECT_EQ(row.integer(u"no"_s, 9), 0);
}

TEST_F(AdoTest, TextsOfValues)
{
    EXPECT_TRUE(ado::toText(Value()).isNull());
    EXPECT_EQ(ado::toText(true), u"1"_s);
    EXPECT_EQ(ado::toText(qint16{-3}), u"-3"_s);
    EXPECT_EQ(ado::toText(qint32{-3}), u"-3"_s);
    EXPECT_EQ(ado::toText(qint64{5000000000}), u"5000000000"_s);
    EXPECT_EQ(ado::toText(2.5), u"2.5"_s);
    EXPECT_EQ(ado::toText(3331234567.0), u"3331234567"_s);
    EXPECT_EQ(ado::toText(QDateTime(QDate(2025, 3, 7), QTime(1, 2, 3), Qt::UTC)), u"2025-03-07 01:02:03"_s);
}

TEST_F(AdoTest, NumbersOfValues)
{
    EXPECT_EQ(ado::toInteger(qint16{-3}), -3);
    EXPECT_EQ(ado::toInteger(true), -1);
    EXPECT_EQ(ado::toInteger(2.5), 2) << "halves go to the even number";
    EXPECT_EQ(ado::toInteger(3.5), 4);
    EXPECT_EQ(ado::toInteger(u" 12 "_s), 12);
    EXPECT_EQ(ado::toInteger(qint64{2147483647}), 2147483647);
    EXPECT_EQ(ado::toInteger(-2147483648.0), std::numeric_limits<qint32>::min());
    EXPECT_EQ(errorOf([] { ado::toInteger(Value()); }), 13);
    EXPECT_EQ(errorOf([] { ado::toInteger(u""_s); }), 13);
    EXPECT_EQ(errorOf([] { ado::toInteger(u"abc"_s); }), 13);
    EXPECT_EQ(errorOf([] { ado::toInteger(QDateTime::currentDateTime()); }), 13);
    EXPECT_EQ(errorOf([] { ado::toInteger(qint64{2147483648}); }), 6);
    EXPECT_EQ(errorOf([] { ado::toInteger(1e300); }), 6);
    EXPECT_EQ(errorOf([] { ado::toInteger(std::numeric_limits<double>::quiet_NaN()); }), 6);
}

// -------------------------------------------------------------------------------------- reading all rows

class AdoRowsTest : public AdoTest, public ::testing::WithParamInterface<bool>
{
protected:
    AdoRowsTest() { host.giveRowReader(GetParam()); }

    static QString show(const ZulCell& cell)
    {
        switch (cell.Kind) {
        case CellNull:
            return u"NULL"_s;
        case CellInteger:
            return QString::number(cell.Integer);
        case CellReal:
            return u"r"_s + QString::number(cell.Real);
        case CellText:
            return u'"' +
                   QString::fromUtf8(reinterpret_cast<const char*>(cell.Text),
                                     static_cast<qsizetype>(cell.Length)) +
                   u'"';
        case CellDate:
            return u"d"_s + QString::number(cell.Real);
        case CellBoolean:
            return cell.Integer != 0 ? u"true"_s : u"false"_s;
        default:
            return u"?"_s;
        }
    }

    static QStringList read(ado::Recordset& rows)
    {
        QStringList lines;
        rows.readRows([&](long count, const ZulCell* cells) {
            QStringList line;
            for (long i = 0; i < count; ++i) {
                line.append(show(cells[i]));
            }
            lines.append(line.join(u','));
        });
        return lines;
    }
};

TEST_P(AdoRowsTest, EveryKindOfCellArrives)
{
    host.answer("select", {{"a", "b", "c", "d", "e", "f", "g"},
                           {{number(1), text("L'à € 😀"), null(), real(2.5), date(45000.5), boolean(true),
                             Variant::fromInt64(5000000000)},
                            {number(-2), text(""), text("x"), null(), null(), boolean(false), null()}}});
    ado::Recordset rows = open();
    EXPECT_EQ(read(rows), (QStringList{u"1,\"L'à € 😀\",NULL,r2.5,d45000.5,true,5000000000"_s,
                                       u"-2,\"\",\"x\",NULL,NULL,false,NULL"_s}));
    EXPECT_TRUE(rows.eof());
}

TEST_P(AdoRowsTest, ReadingBeginsAtTheCurrentRow)
{
    host.answer("select", {{"a"}, {{number(1)}, {number(2)}, {number(3)}}});
    ado::Recordset rows = open();
    rows.moveNext();
    EXPECT_EQ(read(rows), (QStringList{u"2"_s, u"3"_s}));
}

TEST_P(AdoRowsTest, AFailingRowSetThrowsItsError)
{
    host.answer("select", {{"a"}, {{number(1)}, {number(2)}}});
    host.failAtRow(2, static_cast<HRESULT>(0x80004005), u"connection lost");
    ado::Recordset rows = open();
    QString description;
    EXPECT_EQ(errorOf([&] { read(rows); }, &description), static_cast<long>(E_FAIL));
    EXPECT_EQ(description, u"connection lost"_s);
}

TEST_P(AdoRowsTest, WhatTheTakerThrowsComesBackAsItIs)
{
    host.answer("select", {{"a"}, {{number(1)}, {number(2)}}});
    ado::Recordset rows = open();
    int taken = 0;
    EXPECT_EQ(errorOf([&] {
                  rows.readRows([&](long, const ZulCell*) {
                      ++taken;
                      throw Error(RunTime::Overflow);
                  });
              }),
              6);
    EXPECT_EQ(taken, 1);
}

INSTANTIATE_TEST_SUITE_P(RowReader, AdoRowsTest, ::testing::Bool(),
                         [](const auto& given) { return given.param ? "with" : "without"; });

} // namespace
} // namespace zul
