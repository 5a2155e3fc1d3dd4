// Late-bound calls, the event sink and the grid filling, on objects of the test.
#include "automation/ErrorInfo.h"
#include "host/player/EventPrinter.h"
#include "host/session/AutomationText.h"
#include "host/session/GridFillRoutine.h"
#include "host/session/HostEventSink.h"
#include "host/session/LateCall.h"

#include <gtest/gtest.h>

#include <vector>

namespace {
using namespace zul;
using namespace zul::host;

// An object with one property and one method; its dual interface is the grid's, of which it borrows two members.
class FakeGrid final : public ComObject<Dispatching<IReportGrid>>
{
public:
    QStringList log;

    HRESULT STDMETHODCALLTYPE DeleteRecords() override
    {
        log.append(QStringLiteral("records"));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE DeleteColumns() override
    {
        log.append(QStringLiteral("columns"));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE AddColumn(BSTR field, BSTR caption, LONG width, VARIANT_BOOL sizable,
                                        VARIANT_BOOL visible) override
    {
        log.append(QStringLiteral("%1|%2|%3|%4|%5")
                       .arg(toQString(textOf(field)), toQString(textOf(caption)), QString::number(width),
                            QString::number(sizable), QString::number(visible)));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE AddRecord(LONG* record) override
    {
        *record = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetItem(LONG, LONG, VARIANT) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE FillFromRecordset(IRecordset*) override
    {
        log.append(QStringLiteral("fill"));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Populate() override
    {
        log.append(QStringLiteral("populate"));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_RecordCount(LONG* value) override
    {
        *value = 42;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_ColumnCount(LONG*) override
    {
        return reportError(E_POINTER, u"no columns");
    }

private:
    const DispTable<IReportGrid>& dispTable() const override
    {
        static const DispTable table{
            dispatch::propget("RecordCount", 8, &IReportGrid::get_RecordCount),
            dispatch::propget("ColumnCount", 9, &IReportGrid::get_ColumnCount),
            dispatch::method("SetItem", 5, &IReportGrid::SetItem, {"record", "column", "value"}),
        };
        return table;
    }
};

// Three fields and no row.
class FakeRows final : public ComObject<Dispatching<IRecordset>>
{
public:
    bool closed = false;

    HRESULT STDMETHODCALLTYPE get_Eof(VARIANT_BOOL* value) override
    {
        *value = VARIANT_TRUE;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_FieldCount(LONG* value) override
    {
        *value = 3;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE FieldName(LONG index, BSTR* name) override
    {
        *name = Bstr(index == 0 ? u"id" : index == 1 ? u"Testo" : u"Altro").detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Value(VARIANT, VARIANT*) override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE put_Value(VARIANT, VARIANT) override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE MoveNext() override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE AddNew() override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE Update() override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE Close() override
    {
        closed = true;
        return S_OK;
    }

private:
    const DispTable<IRecordset>& dispTable() const override
    {
        static const DispTable<IRecordset> table{};
        return table;
    }
};

class FakeCaptions final : public ComObject<Dispatching<_Collection>>
{
public:
    HRESULT STDMETHODCALLTYPE Item(VARIANT* index, VARIANT* item) override
    {
        Variant::fromText(index->lVal == 1 ? u"id" : u"Testo \"SMS\"").detachTo(item);
        return index->lVal >= 1 && index->lVal <= 2 ? S_OK : E_INVALIDARG;
    }
    HRESULT STDMETHODCALLTYPE Add(VARIANT*, VARIANT*, VARIANT*, VARIANT*) override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE Count(LONG* count) override
    {
        *count = 2;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Remove(VARIANT*) override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE _NewEnum(IUnknown**) override { return E_FAIL; }

private:
    const DispTable<_Collection>& dispTable() const override
    {
        static const DispTable<_Collection> table{};
        return table;
    }
};

Word bare(const char* text)
{
    return {QString::fromUtf8(text), false};
}

TEST(LateCall, ReadsAndCallsByName)
{
    const auto grid = makeCom<FakeGrid>();
    const CallOutcome count = callMember(grid.get(), QStringLiteral("recordcount"), {});
    EXPECT_EQ(count.code, S_OK);
    EXPECT_EQ(resultText(count.value), QStringLiteral("42"));
    std::vector<Variant> arguments;
    arguments.push_back(Variant::fromText(u"x"));
    arguments.push_back(Variant::fromLong(1));
    arguments.push_back(Variant::fromLong(2));
    const CallOutcome wrong = callMember(grid.get(), QStringLiteral("SetItem"), arguments);
    EXPECT_EQ(codeText(wrong.code), QStringLiteral("0x80020005"));
}

TEST(LateCall, TellsFailuresApart)
{
    const auto grid = makeCom<FakeGrid>();
    EXPECT_EQ(codeText(callMember(grid.get(), QStringLiteral("Nothing"), {}).code),
              QStringLiteral("0x80020006"));
    EXPECT_EQ(codeText(callMember(grid.get(), QStringLiteral("SetItem"), {}).code),
              QStringLiteral("0x8002000e"));
    EXPECT_EQ(codeText(putProperty(grid.get(), QStringLiteral("RecordCount"), Variant::fromLong(1)).code),
              QStringLiteral("0x80020003"));
    const CallOutcome failed = callMember(grid.get(), QStringLiteral("ColumnCount"), {});
    EXPECT_EQ(codeText(failed.code), QStringLiteral("0x80004003"));
    EXPECT_EQ(failed.description, QStringLiteral("no columns"));
    EXPECT_TRUE(failed.value.isEmpty());
}

TEST(LateCall, ReadsTheValuesOfAScenario)
{
    EXPECT_EQ(valueOf(bare("true")).vt, VT_BOOL);
    EXPECT_EQ(valueOf(bare("false")).boolVal, VARIANT_FALSE);
    EXPECT_EQ(valueOf(bare("-2147483648")).vt, VT_I4);
    EXPECT_EQ(valueOf(bare("2147483648")).vt, VT_I8);
    EXPECT_EQ(valueOf(bare("1.5")).vt, VT_BSTR);
    EXPECT_EQ(valueOf(bare("True")).vt, VT_BSTR);
    EXPECT_EQ(valueOf(Word{QStringLiteral("7"), true}).vt, VT_BSTR);
    EXPECT_EQ(valueOf(Word{QStringLiteral("à €"), true}).text(), u"à €");
}

TEST(LateCall, PrintsWhatMembersReturn)
{
    EXPECT_EQ(resultText(Variant()), QStringLiteral("empty"));
    EXPECT_EQ(resultText(Variant::fromBool(true)), QStringLiteral("true"));
    EXPECT_EQ(resultText(Variant::fromBool(false)), QStringLiteral("false"));
    EXPECT_EQ(resultText(Variant::fromLong(-7)), QStringLiteral("-7"));
    EXPECT_EQ(resultText(Variant::fromDouble(1.5)), QStringLiteral("1.5"));
    EXPECT_EQ(resultText(Variant::fromText(u"a\"b")), QStringLiteral("\"a\\\"b\""));
    EXPECT_EQ(resultText(Variant::fromText(u"")), QStringLiteral("\"\""));
}

TEST(GridFill, MakesAColumnForEveryField)
{
    const auto grid = makeCom<FakeGrid>();
    const auto rows = makeCom<FakeRows>();
    fillGrid(*grid, *rows, {QStringLiteral("0,1"), QStringLiteral("0,1"), {QStringLiteral("Numero")}});
    EXPECT_EQ(grid->log, (QStringList{"records", "columns", "id|Numero|0|0|0", "Testo|Testo|0|-1|-1",
                                      "Altro|Altro|0|-1|-1", "fill", "populate"}));
}

TEST(GridFill, ReadsTheCaptionsInOrder)
{
    EXPECT_EQ(captionTexts(makeCom<FakeCaptions>().get()), (QStringList{"id", "Testo \"SMS\""}));
    EXPECT_TRUE(captionTexts(nullptr).isEmpty());
}

class EventSink : public ::testing::Test
{
protected:
    QStringList lines;
    EventPrinter printer{[this](const QString& line) { lines.append(line); }};
    ComPtr<FakeRows> rows = makeCom<FakeRows>();
    QString asked;
    bool fails = false;
    ComPtr<HostEventSink> sink = makeCom<HostEventSink>(printer, [this](const QString& sql) {
        asked = sql;
        if (fails) {
            throw ComError(E_FAIL, u"no such table");
        }
        return ComPtr<IRecordset>(rows);
    });

    // Raises the event as a component does: by its number, every argument by reference.
    CallOutcome raise(IDispatch* grid, _Collection* captions)
    {
        std::vector<Bstr> texts;
        for (const char16_t* text :
             {u"SELECT \"x\"", u"0,1", u"0,2", u"0,3", u"0,4", u"0,5", u"0,6", u"0,7", u"0,8"}) {
            texts.emplace_back(text);
        }
        IDispatch* collection = captions;
        std::vector<Variant> arguments;
        arguments.push_back(Variant::ref(&collection));
        for (auto text = texts.rbegin(); text != texts.rend(); ++text) {
            arguments.push_back(Variant::ref(text->inOut()));
        }
        arguments.push_back(Variant::ref(&grid));
        DISPPARAMS params{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
        EXCEPINFO exception{};
        UINT bad = 0;
        const HRESULT result = static_cast<IDispatch*>(sink.get())
                                   ->Invoke(1, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params,
                                            nullptr, &exception, &bad);
        CallOutcome outcome;
        outcome.code = result;
        if (FAILED(result)) {
            const ErrorDetails details = takeErrorDetails(result, exception);
            outcome.code = details.code;
            outcome.description = toQString(details.description);
        }
        return outcome;
    }
};

TEST_F(EventSink, PrintsTheEventAndFillsTheGrid)
{
    const auto grid = makeCom<FakeGrid>();
    EXPECT_EQ(raise(grid.get(), makeCom<FakeCaptions>().get()).code, S_OK);
    EXPECT_EQ(lines,
              QStringList{"event CaricaGriglia sql=\"SELECT \\\"x\\\"\" visibility=\"0,1\" icon=\"0,2\" "
                          "mask=\"0,3\" sizable=\"0,4\" button=\"0,5\" format=\"0,6\" formatqta=\"0,7\" "
                          "formatcolore=\"0,8\" captions=\"id\",\"Testo \\\"SMS\\\"\""});
    EXPECT_EQ(asked, QStringLiteral("SELECT \"x\""));
    EXPECT_EQ(grid->log.value(2), QStringLiteral("id|id|0|0|0"));
    EXPECT_EQ(grid->log.last(), QStringLiteral("populate"));
    EXPECT_TRUE(rows->closed);
}

TEST_F(EventSink, AQueryThatFailsLeavesTheGridAlone)
{
    fails = true;
    const auto grid = makeCom<FakeGrid>();
    const CallOutcome outcome = raise(grid.get(), nullptr);
    EXPECT_EQ(outcome.code, E_FAIL);
    EXPECT_EQ(outcome.description, QStringLiteral("no such table"));
    EXPECT_TRUE(grid->log.isEmpty());
    EXPECT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].endsWith(QStringLiteral(" captions="))) << lines[0].toStdString();
}

TEST_F(EventSink, WithoutAGridTheEventFails)
{
    EXPECT_EQ(raise(nullptr, nullptr).code, E_INVALIDARG);
    EXPECT_EQ(raise(makeCom<FakeCaptions>().get(), nullptr).code, E_INVALIDARG);
}
} // namespace
