#include "tests/support/Lines.h"
#include "tests/support/TemporaryFolder.h"

#include "automation/Bstr.h"
#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "automation/ErrorInfo.h"
#include "automation/Variant.h"
#include "base/DateText.h"
#include "host/session/HostDatabase.h"

#include <Zul_Host.h>

#include <servprov.h>

#include <gtest/gtest.h>

using namespace zul;
using namespace zul::host;

namespace {

/// A customer object that is not the host's own: only its id is of use.
class ForeignCustomer final : public ComObject<Dispatching<ICustomer>>
{
public:
    HRESULT STDMETHODCALLTYPE Init(LONG, _SqlConnection*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Id(LONG* value) override
    {
        *value = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Name(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Email(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_ConsensoSms(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_ConsensoEmail(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_IdClassificazione(LONG*) override { return E_NOTIMPL; }

private:
    const DispTable<ICustomer>& dispTable() const override
    {
        static const DispTable<ICustomer> table{};
        return table;
    }
};

class ServicesTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_options.database = m_folder.file("x.db");
        m_options.userName = "Operatrice";
        m_options.journalPath = m_folder.file("journal.txt");
        m_options.startsPrograms = false;
        m_options.programStarted = [this](const std::string& path, const std::string& parameters) {
            m_started.push_back(path + "|" + parameters);
        };
        createDemo(m_options.database, 0);
        m_database = std::make_unique<HostDatabase>(m_options);
        m_database->run(
            "INSERT INTO tabClienti (IdCliente, RagioneSociale1, RagioneSociale2, Paese, provincia,"
            " DataNascita, Telefono2, email, ConsensoSms, ConsensoEmail, idClassificazione) VALUES"
            " (1, 'Rossi {email}', 'Niccolò', 'L''Aquila', 'AQ', '19800229', '+393331234567',"
            " 'n@example.com', 1, 0, 3), (2, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL)");
    }

    _SqlConnection* connection() const { return m_database->connection(); }

    template <typename Service>
    ComPtr<Service> service() const
    {
        ComPtr<Service> result;
        const auto provider = queryFor<IServiceProvider>(connection());
        EXPECT_EQ(provider->QueryService(iidOf<Service>(), iidOf<Service>(), result.putVoid()), S_OK);
        return result;
    }

    ComPtr<ICustomer> customer(LONG id) const
    {
        auto result = service<ICustomer>();
        EXPECT_EQ(result->Init(id, connection()), S_OK);
        return result;
    }

    std::string parsed(std::u16string_view text, ICustomer* of,
                       std::u16string_view classification = u"VIP") const
    {
        Bstr result;
        EXPECT_EQ(
            service<ITextParser>()->Parse(Bstr(text).get(), of, Bstr(classification).get(), result.put()),
            S_OK);
        return result.toUtf8();
    }

    std::vector<std::string> journal() const { return linesOf(m_options.journalPath); }

    TemporaryFolder m_folder;
    HostDatabaseOptions m_options;
    std::unique_ptr<HostDatabase> m_database;
    std::vector<std::string> m_started;
};

std::string name(ICustomer* customer)
{
    Bstr text;
    EXPECT_EQ(customer->get_Name(text.put()), S_OK);
    return text.toUtf8();
}

} // namespace

TEST_F(ServicesTest, KnowsNoOtherService)
{
    const auto provider = queryFor<IServiceProvider>(connection());
    void* object = this;
    EXPECT_EQ(provider->QueryService(iidOf<IConnection>(), iidOf<IUnknown>(), &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(provider->QueryService(iidOf<ICustomer>(), iidOf<ITextParser>(), &object), E_NOINTERFACE);
    EXPECT_EQ(provider->QueryService(iidOf<ICustomer>(), iidOf<ICustomer>(), nullptr), E_POINTER);
}

TEST_F(ServicesTest, ReadsACustomerAfreshAtEveryInit)
{
    const auto one = customer(1);
    LONG id = 0;
    VARIANT_BOOL flag = VARIANT_FALSE;
    EXPECT_EQ(one->get_Id(&id), S_OK);
    EXPECT_EQ(id, 1);
    EXPECT_EQ(name(one.get()), "Rossi {email} Niccolò");
    EXPECT_EQ(one->get_ConsensoSms(&flag), S_OK);
    EXPECT_EQ(flag, VARIANT_TRUE);
    EXPECT_EQ(one->get_ConsensoEmail(&flag), S_OK);
    EXPECT_EQ(flag, VARIANT_FALSE);
    EXPECT_EQ(one->get_IdClassificazione(&id), S_OK);
    EXPECT_EQ(id, 3);
    m_database->run("UPDATE tabClienti SET ConsensoSms = 0 WHERE IdCliente = 1");
    EXPECT_EQ(one->Init(1, connection()), S_OK);
    EXPECT_EQ(one->get_ConsensoSms(&flag), S_OK);
    EXPECT_EQ(flag, VARIANT_FALSE);
}

TEST_F(ServicesTest, AnswersItsPrivateInterfaceWithAReferenceLikeAnyOther)
{
    const GUID privateId = {0x7a1f6d0c, 0x52e5, 0x4c7e, {0x9b, 0x0b, 0x0e, 0x5a, 0x3c, 0x7d, 0x41, 0xb2}};
    auto one = customer(1);
    const auto references = [](IUnknown* object) { return object->AddRef(), object->Release(); };
    const ULONG before = references(one.get());
    ComPtr<IUnknown> own;
    ASSERT_EQ(one->QueryInterface(privateId, own.putVoid()), S_OK);
    EXPECT_EQ(references(one.get()), before + 1);
    EXPECT_EQ(queryFor<IUnknown>(own.get()).get(), queryFor<IUnknown>(one.get()).get());
    // It keeps the object alive.
    one.reset();
    EXPECT_EQ(name(queryFor<ICustomer>(own.get()).get()), "Rossi {email} Niccolò");
    EXPECT_EQ(makeCom<ForeignCustomer>()->QueryInterface(privateId, own.putVoid()), E_NOINTERFACE);
}

TEST_F(ServicesTest, HasNoCustomerWhereThereIsNone)
{
    const auto nobody = customer(1);
    EXPECT_EQ(nobody->Init(99, connection()), S_OK);
    LONG id = 5;
    Bstr text;
    EXPECT_EQ(nobody->get_Id(&id), S_OK);
    EXPECT_EQ(id, 0);
    EXPECT_EQ(name(nobody.get()), "");
    EXPECT_EQ(nobody->get_Email(text.put()), S_OK);
    EXPECT_TRUE(text.isEmpty());
    EXPECT_EQ(nobody->Init(1, nullptr), E_POINTER);
}

TEST_F(ServicesTest, TakesACustomerOfNulls)
{
    const auto blank = customer(2);
    EXPECT_EQ(name(blank.get()), " ");
    LONG id = 5;
    EXPECT_EQ(blank->get_IdClassificazione(&id), S_OK);
    EXPECT_EQ(id, 0);
    VARIANT_BOOL flag = VARIANT_TRUE;
    EXPECT_EQ(blank->get_ConsensoSms(&flag), S_OK);
    EXPECT_EQ(flag, VARIANT_FALSE);
    EXPECT_EQ(parsed(u"[{Eta}{DataNascita}{Paese}{email}]", blank.get(), u""), "[]");
}

TEST_F(ServicesTest, FillsEveryPlaceholder)
{
    const auto one = customer(1);
    EXPECT_EQ(parsed(u"{RagioneSociale1}|{RagioneSociale2}|{Cliente}", one.get()),
              "Rossi {email}|Niccolò|Rossi {email} Niccolò");
    EXPECT_EQ(parsed(u"{Paese}|{Provincia}|{Telefono2}|{email}|{Classificazione}", one.get()),
              "L'Aquila|AQ|+393331234567|n@example.com|VIP");
    // Day and month stand as the user's locale has them; the year is there in full.
    EXPECT_NE(parsed(u"{DataNascita}", one.get()).find("1980"), std::string::npos);
    EXPECT_NE(parsed(u"{DataNascita}", one.get()).find("29"), std::string::npos);
    const int thisYear = civilFromDate(currentDate()).year;
    EXPECT_EQ(parsed(u"{Eta}", one.get()), std::to_string(thisYear - 1980));
    EXPECT_EQ(parsed(u"{cliente} {Altro} {", one.get()), "{cliente} {Altro} {");
    EXPECT_EQ(parsed(u"", one.get()), "");
}

TEST_F(ServicesTest, ReadsTheCustomerOfAnotherObjectByItsId)
{
    const auto foreign = makeCom<ForeignCustomer>();
    EXPECT_EQ(parsed(u"{RagioneSociale2}", foreign.get()), "Niccolò");
    Bstr result;
    EXPECT_EQ(service<ITextParser>()->Parse(Bstr(u"x").get(), nullptr, nullptr, result.put()), E_POINTER);
}

TEST_F(ServicesTest, StoresAMessageWithWhatWasPutInTheOrderOfTheColumns)
{
    const auto record = service<IMessageRecord>();
    VARIANT_BOOL stored = VARIANT_FALSE;
    // Put backwards: the order in the row is the record's own.
    record->put_UtenteUltimoAccesso(Bstr(u"Operatrice").get());
    record->put_OraCreaz(0.5);
    record->put_DataCreaz(*parseDate("2024-05-01"));
    record->put_Valore(0);
    record->put_Flag3(VARIANT_TRUE);
    record->put_Flag2(VARIANT_TRUE);
    record->put_Flag1(VARIANT_TRUE);
    record->put_Riferimento(Bstr(u"-1").get());
    record->put_IDCliente(1);
    record->put_Contatto(Bstr(u"+393331234567").get());
    record->put_Testo(Bstr(u"l'età € 😀").get());
    record->put_Descrizione(Bstr(u"SMS").get());
    record->put_IdTipoMessaggio(6);
    ASSERT_EQ(record->Save(connection(), &stored), S_OK);
    EXPECT_EQ(stored, VARIANT_TRUE);
    // The next message of the same record has nothing of the first.
    record->put_IDCliente(2);
    ASSERT_EQ(record->Save(connection(), &stored), S_OK);
    EXPECT_EQ(stored, VARIANT_TRUE);
    const auto lines = journal();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0],
              "{\"op\":\"insert\",\"table\":\"TMK_MailingList\",\"values\":[[\"idMailing\",1],["
              "\"idTipoMessaggio\",6],"
              "[\"Descrizione\",\"SMS\"],[\"Testo\",\"l'età € "
              "😀\"],[\"Contatto\",\"+393331234567\"],[\"IDCliente\",1],"
              "[\"Riferimento\",\"-1\"],[\"Flag1\",true],[\"Flag2\",true],[\"Flag3\",true],[\"Valore\",0],"
              "[\"DataCreaz\",\"2024-05-01 00:00:00.000\"],[\"OraCreaz\",\"1899-12-30 12:00:00.000\"],"
              "[\"UtenteUltimoAccesso\",\"Operatrice\"]]}");
    EXPECT_EQ(
        lines[1],
        "{\"op\":\"insert\",\"table\":\"TMK_MailingList\",\"values\":[[\"idMailing\",2],[\"IDCliente\",2]]}");
    const auto rows =
        m_database->run("SELECT idMailing, IDCliente, Testo, idCampagna FROM TMK_MailingList").rows;
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0][2], "l'età € 😀");
    EXPECT_EQ(rows[0][3], std::nullopt);
    EXPECT_EQ(rows[1][2], std::nullopt);
}

TEST_F(ServicesTest, TheJournalTellsThatAPasswordWasStoredAndNotWhich)
{
    ComPtr<IConnection> rows;
    ASSERT_EQ(connection()->get_Connection(rows.put()), S_OK);
    const auto store = [&](bool adds, std::u16string_view name, std::u16string_view value) {
        ComPtr<IRecordset> settings;
        const std::u16string sql =
            u"SELECT * FROM tabImpostazioni WHERE descrizione='" + std::u16string(name) + u"'";
        ASSERT_EQ(rows->OpenRecordset(Bstr(sql).get(), CursorDynamic, LockOptimistic, settings.put()), S_OK);
        if (adds) {
            ASSERT_EQ(settings->AddNew(), S_OK);
            ASSERT_EQ(settings->put_Value(Variant::fromText(u"Descrizione"), Variant::fromText(name)), S_OK);
        }
        ASSERT_EQ(settings->put_Value(Variant::fromText(u"Valore"), Variant::fromText(value)), S_OK);
        ASSERT_EQ(settings->Update(), S_OK);
    };
    store(true, u"SMS_CHECK_FTP_Password", u"segreta");
    store(false, u"SMS_CHECK_FTP_Password", u"segreta2");
    store(false, u"SMS_CHECK_FTP_Password", u"");
    store(true, u"SMS_CHECK_FTP_User", u"utente");
    std::string all;
    for (const std::string& line : journal()) {
        all += line + "\n";
    }
    EXPECT_EQ(all.find("segreta"), std::string::npos) << all;
    EXPECT_NE(all.find(R"([["Descrizione","SMS_CHECK_FTP_Password"],["Valore","***"]])"), std::string::npos)
        << all;
    EXPECT_NE(all.find(R"({"op":"update","table":"tabImpostazioni","values":[["Valore","***"]]})"),
              std::string::npos)
        << all;
    EXPECT_NE(all.find(R"([["Valore",""]])"), std::string::npos) << all;
    EXPECT_NE(all.find(R"(["Valore","utente"])"), std::string::npos) << all;
    EXPECT_EQ(m_database->run("SELECT Valore FROM tabImpostazioni WHERE Descrizione='SMS_CHECK_FTP_User'")
                  .rows.at(0)
                  .at(0),
              "utente");
}

TEST_F(ServicesTest, SaysWhenAMessageCannotBeStored)
{
    m_database->run("DROP TABLE TMK_MailingList");
    const auto record = service<IMessageRecord>();
    VARIANT_BOOL stored = VARIANT_TRUE;
    EXPECT_EQ(record->Save(connection(), &stored), static_cast<HRESULT>(ErrorCode::NoTable));
    EXPECT_EQ(stored, VARIANT_FALSE);
    EXPECT_NE(takeErrorDetails(E_FAIL).description.find(u"TMK_MailingList"), std::u16string::npos);
    ASSERT_EQ(journal().size(), 1U);
    EXPECT_NE(journal()[0].find("\"error\":"), std::string::npos);
    EXPECT_EQ(record->Save(nullptr, &stored), E_POINTER);
    EXPECT_EQ(record->Save(connection(), nullptr), E_POINTER);
}

TEST_F(ServicesTest, KeepsAppMessagesInATableWithoutAService)
{
    const auto connector = service<IAppConnector>();
    ASSERT_EQ(connector->Init(Bstr(u"negozio").get(), Bstr(u"sale").get()), S_OK);
    Bstr error;
    VARIANT_BOOL sent = VARIANT_FALSE;
    const double when = *parseDate("2024-05-01 10:20:30");
    ASSERT_EQ(connector->SendToContact(Bstr(u"a@example.com").get(), when, Bstr(u"ciao 😀").get(), error.put(),
                                       &sent),
              S_OK);
    EXPECT_EQ(sent, VARIANT_TRUE);
    EXPECT_TRUE(error.isEmpty());
    ASSERT_EQ(connector->SendToEverybody(Bstr(u"a tutti").get(), when, error.put(), &sent), S_OK);
    EXPECT_EQ(sent, VARIANT_TRUE);
    const auto rows = m_database->run("SELECT Slug, Email, Testo, Data FROM appOutbox ORDER BY id").rows;
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0], (std::vector<std::optional<std::string>>{"negozio", "a@example.com", "ciao 😀",
                                                                "2024-05-01 10:20:30.000"}));
    EXPECT_EQ(rows[1][1], std::nullopt);
}

