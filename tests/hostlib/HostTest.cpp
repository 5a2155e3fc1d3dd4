#include "hostlib/Host.h"

#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "hostlib/Error.h"
#include "hostlib/NewRowId.h"
#include "tests/support/ComponentTest.h"

#include <servprov.h>

#include <gtest/gtest.h>

#include <functional>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

class HostTest : public ComponentTest
{
protected:
    void scriptCustomer()
    {
        host.answer("IdCliente=1", {{"IdCliente", "RagioneSociale1", "RagioneSociale2", "email",
                                     "ConsensoSms", "ConsensoEmail", "idClassificazione"},
                                    {{number(1), text("D'Amico"), null(), text("d@x.it"), boolean(true),
                                      number(0), number(4)}}});
    }
};

TEST_F(HostTest, WithoutAConnectionEverythingIsObjectNotSet)
{
    const hostlib::SqlConnection none;
    EXPECT_FALSE(static_cast<bool>(none));
    EXPECT_EQ(errorOf([&] { none.connection(); }), 91);
    EXPECT_EQ(errorOf([&] { none.userName(); }), 91);
    EXPECT_EQ(errorOf([&] { none.lookupText(u"a"_s, u"b"_s, u"c"_s); }), 91);
    EXPECT_EQ(errorOf([&] { hostlib::NewRowId(none, u"t"_s, u"k"_s); }), 91);
}

TEST_F(HostTest, LookupsGiveTextsAndAnEmptyOneWhenThereIsNone)
{
    host.answerLookup("id = 1", text("L'à 😀"));
    host.answerLookup("id = 2", null());
    host.answerLookup("id = 3", number(12));
    const auto lookup = [&](const char* condition) {
        return connection().lookupText(u"descrizione"_s, u"t"_s, QString::fromLatin1(condition));
    };
    EXPECT_EQ(lookup("id = 1"), u"L'à 😀"_s);
    EXPECT_EQ(lookup("id = 2"), QString());
    EXPECT_EQ(lookup("id = 3"), u"12"_s);
    EXPECT_EQ(lookup("id = 4"), QString());
    EXPECT_EQ(host.operations().front(), "lookup descrizione|t|id = 1");
    host.failNth("lookup", 1, E_FAIL, u"no");
    EXPECT_EQ(errorOf([&] { lookup("id = 1"); }), static_cast<long>(E_FAIL));
}

TEST_F(HostTest, TheUsersNameIsTheConnectionObjects)
{
    host.userName() = "D'Amico à";
    EXPECT_EQ(connection().userName(), u"D'Amico à"_s);
}

TEST_F(HostTest, TheTrackerIsToldWhenThereIsOne)
{
    connection().tellRowAdded(u"T"_s, 3);
    EXPECT_TRUE(host.operations().empty());
    host.offer(Service::ChangeTracker);
    connection().tellRowAdded(u"T"_s, 3);
    EXPECT_EQ(host.operations(), Lines{"tracked T 3"});
}

TEST_F(HostTest, ProgramsAreStartedByTheHostWhenItWantsTo)
{
    EXPECT_FALSE(connection().startProgram(u"/a/b"_s, u" -x:y"_s));
    host.offer(Service::ProgramStarter);
    EXPECT_TRUE(connection().startProgram(u"/a/b"_s, u" -x:y"_s));
    EXPECT_EQ(host.operations(), Lines{"start /a/b| -x:y"});
    host.failNth("start", 1, E_FAIL, u"no");
    EXPECT_TRUE(connection().startProgram(u"/a/b"_s, QString()))
        << "the result of the start is not looked at";
}

TEST_F(HostTest, ACustomerOfTheHost)
{
    host.offer(Service::Customer);
    host.customers()[7] = {"L'à 😀", "a@b.it", true, false, 4};
    hostlib::Customer customer(connection());
    EXPECT_EQ(customer.id(), 0) << "empty until init";
    customer.init(7);
    EXPECT_EQ(customer.id(), 7);
    EXPECT_EQ(customer.name(), u"L'à 😀"_s);
    EXPECT_EQ(customer.email(), u"a@b.it"_s);
    EXPECT_TRUE(customer.consensoSms());
    EXPECT_FALSE(customer.consensoEmail());
    EXPECT_EQ(customer.idClassificazione(), 4);
    customer.init(8);
    EXPECT_LT(customer.id(), 1);
    EXPECT_FALSE(customer.consensoSms());
}

