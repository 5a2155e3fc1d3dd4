#include "component/SmsCreatorObject.h"

#include "session/Registry.h"
#include "tests/component/SmsCreatorTest.h"

#include <QApplication>
#include <QPushButton>
#include <QSettings>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

TEST_F(SmsCreatorTest, AnswersItsInterfacesAndNoOther)
{
    EXPECT_TRUE(creator.as<IUnknown>());
    EXPECT_TRUE(creator.as<IDispatch>());
    EXPECT_TRUE(creator.as<_SmsCreator>());
    EXPECT_TRUE(creator.as<IConnectionPointContainer>());
    EXPECT_FALSE(creator.as<IRecordset>());
    void* nothing = this;
    EXPECT_EQ(creator->QueryInterface(iidOf<IRecordset>(), &nothing), E_NOINTERFACE);
    EXPECT_EQ(nothing, nullptr);
    EXPECT_EQ(creator->QueryInterface(iidOf<IUnknown>(), nullptr), E_POINTER);
    EXPECT_EQ(creator.as<IUnknown>().get(), creator.as<IConnectionPointContainer>().as<IUnknown>().get());
}

TEST_F(SmsCreatorTest, MembersHaveTheseDispatchIdsInAnyCase)
{
    const std::vector<std::pair<const char*, unsigned>> members{
        {"idUtente", 0x68030000U},
        {"InitWhatToShow", 0x60030002U},
        {"InitWhatToSearch", 0x60030003U},
        {"ShowForm", 0x60030004U},
        {"isOkPressed", 0x60030005U},
        {"DiscardForm", 0x60030006U},
        {"EventoGrd_CaricaGrd", 0x60030007U},
        {"ShowOptions", 0x60030008U},
        {"ShowCheckErrorSMSSend", 0x60030009U},
        {"DiscardOptionsForm", 0x6003000AU},
        {"GetOptionsFormChoice", 0x6003000BU},
        {"GetFormChoice", 0x6003000CU},
    };
    for (const auto& [name, id] : members) {
        EXPECT_EQ(static_cast<unsigned>(idOf(creator.get(), name)), id) << name;
        EXPECT_EQ(
            static_cast<unsigned>(idOf(creator.get(), QString::fromLatin1(name).toUpper().toStdString())),
            id);
    }
    EXPECT_EQ(idOf(creator.get(), "CaricaGriglia"), DISPID_UNKNOWN) << "the event is no member";
}