TEST_F(ServicesTest, GivesNoIdBeyondThirtyTwoBits)
{
    m_database->run("INSERT INTO TMK_MailingList (idMailing) VALUES (2147483647)");
    const auto record = service<IMessageRecord>();
    VARIANT_BOOL stored = VARIANT_TRUE;
    EXPECT_NE(record->Save(connection(), &stored), S_OK);
    EXPECT_EQ(stored, VARIANT_FALSE);
    EXPECT_EQ(m_database->run("SELECT COUNT(*) FROM TMK_MailingList").rows.at(0).at(0), "1");

    const auto connector = service<IAppConnector>();
    ASSERT_EQ(connector->Init(Bstr(u"app").get(), Bstr(u"sale").get()), S_OK);
    Bstr why;
    VARIANT_BOOL sent = VARIANT_FALSE;
    ASSERT_EQ(connector->SendToContact(nullptr, 45000.5, Bstr(u"Ciao").get(), why.put(), &sent), S_OK);
    ASSERT_EQ(sent, VARIANT_TRUE) << why.toUtf8();
    m_database->run("UPDATE appOutbox SET id = 2147483647");
    ASSERT_EQ(connector->SendToContact(nullptr, 45000.5, Bstr(u"Ciao").get(), why.put(), &sent), S_OK);
    EXPECT_EQ(sent, VARIANT_FALSE);
    EXPECT_EQ(why.toUtf8(), "the ids of appOutbox are used up");
    EXPECT_EQ(m_database->run("SELECT COUNT(*) FROM appOutbox").rows.at(0).at(0), "1");
}

