#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "debug/storage_list.h"

namespace ads::debug {
namespace {

TEST(StorageListTest, The32ndRowIsAddedThe33rdRefused) {
    std::vector<StorageRow> rows;
    std::string message;
    for (int i = 0; i < 32; ++i) ASSERT_TRUE(AddStorageRow(&rows, &message)) << i;
    EXPECT_FALSE(AddStorageRow(&rows, &message));
    EXPECT_EQ(kTooManyStorageRows, message);
    EXPECT_EQ(32u, rows.size());
}

TEST(StorageListTest, CellsReadLenientlyAndNumbersAsHexadecimal) {
    struct Row {
        int column;
        const char* typed;
        bool accepted;
        const char* shown;
    } rows[] = {
        {kColumnType, "RAM", true, "RAM"},          {kColumnType, "rom", true, "RAM"},  // only "ROM" is ROM
        {kColumnDownload, "No", true, "No"},        {kColumnDownload, "yes", true, "No"},
        {kColumnStart, "20000000", true, "0x20000000"}, {kColumnStart, "0x400", true, "0x400"},
        {kColumnSize, "zz", false, "0x8000"},       {kColumnSize, "", false, "0x8000"},
        {kColumnLoadFile, "C:\\DATA.BIN", true, "c:\\Data.bin"},  // same path but for case
        {kColumnLoadFile, "d:\\x.bin", true, "d:\\x.bin"},
    };
    for (const Row& row : rows) {
        StorageRow cell;
        std::string message;
        EXPECT_EQ(row.accepted, EditStorageCell(&cell, row.column, row.typed, &message)) << row.typed;
        EXPECT_EQ(row.accepted ? "" : kWrongNumberInput, message) << row.typed;
        EXPECT_EQ(row.shown, StorageCell(cell, row.column)) << row.typed;
    }
}

TEST(StorageListTest, ClockTakesWholeAndFractionalNumbers) {
    const std::pair<const char*, bool> rows[] = {{"12", true}, {"0.12", true}, {"12.000", true}, {"MHz", false}};
    for (const auto& row : rows) {
        double clock = -1;
        EXPECT_EQ(row.second, ReadClock(row.first, &clock)) << row.first;
    }
}

}  // namespace
}  // namespace ads::debug