TEST_F(HostTest, TheStandInReadsTheCustomersColumnsAfreshEveryTime)
{
    scriptCustomer();
    hostlib::Customer customer(connection());
    customer.init(1);
    EXPECT_EQ(customer.id(), 1);
    EXPECT_EQ(customer.name(), u"D'Amico "_s) << "two names joined by one blank, a NULL as the empty text";
    EXPECT_EQ(customer.email(), u"d@x.it"_s);
    EXPECT_TRUE(customer.consensoSms());
    EXPECT_FALSE(customer.consensoEmail());
    EXPECT_EQ(customer.idClassificazione(), 4);
    customer.init(2);
    EXPECT_EQ(customer.id(), 0);
    EXPECT_EQ(customer.name(), QString());
    EXPECT_FALSE(customer.consensoSms());
    EXPECT_EQ(customer.idClassificazione(), 0);
    EXPECT_EQ(host.operations(), (Lines{"open SELECT * FROM tabClienti WHERE IdCliente=1 static read-only",
                                        "open SELECT * FROM tabClienti WHERE IdCliente=2 static read-only"}));
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(HostTest, AParserOfTheHostGetsACustomerAlsoWhenTheHostHasNone)
{
    host.offer(Service::TextParser);
    scriptCustomer();
    hostlib::Customer customer(connection());
    customer.init(1);
    const hostlib::TextParser parser(connection());
    EXPECT_EQ(parser.parse(u"Ciao"_s, customer, u"Buono"_s), u"Ciao<D'Amico ,Buono>"_s);
}

TEST_F(HostTest, WithoutAParserTheTextStaysAsItIs)
{
    const hostlib::Customer customer(connection());
    EXPECT_EQ(hostlib::TextParser(connection()).parse(u"[NOME] 100% 😀"_s, customer, u"x"_s),
              u"[NOME] 100% 😀"_s);
}

TEST_F(HostTest, WithoutAnAdvancedSearchTheFilterIsEmptyAsAfterACancel)
{
    EXPECT_EQ(hostlib::AdvancedSearch(connection()).search(connection(), 1), QString());
    host.offer(Service::AdvancedSearch);
    host.searchAnswers() = {"select 1"};
    hostlib::AdvancedSearch search(connection());
    EXPECT_EQ(search.search(connection(), 1), u"select 1"_s);
    EXPECT_EQ(search.search(connection(), 1), QString());
    EXPECT_EQ(host.operations(), (Lines{"searchconnection", "search 1", "searchconnection", "search 1"}));
}

TEST_F(HostTest, TheConnectorTellsWhyItDidNotSend)
{
    host.offer(Service::AppConnector);
    host.connectorErrors() = {"Servizio 'sospeso'", ""};
    hostlib::AppConnector connector(connection(), u"slug"_s, u"salt"_s);
    const auto failed = connector.sendToContact(u"a@b.it"_s, QDateTime::currentDateTime(), u"x"_s);
    EXPECT_FALSE(failed.sent);
    EXPECT_EQ(failed.errorText, u"Servizio 'sospeso'"_s);
    const auto sent = connector.sendToEverybody(u"x"_s, QDateTime::currentDateTime());
    EXPECT_TRUE(sent.sent);
    EXPECT_EQ(sent.errorText, QString());
    EXPECT_EQ(host.operations(), (Lines{"init slug|salt", "push a@b.it|x", "pushall x"}));
}

TEST_F(HostTest, WithoutAConnectorEverySendFailsWithItsText)
{
    hostlib::AppConnector connector(connection(), u"slug"_s, u"salt"_s);
    const auto one = connector.sendToContact(u"a@b.it"_s, QDateTime::currentDateTime(), u"x"_s);
    EXPECT_FALSE(one.sent);
    EXPECT_EQ(one.errorText, u"Connettore app non disponibile."_s);
    const auto all = connector.sendToEverybody(u"x"_s, QDateTime::currentDateTime());
    EXPECT_FALSE(all.sent);
    EXPECT_EQ(all.errorText, u"Connettore app non disponibile."_s);
}

TEST_F(HostTest, WithoutFiltersEveryStatementIsObjectNotSet)
{
    const hostlib::CustomerFilterSql filters(connection());
    const QDate day(2025, 1, 1);
    EXPECT_EQ(errorOf([&] { filters.Ricorrenze(1, day, day); }), 91);
    EXPECT_EQ(errorOf([&] { filters.RicorrenzeIn(1, day, day, u""_s); }), 91);
    EXPECT_EQ(errorOf([&] { filters.PuntiFidelity(1, 2); }), 91);
    EXPECT_EQ(errorOf([&] { filters.PuntiFidelityIn(1, 2, u""_s); }), 91);
    EXPECT_EQ(errorOf([&] { filters.Classificazione(1); }), 91);
    EXPECT_EQ(errorOf([&] { filters.ClassificazioneIn(1, u""_s); }), 91);
    EXPECT_EQ(errorOf([&] { filters.Fatturato(day, day, 1, 2); }), 91);
    EXPECT_EQ(errorOf([&] { filters.FatturatoIn(day, day, 1, 2, u""_s); }), 91);
    EXPECT_EQ(errorOf([&] { filters.NumeroAcquisti(day, day, 1, 2); }), 91);
    EXPECT_EQ(errorOf([&] { filters.NumeroAcquistiIn(day, day, 1, 2, u""_s); }), 91);
    EXPECT_EQ(errorOf([&] { filters.PeriodoAcquisto(day, day); }), 91);
    EXPECT_EQ(errorOf([&] { filters.PeriodoAcquistoIn(day, day, u""_s); }), 91);
}

// Nothing but the connection, and an answer of its own to whoever asks for its other objects.
class BareConnection final : public ComObject<Dispatching<_SqlConnection>>
{
public:
    explicit BareConnection(HRESULT answer)
        : m_answer(answer)
    {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        if (iid == iidOf<IServiceProvider>()) {
            *object = nullptr;
            return m_answer;
        }
        return ComObject::QueryInterface(iid, object);
    }
    HRESULT STDMETHODCALLTYPE get_Connection(IConnection**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_UserName(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE LookupValue(BSTR, BSTR, BSTR, VARIANT*) override { return E_NOTIMPL; }

private:
    const DispTable<_SqlConnection>& dispTable() const override
    {
        static const DispTable<_SqlConnection> table{};
        return table;
    }

    HRESULT m_answer;
};

hostlib::SqlConnection bare(HRESULT answer)
{
    return hostlib::SqlConnection(makeCom<BareConnection>(answer));
}

TEST_F(HostTest, AServiceThatCannotBeHadIsAnErrorAndNotOneThatTheHostLacks)
{
    host.offerAll();
    struct Asked
    {
        const char* name;
        std::function<void(const hostlib::SqlConnection&)> ask;
    };
    const QDate day(2025, 1, 1);
    const Asked services[] = {
        {"IIdGenerator", [](const auto& of) { of.generatedId(u"T"_s, u"k"_s); }},
        {"IChangeTracker", [](const auto& of) { of.tellRowAdded(u"T"_s, 3); }},
        {"IProgramStarter", [](const auto& of) { of.startProgram(u"/a/b"_s, QString()); }},
        {"IEmailCheck", [](const auto& of) { of.isValidEmail(u"a@b.it"_s); }},
        {"ICustomer", [](const auto& of) { hostlib::Customer{of}; }},
        {"IMessageRecord", [](const auto& of) { hostlib::MessageRecord{of}; }},
        {"ITextParser", [](const auto& of) { hostlib::TextParser{of}; }},
        {"ICustomerFilterSql",
         [&](const auto& of) { hostlib::CustomerFilterSql(of).Ricorrenze(1, day, day); }},
        {"IAdvancedSearch", [](const auto& of) { hostlib::AdvancedSearch{of}; }},
        {"IAppConnector", [](const auto& of) { hostlib::AppConnector(of, u"slug"_s, u"salt"_s); }},
    };
    for (const HRESULT code : {E_FAIL, E_OUTOFMEMORY, E_UNEXPECTED, E_ACCESSDENIED, E_POINTER}) {
        for (const Asked& service : services) {
            host.noFailures();
            host.forgetOperations();
            host.failNth("service", 1, code, u"servizio occupato");
            const hostlib::SqlConnection asked(host.connection());
            QString description;
            EXPECT_EQ(errorOf([&] { service.ask(asked); }, &description), static_cast<long>(code))
                << service.name;
            EXPECT_EQ(description, u"servizio occupato"_s) << service.name;
            EXPECT_EQ(errorOf([&] { service.ask(asked); }), 0) << service.name << " is asked for again";
        }
    }
}

TEST_F(HostTest, AHostThatSaysThatItHasNoSuchServiceLacksIt)
{
    host.offerAll();
    const hostlib::Customer customer(connection());
    for (const HRESULT code : {E_NOINTERFACE, E_NOTIMPL}) {
        host.noFailures();
        host.forgetOperations();
        host.failNth("service", 1, code, u"mai visto");
        EXPECT_EQ(hostlib::TextParser(connection()).parse(u"{Cliente}"_s, customer, QString()),
                  u"{Cliente}"_s);
        EXPECT_TRUE(bare(code).isValidEmail(u"a@b.it"_s)) << "the stand-in's answer";
        EXPECT_FALSE(bare(code).startProgram(u"/a/b"_s, QString()));
    }
    EXPECT_EQ(errorOf([] { bare(E_UNEXPECTED).isValidEmail(u"a@b.it"_s); }), static_cast<long>(E_UNEXPECTED))
        << "whether it has any cannot be known";
}

} // namespace
} // namespace zul