TEST_F(ServicesTest, MakesItsOwnTablesWhereTheyAreMissing)
{
    for (const char* table : {"appOutbox", "tabModificheRighe", "tabContatori"}) {
        m_database->run(std::string("DROP TABLE ") + table);
    }
    Bstr error;
    VARIANT_BOOL sent = VARIANT_FALSE;
    ASSERT_EQ(service<IAppConnector>()->SendToEverybody(Bstr(u"x").get(), 0, error.put(), &sent), S_OK);
    EXPECT_EQ(sent, VARIANT_TRUE) << error.toUtf8();
    EXPECT_EQ(service<IChangeTracker>()->RowAdded(Bstr(u"TMK_Messaggi").get(), 12, connection()), S_OK);
}

TEST_F(ServicesTest, TellsWhyAnAppMessageWasNotSent)
{
    m_options.appUrl = "http://127.0.0.1:1/";
    m_database = std::make_unique<HostDatabase>(m_options);
    Bstr error;
    VARIANT_BOOL sent = VARIANT_TRUE;
    ASSERT_EQ(service<IAppConnector>()->SendToEverybody(Bstr(u"x").get(), 0, error.put(), &sent), S_OK);
    EXPECT_EQ(sent, VARIANT_FALSE);
    EXPECT_FALSE(error.isEmpty());
}

