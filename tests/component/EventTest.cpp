// The event CaricaGriglia, through which the host fills a grid.
#include "controls/report/ReportGrid.h"
#include "tests/component/SmsCreatorTest.h"

#include <array>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

/// The eleven arguments of the event, as a host that calls the component itself holds them.
class EventTest : public SmsCreatorTest
{
protected:
    EventTest()
    {
        for (std::size_t i = 0; i < texts.size(); ++i) {
            texts[i] = Bstr(u"testo " + std::u16string(1, static_cast<char16_t>(u'1' + i)));
        }
    }

    HRESULT raise()
    {
        return creator->EventoGrd_CaricaGrd(&grid, texts[0].inOut(), texts[1].inOut(), texts[2].inOut(),
                                            texts[3].inOut(), texts[4].inOut(), texts[5].inOut(),
                                            texts[6].inOut(), texts[7].inOut(), texts[8].inOut(), &captions);
    }

    IDispatch* grid = hostConnection.get(); // any object will do
    _Collection* captions = nullptr;
    std::array<Bstr, 9> texts;
};

TEST_F(EventTest, ElevenArgumentsGoByReferenceInTheirOrder)
{
    int calls = 0;
    const auto sink = makeCom<Sink>([&](DISPID id, const std::vector<VARIANT>& arguments) -> HRESULT {
        ++calls;
        EXPECT_EQ(id, 1);
        EXPECT_EQ(arguments.size(), 11U);
        if (arguments.size() != 11U) {
            return S_OK;
        }
        EXPECT_EQ(arguments[0].vt, VT_DISPATCH | VT_BYREF);
        EXPECT_EQ(arguments[0].ppdispVal, &grid);
        for (std::size_t i = 0; i < texts.size(); ++i) {
            EXPECT_EQ(arguments[i + 1].vt, VT_BSTR | VT_BYREF);
            EXPECT_EQ(arguments[i + 1].pbstrVal, texts[i].inOut()) << "the caller's own storage";
        }
        EXPECT_EQ(arguments[10].vt, VT_DISPATCH | VT_BYREF);
        return S_OK;
    });
    advise(sink);
    EXPECT_EQ(raise(), S_OK);
    EXPECT_EQ(calls, 1);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(texts[i].toUtf8(), "testo " + std::to_string(i + 1)) << "nothing is written back";
    }
}

