#include "host/services/FailingConnection.h"

#include "automation/Bstr.h"
#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "automation/ErrorInfo.h"
#include "automation/Variant.h"

#include <servprov.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <utility>

namespace zul::host {

namespace {

constexpr std::u16string_view sourceName = u"Zul_Host.FailingConnection";
constexpr HRESULT silentCode = static_cast<HRESULT>(0x80004005);

struct KindWord
{
    std::string_view word;
    FailureKind kind;
};
constexpr std::array<KindWord, 6> kindWords{{{"error", FailureKind::Error},
                                             {"silent", FailureKind::Silent},
                                             {"type", FailureKind::Type},
                                             {"lost", FailureKind::Lost},
                                             {"end", FailureKind::End},
                                             {"kill", FailureKind::Kill}}};

/// Counts, and decides what becomes of an operation.
class Failures
{
public:
    Failures(const FailurePlan& plan, std::shared_ptr<FailureCounts> counts)
        : m_plan(plan)
        , m_counts(std::move(counts))
    {}

    /// What is to happen to this operation; nothing: it is carried out.
    std::optional<FailureKind> next()
    {
        const long number = ++m_counts->operations;
        const bool hit = m_plan.at > 0 &&
                         (number == m_plan.at || (m_plan.kind == FailureKind::Lost && number > m_plan.at));
        if (hit && m_plan.kind == FailureKind::Kill) {
            std::_Exit(killedCode);
        }
        return hit ? std::optional(m_plan.kind) : std::nullopt;
    }

    static HRESULT failed(FailureKind kind)
    {
        if (kind == FailureKind::Silent) {
            SetErrorInfo(0, nullptr);
            return silentCode;
        }
        return reportError(
            E_FAIL, kind == FailureKind::Lost ? u"guasto di prova: connessione persa" : u"guasto di prova",
            sourceName);
    }

    /// One that has no answer to spoil: `call` is made unless it fails.
    template <typename Call>
    HRESULT run(Call&& call)
    {
        const auto kind = next();
        return kind && fails(*kind) ? failed(*kind) : std::forward<Call>(call)();
    }

    static bool fails(FailureKind kind)
    {
        return kind == FailureKind::Error || kind == FailureKind::Silent || kind == FailureKind::Lost;
    }

    FailureCounts& counts() { return *m_counts; }

private:
    FailurePlan m_plan;
    std::shared_ptr<FailureCounts> m_counts;
};

using FailuresPtr = std::shared_ptr<Failures>;

// A value that no column and no lookup gives: an object that is none.
void spoil(VARIANT* value)
{
    VariantClear(value);
    value->vt = VT_UNKNOWN;
    value->punkVal = nullptr;
}

/// Hands rows on, and fails between two of them.
class FailingSink final : public ComObject<IRowSink>
{
public:
    FailingSink(FailuresPtr failures, IRowSink* behind)
        : m_failures(std::move(failures))
        , m_behind(behind)
    {}

    HRESULT STDMETHODCALLTYPE Row(LONG count, const ZulCell* cells) override
    {
        const auto kind = m_failures->next();
        if (kind && Failures::fails(*kind)) {
            return Failures::failed(*kind);
        }
        // The rest of the rows is read and not handed on.
        m_ended = m_ended || kind == FailureKind::End;
        if (kind == FailureKind::Type) {
            std::array<ZulCell, 64> spoilt{};
            const LONG taken = std::min<LONG>(count, static_cast<LONG>(spoilt.size()));
            for (LONG i = 0; i < taken; ++i) {
                spoilt[static_cast<std::size_t>(i)] = cells[i];
                spoilt[static_cast<std::size_t>(i)].Kind = 99;
            }
            return m_behind->Row(taken, spoilt.data());
        }
        return m_ended ? S_OK : m_behind->Row(count, cells);
    }

private:
    FailuresPtr m_failures;
    IRowSink* m_behind;
    bool m_ended = false;
};

class FailingRecordset final : public ComObject<Dispatching<IRecordset>, IRowReader>
{
public:
    FailingRecordset(FailuresPtr failures, ComPtr<IRecordset> behind, bool ended)
        : m_failures(std::move(failures))
        , m_behind(std::move(behind))
        , m_ended(ended)
    {
        ++m_failures->counts().openRowSets;
    }
    ~FailingRecordset() override { giveBack(); }