TEST_F(ServicesTest, RemembersWhichRowsWereWritten)
{
    ASSERT_EQ(service<IChangeTracker>()->RowAdded(Bstr(u"TMK_Messaggi").get(), 12, connection()), S_OK);
    const auto rows = m_database->run("SELECT Tabella, Chiave, Utente FROM tabModificheRighe").rows;
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0], (std::vector<std::optional<std::string>>{"TMK_Messaggi", "12", "Operatrice"}));
    EXPECT_TRUE(journal().empty());
}

TEST_F(ServicesTest, JudgesAddresses)
{
    VARIANT_BOOL valid = VARIANT_FALSE;
    ASSERT_EQ(service<IEmailCheck>()->IsValid(Bstr(u"a@example.com").get(), &valid), S_OK);
    EXPECT_EQ(valid, VARIANT_TRUE);
    ASSERT_EQ(service<IEmailCheck>()->IsValid(nullptr, &valid), S_OK);
    EXPECT_EQ(valid, VARIANT_FALSE);
}

TEST_F(ServicesTest, TellsOfEveryProgram)
{
    ASSERT_EQ(service<IProgramStarter>()->Start(Bstr(u"/opt/à/ZULSms_Sender.exe").get(),
                                                Bstr(u" -connectionstring:x y").get()),
              S_OK);
    EXPECT_EQ(m_started, std::vector<std::string>{"/opt/à/ZULSms_Sender.exe| -connectionstring:x y"});
}