TEST_F(EventTest, WithoutASinkItSucceeds)
{
    EXPECT_EQ(raise(), S_OK);
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(EventTest, TwoSinksAreCalledInTheOrderOfTheirAdvice)
{
    std::string calls;
    advise(makeCom<Sink>([&](DISPID, const auto&) { return calls += "a", S_OK; }));
    const DWORD second = advise(makeCom<Sink>([&](DISPID, const auto&) { return calls += "b", S_OK; }));
    advise(makeCom<Sink>([&](DISPID, const auto&) { return calls += "c", S_OK; }));
    raise();
    EXPECT_EQ(calls, "abc");
    unadvise(second);
    raise();
    EXPECT_EQ(calls, "abcac");
}

TEST_F(EventTest, ASinkThatFailsIsLoggedAndTheNextOneIsCalled)
{
    int calls = 0;
    advise(makeCom<Sink>(
        [&](DISPID, const auto&) { return reportError(E_ACCESSDENIED, u"griglia 'à' bloccata"); }));
    advise(makeCom<Sink>([&](DISPID, const auto&) { return ++calls, S_OK; }));
    EXPECT_EQ(raise(), S_OK);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(logged(),
              QStringList{u"EventoGrd_CaricaGrd | Error -2147024891 (griglia 'à' bloccata) in procedure "
                          "EventoGrd_CaricaGrd of Modulo di classe SmsCreator | "_s});
}

TEST_F(EventTest, ASinkThatUnadvisesItselfOrAnotherDoesNotDisturbTheRest)
{
    std::string calls;
    DWORD self = 0;
    DWORD other = 0;
    self = advise(makeCom<Sink>([&](DISPID, const auto&) {
        calls += "a";
        unadvise(self);
        unadvise(other);
        return S_OK;
    }));
    other = advise(makeCom<Sink>([&](DISPID, const auto&) { return calls += "b", S_OK; }));
    advise(makeCom<Sink>([&](DISPID, const auto&) { return calls += "c", S_OK; }));
    raise();
    EXPECT_EQ(calls, "ac");
    raise();
    EXPECT_EQ(calls, "acc");
}

TEST_F(EventTest, ASinkAdvisedFromASinkIsCalledTheNextTime)
{
    std::string calls;
    advise(makeCom<Sink>([&](DISPID, const auto&) {
        calls += "a";
        if (calls.size() == 1) {
            advise(makeCom<Sink>([&](DISPID, const auto&) { return calls += "b", S_OK; }));
        }
        return S_OK;
    }));
    raise();
    EXPECT_EQ(calls, "a");
    raise();
    EXPECT_EQ(calls, "aab");
}

TEST_F(EventTest, AHostThatLetsGoOfTheComponentInASinkIsServedToTheEnd)
{
    int calls = 0;
    advise(makeCom<Sink>([&](DISPID, const auto&) { return creator.reset(), ++calls, S_OK; }));
    advise(makeCom<Sink>([&](DISPID, const auto&) { return ++calls, S_OK; }));
    SmsCreatorObject* object = creator.get();
    EXPECT_EQ(object->EventoGrd_CaricaGrd(&grid, texts[0].inOut(), texts[1].inOut(), texts[2].inOut(),
                                          texts[3].inOut(), texts[4].inOut(), texts[5].inOut(),
                                          texts[6].inOut(), texts[7].inOut(), texts[8].inOut(), &captions),
              S_OK);
    EXPECT_EQ(calls, 2);
}

TEST_F(EventTest, NullPointersAreRefusedAndNoSinkIsCalled)
{
    int calls = 0;
    advise(makeCom<Sink>([&](DISPID, const auto&) { return ++calls, S_OK; }));
    for (int missing = 0; missing < 11; ++missing) {
        std::array<BSTR*, 9> places{};
        for (std::size_t i = 0; i < places.size(); ++i) {
            places[i] = missing == static_cast<int>(i) + 1 ? nullptr : texts[i].inOut();
        }
        EXPECT_EQ(creator->EventoGrd_CaricaGrd(missing == 0 ? nullptr : &grid, places[0], places[1],
                                               places[2], places[3], places[4], places[5], places[6],
                                               places[7], places[8], missing == 10 ? nullptr : &captions),
                  E_POINTER)
            << missing;
    }
    EXPECT_EQ(calls, 0);
    IDispatch* none = nullptr;
    grid = none;
    EXPECT_EQ(raise(), S_OK) << "a place that holds nothing is no null pointer";
    EXPECT_EQ(calls, 1);
}

TEST_F(EventTest, LateBoundItRaisesTheEventToo)
{
    std::string seen;
    advise(makeCom<Sink>([&](DISPID, const std::vector<VARIANT>& arguments) {
        seen = utf8FromUtf16(textOf(*arguments[1].pbstrVal)) + "|" +
               utf8FromUtf16(textOf(*arguments[9].pbstrVal));
        return S_OK;
    }));
    std::vector<Variant> owned{Variant::fromDispatch(hostConnection.get())};
    for (int i = 1; i <= 9; ++i) {
        owned.push_back(text("t" + std::to_string(i)));
    }
    Variant nothing;
    nothing.vt = VT_DISPATCH;
    nothing.pdispVal = nullptr;
    owned.push_back(nothing);
    const std::vector<VARIANT> arguments(owned.begin(), owned.end());
    EXPECT_EQ(call(creator.get(), "eventogrd_caricagrd", arguments).result, S_OK);
    EXPECT_EQ(seen, "t1|t9");
    EXPECT_EQ(call(creator.get(), "EventoGrd_CaricaGrd").result, DISP_E_BADPARAMCOUNT);
}

TEST_F(EventTest, ForAFormTheHostGetsTheGridTheQueryTheLayoutAndTheCaptions)
{
    ReportGrid real;
    advise(makeCom<Sink>([&](DISPID, const std::vector<VARIANT>& arguments) -> HRESULT {
        std::string texts_;
        for (std::size_t i = 1; i <= 9; ++i) {
            texts_ += utf8FromUtf16(textOf(*arguments[i].pbstrVal)) + "|";
        }
        EXPECT_EQ(texts_, "select 'à'|0,1|0,0|m|s|b|p|q|c|");
        const auto gridObject = queryFor<IReportGrid>(*arguments[0].ppdispVal);
        const auto captionList = queryFor<_Collection>(*arguments[10].ppdispVal);
        EXPECT_TRUE(gridObject);
        EXPECT_TRUE(captionList);
        if (!gridObject || !captionList) {
            return E_NOINTERFACE;
        }
        Variant second = number(2);
        Variant caption;
        EXPECT_EQ(captionList->Item(&second, &caption), S_OK);
        EXPECT_EQ(show(caption), "'Descrizione'");
        Bstr name(u"x");
        return gridObject->AddColumn(name.get(), caption.bstrVal, 0, VARIANT_TRUE, VARIANT_TRUE);
    }));
    creator->EventoGrd_CaricaGrd(real, {.sql = u"select 'à'"_s,
                                        .visibility = u"0,1"_s,
                                        .iconIndex = u"0,0"_s,
                                        .editMask = u"m"_s,
                                        .sizable = u"s"_s,
                                        .buttonType = u"b"_s,
                                        .preFormat = u"p"_s,
                                        .preFormatQta = u"q"_s,
                                        .preFormatColore = u"c"_s,
                                        .captions = {u"id"_s, u"Descrizione"_s}});
    EXPECT_EQ(real.columnCaption(0), u"Descrizione"_s);
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(EventTest, WhatASinkPutsInThePlaceOfAFormsArgumentsIsFreed)
{
    ReportGrid real;
    advise(makeCom<Sink>([&](DISPID, const std::vector<VARIANT>& arguments) {
        (*arguments[0].ppdispVal)->Release();
        *arguments[0].ppdispVal = nullptr;
        SysFreeString(*arguments[1].pbstrVal);
        *arguments[1].pbstrVal = Bstr(u"altro").detach();
        (*arguments[10].ppdispVal)->Release();
        *arguments[10].ppdispVal = nullptr;
        return S_OK;
    }));
    EXPECT_NO_THROW(creator->EventoGrd_CaricaGrd(real, {.sql = u"x"_s,
                                                        .visibility = {},
                                                        .iconIndex = {},
                                                        .editMask = {},
                                                        .sizable = {},
                                                        .buttonType = {},
                                                        .preFormat = {},
                                                        .preFormatQta = {},
                                                        .preFormatColore = {},
                                                        .captions = {u"a"_s}}));
}

TEST_F(EventTest, AGridThatAHostKeepsOutlivesTheFormAndFailsCleanly)
{
    ComPtr<IReportGrid> kept;
    advise(makeCom<Sink>([&](DISPID, const std::vector<VARIANT>& arguments) {
        kept = queryFor<IReportGrid>(*arguments[0].ppdispVal);
        return S_OK;
    }));
    {
        ReportGrid real;
        creator->EventoGrd_CaricaGrd(real, {});
        LONG count = -1;
        ASSERT_TRUE(kept);
        EXPECT_EQ(kept->get_RecordCount(&count), S_OK);
    }
    LONG count = -1;
    EXPECT_EQ(kept->get_RecordCount(&count), E_FAIL);
    EXPECT_EQ(kept->Populate(), E_FAIL);
}

} // namespace
} // namespace zul
