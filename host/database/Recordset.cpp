#include "host/database/Recordset.h"

#include "base/CaseFold.h"
#include "host/database/Cell.h"
#include "host/database/Names.h"
#include "host/database/Secrets.h"
#include "host/database/VariantValue.h"
#include "host/database/products/Product.h"

#include <algorithm>

namespace zul::host {

namespace {

constexpr std::u16string_view sourceName = u"Zul_SQL.Recordset";
constexpr auto rowNotFound = static_cast<ErrorCode>(0x80040E38U);

bool readsWhole(CursorKind cursor, LockKind lock)
{
    return cursor != CursorForwardOnly || lock != LockReadOnly;
}

} // namespace

std::string_view cursorWord(CursorKind cursor)
{
    switch (cursor) {
    case CursorForwardOnly:
        return "forward-only";
    case CursorKeyset:
        return "keyset";
    case CursorDynamic:
        return "dynamic";
    case CursorStatic:
        return "static";
    }
    throw EngineError(ErrorCode::InvalidArgument, "no such kind of cursor");
}

std::string_view lockWord(LockKind lock)
{
    switch (lock) {
    case LockReadOnly:
        return "read-only";
    case LockPessimistic:
        return "pessimistic";
    case LockOptimistic:
        return "optimistic";
    }
    throw EngineError(ErrorCode::InvalidArgument, "no such kind of lock");
}

ComPtr<Recordset> Recordset::open(SessionPtr session, std::string_view source, CursorKind cursor,
                                  LockKind lock, Journaled journaled)
{
    cursorWord(cursor);
    lockWord(lock);
    ComPtr<Recordset> recordset =
        makeCom<Recordset>(std::move(session), parseRowSource(source), lock, journaled);
    recordset->read(readsWhole(cursor, lock));
    return recordset;
}

Recordset::Recordset(SessionPtr session, RowSource source, LockKind lock, Journaled journaled)
    : m_session(std::move(session))
    , m_source(std::move(source))
    , m_lock(lock)
    , m_journaled(journaled)
{}

const DispTable<IRecordset>& Recordset::dispTable() const
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

// What is read along so that a row can be found again: nothing where the source lists the key itself.
std::vector<std::string> Recordset::hiddenColumns()
{
    const bool updatable = m_lock != LockReadOnly && !m_source.table.empty();
    if (!updatable || m_source.endOfColumns == 0) {
        return {};
    }
    const std::vector<std::string>& key = identity().keyColumns;
    if (std::all_of(key.begin(), key.end(),
                    [&](const std::string& column) { return m_source.lists(column); })) {
        if (!key.empty() || identity().hiddenColumn.empty()) {
            return {};
        }
        return {identity().hiddenColumn};
    }
    return key;
}

void Recordset::read(bool whole)
{
    std::string statement = m_source.statement;
    const std::vector<std::string> hidden = hiddenColumns();
    std::string further;
    for (std::size_t i = 0; i < hidden.size(); ++i) {
        // A name of its own, since an ORDER BY may name the column.
        further += ", " + m_session->engine->product().nameInSource(hidden[i]) + " AS zulChiave" +
                   std::to_string(i + 1);
    }
    if (!further.empty()) {
        statement.insert(m_source.endOfColumns, further + ' ');
    }
    m_stream = m_session->engine->query(statement, Language::Transact);
    m_columns = m_stream->columns();
    if (m_columns.size() <= hidden.size()) {
        throw EngineError(ErrorCode::Unspecified, "the answer lacks columns that were asked for");
    }
    m_visible = m_columns.size() - hidden.size();
    nameColumns();
    findMarks(hidden);
    m_names.reserve(m_visible);
    for (std::size_t i = 0; i < m_visible; ++i) {
        m_names.push_back(utf16FromUtf8(m_columns[i].name));
    }
    if (whole) {
        m_store.emplace(m_columns.size());
        while (m_stream->next()) {
            m_store->append(m_stream->cells());
        }
        m_stream.reset();
        m_buffer.resize(m_columns.size());
        showRow();
    } else {
        step();
    }
}

// A driver may not know which column of the table stands behind another name; the source says it.
void Recordset::nameColumns()
{
    const bool countsUp = m_source.items.size() == m_visible &&
                          std::none_of(m_source.items.begin(), m_source.items.end(),
                                       [](const SelectItem& item) { return item.everyColumn; });
    for (std::size_t i = 0; countsUp && i < m_visible; ++i) {
        if (!m_source.items[i].column.empty()) {
            m_columns[i].baseName = m_source.items[i].column;
        }
    }
}

void Recordset::findMarks(const std::vector<std::string>& hidden)
{
    if (m_lock == LockReadOnly || m_source.table.empty()) {
        return;
    }
    for (std::size_t i = 0; i < hidden.size(); ++i) {
        m_marks.push_back({m_visible + i, hidden[i]});
    }
    if (!m_marks.empty()) {
        return;
    }
    for (const std::string& key : identity().keyColumns) {
        const auto found = std::find_if(m_columns.begin(), m_columns.end(),
                                        [&](const ColumnInfo& column) { return sameName(column.name, key); });
        if (!m_source.lists(key) || found == m_columns.end()) {
            m_marks.clear();
            return;
        }
        m_marks.push_back({static_cast<std::size_t>(found - m_columns.begin()), key});
    }
}

// The store's current row becomes the one that is shown.
void Recordset::showRow()
{
    m_eof = m_row >= m_store->rows();
    m_cells = nullptr;
    if (!m_eof) {
        m_store->read(m_row, m_buffer.data());
        m_cells = m_buffer.data();
    }
}

void Recordset::step()
{
    if (m_store) {
        ++m_row;
        showRow();
        return;
    }
    m_cells = nullptr;
    if (m_stream && m_stream->next()) {
        m_cells = m_stream->cells();
        return;
    }
    m_stream.reset();
    m_eof = true;
}

void Recordset::requireOpen() const
{
    if (m_closed) {
        throw EngineError(ErrorCode::Closed, "the row set is closed");
    }
}

bool Recordset::isLogged() const
{
    return m_journaled == Journaled::Yes && m_session->journal.isOpen();
}

void Recordset::requireUpdatable() const
{
    if (m_lock == LockReadOnly) {
        throw EngineError(ErrorCode::NotUpdatable, "the row set was opened read-only and takes no changes");
    }
    if (m_source.table.empty()) {
        throw EngineError(ErrorCode::NotUpdatable, "the row set is not over one table and takes no changes");
    }
}

std::string Recordset::columnNames() const
{
    std::string names;
    for (std::size_t i = 0; i < m_visible; ++i) {
        names += (i > 0 ? ", " : "") + m_columns[i].name;
    }
    return names;
}

std::size_t Recordset::columnOf(const VARIANT& field) const
{
    const VARIANT* wanted = &field;
    Variant copy;
    if ((field.vt & VT_BYREF) != 0) {
        if (FAILED(copyWithoutReference(copy, field))) {
            throw EngineError(ErrorCode::ItemNotFound, "a field is named by a text or a number");
        }
        wanted = &copy;
    }
    if (wanted->vt == VT_BSTR) {
        const std::u16string_view name = zul::textOf(wanted->bstrVal);
        for (std::size_t i = 0; i < m_visible; ++i) {
            if (m_names[i].size() == name.size() && equalNames(m_names[i], name)) {
                return i;
            }
        }
        throw EngineError(ErrorCode::ItemNotFound,
                          "no field " + utf8FromUtf16(name) + " among " + columnNames());
    }
    const Value value = valueOf(*wanted);
    const auto* index = std::get_if<std::int64_t>(&value);
    if (index == nullptr) {
        throw EngineError(ErrorCode::ItemNotFound, "a field is named by a text or a number");
    }
    if (*index < 0 || *index >= static_cast<std::int64_t>(m_visible)) {
        throw EngineError(ErrorCode::ItemNotFound, "no field number " + std::to_string(*index));
    }
    return static_cast<std::size_t>(*index);
}

HRESULT Recordset::get_Eof(VARIANT_BOOL* value)
{
    if (value == nullptr) {
        return E_POINTER;
    }
    *value = VARIANT_TRUE;
    return hostGuard(sourceName, [&] {
        requireOpen();
        *value = m_eof && !m_onAddedRow ? VARIANT_TRUE : VARIANT_FALSE;
    });
}

HRESULT Recordset::get_FieldCount(LONG* value)
{
    if (value == nullptr) {
        return E_POINTER;
    }
    *value = 0;
    return hostGuard(sourceName, [&] {
        requireOpen();
        *value = static_cast<LONG>(m_visible);
    });
}

HRESULT Recordset::FieldName(LONG index, BSTR* name)
{
    if (name == nullptr) {
        return E_POINTER;
    }
    *name = nullptr;
    return hostGuard(sourceName, [&] {
        requireOpen();
        if (index < 0 || index >= static_cast<LONG>(m_visible)) {
            throw EngineError(ErrorCode::ItemNotFound, "no field number " + std::to_string(index));
        }
        *name = Bstr(m_names[static_cast<std::size_t>(index)]).detach();
    });
}

Variant Recordset::currentValue(std::size_t column) const
{
    const ColumnInfo& info = m_columns[column];
    for (const Pending& pending : m_pending) {
        if (pending.column == column) {
            return variantOf(pending.stored, info);
        }
    }
    if (m_adding) {
        return Variant::null();
    }
    if (m_onAddedRow) {
        return variantOf(m_added[column], info);
    }
    if (m_cells == nullptr) {
        throw EngineError(ErrorCode::NoCurrentRow, "the row set is at its end and has no current row");
    }
    return variantOf(m_cells[column], info);
}

HRESULT Recordset::get_Value(VARIANT field, VARIANT* value)
{
    if (value == nullptr) {
        return E_POINTER;
    }
    VariantInit(value);
    return hostGuard(sourceName, [&] {
        requireOpen();
        currentValue(columnOf(field)).detachTo(value);
    });
}

HRESULT Recordset::put_Value(VARIANT field, VARIANT value)
{
    return hostGuard(sourceName, [&] {
        requireOpen();
        requireUpdatable();
        const std::size_t column = columnOf(field);
        if (!m_adding && m_onAddedRow) {
            throw EngineError(ErrorCode::NotUpdatable, "a row just added is changed through a new row set");
        }
        if (!m_adding && m_cells == nullptr) {
            throw EngineError(ErrorCode::NoCurrentRow, "the row set is at its end and has no current row");
        }
        Value set = valueOf(value);
        Value stored = fitted(set, m_columns[column]);
        const auto known = std::find_if(m_pending.begin(), m_pending.end(),
                                        [&](const Pending& pending) { return pending.column == column; });
        if (known != m_pending.end()) {
            known->value = std::move(set);
            known->stored = std::move(stored);
            return;
        }
        std::string name;
        if (isLogged()) {
            name = field.vt == VT_BSTR ? utf8FromUtf16(zul::textOf(field.bstrVal)) : m_columns[column].name;
        }
        m_pending.push_back({column, std::move(name), std::move(set), std::move(stored)});
    });
}

HRESULT Recordset::MoveNext()
{
    return hostGuard(sourceName, [&] {
        requireOpen();
        if (m_adding || !m_pending.empty()) {
            update();
        }
        if (m_onAddedRow) {
            // The new row stands behind the last one.
            m_onAddedRow = false;
            m_eof = true;
            m_cells = nullptr;
            return;
        }
        if (m_eof) {
            throw EngineError(ErrorCode::NoCurrentRow, "the row set is at its end already");
        }
        step();
    });
}

HRESULT Recordset::AddNew()
{
    return hostGuard(sourceName, [&] {
        requireOpen();
        requireUpdatable();
        if (m_adding || !m_pending.empty()) {
            update();
        }
        m_adding = true;
    });
}

HRESULT Recordset::Update()
{
    return hostGuard(sourceName, [&] {
        requireOpen();
        requireUpdatable();
        update();
    });
}

void Recordset::update()
{
    if (!m_adding && m_pending.empty()) {
        return;
    }
    ColumnValues values;
    const bool logs = isLogged();
    if (logs) {
        values.reserve(m_pending.size());
        for (const Pending& pending : m_pending) {
            values.emplace_back(pending.nameAsSet, pending.value);
        }
        hideSecret(values);
    }
    const bool adding = m_adding;
    journaled([&] { adding ? insertPending() : updatePending(); },
              [&](std::string_view error) {
                  if (!logs) {
                      return;
                  }
                  if (adding) {
                      m_session->journal.insert(bareName(m_source.table), values, error);
                  } else {
                      m_session->journal.update(bareName(m_source.table), values, error);
                  }
              });
}

// The journal tells that a password was stored, and not which.
void Recordset::hideSecret(ColumnValues& values) const
{
    if (!sameName(bareName(m_source.table), "tabImpostazioni")) {
        return;
    }
    constexpr std::string_view nameColumn = "Descrizione";
    std::string setting;
    if (!m_adding) {
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            if (sameName(m_columns[i].baseName, nameColumn)) {
                const Value value = valueOf(m_cells[i], m_columns[i]);
                const auto* text = std::get_if<std::string>(&value);
                setting = text != nullptr ? *text : std::string();
                break;
            }
        }
    }
    for (const auto& [column, value] : values) {
        if (const auto* text = std::get_if<std::string>(&value); text && sameName(column, nameColumn)) {
            setting = *text;
        }
    }
    if (!isSecretSetting(setting)) {
        return;
    }
    for (auto& [column, value] : values) {
        const auto* text = std::get_if<std::string>(&value);
        if (sameName(column, "Valore") && (text == nullptr || !text->empty())) {
            value = std::string(secretMark);
        }
    }
}

