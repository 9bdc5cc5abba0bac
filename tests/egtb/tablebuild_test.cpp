#include "egtb/tablebuild.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <sstream>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/fen.h"
#include "core/makemove.h"
#include "egtb/tablestats.h"
#include "tests/support/datafile.h"
#include "tests/support/tempdirectory.h"
#include "tests/support/walker.h"

namespace {

constexpr int THREADS = 2;

int NumberOf(const std::string& name) {
    return FindTableClass(name.c_str());
}

bool Build(const TableStore& store, int number, TableBuilder::Options options) {
    TableBuilder builder(TableClasses[number], store, std::move(options));
    if (!builder.Build()) return false;
    builder.WriteFiles();
    return true;
}

// Makes the classes and what they lead to, and loads them.
void BuildAndLoad(TableStore& store, const std::vector<int>& numbers) {
    const std::vector<int> all = WithSuccessors(numbers);
    for (const int number : all) {
        store.Load(SuccessorClasses(TableClasses[number]));
        Build(store, number, {THREADS, false, nullptr});
    }
    store.Load(all);
}

// A row of published counts: the positions of a whole board by result, and the longest mates.
struct CountRow {
    std::string Name;
    std::vector<int64_t> Numbers;
};

std::vector<CountRow> ReadCounts() {
    std::vector<CountRow> rows;
    for (const std::string& line : ReadDataLines("egtb/statistics.tsv")) {
        const std::vector<std::string> words = SplitWords(line);
        if (words[0] == "class") continue;
        CountRow& row = rows.emplace_back();
        for (const char letter : words[0]) {
            if (letter != 'v') row.Name += static_cast<char>(letter | 32);
        }
        for (size_t i = 1; i < words.size(); ++i) row.Numbers.push_back(std::stoll(words[i]));
    }
    return rows;
}

bool HasTwins(const TableClass& tableClass) {
    const auto isPair = [&](unsigned piece) {
        return CountMen(tableClass.Code[WHITE], piece) == 2 || CountMen(tableClass.Code[BLACK], piece) == 2;
    };
    return std::any_of(std::begin(TableKinds), std::end(TableKinds), isPair);
}

void ExpectPublishedCounts(const CountRow& row, const TableStatistics& found, bool hasTwins) {
    // The published counts tell two men of a kind apart.
    const int64_t twins = hasTwins ? 2 : 1;
    std::vector<int64_t> counts;
    for (const auto& side : found.Of) {
        for (const int64_t count : {side.Positions(), side.Wins, side.Draws, side.Losses}) {
            counts.push_back(count * twins);
        }
    }
    const TableStatistics::SideToMove &white = found.Of[WHITE], &black = found.Of[BLACK];
    counts.insert(counts.end(), {white.Win.Moves, white.Win.Positions * twins, black.Loss.Moves,
                                 black.Win.Moves, black.Win.Positions * twins});
    EXPECT_EQ(counts, row.Numbers) << row.Name;
}

// Whether the side to move mates by its move number `moves` at the latest: tried move by move.
bool CanMate(int moves) {
    for (const Move move : LegalMoves()) {
        MakeMove(move, 1);
        bool isWon = IsKingAttacked(board.SideToMove) || moves > 1;
        if (isWon) {
            const std::vector<Move> replies = LegalMoves();
            isWon = replies.empty() ? IsKingAttacked(board.SideToMove) : moves > 1;
            for (size_t i = 0; isWon && i < replies.size(); ++i) {
                MakeMove(replies[i], 1);
                isWon = CanMate(moves - 1);
                UnmakeMove();
            }
        }
        UnmakeMove();
        if (isWon) return true;
    }
    return false;
}

// Compares what a table says of a position with a search for mates of up to `moves`.
void ExpectMatesAsSearched(const TablePosition& position, TableValue value, int moves) {
    LoadCommonFEN(FenOf(position).c_str());
    for (int i = 1; i <= moves; ++i) {
        ASSERT_EQ(CanMate(i), IsWin(value) && MateMoves(value) <= i) << FenOf(position) << " " << value;
    }
    const std::vector<Move> legal = LegalMoves();
    if (legal.empty()) {
        EXPECT_EQ(value, IsKingAttacked(board.SideToMove) ? MatedIn(0) : TABLE_DRAW) << FenOf(position);
    } else if (IsLoss(value) && MateMoves(value) <= moves) {
        for (const Move move : legal) {
            MakeMove(move, 1);
            EXPECT_TRUE(CanMate(MateMoves(value))) << FenOf(position);
            UnmakeMove();
        }
    }
}

void SampleClass(const TableStore& store, const TableClass& tableClass, int count) {
    std::mt19937_64 random(11);
    for (int i = 0; i < count && !testing::Test::HasFailure();) {
        const int side = tableClass.HasBlackFile() ? static_cast<int>(random() % 2) : WHITE;
        const LoadedTable& table = store.Table(tableClass.Number, side);
        const auto number = static_cast<int64_t>(random() % static_cast<uint64_t>(table.Index().Size()));
        TablePosition position;
        if (!table.Index().PositionAt(number, &position)) continue;
        ++i;
        // Three moves are looked for where there are such mates, else two.
        const TableValue value = table.Value(number);
        ExpectMatesAsSearched(position, value, IsWin(value) && MateMoves(value) == 3 ? 3 : 2);
    }
}

std::string FileText(const TempDirectory& directory, const char* name) {
    return directory.ReadFile(name);
}

TEST(TableBuildTest, SmallClassesAgreeWithMovesSearchAndPublishedCounts) {
    const TempDirectory directory;
    TableStore store(directory.Path());
    BuildAndLoad(store, {1, 2, 3, 4, 5});
    const std::vector<CountRow> rows = ReadCounts();
    for (int number = 1; number <= LAST_CLASS_OF_3; ++number) {
        const TableClass& tableClass = TableClasses[number];
        EXPECT_TRUE(store.HasFiles(tableClass));
        TablePosition first;
        EXPECT_EQ(CountFaults(tableClass, store, THREADS, &first), 0) << tableClass.Name << FenOf(first);
        ExpectPublishedCounts(rows.at(static_cast<size_t>(number) - 1),
                              CountTable(tableClass, store, THREADS), false);
        SampleClass(store, tableClass, 1000 / WORK_DIVISOR);
    }
    EXPECT_EQ(CountTable(TableClasses[NumberOf("kpk")], store, THREADS).WhiteZugzwangs, 80);
}

// Wherever the work is stopped, and however many threads there are, the files are the same.
TEST(TableBuildTest, StoppedWorkGoesOn) {
    const TempDirectory directory;
    const TableStore store(directory.Path());
    ASSERT_TRUE(Build(store, NumberOf("krk"), {1, false, nullptr}));
    const std::string white = FileText(directory, "krk.nbw"), black = FileText(directory, "krk.nbb");
    for (const int threads : {1, 3}) {
        for (const int stopStep : {0, 1, 2, 9, 16}) {
            for (const char* name : {"krk.nbw", "krk.nbb"}) directory.WriteFile(name, "");
            std::atomic<bool> stop = false;
            int lastSeen = 0;
            const auto report = [&](const TableBuilder::Progress& progress) {
                lastSeen = progress.Step;
                if (progress.Step >= stopStep) stop = true;
            };
            EXPECT_FALSE(Build(store, NumberOf("krk"), {threads, true, &stop, report}));
            EXPECT_LE(lastSeen, stopStep + 1);
            EXPECT_EQ(FileText(directory, "krk.nbw"), "");
            std::string work = FileText(directory, "krk.work");
            EXPECT_EQ(work.empty(), stopStep == 0);
            if (stopStep == 9) {
                // What is damaged is begun anew.
                work[work.size() / 2] = static_cast<char>(work[work.size() / 2] ^ 1);
                directory.WriteFile("krk.work", work);
            }
            if (stopStep == 16) directory.WriteFile("krk.work", work.substr(0, work.size() / 2));
            // Whether it goes on shows where the next call begins.
            int firstSeen = -1;
            const auto watch = [&](const TableBuilder::Progress& progress) {
                if (firstSeen < 0) firstSeen = progress.Step;
            };
            EXPECT_TRUE(Build(store, NumberOf("krk"), {threads, true, nullptr, watch}));
            const bool isWhole = stopStep != 9 && stopStep != 16;
            EXPECT_EQ(firstSeen, isWhole ? lastSeen : 0) << stopStep;
            EXPECT_EQ(FileText(directory, "krk.nbw"), white) << stopStep;
            EXPECT_EQ(FileText(directory, "krk.nbb"), black) << stopStep;
            EXPECT_EQ(FileText(directory, "krk.work"), "");
        }
    }
}

// What lies where the work of a class would, and is something else.
TEST(TableBuildTest, OtherWorkIsNotGoneOnWith) {
    const TempDirectory directory;
    const TableStore store(directory.Path());
    std::atomic<bool> stop = false;
    const auto stopLater = [&](const TableBuilder::Progress& progress) { stop = progress.Step >= 3; };
    ASSERT_FALSE(Build(store, NumberOf("krk"), {1, true, &stop, stopLater}));
    const std::string work = FileText(directory, "krk.work");
    for (const std::string& text :
         {work, work.substr(0, 64), work + work, std::string(100, 'K'), std::string()}) {
        directory.WriteFile("kqk.work", text);
        int firstSeen = -1;
        const auto watch = [&](const TableBuilder::Progress& progress) {
            if (firstSeen < 0) firstSeen = progress.Step;
        };
        EXPECT_TRUE(Build(store, NumberOf("kqk"), {1, true, nullptr, watch}));
        EXPECT_EQ(firstSeen, 0);
    }
}

TEST(TableBuildTest, DamagedTablesAreSeen) {
    const TempDirectory directory;
    TableStore store(directory.Path());
    BuildAndLoad(store, {NumberOf("krk")});
    std::string file = FileText(directory, "krk.nbb");
    file[1000] = static_cast<char>(file[1000] + 1);
    directory.WriteFile("krk.nbb", file);
    store.Load({});
    store.Load({NumberOf("krk")});
    TablePosition first;
    EXPECT_GT(CountFaults(TableClasses[NumberOf("krk")], store, THREADS, &first), 0);
    // Entries that no position has are neither counted nor built upon.
    for (const char code : {char{127}, char{-128}}) {
        directory.WriteFile("krk.nbb", file.substr(0, 2000) + std::string(300, code) + file.substr(2300));
        store.Load({});
        store.Load({NumberOf("krk")});
        EXPECT_GE(CountFaults(TableClasses[NumberOf("krk")], store, THREADS, &first), 100);
        EXPECT_THROW(CountTable(TableClasses[NumberOf("krk")], store, THREADS), TableError);
        EXPECT_THROW(Build(store, NumberOf("krkn"), {THREADS, false, nullptr}), TableError);
    }
    directory.WriteFile("krk.nbb", file.substr(1));
    EXPECT_FALSE(store.HasFiles(TableClasses[NumberOf("krk")]));
    store.Load({});
    EXPECT_THROW(store.Load({NumberOf("krk")}), TableError);
    EXPECT_THROW(store.Load({NumberOf("kqk")}), TableError);
}

TEST(TableBuildTest, ClassesComeAfterThoseTheyLeadTo) {
    const auto names = [](const std::vector<int>& numbers) {
        std::string text;
        for (const int number : numbers) text += std::string(TableClasses[number].Name) + " ";
        return text;
    };
    EXPECT_EQ(names(SuccessorClasses(TableClasses[NumberOf("krkp")])),
              "kqk krk kbk knk kpk kqkr krkr krkb krkn ");
    EXPECT_EQ(names(WithSuccessors({NumberOf("kpk")})), "kqk krk kbk knk kpk ");
    for (const int number : WithSuccessors({NumberOf("kppkp")})) {
        const std::vector<int> order = WithSuccessors({number});
        EXPECT_EQ(order.back(), number);
    }
}

// All the classes of three and four men; a minute and a half when nothing slows it down.
TEST(TableBuildSlowTest, AllSmallClassesAgreeWithMovesSearchAndPublishedFigures) {
    if (WORK_DIVISOR > 1) GTEST_SKIP() << "takes too long with instruments";
    const TempDirectory directory;
    TableStore store(directory.Path());
    std::vector<int> numbers;
    for (int number = 1; number <= LAST_CLASS_OF_4; ++number) numbers.push_back(number);
    BuildAndLoad(store, numbers);
    std::map<std::string, TableStatistics> found;
    for (const int number : numbers) {
        const TableClass& tableClass = TableClasses[number];
        found[tableClass.Name] = CountTable(tableClass, store, THREADS);
        SampleClass(store, tableClass, 1000);
    }
    for (const char* name : {"kbbk", "krkn", "kpkp"}) {
        TablePosition first;
        EXPECT_EQ(CountFaults(TableClasses[NumberOf(name)], store, THREADS, &first), 0)
            << name << FenOf(first);
    }
    const std::vector<CountRow> rows = ReadCounts();
    EXPECT_EQ(rows.size(), numbers.size() - 1);  // all but kpkp
    for (const CountRow& row : rows) {
        ExpectPublishedCounts(row, found.at(row.Name), HasTwins(TableClasses[NumberOf(row.Name)]));
    }
    // The longest mate with pawns on both sides, and positions in which nobody wants to be on move.
    EXPECT_EQ(found["kpkp"].Of[WHITE].Win.Moves, 33);
    EXPECT_EQ(found["krkn"].WhiteZugzwangs, 18);
    EXPECT_EQ(found["krkb"].WhiteZugzwangs, 5);
    EXPECT_EQ(found["kqkr"].WhiteZugzwangs, 0);
    EXPECT_EQ(found["kpkp"].WhiteZugzwangs, 106);
    EXPECT_EQ(found["kpkp"].FullZugzwangs / 2, 15);  // with Black's part and with White's
    for (const std::string& line : ReadDataLines("egtb/longest.epd")) {
        LoadCommonFEN(line.c_str());
        TablePosition position;
        for (const int side : {WHITE, BLACK}) {
            for (const unsigned piece : {KING, KNIGHT, PAWN, ROOK, BISHOP, QUEEN}) {
                position.Men[side][piece] = board.Pieces[piece][side];
            }
        }
        position.SideToMove = board.SideToMove;
        const int moves = std::stoi(line.substr(line.find(" dm ") + 4));
        EXPECT_EQ(store.ValueOf(position), moves > 0 ? MateIn(moves) : MatedIn(-moves)) << line;
    }
}

}  // namespace
