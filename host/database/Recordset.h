#pragma once
// A row set over any engine.
//
// Static, dynamic and keyset row sets, and every one that takes changes, are read whole when they are opened:
// no statement stays open behind them. A forward-only read-only one streams and is closed at once after its
// last row. Changes become one parameterised statement each. A move with changes pending writes them first.
//
// A change goes to the one row that the row set stands on: it is found by the table's key, which is read along where the
// source does not list it, or by another column that tells the rows apart. Where a database has neither, the row is
// found by all that was read of it, and the change is refused when that fits several rows.
#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "automation/Variant.h"
#include "host/database/RowSource.h"
#include "host/database/RowStore.h"
#include "host/database/Session.h"

#include <Zul_SQL.h>

#include <optional>

namespace zul::host {

/// Whether what happens to a row set shows in the journal.
enum class Journaled
{
    No,
    Yes
};

class Recordset final : public ComObject<Dispatching<IRecordset>, IRowReader>
{
public:
    /// Opens the source, a SELECT or the name of a table. Throws EngineError.
    static ComPtr<Recordset> open(SessionPtr session, std::string_view source, CursorKind cursor,
                                  LockKind lock, Journaled journaled);

    HRESULT STDMETHODCALLTYPE get_Eof(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE get_FieldCount(LONG* value) override;
    HRESULT STDMETHODCALLTYPE FieldName(LONG index, BSTR* name) override;
    HRESULT STDMETHODCALLTYPE get_Value(VARIANT field, VARIANT* value) override;
    HRESULT STDMETHODCALLTYPE put_Value(VARIANT field, VARIANT value) override;
    HRESULT STDMETHODCALLTYPE MoveNext() override;
    HRESULT STDMETHODCALLTYPE AddNew() override;
    HRESULT STDMETHODCALLTYPE Update() override;
    HRESULT STDMETHODCALLTYPE Close() override;
    HRESULT STDMETHODCALLTYPE ReadRows(IRowSink* sink) override;

private:
    /// A column set since AddNew or on the current row.
    struct Pending
    {
        std::size_t column;
        std::string nameAsSet; // for the journal, while there is one: the component's spelling
        Value value;           // as set
        Value stored;          // as the column takes it
    };

    template <typename T, typename... Args>
    friend ComPtr<T> zul::makeCom(Args&&... args);

    Recordset(SessionPtr session, RowSource source, LockKind lock, Journaled journaled);

    const DispTable<IRecordset>& dispTable() const override;

    /// A column that tells the current row from the others.
    struct Mark
    {
        std::size_t column = 0;
        std::string name; // the table's
    };

    void read(bool whole);
    std::vector<std::string> hiddenColumns();
    void nameColumns();
    void findMarks(const std::vector<std::string>& hidden);
    void showRow();
    void step();
    bool isLogged() const;
    void requireOpen() const;
    void requireUpdatable() const;
    std::size_t columnOf(const VARIANT& field) const;
    std::string columnNames() const;
    Variant currentValue(std::size_t column) const;
    void update();
    void insertPending();
    void updatePending();
    void hideSecret(ColumnValues& values) const;
    std::string currentRow(std::vector<Value>& parameters) const;
    std::string rowAsRead(std::vector<Value>& parameters) const;
    [[noreturn]] void failToFind(const std::string& condition, const std::vector<Value>& parameters);
    const std::string& insertStatement();
    const RowIdentity& identity();

    SessionPtr m_session;
    RowSource m_source;
    LockKind m_lock;
    Journaled m_journaled;

    std::vector<ColumnInfo> m_columns; // with the hidden ones, if there are any, at the end
    std::vector<std::u16string> m_names;
    std::size_t m_visible = 0;
    std::unique_ptr<RowStream> m_stream;
    std::optional<RowStore> m_store;
    std::size_t m_row = 0;
    std::vector<ZulCell> m_buffer; // the current row of the store
    const ZulCell* m_cells = nullptr;
    bool m_eof = false;
    bool m_closed = false;

    bool m_adding = false;
    bool m_onAddedRow = false; // behind an AddNew and its Update the new row is the current one
    std::vector<Pending> m_pending;
    std::vector<Value> m_added;
    std::optional<RowIdentity> m_identity;
    std::vector<Mark> m_marks;                // empty: a row is known by all that was read of it
    std::vector<std::size_t> m_insertColumns; // those of m_insertSql
    std::string m_insertSql;
};

/// "forward-only", "static", "dynamic", "keyset"; "read-only", "optimistic", "pessimistic". Throw EngineError
/// (InvalidArgument) for other numbers.
std::string_view cursorWord(CursorKind cursor);
std::string_view lockWord(LockKind lock);

} // namespace zul::host