    HRESULT STDMETHODCALLTYPE get_Eof(VARIANT_BOOL* value) override
    {
        return step([&] {
            const HRESULT result = m_behind->get_Eof(value);
            if (SUCCEEDED(result) && m_ended) {
                *value = VARIANT_TRUE;
            }
            return result;
        });
    }
    HRESULT STDMETHODCALLTYPE get_FieldCount(LONG* value) override
    {
        return step([&] { return m_behind->get_FieldCount(value); }, [&] { *value = -1; });
    }
    HRESULT STDMETHODCALLTYPE FieldName(LONG index, BSTR* name) override
    {
        return step([&] { return m_behind->FieldName(index, name); }, [&] { *name = nullptr; });
    }
    HRESULT STDMETHODCALLTYPE get_Value(VARIANT field, VARIANT* value) override
    {
        return step([&] { return m_behind->get_Value(field, value); }, [&] { spoil(value); });
    }
    HRESULT STDMETHODCALLTYPE put_Value(VARIANT field, VARIANT value) override
    {
        return step([&] { return m_behind->put_Value(field, value); });
    }
    HRESULT STDMETHODCALLTYPE MoveNext() override
    {
        return step([&] { return m_behind->MoveNext(); });
    }
    HRESULT STDMETHODCALLTYPE AddNew() override
    {
        return step([&] { return m_behind->AddNew(); });
    }
    HRESULT STDMETHODCALLTYPE Update() override
    {
        return step([&] { return m_behind->Update(); });
    }
    HRESULT STDMETHODCALLTYPE Close() override
    {
        giveBack();
        return m_behind->Close();
    }
    HRESULT STDMETHODCALLTYPE ReadRows(IRowSink* sink) override
    {
        const auto reader = queryFor<IRowReader>(m_behind.get());
        if (!reader || sink == nullptr) {
            return E_NOTIMPL;
        }
        return step([&] {
            if (m_ended) {
                return S_OK;
            }
            const ComPtr<FailingSink> between = makeCom<FailingSink>(m_failures, sink);
            return reader->ReadRows(between.get());
        });
    }

private:
    /// Runs a member; `spoilAnswer` changes the answer of one that succeeded.
    template <typename Call, typename Spoil>
    HRESULT step(Call&& call, Spoil&& spoilAnswer)
    {
        const auto kind = m_failures->next();
        if (kind && Failures::fails(*kind)) {
            return Failures::failed(*kind);
        }
        m_ended = m_ended || kind == FailureKind::End;
        const HRESULT result = call();
        if (SUCCEEDED(result) && kind == FailureKind::Type) {
            spoilAnswer();
        }
        return result;
    }
    template <typename Call>
    HRESULT step(Call&& call)
    {
        return step(std::forward<Call>(call), [] {});
    }

    void giveBack()
    {
        if (std::exchange(m_open, false)) {
            --m_failures->counts().openRowSets;
        }
    }

    const DispTable<IRecordset>& dispTable() const override
    {
        using namespace zul::dispatch;
        static const DispTable<IRecordset> table{
            propget("Eof", 1, &IRecordset::get_Eof),
            propget("FieldCount", 2, &IRecordset::get_FieldCount),
            method("FieldName", 3, &IRecordset::FieldName, {"index"}),
            propget("Value", 0, &IRecordset::get_Value, {"field"}),
            propput("Value", 0, &IRecordset::put_Value, {"field", "value"}),
            method("MoveNext", 4, &IRecordset::MoveNext),
            method("AddNew", 5, &IRecordset::AddNew),
            method("Update", 6, &IRecordset::Update),
            method("Close", 7, &IRecordset::Close),
        };
        return table;
    }

