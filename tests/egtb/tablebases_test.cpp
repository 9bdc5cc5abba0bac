#include "egtb/tablebases.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "egtb/tablepath.h"
#include "tests/egtb/tabletest.h"

namespace {

namespace fs = std::filesystem;

using TablebasesTest = TableTest;

TEST_F(TablebasesTest, PathsAreSplit) {
    using Directories = std::vector<std::string>;
    const struct {
        const char* Path;
        Directories Expected;
    } rows[] = {
        {"", {}},
        {" ;,; ", {}},
        {"c:\\tablebases\\", {"c:\\tablebases\\"}},
        {"/a,/b;/c", {"/a", "/b", "/c"}},
        {"  /my tables/3 4 ; \t/more ,", {"/my tables/3 4", "/more"}},
    };
    for (const auto& row : rows) EXPECT_EQ(SplitTablePath(row.Path), row.Expected) << row.Path;
}

// Sides of a class may lie apart, and a good file counts wherever it lies.
TEST_F(TablebasesTest, SeveralDirectoriesAreOne) {
    const std::string first = PathOf("one two"), second = PathOf("B");
    fs::create_directories(first);
    fs::create_directories(second);
    WriteTable(first + "/KQK.Nbw", "kqk", WHITE);
    WriteSparseTable(first + "/krk.nbw", 5);
    WriteTable(second + "/kqk.nbw", "kqk", WHITE);
    WriteTable(second + "/kqk.nbb", "kqk", BLACK);
    WriteTable(second + "/krk.NBW", "krk", WHITE);
    const std::string path = " " + first + " ;," + PathOf("missing") + "," + second + "/";
    EXPECT_EQ(Register(path), "*** " + first + "/krk.nbw corrupted 5 27030 27036\n");
    EXPECT_EQ(FoundPieces, 3);
    EXPECT_EQ(Registered("kqk", WHITE)->PathAt(0), first + "/KQK.Nbw");
    EXPECT_EQ(Registered("kqk", BLACK)->PathAt(0), second + "/kqk.nbb");
    EXPECT_EQ(Registered("krk", WHITE)->PathAt(0), second + "/krk.NBW");
    EXPECT_EQ(Registered("krk", BLACK), nullptr);
    // Three numberings of 463 places, and not much more.
    EXPECT_GT(TablebaseMemory, 3 * 463 * 8);
    EXPECT_LT(TablebaseMemory, 3 * 2048 * 8);
    // Nothing is left of them.
    EXPECT_EQ(Register(PathOf("missing")), "");
    EXPECT_EQ(Registered("kqk", WHITE), nullptr);
    EXPECT_EQ(FoundPieces, 0);
    EXPECT_EQ(TablebaseMemory, 0);
}

TEST_F(TablebasesTest, TheClassWithMostMenCounts) {
    for (const auto& [number, men] :
         {std::pair{1, 3}, {LAST_CLASS_OF_3 + 1, 4}, {LAST_CLASS_OF_4, 4}, {LAST_CLASS_OF_4 + 1, 5}}) {
        const char* name = TableClasses[number].Name;
        WriteSparseTable(PathOf(std::string(name) + ".nbw"), TableFileBytes(name, WHITE));
        EXPECT_EQ(Register(), "");
        EXPECT_EQ(FoundPieces, men) << name;
    }
}

// Each with a good file of the other side beside it.
TEST_F(TablebasesTest, BadFilesAreLeftOut) {
    const std::string path = PathOf("kqk.nbw"), sizes = " 25629 25635\n";
    WriteTable(PathOf("kqk.nbb"), "kqk", BLACK);
    for (const int bytes : {0, 1, 25628, 25630, 28644}) {
        WriteSparseTable(path, bytes);
        EXPECT_EQ(Register(), "*** " + path + " corrupted " + std::to_string(bytes) + sizes);
        EXPECT_TRUE(Registered("kqk", WHITE) == nullptr && Registered("kqk", BLACK) != nullptr);
    }
    fs::remove(path);
    for (const bool isDirectory : {true, false}) {
        if (isDirectory) fs::create_directory(path);
        if (!isDirectory) fs::create_symlink(PathOf("nowhere"), path);
        EXPECT_EQ(Register(), "");
        EXPECT_TRUE(Registered("kqk", WHITE) == nullptr && Registered("kqk", BLACK) != nullptr);
        VerboseRegistration = 1;
        EXPECT_NE(Register().find("*** Unable to register " + path + "\n"), std::string::npos);
        VerboseRegistration = 0;
        fs::remove(path);
    }
    // Files of no class, and of a side that the class doesn't tell apart.
    for (const char* name : {"kk.nbw", "kqkq.nbb", "kqk.nbw.bak", "kqk..nbw", ".nbw", "kqk.0.nbw"}) {
        WriteSparseTable(PathOf(name), 25629);
    }
    EXPECT_EQ(Register(), "");
    EXPECT_EQ(Registered("kqk", WHITE), nullptr);
    EXPECT_EQ(FoundPieces, 3);
}

TEST_F(TablebasesTest, CompressedFilesAreNamedOnce) {
    for (const char* name : {"kqk.nbw.emd", "KRK.NBB.EMD", "kbnk.nbw.emd"}) WriteSparseTable(PathOf(name), 9);
    EXPECT_EQ(Register(),
              "*** Compressed tables can't be read: 3 left out, such as " + PathOf("kqk.nbw.emd") + "\n");
    EXPECT_EQ(FoundPieces, 0);
    // One that is there uncompressed, too, is not missed.
    WriteTables("kqk");
    const std::string other = PathOf("other");
    fs::create_directory(other);
    fs::rename(PathOf("kqk.nbw"), other + "/kqk.nbw");
    EXPECT_EQ(Register(PathOf("") + ";" + other),
              "*** Compressed tables can't be read: 2 left out, such as " + PathOf("KRK.NBB.EMD") + "\n");
    EXPECT_EQ(FoundPieces, 3);
}

TEST_F(TablebasesTest, RegistrationIsReportedOnRequest) {
    WriteTables("kqk");
    WriteSparseTable(PathOf("krk.nbb"), 7);
    VerboseRegistration = 1;
    const std::string white = PathOf("kqk.nbw"), black = PathOf("kqk.nbb"), bad = PathOf("krk.nbb");
    const std::string said = Register();
    EXPECT_EQ(said, white + " found\n" + white + " registered\n" + black + " found\n" + black +
                        " registered\n" + bad + " found\n*** " + bad + " corrupted 7 28644 28644\n" +
                        "*** Unable to register " + bad + "\nAllocated " +
                        std::to_string((TablebaseMemory + 1023) / 1024) +
                        "Kb for decompression tables, indices, and buffers.\n" +
                        "Tried to open 3 files. Opened 3 files.\n");
}

// Their files hold nothing and take up no room.
TEST_F(TablebasesTest, LongTablesAreSplit) {
    const char* name = "kqrrkq";
    const TableClass& tableClass = TableClasses[FindTableClass(name)];
    ASSERT_TRUE(IsSplit(tableClass));
    EXPECT_FALSE(IsSplit(TableClasses[LAST_CLASS_OF_5]));
    EXPECT_EQ(TableName(tableClass, WHITE, 0), "kqrrkq.0.nbw");
    EXPECT_EQ(TableName(tableClass, BLACK, 9), "kqrrkq.9.nbb");
    EXPECT_EQ(TableName(tableClass, BLACK, 10), "kqrrkq.a.nbb");
    const int64_t bytes = TableFileBytes(name, WHITE), rest = bytes % TABLE_PART_BYTES;
    const int64_t last = bytes / TABLE_PART_BYTES;
    const auto part = [&](int64_t i) { return PathOf(TableName(tableClass, WHITE, static_cast<int>(i))); };
    for (int64_t i = 0; i < last; ++i) WriteSparseTable(part(i), TABLE_PART_BYTES);
    EXPECT_NE(Register().find("kqrrkq.0.nbw corrupted "), std::string::npos) << "the last part is missing";
    WriteSparseTable(part(last), rest, {{rest / 2 - 1, MateIn(250)}}, 2);
    EXPECT_EQ(Register(), "");
    EXPECT_EQ(FoundPieces, 6);
    const TableFile& file = *Registered(name, WHITE);
    EXPECT_EQ(file.Length(), bytes);
    EXPECT_EQ(file.PathAt(bytes - 2), part(last));
    uint8_t entry[2];
    EXPECT_TRUE(file.Read(bytes - 2, entry, 2));
    EXPECT_EQ(ValueOfCode(static_cast<int16_t>(entry[0] | entry[1] << 8), 2), MateIn(250));
    // All bytes in one part, which is longer than a part can be.
    fs::resize_file(part(0), static_cast<uintmax_t>(bytes));
    for (int64_t i = 1; i <= last; ++i) fs::rename(part(i), part(i) + ".away");
    EXPECT_NE(Register().find("kqrrkq.0.nbw corrupted "), std::string::npos);
    for (int64_t i = 1; i <= last; ++i) fs::rename(part(i) + ".away", part(i));
    // The same bytes divided in another way.
    fs::resize_file(part(0), static_cast<uintmax_t>(TABLE_PART_BYTES - 2));
    fs::resize_file(part(last), static_cast<uintmax_t>(rest + 2));
    EXPECT_NE(Register().find("kqrrkq.0.nbw corrupted "), std::string::npos);
    EXPECT_EQ(FoundPieces, 0);
}

}  // namespace
