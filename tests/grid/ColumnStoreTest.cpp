#include "grid/ColumnStore.h"

#include <QLocale>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <string>

using namespace zul;

namespace {

void appendText(ColumnStore& store, int column, const std::string& text)
{
    store.appendText(column, text.data(), text.size());
}

std::vector<uint32_t> allRows(const ColumnStore& store)
{
    std::vector<uint32_t> rows(store.rowCount());
    std::iota(rows.begin(), rows.end(), 0U);
    return rows;
}

std::vector<uint32_t> sorted(const ColumnStore& store, int column, bool descending = false)
{
    std::vector<uint32_t> rows = allRows(store);
    store.sortRows(rows, column, descending);
    return rows;
}

std::vector<uint32_t> found(const ColumnStore& store, const QString& needle, const std::vector<int>& columns)
{
    const std::vector<uint64_t> bits = store.rowsContaining(needle, columns);
    std::vector<uint32_t> rows;
    for (uint32_t row = 0; row < store.rowCount(); ++row) {
        if ((bits[row >> 6] >> (row & 63) & 1) != 0) {
            rows.push_back(row);
        }
    }
    return rows;
}

using Rows = std::vector<uint32_t>;

class ColumnStoreTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        store.setLocale(QLocale(QLocale::Italian, QLocale::Italy));
        store.addColumn();
        store.addColumn();
    }

    ColumnStore store;
};

} // namespace

TEST_F(ColumnStoreTest, KeepsTextsOfEveryKindByteForByte)
{
    const std::vector<std::string> texts = {"Rossi",
                                            "",
                                            " ",
                                            "D'Angelo",
                                            "100%",
                                            "\"quoted\"",
                                            "à è €",
                                            "😀",
                                            "\uFEFFnome", // a character here, no mark of an encoding
                                            std::string(10000, 'x'),
                                            std::string("with\0zero", 9),
                                            std::string(200000, 'y')};
    for (const std::string& text : texts) {
        appendText(store, 0, text);
        store.endRow();
    }
    for (uint32_t row = 0; row < texts.size(); ++row) {
        EXPECT_EQ(store.kind(row, 0), CellKind::Text);
        EXPECT_EQ(store.utf8(row, 0), texts[row]);
        EXPECT_EQ(store.text(row, 0).toStdString(), texts[row]);
        EXPECT_EQ(store.kind(row, 1), CellKind::Null) << "a column that got nothing holds NULL";
    }
}

TEST_F(ColumnStoreTest, TellsNullFromTheEmptyTextAndShowsBothEmpty)
{
    store.appendNull(0);
    appendText(store, 1, "");
    store.endRow();
    EXPECT_TRUE(store.isNull(0, 0));
    EXPECT_FALSE(store.isNull(0, 1));
    EXPECT_EQ(store.text(0, 0), QString());
    EXPECT_EQ(store.text(0, 1), QString());
}

TEST_F(ColumnStoreTest, KeepsEachTextOnce)
{
    for (int row = 0; row < 20000; ++row) {
        appendText(store, 0, "Commune number " + std::to_string(row % 100));
        store.endRow();
    }
    EXPECT_EQ(store.utf8(7, 0).data(), store.utf8(19907, 0).data());
    EXPECT_LT(store.bytes(), 20000U * 4U + 10000U);
}

TEST_F(ColumnStoreTest, ManyDistinctTextsAreAllFoundAgain)
{
    constexpr uint32_t count = 70000;
    for (uint32_t row = 0; row < count; ++row) {
        appendText(store, 0, "cliente" + std::to_string(row) + "@example.com");
        appendText(store, 1, "cliente" + std::to_string(count - 1 - row) + "@example.com");
        store.endRow();
    }
    store.settle();
    // After the index was given back, known texts are still known.
    appendText(store, 0, "cliente69999@example.com");
    store.endRow();
    EXPECT_EQ(store.utf8(count, 0).data(), store.utf8(69999, 0).data());
    for (uint32_t row = 0; row < count; row += 777) {
        EXPECT_EQ(store.utf8(row, 0), store.utf8(count - 1 - row, 1));
    }
}