// The statement for the columns that were set; the same columns in the same order, as they come a million times
// in a row, give the same text.
const std::string& Recordset::insertStatement()
{
    std::vector<std::size_t> columns;
    columns.reserve(m_pending.size());
    for (const Pending& pending : m_pending) {
        columns.push_back(pending.column);
    }
    if (!m_insertSql.empty() && columns == m_insertColumns) {
        return m_insertSql;
    }
    const Product& product = m_session->engine->product();
    std::string names;
    std::string marks;
    for (const std::size_t column : columns) {
        names += (names.empty() ? "" : ", ") + product.quotedName(m_columns[column].baseName);
        marks += marks.empty() ? "?" : ", ?";
    }
    m_insertSql = "INSERT INTO " + product.tableName(m_source.table);
    m_insertSql += columns.empty() ? " DEFAULT VALUES" : " (" + names + ") VALUES (" + marks + ")";
    m_insertColumns = std::move(columns);
    return m_insertSql;
}

// A refused row stays pending, as it was set: the caller may correct it and call Update again, or close.
void Recordset::insertPending()
{
    std::vector<Value> parameters;
    parameters.reserve(m_pending.size());
    for (const Pending& pending : m_pending) {
        parameters.push_back(pending.stored);
    }
    m_session->engine->execute(insertStatement(), Language::Native, parameters);
    m_added.assign(m_visible, Value());
    for (Pending& pending : m_pending) {
        m_added[pending.column] = std::move(pending.stored);
    }
    m_pending.clear();
    m_adding = false;
    m_onAddedRow = true;
}