    FailuresPtr m_failures;
    ComPtr<IRecordset> m_behind;
    bool m_ended;
    bool m_open = true;
};

class FailingInnerConnection final : public ComObject<Dispatching<IConnection>>
{
public:
    FailingInnerConnection(FailuresPtr failures, ComPtr<IConnection> behind)
        : m_failures(std::move(failures))
        , m_behind(std::move(behind))
    {}

    HRESULT STDMETHODCALLTYPE get_ConnectionString(BSTR* value) override
    {
        return m_failures->run([&] { return m_behind->get_ConnectionString(value); });
    }
    HRESULT STDMETHODCALLTYPE Execute(BSTR sql, LONG* affected) override
    {
        const auto kind = m_failures->next();
        if (kind && Failures::fails(*kind)) {
            return Failures::failed(*kind);
        }
        const HRESULT result = m_behind->Execute(sql, affected);
        if (SUCCEEDED(result) && kind == FailureKind::Type) {
            *affected = -1;
        }
        return result;
    }
    HRESULT STDMETHODCALLTYPE OpenRecordset(BSTR source, CursorKind cursor, LockKind lock,
                                            IRecordset** recordset) override
    {
        *recordset = nullptr;
        const auto kind = m_failures->next();
        if (kind && Failures::fails(*kind)) {
            return Failures::failed(*kind);
        }
        if (kind == FailureKind::Type) {
            return S_OK; // without a row set
        }
        ComPtr<IRecordset> opened;
        const HRESULT result = m_behind->OpenRecordset(source, cursor, lock, opened.put());
        if (SUCCEEDED(result)) {
            *recordset =
                makeCom<FailingRecordset>(m_failures, std::move(opened), kind == FailureKind::End).detach();
        }
        return result;
    }
    HRESULT STDMETHODCALLTYPE BeginTrans() override { return transact(&IConnection::BeginTrans, 1); }
    HRESULT STDMETHODCALLTYPE CommitTrans() override { return transact(&IConnection::CommitTrans, -1); }
    HRESULT STDMETHODCALLTYPE RollbackTrans() override { return transact(&IConnection::RollbackTrans, -1); }

private:
    HRESULT transact(HRESULT (STDMETHODCALLTYPE IConnection::*stepOf)(), long change)
    {
        return m_failures->run([&] {
            const HRESULT result = (m_behind.get()->*stepOf)();
            if (SUCCEEDED(result)) {
                m_failures->counts().openTransactions += change;
            }
            return result;
        });
    }

    const DispTable<IConnection>& dispTable() const override
    {
        using namespace zul::dispatch;
        static const DispTable<IConnection> table{
            propget("ConnectionString", 1, &IConnection::get_ConnectionString),
            method("Execute", 2, &IConnection::Execute, {"sql"}),
            method("OpenRecordset", 3, &IConnection::OpenRecordset, {"source", "cursor", "lock"}),
            method("BeginTrans", 4, &IConnection::BeginTrans),
            method("CommitTrans", 5, &IConnection::CommitTrans),
            method("RollbackTrans", 6, &IConnection::RollbackTrans),
        };
        return table;
    }

    FailuresPtr m_failures;
    ComPtr<IConnection> m_behind;
};

ComPtr<IUnknown> failingService(const FailuresPtr& failures, REFIID service, const ComPtr<IUnknown>& behind);

class FailingConnection final : public ComObject<Dispatching<_SqlConnection>, IServiceProvider>
{
public:
    FailingConnection(FailuresPtr failures, _SqlConnection* behind)
        : m_failures(std::move(failures))
        , m_behind(behind)
    {}