TEST_F(ColumnStoreTest, WidensWholeNumbersWhenTheyNeedIt)
{
    const std::vector<int64_t> values = {0,
                                         -1,
                                         std::numeric_limits<int32_t>::max(),
                                         std::numeric_limits<int32_t>::min(),
                                         5'000'000'000,
                                         std::numeric_limits<int64_t>::max(),
                                         std::numeric_limits<int64_t>::min(),
                                         42};
    for (const int64_t value : values) {
        store.appendInteger(0, value);
        store.endRow();
        store.appendNull(0);
        store.endRow();
    }
    for (size_t i = 0; i < values.size(); ++i) {
        const auto row = static_cast<uint32_t>(i * 2);
        EXPECT_EQ(store.kind(row, 0), CellKind::Integer);
        EXPECT_EQ(store.integer(row, 0), values[i]);
        EXPECT_TRUE(store.isNull(row + 1, 0));
    }
}

TEST_F(ColumnStoreTest, MixesKindsInOneColumn)
{
    store.appendInteger(0, 7);
    store.endRow();
    appendText(store, 0, "seven");
    store.endRow();
    store.appendReal(0, 7.5);
    store.endRow();
    store.appendBoolean(0, true);
    store.endRow();
    store.appendDate(0, 45000);
    store.endRow();
    store.endRow();
    EXPECT_EQ(store.integer(0, 0), 7);
    EXPECT_EQ(store.utf8(1, 0), "seven");
    EXPECT_EQ(store.real(2, 0), 7.5);
    EXPECT_TRUE(store.boolean(3, 0));
    EXPECT_EQ(store.kind(4, 0), CellKind::Date);
    EXPECT_TRUE(store.isNull(5, 0));
    EXPECT_EQ(sorted(store, 0), (Rows{5, 3, 0, 2, 4, 1})) << "NULL, then numbers, then texts";
    EXPECT_EQ(sorted(store, 0, true), (Rows{1, 4, 2, 0, 3, 5}));
    EXPECT_EQ(found(store, QStringLiteral("7"), {0}), (Rows{0, 2}));
    EXPECT_FALSE(store.holdsNumbers(0));
}

