#pragma once
// The advanced search without its window: what may be compared with what, and the sub-select that comes out.
#include <QLocale>
#include <QString>

#include <span>
#include <vector>

namespace zul::host {

enum class SearchKind
{
    Text,
    Number,
    Date,
    Flag
};

/// A column of tabClienti that can be searched, with its label.
struct SearchField
{
    const char* column;
    const char* label; ///< UTF-8
    SearchKind kind;
};

enum class SearchComparison
{
    Equal,
    NotEqual,
    Greater,
    GreaterOrEqual,
    Less,
    LessOrEqual,
    Contains,
    ContainsNot,
    BeginsWith,
    EndsWith,
    Empty,
    NotEmpty,
    Yes,
    No
};

/// One row of the search; the field is an index into searchFields().
struct SearchRow
{
    int field = 0;
    SearchComparison comparison = SearchComparison::Equal;
    QString value;
};

std::span<const SearchField> searchFields();

/// The comparisons offered for a kind of column, in the order of the list.
std::span<const SearchComparison> comparisonsFor(SearchKind kind);
QString comparisonLabel(SearchComparison comparison);

/// Whether the comparison wants a value beside it.
bool takesValue(SearchComparison comparison);

/// The sub-select, or why there is none: `error` is then a text for the operator and `row` the row that it is
/// about.
struct SearchResult
{
    QString sql;
    QString error;
    int row = -1;
};

/// "SELECT idCliente FROM tabClienti WHERE …" with the rows joined by "and" (matchAll) or "or". Rows whose
/// comparison wants a value and has none are passed over; when no row is left, every customer is meant.
/// Numbers and dates are read by the locale's rules.
SearchResult buildSearch(const std::vector<SearchRow>& rows, bool matchAll, const QLocale& locale);

} // namespace zul::host