TEST_F(SmsCreatorTest, NamesThatAreNotThere)
{
    std::u16string name = u"NonEsiste";
    auto* text = reinterpret_cast<LPOLESTR>(name.data());
    DISPID id = 7;
    EXPECT_EQ(creator->GetIDsOfNames(GUID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(id, DISPID_UNKNOWN);
    EXPECT_EQ(invoke(creator.get(), 12345, DISPATCH_METHOD, {}).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(creator.get(), idOf(creator.get(), "ShowForm"), DISPATCH_PROPERTYGET, {}).result,
              DISP_E_MEMBERNOTFOUND);
}

// ---------------------------------------------------------------------------------------------- idUtente

TEST_F(SmsCreatorTest, TheUserIdIsZeroAtFirstAndBelongsToEachObject)
{
    LONG id = 7;
    EXPECT_EQ(creator->get_idUtente(&id), S_OK);
    EXPECT_EQ(id, 0);
    EXPECT_EQ(creator->put_idUtente(-2147483647 - 1), S_OK);
    EXPECT_EQ(creator->get_idUtente(&id), S_OK);
    EXPECT_EQ(id, -2147483647 - 1);
    const auto other = makeCom<SmsCreatorObject>();
    EXPECT_EQ(other->get_idUtente(&id), S_OK);
    EXPECT_EQ(id, 0);
    EXPECT_EQ(creator->get_idUtente(nullptr), E_POINTER);
}

TEST_F(SmsCreatorTest, LateBoundTheUserIdIsPutWithAndWithoutItsNamedArgument)
{
    const DISPID id = idOf(creator.get(), "idUtente");
    const Variant seven = number(7);
    const Variant eight = text("8");
    EXPECT_EQ(invoke(creator.get(), id, DISPATCH_PROPERTYPUT, {seven}, true).result, S_OK);
    EXPECT_EQ(show(invoke(creator.get(), id, DISPATCH_PROPERTYGET, {}).value), "7");
    EXPECT_EQ(invoke(creator.get(), id, DISPATCH_PROPERTYPUT, {eight}).result, S_OK);
    EXPECT_EQ(show(invoke(creator.get(), id, DISPATCH_PROPERTYGET | DISPATCH_METHOD, {}).value), "8");
    LONG nine = 9;
    EXPECT_EQ(invoke(creator.get(), id, DISPATCH_PROPERTYPUT, {Variant::ref(&nine)}, true).result, S_OK);
    EXPECT_EQ(show(invoke(creator.get(), id, DISPATCH_PROPERTYGET, {}).value), "9");
}

TEST_F(SmsCreatorTest, LateBoundOverflowAndTypeMismatchAreToldApart)
{
    const DISPID id = idOf(creator.get(), "idUtente");
    const Variant large = real(3e9);
    const Variant words = text("abc");
    EXPECT_EQ(invoke(creator.get(), id, DISPATCH_PROPERTYPUT, {large}, true).result, DISP_E_OVERFLOW);
    const CallOutcome mismatch = invoke(creator.get(), id, DISPATCH_PROPERTYPUT, {words}, true);
    EXPECT_EQ(mismatch.result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(mismatch.argErr, 0U);
    EXPECT_EQ(invoke(creator.get(), id, DISPATCH_PROPERTYPUT, {}).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(show(invoke(creator.get(), id, DISPATCH_PROPERTYGET, {}).value), "0");
}

// ----------------------------------------------------------------------------------------- what to offer

TEST_F(SmsCreatorTest, WhatToShowAndSearchGoesToTheSessionThatTwoObjectsShare)
{
    VARIANT_BOOL yes = VARIANT_TRUE;
    VARIANT_BOOL no = VARIANT_FALSE;
    VARIANT_BOOL one = 1; // not the automation's true, but not false either
    VARIANT result{};
    result.vt = VT_I4;
    EXPECT_EQ(creator->InitWhatToShow(&yes, &no, &one, &result), S_OK);
    EXPECT_EQ(result.vt, VT_EMPTY);
    EXPECT_TRUE(session().showSendSms);
    EXPECT_FALSE(session().showSendMail);
    EXPECT_TRUE(session().showPushNotify);
    result.vt = VT_I4;
    const auto other = makeCom<SmsCreatorObject>();
    EXPECT_EQ(other->InitWhatToSearch(&no, &yes, &result), S_OK);
    EXPECT_EQ(result.vt, VT_EMPTY);
    EXPECT_FALSE(session().searchBy_Ricorrenze);
    EXPECT_TRUE(session().searchBy_Classificazioni);
    EXPECT_TRUE(session().showSendSms) << "left as it was";
    EXPECT_EQ(one, 1) << "the caller's storage is read and not written";
}

TEST_F(SmsCreatorTest, LateBoundFlagsComeByValueByReferenceAndCoerced)
{
    VARIANT_BOOL yes = VARIANT_TRUE;
    LONG zero = 0;
    const Variant words = text("True");
    const CallOutcome outcome =
        call(creator.get(), "InitWhatToShow", {Variant::ref(&yes), Variant::ref(&zero), words});
    EXPECT_EQ(outcome.result, S_OK);
    EXPECT_EQ(outcome.value.vt, VT_EMPTY);
    EXPECT_TRUE(session().showSendSms);
    EXPECT_FALSE(session().showSendMail);
    EXPECT_TRUE(session().showPushNotify);
    EXPECT_EQ(yes, VARIANT_TRUE);
    EXPECT_EQ(zero, 0);
}

TEST_F(SmsCreatorTest, LateBoundMisuse)
{
    const Variant yes = boolean(true);
    const Variant words = text("abc");
    EXPECT_EQ(call(creator.get(), "InitWhatToShow", {yes, yes}).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(call(creator.get(), "InitWhatToShow", {yes, yes, yes, yes}).result, DISP_E_BADPARAMCOUNT);
    const CallOutcome mismatch = call(creator.get(), "InitWhatToShow", {words, yes, yes});
    EXPECT_EQ(mismatch.result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(mismatch.argErr, 2U) << "counted from the last argument";
    const Variant missing = Variant::missing();
    EXPECT_EQ(call(creator.get(), "InitWhatToSearch", {yes, missing}).result, DISP_E_PARAMNOTOPTIONAL);
    EXPECT_FALSE(session().showSendSms);
    DISPPARAMS none{};
    EXPECT_EQ(
        creator->Invoke(0x60030005, iidOf<IUnknown>(), 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
        DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(creator->Invoke(0x60030005, GUID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
              E_INVALIDARG);
    EXPECT_EQ(creator->Invoke(0x60030005, GUID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
              S_OK)
        << "who wants no result gives no place for it";
}

TEST_F(SmsCreatorTest, NullPointersAreRefusedByEveryMemberAndTheResultIsClearedFirst)
{
    VARIANT_BOOL yes = VARIANT_TRUE;
    VARIANT result{};
    const auto dirty = [&]() -> VARIANT* {
        result.vt = VT_I4;
        result.lVal = 5;
        return &result;
    };
    EXPECT_EQ(creator->InitWhatToShow(nullptr, &yes, &yes, dirty()), E_POINTER);
    EXPECT_EQ(result.vt, VT_EMPTY);
    EXPECT_EQ(creator->InitWhatToShow(&yes, nullptr, &yes, dirty()), E_POINTER);
    EXPECT_EQ(creator->InitWhatToShow(&yes, &yes, nullptr, dirty()), E_POINTER);
    EXPECT_EQ(creator->InitWhatToShow(&yes, &yes, &yes, nullptr), E_POINTER);
    EXPECT_FALSE(session().showSendSms);
    EXPECT_EQ(creator->InitWhatToSearch(nullptr, &yes, dirty()), E_POINTER);
    EXPECT_EQ(creator->InitWhatToSearch(&yes, nullptr, dirty()), E_POINTER);
    EXPECT_EQ(creator->InitWhatToSearch(&yes, &yes, nullptr), E_POINTER);

    _SqlConnection* connectionObject = hostConnection.get();
    BSTR path = nullptr;
    EXPECT_EQ(creator->ShowForm(nullptr, &path, &yes, dirty()), E_POINTER);
    EXPECT_EQ(result.vt, VT_EMPTY);
    EXPECT_EQ(creator->ShowForm(&connectionObject, nullptr, &yes, dirty()), E_POINTER);
    EXPECT_EQ(creator->ShowForm(&connectionObject, &path, nullptr, dirty()), E_POINTER);
    EXPECT_EQ(creator->ShowForm(&connectionObject, &path, &yes, nullptr), E_POINTER);
    EXPECT_EQ(creator->isOkPressed(nullptr), E_POINTER);
    EXPECT_EQ(creator->DiscardForm(nullptr), E_POINTER);
    EXPECT_EQ(creator->DiscardOptionsForm(nullptr), E_POINTER);
    EXPECT_EQ(creator->GetFormChoice(nullptr), E_POINTER);
    EXPECT_EQ(creator->GetOptionsFormChoice(nullptr), E_POINTER);

    VARIANT_BOOL shown = VARIANT_TRUE;
    EXPECT_EQ(creator->ShowOptions(nullptr, &path, &yes, &shown), E_POINTER);
    EXPECT_EQ(shown, VARIANT_FALSE);
    EXPECT_EQ(creator->ShowOptions(&connectionObject, nullptr, &yes, &shown), E_POINTER);
    EXPECT_EQ(creator->ShowOptions(&connectionObject, &path, nullptr, &shown), E_POINTER);
    EXPECT_EQ(creator->ShowOptions(&connectionObject, &path, &yes, nullptr), E_POINTER);
    shown = VARIANT_TRUE;
    EXPECT_EQ(creator->ShowCheckErrorSMSSend(nullptr, &yes, &shown), E_POINTER);
    EXPECT_EQ(shown, VARIANT_FALSE);
    EXPECT_EQ(creator->ShowCheckErrorSMSSend(&connectionObject, nullptr, &shown), E_POINTER);
    EXPECT_EQ(creator->ShowCheckErrorSMSSend(&connectionObject, &yes, nullptr), E_POINTER);
    EXPECT_TRUE(logged().isEmpty());
}

// -------------------------------------------------------------------------------------- the main window

TEST_F(SmsCreatorTest, BeforeAnyShowingThereIsNoChoice)
{
    EXPECT_FALSE(isOkPressed());
    EXPECT_EQ(formChoice(), QString());
    EXPECT_EQ(call(creator.get(), "DiscardForm").result, S_OK);
    EXPECT_EQ(show(call(creator.get(), "isOkPressed").value), "false");
    EXPECT_EQ(show(call(creator.get(), "GetFormChoice").value), "''");
}

TEST_F(SmsCreatorTest, ShowFormFillsTheSessionShowsTheWindowAndLeavesItReadable)
{
    saveRegistry(QString::fromLatin1(RegistryKey), u"Options"_s, u"PathCartellaSMSSender"_s, u"C:\\Sender"_s);
    session() = Session();
    bool shown = false;
    onWindow(u"frmSMS"_s, [&](QWidget* window) {
        shown = true;
        EXPECT_EQ(window->windowTitle(), u"Zul_MessageBuilder"_s);
        EXPECT_FALSE(session().isFormLoaded) << "the choice can be read when the showing has ended";
        EXPECT_EQ(formChoice(), QString());
        EXPECT_TRUE(session().ShowTouchMode);
    });
    VARIANT result{};
    result.vt = VT_I4;
    EXPECT_EQ(showForm(u"C:\\Gestionale", true, &result), S_OK);
    EXPECT_EQ(result.vt, VT_EMPTY);
    EXPECT_TRUE(shown);
    EXPECT_EQ(session().PathMainApplication, u"C:\\Gestionale"_s);
    EXPECT_EQ(session().PathCartellaSMSSender, u"C:\\Sender"_s);
    EXPECT_EQ(session().connection().userName(), u"operatore"_s);
    EXPECT_TRUE(session().isFormLoaded);
    EXPECT_EQ(formChoice(), u"ESC"_s);
    EXPECT_FALSE(isOkPressed());
    discardForm();
    EXPECT_EQ(formChoice(), QString());
    EXPECT_FALSE(session().isFormLoaded);
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(SmsCreatorTest, AMissingRegistryValueLeavesTheSendersFolderEmpty)
{
    session().PathCartellaSMSSender = u"altro"_s;
    onWindow(u"frmSMS"_s, [](QWidget*) {});
    showForm();
    EXPECT_EQ(session().PathCartellaSMSSender, u""_s);
}

TEST_F(SmsCreatorTest, OkIsComparedToTheLetter)
{
    onWindow(u"frmSMS"_s, [](QWidget*) {});
    showForm();
    QWidget* form = topLevel("frmSMS");
    ASSERT_NE(form, nullptr);
    for (const auto& [tag, ok] :
         {std::pair{u"OK"_s, true}, {u"ok"_s, false}, {u"OK "_s, false}, {QString(), false}}) {
        form->setProperty("tag", tag);
        EXPECT_EQ(isOkPressed(), ok) << utf8(tag);
        EXPECT_EQ(formChoice(), tag);
    }
}

TEST_F(SmsCreatorTest, WhatToShowChangesOnlyTheNextShowing)
{
    const auto pushVisible = [](QWidget* window) {
        return window->findChild<QTabWidget*>(u"TabControlTipo"_s)->isTabVisible(1);
    };
    bool first = true;
    bool second = false;
    onWindow(u"frmSMS"_s, [&](QWidget* window) {
        whatToShow(true, true, true);
        first = pushVisible(window);
    });
    whatToShow(true, true, false);
    showForm();
    onWindow(u"frmSMS"_s, [&](QWidget* window) { second = pushVisible(window); });
    showForm();
    EXPECT_FALSE(first);
    EXPECT_TRUE(second);
}

TEST_F(SmsCreatorTest, ASecondShowingWithoutADiscardBeginsWithDefaults)
{
    onWindow(u"frmSMS"_s, [](QWidget* window) {
        window->findChild<QLineEdit*>(u"txtANA_Eta_I"_s)->setText(u"18"_s);
        window->findChild<QCheckBox*>(u"chkANA_Eta"_s)->setChecked(true);
    });
    showForm();
    QString text = u"?"_s;
    bool ticked = true;
    onWindow(u"frmSMS"_s, [&](QWidget* window) {
        text = window->findChild<QLineEdit*>(u"txtANA_Eta_I"_s)->text();
        ticked = window->findChild<QCheckBox*>(u"chkANA_Eta"_s)->isChecked();
    });
    showForm();
    EXPECT_EQ(text, QString());
    EXPECT_FALSE(ticked);
    int forms = 0;
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        forms += widget->objectName() == u"frmSMS"_s ? 1 : 0;
    }
    EXPECT_EQ(forms, 1);
}

TEST_F(SmsCreatorTest, AHostsOwnQtKeepsItsTexts)
{
    QString copy;
    onWindow(u"frmSMS"_s, [&](QWidget*) { copy = QCoreApplication::translate("QLineEdit", "&Copy"); });
    showForm();
    EXPECT_EQ(copy, u"&Copy"_s);
}

TEST_F(SmsCreatorTest, WithoutAConnectionTheWindowShowsAllTheSame)
{
    bool shown = false;
    onWindow(u"frmSMS"_s, [&](QWidget*) { shown = true; });
    _SqlConnection* none = nullptr;
    Bstr path(u"x");
    VARIANT_BOOL touch = VARIANT_FALSE;
    VARIANT result{};
    EXPECT_EQ(creator->ShowForm(&none, path.inOut(), &touch, &result), S_OK);
    EXPECT_TRUE(shown);
}

TEST_F(SmsCreatorTest, LateBoundShowFormTakesTheConnectionAsAnObject)
{
    bool shown = false;
    onWindow(u"frmSMS"_s, [&](QWidget*) { shown = true; });
    const Variant connectionObject = Variant::fromDispatch(host.connection().get());
    const Variant path = text("C:\\Gestionale");
    const Variant touch = boolean(false);
    EXPECT_EQ(call(creator.get(), "ShowForm", {connectionObject, path, touch}).result, S_OK);
    EXPECT_TRUE(shown);
    EXPECT_EQ(session().PathMainApplication, u"C:\\Gestionale"_s);

    const Variant wrong = Variant::fromDispatch(creator.get());
    const CallOutcome mismatch = call(creator.get(), "ShowForm", {wrong, path, touch});
    EXPECT_EQ(mismatch.result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(mismatch.argErr, 2U);
}

// ------------------------------------------------------------------------------------ the other windows

TEST_F(SmsCreatorTest, ShowOptionsDoesNotReadTheRegistryIntoTheSession)
{
    saveRegistry(QString::fromLatin1(RegistryKey), u"Options"_s, u"PathCartellaSMSSender"_s, u"C:\\Sender"_s);
    session().PathCartellaSMSSender = u"prima"_s;
    onWindow(u"frmOpzioni"_s,
             [](QWidget* window) { window->findChild<QPushButton*>(u"cmdAnnulla"_s)->click(); });
    EXPECT_TRUE(showOptions(u"C:\\Gestionale"));
    EXPECT_EQ(session().PathMainApplication, u"C:\\Gestionale"_s);
    EXPECT_EQ(session().PathCartellaSMSSender, u"prima"_s);
    EXPECT_EQ(optionsChoice(), u"ESC"_s);
}

TEST_F(SmsCreatorTest, TheOptionsChoiceIsOkEscOrNothing)
{
    onWindow(u"frmOpzioni"_s,
             [](QWidget* window) { window->findChild<QPushButton*>(u"cmdSalva"_s)->click(); });
    EXPECT_TRUE(showOptions());
    EXPECT_EQ(optionsChoice(), u"OK"_s);
    onWindow(u"frmOpzioni"_s, [](QWidget* window) { window->close(); });
    EXPECT_TRUE(showOptions());
    EXPECT_EQ(optionsChoice(), QString());
    discardOptions();
    EXPECT_EQ(topLevel("frmOpzioni"), nullptr);
}

TEST_F(SmsCreatorTest, TheOptionsChoiceLoadsTheDialogWhenThereIsNone)
{
    discardOptions();
    EXPECT_EQ(optionsChoice(), QString());
    EXPECT_NE(topLevel("frmOpzioni"), nullptr);
    EXPECT_FALSE(host.operations("open").empty()) << "its load handler ran";
}

TEST_F(SmsCreatorTest, TheSendErrorCheckGivesFalseAndIsUnloaded)
{
    bool shown = false;
    onWindow(u"frmCheckSendError"_s, [&](QWidget* window) {
        shown = true;
        window->findChild<QPushButton*>(u"cmdChiudi"_s)->click();
    });
    session().PathMainApplication = u"prima"_s;
    _SqlConnection* connectionObject = hostConnection.get();
    VARIANT_BOOL touch = VARIANT_TRUE;
    VARIANT_BOOL result = VARIANT_TRUE;
    EXPECT_EQ(creator->ShowCheckErrorSMSSend(&connectionObject, &touch, &result), S_OK);
    EXPECT_EQ(result, VARIANT_FALSE);
    EXPECT_TRUE(shown);
    EXPECT_EQ(topLevel("frmCheckSendError"), nullptr);
    EXPECT_EQ(session().PathMainApplication, u"prima"_s);
    EXPECT_FALSE(session().ShowTouchMode) << "the argument is accepted and not used";
    EXPECT_TRUE(logged().isEmpty());
}

} // namespace
} // namespace zul