TEST_F(ColumnStoreTest, KeepsWhatItHasWhenAValueOfAnotherKindComes)
{
    struct Value
    {
        const char* name;
        std::function<void(ColumnStore&)> append;
        std::function<void(ColumnStore&, uint32_t)> set;
        std::function<bool(const ColumnStore&, uint32_t)> isThere;
    };
    const auto integer = [](const char* name, int64_t value) {
        return Value{name, [value](ColumnStore& s) { s.appendInteger(0, value); },
                     [value](ColumnStore& s, uint32_t row) { s.setInteger(row, 0, value); },
                     [value](const ColumnStore& s, uint32_t row) {
                         return s.kind(row, 0) == CellKind::Integer && s.integer(row, 0) == value;
                     }};
    };
    const std::vector<Value> values = {
        {"null", [](ColumnStore& s) { s.appendNull(0); },
         [](ColumnStore& s, uint32_t row) { s.setNull(row, 0); },
         [](const ColumnStore& s, uint32_t row) { return s.isNull(row, 0); }},
        {"text", [](ColumnStore& s) { s.appendText(0, "D'Angelò", 9); },
         [](ColumnStore& s, uint32_t row) { s.setText(row, 0, "D'Angelò", 9); },
         [](const ColumnStore& s, uint32_t row) { return s.utf8(row, 0) == "D'Angelò"; }},
        {"real", [](ColumnStore& s) { s.appendReal(0, -1.5); },
         [](ColumnStore& s, uint32_t row) { s.setReal(row, 0, -1.5); },
         [](const ColumnStore& s, uint32_t row) {
             return s.kind(row, 0) == CellKind::Real && s.real(row, 0) == -1.5;
         }},
        {"date", [](ColumnStore& s) { s.appendDate(0, 45000.25); },
         [](ColumnStore& s, uint32_t row) { s.setDate(row, 0, 45000.25); },
         [](const ColumnStore& s, uint32_t row) {
             return s.kind(row, 0) == CellKind::Date && s.real(row, 0) == 45000.25;
         }},
        {"boolean", [](ColumnStore& s) { s.appendBoolean(0, true); },
         [](ColumnStore& s, uint32_t row) { s.setBoolean(row, 0, true); },
         [](const ColumnStore& s, uint32_t row) {
             return s.kind(row, 0) == CellKind::Boolean && s.boolean(row, 0);
         }},
        integer("small number", -7),
        integer("large number", 5'000'000'000),
        integer("lowest of 32 bits", std::numeric_limits<int32_t>::min()),
        integer("lowest of all", std::numeric_limits<int64_t>::min())};
    for (const Value& first : values) {
        for (const Value& second : values) {
            for (const bool later : {false, true}) {
                store.clearRows();
                for (int row = 0; row < 3; ++row) {
                    first.append(store);
                    store.endRow();
                }
                if (later) {
                    second.set(store, 1);
                } else {
                    second.append(store);
                    store.endRow();
                }
                first.append(store);
                store.endRow();
                const uint32_t changed = later ? 1 : 3;
                for (uint32_t row = 0; row < store.rowCount(); ++row) {
                    EXPECT_TRUE((row == changed ? second : first).isThere(store, row))
                        << first.name << ", then " << second.name << ", row " << row << " later " << later;
                }
            }
        }
    }
}

TEST_F(ColumnStoreTest, KeepsEveryDoubleApartFromNull)
{
    const double odd = std::bit_cast<double>(0x7FF8'0000'4E55'4C4CULL); // the mark of NULL itself
    for (const double value : {1.5, -0.0, std::nan(""), odd, 1e300}) {
        store.appendReal(0, value);
        store.endRow();
    }
    store.appendNull(0);
    store.endRow();
    for (uint32_t row = 0; row < 5; ++row) {
        EXPECT_EQ(store.kind(row, 0), CellKind::Real) << row;
    }
    EXPECT_TRUE(std::isnan(store.real(3, 0)));
    EXPECT_TRUE(store.isNull(5, 0));
}

TEST_F(ColumnStoreTest, TheLastValueOfARowsColumnCounts)
{
    store.appendInteger(0, 1);
    appendText(store, 0, "two");
    store.appendInteger(0, 3);
    store.endRow();
    store.appendInteger(0, 4);
    store.endRow();
    EXPECT_EQ(store.rowCount(), 2U);
    EXPECT_EQ(store.integer(0, 0), 3);
    EXPECT_EQ(store.integer(1, 0), 4);
}

TEST_F(ColumnStoreTest, ChangesSingleCells)
{
    for (int row = 0; row < 3; ++row) {
        store.endRow();
    }
    store.setText(1, 0, "à", 2);
    store.setText16(2, 0, u"€\xD83D", 2);
    store.setInteger(0, 1, 5);
    store.setNull(0, 1);
    store.setDate(2, 1, 1.0);
    EXPECT_TRUE(store.isNull(0, 0));
    EXPECT_EQ(store.text(1, 0), QStringLiteral("à"));
    EXPECT_EQ(store.text(2, 0), QStringLiteral("€\uFFFD")) << "half a character becomes the replacement one";
    EXPECT_TRUE(store.isNull(0, 1));
    EXPECT_EQ(store.kind(2, 1), CellKind::Date);
}

TEST_F(ColumnStoreTest, AColumnAddedLaterHoldsNulls)
{
    appendText(store, 0, "a");
    store.endRow();
    const int late = store.addColumn();
    EXPECT_TRUE(store.isNull(0, late));
    store.appendInteger(late, 9);
    store.endRow();
    EXPECT_EQ(store.integer(1, late), 9);
    EXPECT_TRUE(store.isNull(0, late));
}

TEST_F(ColumnStoreTest, RefusesWhatIsNotThere)
{
    EXPECT_THROW(store.appendInteger(2, 1), std::out_of_range);
    EXPECT_THROW(store.appendInteger(-1, 1), std::out_of_range);
    EXPECT_THROW(static_cast<void>(store.text(0, 0)), std::out_of_range);
    EXPECT_THROW(store.setInteger(0, 0, 1), std::out_of_range);
    EXPECT_FALSE(store.holdsNumbers(17));
}

TEST_F(ColumnStoreTest, ShowsNumbersAndDatesInTheUsersLocale)
{
    store.appendReal(0, 1234.5);
    store.appendDate(1, 9863.0);
    store.endRow();
    store.appendInteger(0, 1234567);
    store.appendDate(1, 45658.75);
    store.endRow();
    EXPECT_EQ(store.text(0, 0), QStringLiteral("1234,5"));
    EXPECT_EQ(store.text(0, 1), QStringLiteral("01/01/1927")) << "a year of four digits";
    EXPECT_EQ(store.text(1, 0), QStringLiteral("1234567"));
    EXPECT_EQ(store.text(1, 1), QStringLiteral("01/01/2025 18:00"));
    store.setLocale(QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_EQ(store.text(0, 0), QStringLiteral("1234.5"));
    EXPECT_EQ(store.text(0, 1), QStringLiteral("1/1/1927"));
}

TEST_F(ColumnStoreTest, KnowsWhichCellsAreNumeric)
{
    const std::vector<std::pair<std::string, bool>> texts = {
        {"12", true},   {"-12,5", true},    {"1.234,50", true}, {" 7 ", true},  {"", false},    {" ", false},
        {"12a", false}, {"+39 340", false}, {"inf", false},     {"nan", false}, {"12.5", false}};
    for (const auto& [text, numeric] : texts) {
        appendText(store, 0, text);
        store.endRow();
        EXPECT_EQ(store.isNumeric(store.rowCount() - 1, 0), numeric) << text;
    }
    store.appendInteger(1, 1);
    store.endRow();
    EXPECT_TRUE(store.isNumeric(store.rowCount() - 1, 1));
    EXPECT_FALSE(store.isNumeric(store.rowCount() - 1, 0)) << "NULL is not numeric";
}

TEST_F(ColumnStoreTest, SortsTextsWithoutRegardToCaseAndKeepsEqualRowsInOrder)
{
    for (const char* text : {"rossi", "Bianchi", "ROSSI", "àlvaro", "Alvaro", "", "Rossi", "zeta"}) {
        appendText(store, 0, text);
        store.endRow();
    }
    store.endRow();
    EXPECT_EQ(sorted(store, 0), (Rows{5, 8, 4, 3, 1, 0, 2, 6, 7}));
    EXPECT_EQ(sorted(store, 0, true), (Rows{7, 0, 2, 6, 1, 3, 4, 5, 8}));
    EXPECT_TRUE(store.sameInOrder(0, 6, 0));
    EXPECT_TRUE(store.sameInOrder(5, 8, 0)) << "NULL and the empty text look the same";
    EXPECT_FALSE(store.sameInOrder(3, 4, 0));
}

TEST_F(ColumnStoreTest, SortsNumbersDatesAndBooleans)
{
    const std::vector<double> reals = {2.5, -1.5, 1e12, 0.0, -1e12};
    const std::vector<int64_t> wide = {5'000'000'000, -5'000'000'000, 0, 1, -1};
    ColumnStore typed;
    for (int column = 0; column < 5; ++column) {
        typed.addColumn();
    }
    for (size_t i = 0; i < reals.size(); ++i) {
        typed.appendReal(0, reals[i]);
        typed.appendInteger(1, wide[i]);
        typed.appendDate(2, 40000.0 - static_cast<double>(i * i));
        typed.appendBoolean(3, i % 2 == 0);
        typed.appendInteger(4, static_cast<int64_t>(i * 7 % 5));
        typed.endRow();
    }
    typed.endRow();
    EXPECT_EQ(sorted(typed, 0), (Rows{5, 4, 1, 3, 0, 2}));
    EXPECT_EQ(sorted(typed, 1), (Rows{5, 1, 4, 2, 3, 0}));
    EXPECT_EQ(sorted(typed, 2), (Rows{5, 4, 3, 2, 1, 0}));
    EXPECT_EQ(sorted(typed, 3), (Rows{5, 1, 3, 0, 2, 4}));
    EXPECT_EQ(sorted(typed, 3, true), (Rows{0, 2, 4, 1, 3, 5}));
    EXPECT_EQ(sorted(typed, 4), (Rows{5, 0, 3, 1, 4, 2}));
}

TEST_F(ColumnStoreTest, SortsManyRowsAsAPlainSortDoes)
{
    // Enough rows for every path of the sort; the values spread over the whole range of their types.
    constexpr uint32_t count = 30000;
    ColumnStore typed;
    for (int column = 0; column < 4; ++column) {
        typed.addColumn();
    }
    uint64_t state = 12345;
    const auto next = [&state] { return state = state * 6364136223846793005ULL + 1442695040888963407ULL; };
    for (uint32_t row = 0; row < count; ++row) {
        typed.appendInteger(0, static_cast<int32_t>(next() >> 32));
        typed.appendInteger(1, static_cast<int64_t>(next()));
        typed.appendReal(2, static_cast<double>(static_cast<int64_t>(next())) / 1e6);
        typed.appendInteger(3, static_cast<int64_t>(next() >> 60));
        typed.endRow();
    }
    for (int column = 0; column < 4; ++column) {
        for (const bool descending : {false, true}) {
            std::vector<uint32_t> expected = allRows(typed);
            std::stable_sort(expected.begin(), expected.end(), [&](uint32_t a, uint32_t b) {
                if (column == 2) {
                    return descending ? typed.real(b, 2) < typed.real(a, 2)
                                      : typed.real(a, 2) < typed.real(b, 2);
                }
                return descending ? typed.integer(b, column) < typed.integer(a, column)
                                  : typed.integer(a, column) < typed.integer(b, column);
            });
            EXPECT_EQ(sorted(typed, column, descending), expected) << column << descending;
        }
    }
}

TEST_F(ColumnStoreTest, FindsTextsWithoutRegardToCase)
{
    for (const char* text : {"D'Angelo", "100% cotone", "È vero", "ROMA", "roma nord", "😀 ok", "Città"}) {
        appendText(store, 0, text);
        store.appendInteger(1, std::int64_t{store.rowCount()} * 11);
        store.endRow();
    }
    store.endRow();
    EXPECT_EQ(found(store, QStringLiteral("roma"), {0}), (Rows{3, 4}));
    EXPECT_EQ(found(store, QStringLiteral("è V"), {0}), (Rows{2}));
    EXPECT_EQ(found(store, QStringLiteral("CITTÀ"), {0}), (Rows{6}));
    EXPECT_EQ(found(store, QStringLiteral("'a"), {0}), (Rows{0}));
    EXPECT_EQ(found(store, QStringLiteral("%"), {0}), (Rows{1}));
    EXPECT_EQ(found(store, QStringLiteral("😀"), {0}), (Rows{5}));
    EXPECT_EQ(found(store, QStringLiteral("33"), {0, 1}), (Rows{3}));
    EXPECT_EQ(found(store, QStringLiteral("33"), {0}), Rows());
    EXPECT_EQ(found(store, QString(), {0}).size(), 8U);
}

TEST_F(ColumnStoreTest, FindsNumbersAndDatesAsTheyAreShown)
{
    for (int row = 0; row < 4; ++row) {
        store.appendReal(0, row + 0.25);
        store.appendDate(1, 45658.0 + row);
        store.endRow();
    }
    EXPECT_EQ(found(store, QStringLiteral("2,25"), {0, 1}), (Rows{2}));
    EXPECT_EQ(found(store, QStringLiteral("03/01/2025"), {0, 1}), (Rows{2}));
    EXPECT_EQ(found(store, QStringLiteral("/01/2025"), {0, 1}), (Rows{0, 1, 2, 3}));
}

TEST_F(ColumnStoreTest, ClearsAndFillsAgainWithOtherKinds)
{
    store.appendInteger(0, 1);
    store.endRow();
    store.clearRows();
    EXPECT_EQ(store.rowCount(), 0U);
    EXPECT_EQ(store.columnCount(), 2);
    appendText(store, 0, "again");
    store.endRow();
    EXPECT_EQ(store.text(0, 0), QStringLiteral("again"));
}

TEST_F(ColumnStoreTest, MarksTheChangesThatASingleLookAtEachPairFinds)
{
    ColumnStore typed;
    typed.setLocale(QLocale(QLocale::Italian, QLocale::Italy));
    for (int column = 0; column < 8; ++column) {
        typed.addColumn();
    }
    const std::vector<std::string> texts = {"Roma",  "ROMA",  "",  "D'Angelo", "d'angelo",
                                            "città", "citta", "😀", "100%"};
    constexpr uint32_t count = 500;
    for (uint32_t row = 0; row < count; ++row) {
        const std::string& text = texts[std::size_t{row} * 7 % texts.size()];
        if (row % 11 != 0) {
            typed.appendText(0, text.data(), text.size());
            typed.appendInteger(1, row % 4);
            typed.appendInteger(2, 5'000'000'000 + row % 3);
            typed.appendReal(3, row % 5 == 0 ? -0.0 : row % 3);
            typed.appendDate(4, 40000 + row % 7);
            typed.appendBoolean(5, row % 2 == 0);
        }
        // Column 6 stays NULL; column 7 holds several kinds.
        if (row % 3 == 0) {
            typed.appendText(7, text.data(), text.size());
        } else if (row % 3 == 1) {
            typed.appendInteger(7, row % 2);
        }
        typed.endRow();
    }
    for (int column = 0; column < typed.columnCount(); ++column) {
        for (const bool descending : {false, true}) {
            Rows rows = sorted(typed, column, descending);
            std::vector<uint64_t> bits((rows.size() + 63) / 64, 0);
            typed.markChanges(rows, column, bits);
            for (size_t place = 1; place < rows.size(); ++place) {
                ASSERT_EQ((bits[place >> 6] >> (place & 63) & 1) != 0,
                          !typed.sameInOrder(rows[place - 1], rows[place], column))
                    << "column " << column << ", place " << place;
            }
        }
    }
    std::vector<uint64_t> bits(1, 5);
    typed.markChanges({0, 0, 0}, 0, bits);
    EXPECT_EQ(bits[0], 5U) << "what was marked stays marked";
    typed.markChanges({}, 0, bits);
    EXPECT_THROW(typed.markChanges({}, 8, bits), std::out_of_range);
}

TEST_F(ColumnStoreTest, EqualNumbersOfDifferentKindsStandInOneGroup)
{
    // Sorted, the rows stand as they came: nothing but the order tells where a group begins.
    ColumnStore mixed;
    mixed.addColumn();
    const auto end = [&mixed] { mixed.endRow(); };
    mixed.appendInteger(0, 1), end();
    mixed.appendReal(0, 1.0), end();
    mixed.appendBoolean(0, true), end();
    mixed.appendDate(0, 1.0), end();
    mixed.appendInteger(0, 1), end();
    mixed.appendReal(0, 1.5), end();
    mixed.appendInteger(0, 2), end();
    const Rows rows = sorted(mixed, 0);
    ASSERT_EQ(rows, allRows(mixed));
    std::vector<uint64_t> bits(1, 0);
    mixed.markChanges(rows, 0, bits);
    EXPECT_EQ(bits[0], 0b1100000U);
    EXPECT_TRUE(mixed.sameInOrder(0, 1, 0));
    EXPECT_FALSE(mixed.sameInOrder(4, 5, 0));
}

TEST_F(ColumnStoreTest, TheTwoZerosAndAllThatAreNoNumberStandInOneGroupEach)
{
    for (const double value : {0.0, -0.0, std::nan("1"), -std::nan("2")}) {
        store.appendReal(0, value);
        store.endRow();
    }
    std::vector<uint64_t> bits(1, 0);
    store.markChanges(sorted(store, 0), 0, bits);
    EXPECT_EQ(bits[0], 0b0100U);
}

TEST_F(ColumnStoreTest, WholeNumbersThatNoRealTellsApartStayApartBesideReals)
{
    constexpr int64_t first = int64_t{1} << 53; // from here on a real passes over every other whole number
    const std::vector<int64_t> wholes = {first + 2,
                                         first + 1,
                                         first,
                                         first - 1,
                                         std::numeric_limits<int64_t>::max(),
                                         std::numeric_limits<int64_t>::max() - 1,
                                         -first - 1,
                                         std::numeric_limits<int64_t>::min()};
    for (const int64_t whole : wholes) {
        store.appendInteger(0, whole);
        store.endRow();
    }
    store.appendReal(0, static_cast<double>(first));
    store.endRow();
    store.appendReal(0, 9223372036854775808.0); // one above the largest whole number
    store.endRow();
    store.appendReal(0, std::numeric_limits<double>::infinity());
    store.endRow();
    appendText(store, 0, "a");
    store.endRow();
    const Rows rows = sorted(store, 0);
    EXPECT_EQ(rows, (Rows{7, 6, 3, 2, 8, 1, 0, 5, 4, 9, 10, 11}));
    std::vector<uint64_t> bits(1, 0);
    store.markChanges(rows, 0, bits);
    EXPECT_EQ(bits[0], 0b111111101110U) << "only the two that are equal stand together";
}

TEST_F(ColumnStoreTest, AColumnOfWholeNumbersAndRealsHoldsNumbers)
{
    store.appendInteger(0, 1);
    store.endRow();
    store.appendReal(0, 2.5);
    store.endRow();
    store.endRow();
    EXPECT_TRUE(store.holdsNumbers(0));
    appendText(store, 0, "");
    store.endRow();
    EXPECT_FALSE(store.holdsNumbers(0)) << "an empty text is no number";
    store.setInteger(3, 0, 4);
    EXPECT_TRUE(store.holdsNumbers(0));
    store.setBoolean(3, 0, true);
    EXPECT_FALSE(store.holdsNumbers(0)) << "a boolean is shown as a word";
    store.setDate(3, 0, 1.0);
    EXPECT_FALSE(store.holdsNumbers(0));
    for (uint32_t row = 0; row < store.rowCount(); ++row) {
        store.setNull(row, 0);
    }
    EXPECT_FALSE(store.holdsNumbers(0)) << "nothing but NULL";
}

TEST_F(ColumnStoreTest, SortsByCountsAsAPlainSortDoes)
{
    // More rows than there are different values, and about as many.
    constexpr uint32_t count = 20000;
    ColumnStore typed;
    typed.setLocale(QLocale(QLocale::Italian, QLocale::Italy));
    typed.addColumn();
    typed.addColumn();
    for (uint32_t row = 0; row < count; ++row) {
        const std::string text = "Città d'" + std::to_string(row * 7919U % 19997U);
        if (row % 5 != 0) {
            typed.appendText(0, text.data(), text.size());
        }
        typed.appendInteger(1, row * 31U % 101U);
        typed.endRow();
    }
    std::vector<uint32_t> room;
    for (const bool descending : {false, true}) {
        Rows byText = allRows(typed);
        typed.sortRows(byText, 1, descending, room);
        typed.sortRows(byText, 0, descending, room);
        Rows expected = allRows(typed);
        const auto less = [&](uint32_t a, uint32_t b) {
            return std::pair(typed.utf8(a, 0), typed.integer(a, 1)) <
                   std::pair(typed.utf8(b, 0), typed.integer(b, 1));
        };
        // The texts differ in digits only, so their bytes are in the order of the collation.
        std::stable_sort(expected.begin(), expected.end(),
                         [&](uint32_t a, uint32_t b) { return descending ? less(b, a) : less(a, b); });
        EXPECT_EQ(byText, expected);
    }
}

TEST_F(ColumnStoreTest, FindsATextAtEveryPlaceOfALongOne)
{
    for (size_t place = 0; place < 100; ++place) {
        std::string text(100, '.');
        text.insert(place, place % 2 == 0 ? "D'Angelo" : "d'ANGELO");
        appendText(store, 0, text);
        appendText(store, 1, text.substr(0, place + 7) + "Ò" + text.substr(place + 8));
        store.endRow();
    }
    EXPECT_EQ(found(store, QStringLiteral("d'Angelo"), {0}), allRows(store));
    EXPECT_EQ(found(store, QStringLiteral("d'Angelo"), {1}), Rows());
    EXPECT_EQ(found(store, QStringLiteral("D'ANGELò"), {1}), allRows(store));
    EXPECT_EQ(found(store, QStringLiteral("'"), {0}), allRows(store));
    EXPECT_EQ(found(store, QStringLiteral("@"), {0, 1}), Rows())
        << "not taken for the accent, which differs in one bit";
    appendText(store, 0, std::string(64, '`') + "[{");
    store.endRow();
    EXPECT_EQ(found(store, QStringLiteral("@@"), {0}), Rows());
    EXPECT_EQ(found(store, QStringLiteral("[["), {0}), Rows());
    EXPECT_EQ(found(store, QStringLiteral("`[{"), {0}), Rows({100}));
}
