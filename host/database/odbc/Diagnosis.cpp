#include "host/database/odbc/Diagnosis.h"

#include "host/database/products/Product.h"

#include <array>

namespace zul::host {

Diagnosis diagnose(SQLSMALLINT kind, SQLHANDLE handle)
{
    Diagnosis result;
    for (SQLSMALLINT record = 1; record <= 8; ++record) {
        std::array<SQLCHAR, 6> state{};
        std::array<SQLCHAR, 2048> text{};
        SQLINTEGER native = 0;
        SQLSMALLINT length = 0;
        const SQLRETURN code = SQLGetDiagRec(kind, handle, record, state.data(), &native, text.data(),
                                             static_cast<SQLSMALLINT>(text.size()), &length);
        if (!SQL_SUCCEEDED(code)) {
            break;
        }
        const std::string message(reinterpret_cast<const char*>(text.data()));
        const std::string stateText(reinterpret_cast<const char*>(state.data()));
        // The first record is the weightiest; a note such as "statement terminated" tells nothing more.
        if (record == 1 || (result.native == 0 && native != 0)) {
            result.state = stateText;
            result.native = native;
        }
        result.text += (result.text.empty() ? "" : "; ") + message;
    }
    if (result.text.empty()) {
        result.text = "the ODBC driver failed and does not say why";
    }
    return result;
}

ErrorCode codeOf(const Diagnosis& diagnosis, const Product& product)
{
    if (const auto code = product.errorCode(diagnosis.native, diagnosis.text)) {
        return *code;
    }
    const std::string_view state = diagnosis.state;
    const auto in = [&](std::string_view start) { return state.substr(0, start.size()) == start; };
    if (state == "42S02" || state == "42P01") {
        return ErrorCode::NoTable;
    }
    if (state == "42501") {
        return ErrorCode::Permission;
    }
    if (in("23")) {
        return ErrorCode::Integrity;
    }
    if (in("22")) {
        return ErrorCode::BadValue;
    }
    if (in("40") || in("HYT") || state == "55P03") {
        return ErrorCode::Busy;
    }
    if (in("08") || in("IM")) {
        return ErrorCode::ConnectionLost;
    }
    if (in("42") || in("37") || in("07") || diagnosis.native > 0) {
        return ErrorCode::Statement;
    }
    return ErrorCode::Unspecified;
}

} // namespace zul::host
