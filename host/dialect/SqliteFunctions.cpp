#include "host/dialect/SqliteFunctions.h"

#include "host/dialect/functions/Functions.h"
#include "host/dialect/functions/NumberFunctions.h"

#include <array>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <sqlite3.h>

namespace zul::dialect {

namespace {

Argument argumentOf(sqlite3_value* value)
{
    switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
        return std::int64_t{sqlite3_value_int64(value)};
    case SQLITE_FLOAT:
        return sqlite3_value_double(value);
    case SQLITE_TEXT:
    case SQLITE_BLOB: {
        const void* bytes = sqlite3_value_blob(value);
        const auto length = static_cast<std::size_t>(sqlite3_value_bytes(value));
        return bytes == nullptr ? std::string_view("")
                                : std::string_view(static_cast<const char*>(bytes), length);
    }
    default:
        return {};
    }
}

void setResult(sqlite3_context* context, const Result& result)
{
    if (const auto* whole = std::get_if<std::int64_t>(&result)) {
        sqlite3_result_int64(context, *whole);
    } else if (const auto* real = std::get_if<double>(&result)) {
        sqlite3_result_double(context, *real);
    } else if (const auto* text = std::get_if<std::string>(&result)) {
        sqlite3_result_text64(context, text->data(), text->size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    } else {
        sqlite3_result_null(context);
    }
}

// No exception may pass through the engine.
template <typename Work>
void guarded(sqlite3_context* context, Work work)
{
    try {
        work();
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(context);
    } catch (const std::exception& error) {
        sqlite3_result_error(context, error.what(), -1);
    }
}

void callScalar(sqlite3_context* context, int count, sqlite3_value** values)
{
    guarded(context, [&] {
        const auto* function = static_cast<const Function*>(sqlite3_user_data(context));
        const auto size = static_cast<std::size_t>(count);
        std::array<Argument, 8> few;
        if (size <= few.size()) {
            for (std::size_t i = 0; i < size; ++i) {
                few[i] = argumentOf(values[i]);
            }
            setResult(context, function->call(Arguments(few.data(), size)));
            return;
        }
        std::vector<Argument> many;
        many.reserve(size);
        for (std::size_t i = 0; i < size; ++i) {
            many.push_back(argumentOf(values[i]));
        }
        setResult(context, function->call(many));
    });
}

// The engine hands out zeroed memory for each group and frees it itself: it holds only the pointer.
Average* averageOf(sqlite3_context* context, bool create)
{
    constexpr int pointer = sizeof(void*);
    auto** place = static_cast<Average**>(sqlite3_aggregate_context(context, create ? pointer : 0));
    if (place == nullptr) {
        return nullptr;
    }
    if (*place == nullptr && create) {
        *place = new Average;
    }
    return *place;
}

void stepAverage(sqlite3_context* context, int, sqlite3_value** values)
{
    guarded(context, [&] {
        if (Average* average = averageOf(context, true)) {
            average->add(argumentOf(values[0]));
        }
    });
}

void finalAverage(sqlite3_context* context)
{
    const std::unique_ptr<Average> average(averageOf(context, false));
    guarded(context, [&] { setResult(context, average ? average->result() : Result{}); });
}

} // namespace

int registerFunctions(sqlite3* connection)
{
    constexpr int always = SQLITE_UTF8 | SQLITE_INNOCUOUS | SQLITE_DETERMINISTIC;
    for (const Function& function : functions()) {
        const int first = function.most < 0 ? -1 : function.least;
        const int last = function.most < 0 ? -1 : function.most;
        for (int count = first; count <= last; ++count) {
            // The engine only hands the pointer back; the table is constant and lives as long as the process.
            const int code = sqlite3_create_function_v2(connection, function.name, count, always,
                                                        const_cast<Function*>(&function), callScalar, nullptr,
                                                        nullptr, nullptr);
            if (code != SQLITE_OK) {
                return code;
            }
        }
    }
    return sqlite3_create_function_v2(connection, "zul_avg", 1, always, nullptr, nullptr, stepAverage,
                                      finalAverage, nullptr);
}

} // namespace zul::dialect