TEST_F(ServicesTest, SaysWhenAProgramCannotBeStarted)
{
    m_options.startsPrograms = true;
    m_database = std::make_unique<HostDatabase>(m_options);
    EXPECT_TRUE(FAILED(
        service<IProgramStarter>()->Start(Bstr(m_folder.path().empty() ? u"" : u"/no/such").get(), nullptr)));
    EXPECT_NE(takeErrorDetails(E_FAIL).description.find(u"/no/such"), std::u16string::npos);
}

TEST_F(ServicesTest, AnswersByNameToo)
{
    const auto dispatch = queryFor<IDispatch>(service<ICustomerFilterSql>().get());
    const Bstr name(u"classificazione");
    LPOLESTR member = name.get();
    DISPID id = 0;
    ASSERT_EQ(dispatch->GetIDsOfNames(GUID_NULL, &member, 1, LOCALE_USER_DEFAULT, &id), S_OK);
    Variant argument = Variant::fromLong(3);
    DISPPARAMS parameters{&argument, nullptr, 1, 0};
    Variant result;
    ASSERT_EQ(dispatch->Invoke(id, GUID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, result.put(),
                               nullptr, nullptr),
              S_OK);
    EXPECT_EQ(result.text().substr(0, 11), u"DELETE FROM");
}

TEST(HostDatabase, SaysWhyItCannotBeOpened)
{
    for (const char* database : {"", "/no/such/folder/x.db"}) {
        HostDatabaseOptions options;
        options.database = database;
        EXPECT_THROW(HostDatabase{options}, EngineError) << database;
    }
    const TemporaryFolder folder;
    HostDatabaseOptions options;
    options.database = folder.file("x.db");
    createDemo(options.database, 0);
    options.journalPath = "/no/such/folder/journal.txt";
    EXPECT_THROW(HostDatabase{options}, EngineError);
}