const RowIdentity& Recordset::identity()
{
    if (!m_identity) {
        m_identity = m_session->engine->rowIdentity(m_source.table);
    }
    return *m_identity;
}

// The condition that a row is the current one.
std::string Recordset::currentRow(std::vector<Value>& parameters) const
{
    const Product& product = m_session->engine->product();
    std::string condition;
    for (const Mark& mark : m_marks) {
        const std::string name = product.quotedName(mark.name);
        condition += condition.empty() ? "" : " AND ";
        Value value = valueOf(m_cells[mark.column], m_columns[mark.column]);
        const bool isNull = std::holds_alternative<std::monostate>(value);
        condition += name + (isNull ? " IS NULL" : " = ?");
        if (!isNull) {
            parameters.push_back(std::move(value));
        }
    }
    return condition;
}

// The condition that a row holds what was read of the current one.
std::string Recordset::rowAsRead(std::vector<Value>& parameters) const
{
    const Product& product = m_session->engine->product();
    const bool listed = m_source.items.size() == m_visible;
    std::string condition;
    for (std::size_t i = 0; i < m_visible; ++i) {
        // What an expression gives is no column to look at.
        if (listed && m_source.items[i].column.empty() && !m_source.items[i].everyColumn) {
            continue;
        }
        condition += condition.empty() ? "" : " AND ";
        Value value = valueOf(m_cells[i], m_columns[i]);
        if (std::holds_alternative<std::monostate>(value)) {
            condition += product.quotedName(m_columns[i].baseName) + " IS NULL";
        } else {
            condition += product.sameValue(m_columns[i]);
            parameters.push_back(std::move(value));
        }
    }
    return condition;
}