    HRESULT STDMETHODCALLTYPE get_Connection(IConnection** value) override
    {
        *value = nullptr;
        return m_failures->run([&] {
            ComPtr<IConnection> connection;
            const HRESULT result = m_behind->get_Connection(connection.put());
            if (SUCCEEDED(result)) {
                *value = makeCom<FailingInnerConnection>(m_failures, std::move(connection)).detach();
            }
            return result;
        });
    }
    HRESULT STDMETHODCALLTYPE get_UserName(BSTR* value) override
    {
        return m_failures->run([&] { return m_behind->get_UserName(value); });
    }
    HRESULT STDMETHODCALLTYPE LookupValue(BSTR field, BSTR table, BSTR condition, VARIANT* value) override
    {
        VariantInit(value);
        const auto kind = m_failures->next();
        if (kind && Failures::fails(*kind)) {
            return Failures::failed(*kind);
        }
        const HRESULT result = m_behind->LookupValue(field, table, condition, value);
        if (SUCCEEDED(result) && kind == FailureKind::Type) {
            spoil(value);
        }
        return result;
    }
    HRESULT STDMETHODCALLTYPE QueryService(REFGUID service, REFIID riid, void** object) override
    {
        *object = nullptr;
        const auto provider = queryFor<IServiceProvider>(m_behind.get());
        if (!provider) {
            return E_NOINTERFACE;
        }
        return m_failures->run([&] {
            ComPtr<IUnknown> made;
            const HRESULT result = provider->QueryService(service, riid, made.putVoid());
            if (FAILED(result)) {
                return result;
            }
            const ComPtr<IUnknown> wrapped = failingService(m_failures, service, made);
            return wrapped->QueryInterface(riid, object);
        });
    }

private:
    const DispTable<_SqlConnection>& dispTable() const override
    {
        using namespace zul::dispatch;
        static const DispTable<_SqlConnection> table{
            propget("Connection", 1, &_SqlConnection::get_Connection),
            propget("UserName", 2, &_SqlConnection::get_UserName),
            method("LookupValue", 3, &_SqlConnection::LookupValue, {"field", "table", "condition"}),
        };
        return table;
    }

    FailuresPtr m_failures;
    ComPtr<_SqlConnection> m_behind;
};

class FailingIds final : public ComObject<Dispatching<IIdGenerator>>
{
public:
    FailingIds(FailuresPtr failures, ComPtr<IIdGenerator> behind)
        : m_failures(std::move(failures))
        , m_behind(std::move(behind))
    {}

    HRESULT STDMETHODCALLTYPE NextId(BSTR table, BSTR key, _SqlConnection* connection, LONG* id) override
    {
        *id = 0;
        const auto kind = m_failures->next();
        if (kind && Failures::fails(*kind)) {
            return Failures::failed(*kind);
        }
        const HRESULT result = m_behind->NextId(table, key, connection, id);
        if (SUCCEEDED(result) && kind == FailureKind::Type) {
            *id = -1;
        }
        return result;
    }

private:
    const DispTable<IIdGenerator>& dispTable() const override
    {
        static const DispTable<IIdGenerator> table{
            dispatch::method("NextId", 1, &IIdGenerator::NextId, {"table", "key", "connection"})};
        return table;
    }

    FailuresPtr m_failures;
    ComPtr<IIdGenerator> m_behind;
};

class FailingCustomer final : public ComObject<Dispatching<ICustomer>>
{
public:
    FailingCustomer(FailuresPtr failures, ComPtr<ICustomer> behind)
        : m_failures(std::move(failures))
        , m_behind(std::move(behind))
    {}

    HRESULT STDMETHODCALLTYPE Init(LONG id, _SqlConnection* connection) override
    {
        const auto kind = m_failures->next();
        if (kind && Failures::fails(*kind)) {
            return Failures::failed(*kind);
        }
        // "type": there is no such customer.
        return m_behind->Init(kind == FailureKind::Type ? -1 : id, connection);
    }
    HRESULT STDMETHODCALLTYPE get_Id(LONG* value) override { return m_behind->get_Id(value); }
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* value) override { return m_behind->get_Name(value); }
    HRESULT STDMETHODCALLTYPE get_Email(BSTR* value) override { return m_behind->get_Email(value); }
    HRESULT STDMETHODCALLTYPE get_ConsensoSms(VARIANT_BOOL* value) override
    {
        return m_behind->get_ConsensoSms(value);
    }
    HRESULT STDMETHODCALLTYPE get_ConsensoEmail(VARIANT_BOOL* value) override
    {
        return m_behind->get_ConsensoEmail(value);
    }
    HRESULT STDMETHODCALLTYPE get_IdClassificazione(LONG* value) override
    {
        return m_behind->get_IdClassificazione(value);
    }

private:
    const DispTable<ICustomer>& dispTable() const override
    {
        static const DispTable<ICustomer> table{};
        return table;
    }

