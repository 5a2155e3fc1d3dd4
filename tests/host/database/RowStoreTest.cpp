#include "host/database/RowStore.h"

#include "host/database/Cell.h"

#include <gtest/gtest.h>

#include <string>

using namespace zul::host;

namespace {

ZulCell text(const std::string& value)
{
    ZulCell cell{};
    cell.Kind = CellText;
    cell.Text = reinterpret_cast<const unsigned char*>(value.data());
    cell.Length = static_cast<LONG>(value.size());
    return cell;
}

} // namespace

TEST(RowStore, KeepsCellsOfEveryKindOverManyBlocks)
{
    RowStore store(3);
    for (int i = 0; i < 5000; ++i) {
        const std::string value(static_cast<std::size_t>(i % 97), 'x');
        ZulCell cells[3]{};
        cells[0].Kind = CellInteger;
        cells[0].Integer = i;
        cells[1] = text(value);
        cells[2].Kind = i % 2 == 0 ? CellDate : CellNull;
        cells[2].Real = i;
        store.append(cells);
    }
    ASSERT_EQ(store.rows(), 5000U);
    for (const std::size_t row : {std::size_t{0}, std::size_t{511}, std::size_t{512}, std::size_t{4999}}) {
        ZulCell cells[3]{};
        store.read(row, cells);
        EXPECT_EQ(cells[0].Integer, static_cast<LONGLONG>(row));
        EXPECT_EQ(cellText(cells[1]), std::string(row % 97, 'x'));
        EXPECT_EQ(cells[2].Kind, row % 2 == 0 ? CellDate : CellNull);
    }
}

TEST(RowStore, KeepsTextsOfEverySize)
{
    RowStore store(1);
    const std::string large(1'000'000, 'y');
    for (const std::string& value : {std::string(), std::string("a"), large, std::string("b")}) {
        const ZulCell cell = text(value);
        store.append(&cell);
    }
    ZulCell cell{};
    store.read(2, &cell);
    EXPECT_EQ(cellText(cell), large);
    store.read(3, &cell);
    EXPECT_EQ(cellText(cell), "b");
    store.read(0, &cell);
    EXPECT_EQ(cell.Kind, CellText);
    EXPECT_EQ(cell.Length, 0);
}

TEST(RowStore, KeepsADecimalExactly)
{
    RowStore store(1);
    const std::string digits = "12345678901234567890.12";
    ZulCell cell = text(digits);
    cell.Kind = CellReal;
    cell.Real = 1.2345678901234567e19;
    store.append(&cell);
    ZulCell read{};
    store.read(0, &read);
    EXPECT_EQ(read.Kind, CellReal);
    EXPECT_EQ(cellText(read), digits);
    EXPECT_DOUBLE_EQ(read.Real, 1.2345678901234567e19);
}

TEST(RowStore, ReplacesACell)
{
    RowStore store(2);
    const std::string a = "a";
    const std::string b = "b";
    const std::string changed = "changed";
    ZulCell cells[2] = {text(a), text(b)};
    store.append(cells);
    store.replace(0, 1, text(changed));
    store.read(0, cells);
    EXPECT_EQ(cellText(cells[0]), "a");
    EXPECT_EQ(cellText(cells[1]), "changed");
}
