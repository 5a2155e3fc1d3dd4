#pragma once
// The journal: what the component does to the database, one JSON object a line, for tests and bug reports.
// Only the connection object and the services that the component calls write to it; what the host reads for
// itself does not show. Passwords do not stand in it: see Secrets.h.
#include "host/database/Value.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zul::host {

/// Columns with the values they were given, in the order in which they were set.
using ColumnValues = std::vector<std::pair<std::string, Value>>;

/// Writes the lines; each is on its way to the file when the call returns. A journal that was never opened
/// takes everything and writes nothing. `error` is the driver's text of an operation that failed, else empty.
class Journal
{
public:
    Journal() = default;

    /// Makes the file, readable by its owner alone, and empties an earlier one. False when it cannot be made.
    bool open(const std::string& path);
    bool isOpen() const { return m_file != nullptr; }
    /// False once a line could not be written; a full disk must not pass for an operation that never was.
    bool isWhole() const { return m_isWhole; }

    void execute(std::string_view sql, std::string_view error = {});
    void openRows(std::string_view sql, std::string_view cursor, std::string_view lock,
                  std::string_view error = {});
    void insert(std::string_view table, const ColumnValues& values, std::string_view error = {});
    void update(std::string_view table, const ColumnValues& values, std::string_view error = {});
    void lookup(std::string_view field, std::string_view table, std::string_view condition,
                std::string_view error = {});
    void nextId(std::string_view table, std::string_view key, std::int64_t id, std::string_view error = {});
    /// "begin", "commit" or "rollback".
    void transaction(std::string_view operation, std::string_view error = {});

private:
    struct Close
    {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    void change(std::string_view operation, std::string_view table, const ColumnValues& values,
                std::string_view error);
    void finish(std::string& line, std::string_view error);

    std::unique_ptr<std::FILE, Close> m_file;
    bool m_isWhole = true;
};

/// The text as a JSON string, quotes included; what is no UTF-8 becomes U+FFFD.
std::string jsonText(std::string_view text);

/// A value as JSON: true and false, numbers in their shortest exact form, dates as "YYYY-MM-DD HH:MM:SS.mmm".
std::string jsonValue(const Value& value);

} // namespace zul::host
