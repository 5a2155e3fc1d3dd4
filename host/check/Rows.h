// A row set of a host that nobody trusts yet.
#pragma once

#include "automation/ComPtr.h"
#include "automation/Variant.h"

#include <Zul_SQL.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zul::host::check {

/// What the host left of a failed call.
struct Failure
{
    HRESULT code = S_OK;
    /// Empty when there was none.
    std::u16string description;

    /// "text (0x80040E14)"
    std::string text() const;
};

/// Takes away what an earlier call left, so that the next failure's description is its own.
void forgetErrors();

/// What the call that has just failed left. Takes it away.
Failure takeFailure(HRESULT code);

/// Runs what a destructor calls on the host, of the member that is named: an exception stays behind as a note.
void noteException(const char* member, const std::function<void()>& call) noexcept;

/// " by MEMBER", of the first exception since the last question; empty: none.
std::string takeExceptionNote();

/// Throws Breach when the call, named by `what`, failed.
void mustSucceed(HRESULT result, const std::string& what);

/// A text as it stands in a report: cut where it is long.
std::string shown(std::u16string_view text);

/// "VT_BSTR "uno"", "VT_I4 3", for a report.
std::string shown(const VARIANT& value);

/// The number of a value of any numeric type. @throws Breach when it is none
double numberOf(const VARIANT& value, const std::string& what);

/// An open row set; closes itself. Every member but the bare object throws Breach when the host fails, or answers with
/// something that the contract does not know.
class Rows
{
public:
    /// `statement` names the row set in reports.
    Rows(ComPtr<IRecordset> rows, std::u16string_view statement);
    ~Rows();
    Rows(Rows&&) noexcept = default;
    Rows& operator=(Rows&&) noexcept = delete;
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;

    bool atEnd() const;
    /// What atEnd is taken from, as the host wrote it.
    VARIANT_BOOL eof() const;
    void next() const;
    /// The value of a type that the contract knows, or Empty, which the component takes for NULL.
    Variant value(std::u16string_view field) const;
    Variant value(LONG index) const;
    LONG fieldCount() const;
    std::u16string fieldName(LONG index) const;

    void addNew() const;
    void put(std::u16string_view field, const Variant& value) const;
    void update() const;

    /// The field of the remaining rows as numbers; with more than `most` the row set has no end.
    std::vector<double> numbers(std::u16string_view field, std::size_t most = 100) const;

    IRecordset* object() const { return m_rows.get(); }

private:
    std::string called(const char* member) const;
    Variant known(Variant value) const;

    ComPtr<IRecordset> m_rows;
    std::string m_statement;
};

} // namespace zul::host::check