void Recordset::updatePending()
{
    const Product& product = m_session->engine->product();
    const std::string table = product.tableName(m_source.table);
    std::vector<Value> parameters;
    std::string sql = "UPDATE " + table + " SET ";
    for (std::size_t i = 0; i < m_pending.size(); ++i) {
        sql += (i > 0 ? ", " : "") + product.quotedName(m_columns[m_pending[i].column].baseName) + " = ?";
        parameters.push_back(m_pending[i].stored);
    }
    std::vector<Value> found;
    std::string condition = currentRow(found);
    const bool byMarks = !condition.empty();
    if (!byMarks && identity().keyColumns.empty() && m_source.endOfColumns > 0) {
        condition = rowAsRead(found);
    }
    if (condition.empty()) {
        throw EngineError(ErrorCode::NotUpdatable, "the row set holds nothing that tells which row of " +
                                                       bareName(m_source.table) +
                                                       " it stands on; nothing was changed");
    }
    sql += " WHERE " + condition;
    parameters.insert(parameters.end(), found.begin(), found.end());
    if (!byMarks) {
        // What was read may fit several rows, and the server is the one to know.
        sql += " AND 1 = (SELECT COUNT(*) FROM " + table + " WHERE " + condition + ")";
        parameters.insert(parameters.end(), found.begin(), found.end());
    }
    if (m_session->engine->execute(sql, Language::Native, parameters) == 0) {
        failToFind(byMarks ? std::string() : condition, found);
    }
    for (const Pending& pending : m_pending) {
        const ZulCell cell = cellOf(pending.stored);
        m_store->replace(m_row, pending.column, cell);
        // A key that was read along and set under another name goes on finding the row.
        for (const Mark& mark : m_marks) {
            if (mark.column >= m_visible && sameName(mark.name, m_columns[pending.column].baseName)) {
                m_store->replace(m_row, mark.column, cell);
            }
        }
    }
    m_pending.clear();
    showRow();
}

