#include "host/check/Rows.h"

#include "base/Utf8.h"
#include "host/check/Verdict.h"

#include <array>
#include <cstdio>
#include <utility>

namespace zul::host::check {

namespace {

constexpr const char* logged = "ends the operator's command and writes the failure to its log";

std::string typeName(VARTYPE type)
{
    switch (type) {
    case VT_EMPTY:
        return "VT_EMPTY";
    case VT_NULL:
        return "VT_NULL";
    case VT_I2:
        return "VT_I2";
    case VT_I4:
        return "VT_I4";
    case VT_I8:
        return "VT_I8";
    case VT_R4:
        return "VT_R4";
    case VT_R8:
        return "VT_R8";
    case VT_CY:
        return "VT_CY";
    case VT_DECIMAL:
        return "VT_DECIMAL";
    case VT_BSTR:
        return "VT_BSTR";
    case VT_DATE:
        return "VT_DATE";
    case VT_BOOL:
        return "VT_BOOL";
    default:
        return "the type " + std::to_string(type);
    }
}

/// The member by which an exception came out of the host while something was given back.
const char* exceptionNote = nullptr;

bool isKnown(VARTYPE type)
{
    constexpr std::array<VARENUM, 10> types{VT_EMPTY, VT_NULL,    VT_I2,   VT_I4,   VT_I8,
                                            VT_R8,    VT_DECIMAL, VT_BSTR, VT_DATE, VT_BOOL};
    for (const VARENUM one : types) {
        if (type == one) {
            return true;
        }
    }
    return false;
}

} // namespace

std::string Failure::text() const
{
    std::array<char, 16> number{};
    std::snprintf(number.data(), number.size(), "0x%08X", static_cast<unsigned>(code));
    return description.empty() ? number.data() : utf8FromUtf16(description) + " (" + number.data() + ")";
}

void forgetErrors()
{
    SetErrorInfo(0, nullptr);
}

Failure takeFailure(HRESULT code)
{
    Failure failure{code, {}};
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.put()) == S_OK && info) {
        Bstr description;
        if (SUCCEEDED(info->GetDescription(description.put()))) {
            failure.description = description.toString();
        }
    }
    return failure;
}

void noteException(const char* member, const std::function<void()>& call) noexcept
{
    try {
        call();
    } catch (...) {
        exceptionNote = exceptionNote == nullptr ? member : exceptionNote;
    }
}

std::string takeExceptionNote()
{
    const char* const member = std::exchange(exceptionNote, nullptr);
    return member == nullptr ? std::string() : std::string(" by ") + member;
}

void mustSucceed(HRESULT result, const std::string& what)
{
    if (FAILED(result)) {
        throw Breach(what + " fails: " + takeFailure(result).text(), logged);
    }
}

std::string shown(std::u16string_view text)
{
    constexpr std::size_t most = 60;
    if (text.size() <= most) {
        return '"' + utf8FromUtf16(text) + '"';
    }
    return '"' + utf8FromUtf16(text.substr(0, most)) + "…\" of " + std::to_string(text.size()) +
           " characters";
}

std::string shown(const VARIANT& value)
{
    std::string type = typeName(value.vt);
    if (value.vt == VT_BSTR) {
        return type + ' ' + shown(textOf(value.bstrVal));
    }
    Variant text;
    if (!isKnown(value.vt) || value.vt == VT_EMPTY || value.vt == VT_NULL ||
        FAILED(copyVariant(text, value)) || FAILED(text.changeType(VT_BSTR))) {
        return type;
    }
    return type + ' ' + utf8FromUtf16(text.text());
}

double numberOf(const VARIANT& value, const std::string& what)
{
    Variant number;
    const bool numeric = value.vt == VT_I2 || value.vt == VT_I4 || value.vt == VT_I8 || value.vt == VT_R8 ||
                         value.vt == VT_DECIMAL;
    if (!numeric || FAILED(copyVariant(number, value)) || FAILED(number.changeType(VT_R8))) {
        throw Breach(what + " comes as " + shown(value) + ", which is no number of the contract",
                     "reads it as what it can make of it, or logs a type mismatch");
    }
    return number.dblVal;
}

Rows::Rows(ComPtr<IRecordset> rows, std::u16string_view statement)
    : m_rows(std::move(rows))
    , m_statement(shown(statement))
{}

Rows::~Rows()
{
    if (m_rows) {
        noteException("Close", [this] { m_rows->Close(); });
        noteException("Release", [this] { m_rows.detach()->Release(); });
    }
}

std::string Rows::called(const char* member) const
{
    return std::string(member) + " of the row set " + m_statement;
}

bool Rows::atEnd() const
{
    return eof() != VARIANT_FALSE;
}

VARIANT_BOOL Rows::eof() const
{
    VARIANT_BOOL value = 2; // no Boolean: the host has to write one
    mustSucceed(m_rows->get_Eof(&value), called("Eof"));
    if (value == 2) {
        throw Breach(called("Eof") + " succeeds and gives no value", "takes it for the end of the rows");
    }
    return value;
}

void Rows::next() const
{
    mustSucceed(m_rows->MoveNext(), called("MoveNext"));
}

Variant Rows::known(Variant value) const
{
    if (!isKnown(value.vt)) {
        const std::string what = called("Value") + " gives " + typeName(value.vt);
        // What it points to belongs to nobody knows whom.
        VariantInit(&value);
        throw Breach(what + ", which is none of the contract",
                     "converts it to a number where it can, else ends the command and logs it");
    }
    return value;
}

Variant Rows::value(std::u16string_view field) const
{
    Variant value;
    mustSucceed(m_rows->get_Value(Variant::fromText(field), &value),
                called("Value") + ", field " + shown(field) + ',');
    return known(std::move(value));
}

Variant Rows::value(LONG index) const
{
    Variant value;
    mustSucceed(m_rows->get_Value(Variant::fromLong(index), &value),
                called("Value") + ", field " + std::to_string(index) + ',');
    return known(std::move(value));
}

LONG Rows::fieldCount() const
{
    LONG count = -1;
    mustSucceed(m_rows->get_FieldCount(&count), called("FieldCount"));
    if (count < 0) {
        throw Breach(called("FieldCount") + " succeeds and gives no number", "shows rows without cells");
    }
    return count;
}

std::u16string Rows::fieldName(LONG index) const
{
    Bstr name;
    mustSucceed(m_rows->FieldName(index, name.put()), called("FieldName"));
    return name.toString();
}

void Rows::addNew() const
{
    mustSucceed(m_rows->AddNew(), called("AddNew"));
}

void Rows::put(std::u16string_view field, const Variant& value) const
{
    mustSucceed(m_rows->put_Value(Variant::fromText(field), value),
                "setting the field " + shown(field) + " to " + shown(value));
}

void Rows::update() const
{
    mustSucceed(m_rows->Update(), called("Update"));
}

std::vector<double> Rows::numbers(std::u16string_view field, std::size_t most) const
{
    std::vector<double> found;
    for (; !atEnd(); next()) {
        if (found.size() == most) {
            throw Breach("the row set " + m_statement + " gives more than " + std::to_string(most) +
                             " rows and does not end",
                         "reads on for ever: the window hangs");
        }
        found.push_back(numberOf(value(field), shown(field)));
    }
    return found;
}

} // namespace zul::host::check