    FailuresPtr m_failures;
    ComPtr<ICustomer> m_behind;
};

class FailingRecord final : public ComObject<Dispatching<IMessageRecord>>
{
public:
    FailingRecord(FailuresPtr failures, ComPtr<IMessageRecord> behind)
        : m_failures(std::move(failures))
        , m_behind(std::move(behind))
    {}

    HRESULT STDMETHODCALLTYPE put_IdTipoMessaggio(LONG value) override
    {
        return m_behind->put_IdTipoMessaggio(value);
    }
    HRESULT STDMETHODCALLTYPE put_Descrizione(BSTR value) override
    {
        return m_behind->put_Descrizione(value);
    }
    HRESULT STDMETHODCALLTYPE put_Testo(BSTR value) override { return m_behind->put_Testo(value); }
    HRESULT STDMETHODCALLTYPE put_Contatto(BSTR value) override { return m_behind->put_Contatto(value); }
    HRESULT STDMETHODCALLTYPE put_IDCliente(LONG value) override { return m_behind->put_IDCliente(value); }
    HRESULT STDMETHODCALLTYPE put_Riferimento(BSTR value) override
    {
        return m_behind->put_Riferimento(value);
    }
    HRESULT STDMETHODCALLTYPE put_Flag1(VARIANT_BOOL value) override { return m_behind->put_Flag1(value); }
    HRESULT STDMETHODCALLTYPE put_Flag2(VARIANT_BOOL value) override { return m_behind->put_Flag2(value); }
    HRESULT STDMETHODCALLTYPE put_Flag3(VARIANT_BOOL value) override { return m_behind->put_Flag3(value); }
    HRESULT STDMETHODCALLTYPE put_Valore(LONG value) override { return m_behind->put_Valore(value); }
    HRESULT STDMETHODCALLTYPE put_DataCreaz(DATE value) override { return m_behind->put_DataCreaz(value); }
    HRESULT STDMETHODCALLTYPE put_OraCreaz(DATE value) override { return m_behind->put_OraCreaz(value); }
    HRESULT STDMETHODCALLTYPE put_UtenteUltimoAccesso(BSTR value) override
    {
        return m_behind->put_UtenteUltimoAccesso(value);
    }
    HRESULT STDMETHODCALLTYPE Save(_SqlConnection* connection, VARIANT_BOOL* stored) override
    {
        *stored = VARIANT_FALSE;
        const auto kind = m_failures->next();
        if (kind && Failures::fails(*kind)) {
            return Failures::failed(*kind);
        }
        // "type": refused without a reason.
        return kind == FailureKind::Type ? S_OK : m_behind->Save(connection, stored);
    }

private:
    const DispTable<IMessageRecord>& dispTable() const override
    {
        static const DispTable<IMessageRecord> table{};
        return table;
    }

    FailuresPtr m_failures;
    ComPtr<IMessageRecord> m_behind;
};

class FailingParser final : public ComObject<Dispatching<ITextParser>>
{
public:
    FailingParser(FailuresPtr failures, ComPtr<ITextParser> behind)
        : m_failures(std::move(failures))
        , m_behind(std::move(behind))
    {}

    HRESULT STDMETHODCALLTYPE Parse(BSTR text, ICustomer* customer, BSTR classification,
                                    BSTR* parsed) override
    {
        *parsed = nullptr;
        const auto kind = m_failures->next();
        if (kind && Failures::fails(*kind)) {
            return Failures::failed(*kind);
        }
        return kind == FailureKind::Type ? S_OK : m_behind->Parse(text, customer, classification, parsed);
    }

private:
    const DispTable<ITextParser>& dispTable() const override
    {
        static const DispTable<ITextParser> table{};
        return table;
    }