// Why no row was changed. With a condition: the row was looked for by what was read of it.
void Recordset::failToFind(const std::string& condition, const std::vector<Value>& parameters)
{
    if (!condition.empty()) {
        Engine& engine = *m_session->engine;
        const auto rows = engine.query("SELECT COUNT(*) FROM " + engine.product().tableName(m_source.table) +
                                           " WHERE " + condition,
                                       Language::Native, parameters);
        const std::int64_t count = rows->next() ? cellNumber(rows->cells()[0]) : 0;
        if (count > 1) {
            throw EngineError(
                ErrorCode::NotUpdatable,
                std::to_string(count) + " rows of " + bareName(m_source.table) +
                    ", which has no key, hold the same values: which one is meant cannot be told; nothing"
                    " was changed");
        }
    }
    throw EngineError(rowNotFound, "the row was changed or deleted since it was read");
}

HRESULT Recordset::Close()
{
    return hostGuard(sourceName, [&] {
        m_closed = true;
        m_pending.clear();
        m_adding = false;
        m_cells = nullptr;
        m_stream.reset();
        m_store.reset();
    });
}

HRESULT Recordset::ReadRows(IRowSink* sink)
{
    if (sink == nullptr) {
        return E_POINTER;
    }
    // The sink may let the last reference to the row set go, or close it.
    const ComPtr<IRowReader> alive(this);
    return hostGuard(sourceName, [&]() -> HRESULT {
        requireOpen();
        if (m_adding || !m_pending.empty()) {
            update();
        }
        m_onAddedRow = false;
        const auto count = static_cast<LONG>(m_visible);
        while (!m_eof) {
            if (m_cells == nullptr) {
                throw EngineError(ErrorCode::NoCurrentRow, "the row set broke off and stands on no row");
            }
            const HRESULT result = sink->Row(count, m_cells);
            if (FAILED(result)) {
                return result;
            }
            requireOpen();
            step();
        }
        return S_OK;
    });
}

} // namespace zul::host