    FailuresPtr m_failures;
    ComPtr<ITextParser> m_behind;
};

class FailingConnector final : public ComObject<Dispatching<IAppConnector>>
{
public:
    FailingConnector(FailuresPtr failures, ComPtr<IAppConnector> behind)
        : m_failures(std::move(failures))
        , m_behind(std::move(behind))
    {}

    HRESULT STDMETHODCALLTYPE Init(BSTR slug, BSTR salt) override
    {
        return m_failures->run([&] { return m_behind->Init(slug, salt); });
    }
    HRESULT STDMETHODCALLTYPE SendToContact(BSTR email, DATE when, BSTR text, BSTR* errorText,
                                            VARIANT_BOOL* sent) override
    {
        return send([&] { return m_behind->SendToContact(email, when, text, errorText, sent); }, errorText,
                    sent);
    }
    HRESULT STDMETHODCALLTYPE SendToEverybody(BSTR text, DATE when, BSTR* errorText,
                                              VARIANT_BOOL* sent) override
    {
        return send([&] { return m_behind->SendToEverybody(text, when, errorText, sent); }, errorText, sent);
    }

private:
    template <typename Call>
    HRESULT send(Call&& call, BSTR* errorText, VARIANT_BOOL* sent)
    {
        *errorText = nullptr;
        *sent = VARIANT_FALSE;
        const auto kind = m_failures->next();
        if (kind && Failures::fails(*kind)) {
            return Failures::failed(*kind);
        }
        // "type": not sent, without a word why.
        return kind == FailureKind::Type ? S_OK : call();
    }

    const DispTable<IAppConnector>& dispTable() const override
    {
        static const DispTable<IAppConnector> table{};
        return table;
    }

    FailuresPtr m_failures;
    ComPtr<IAppConnector> m_behind;
};

template <typename Wrapper, typename Interface>
ComPtr<IUnknown> wrapped(const FailuresPtr& failures, const ComPtr<IUnknown>& behind)
{
    const ComPtr<Wrapper> made = makeCom<Wrapper>(failures, queryFor<Interface>(behind.get()));
    return queryFor<IUnknown>(static_cast<Interface*>(made.get()));
}

// Services that work no database are handed out as they are.
ComPtr<IUnknown> failingService(const FailuresPtr& failures, REFIID service, const ComPtr<IUnknown>& behind)
{
    if (IsEqualGUID(service, iidOf<IIdGenerator>())) {
        return wrapped<FailingIds, IIdGenerator>(failures, behind);
    }
    if (IsEqualGUID(service, iidOf<ICustomer>())) {
        return wrapped<FailingCustomer, ICustomer>(failures, behind);
    }
    if (IsEqualGUID(service, iidOf<IMessageRecord>())) {
        return wrapped<FailingRecord, IMessageRecord>(failures, behind);
    }
    if (IsEqualGUID(service, iidOf<ITextParser>())) {
        return wrapped<FailingParser, ITextParser>(failures, behind);
    }
    if (IsEqualGUID(service, iidOf<IAppConnector>())) {
        return wrapped<FailingConnector, IAppConnector>(failures, behind);
    }
    return behind;
}

} // namespace

std::optional<FailurePlan> parseFailurePlan(std::string_view text)
{
    FailurePlan plan;
    const std::size_t colon = text.find(':');
    const std::string_view number = text.substr(0, colon);
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), plan.at);
    if (error != std::errc() || end != number.data() + number.size() || plan.at < 0) {
        return std::nullopt;
    }
    if (colon == std::string_view::npos) {
        return plan;
    }
    for (const KindWord& known : kindWords) {
        if (text.substr(colon + 1) == known.word) {
            plan.kind = known.kind;
            return plan;
        }
    }
    return std::nullopt;
}

ComPtr<_SqlConnection> makeFailingConnection(_SqlConnection* behind, const FailurePlan& plan,
                                             std::shared_ptr<FailureCounts> counts)
{
    auto failures = std::make_shared<Failures>(plan, std::move(counts));
    const auto made = makeCom<FailingConnection>(std::move(failures), behind);
    return queryFor<_SqlConnection>(static_cast<_SqlConnection*>(made.get()));
}

} // namespace zul::host
