#include "egtb/tableprobe.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <vector>

#include "core/board.h"
#include "core/fen.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "core/positionfault.h"
#include "tests/egtb/tabletest.h"

namespace {

constexpr int NOTHING = 99999;

class TableProbeTest : public TableTest {
  protected:
    static int Probe() {
        TableValue value = 0;
        return ProbeTable(&value) ? value : NOTHING;
    }
    static int Probe(const std::string& fen) {
        LoadCommonFEN(fen.c_str());
        return Probe();
    }
    static int Probe(const TablePosition& position) { return Probe(FenOf(position)); }

    static TablePosition Mirrored(const TablePosition& position, Bitboard (*mirror)(Bitboard)) {
        TablePosition result = position;
        for (const int side : {WHITE, BLACK}) {
            for (Bitboard& men : result.Men[side]) men = mirror(men);
        }
        return result;
    }
    static TablePosition FlippedFiles(const TablePosition& position) {
        TablePosition result = Mirrored(position, FlipFiles);
        if (position.DoubleStep >= 0) result.DoubleStep = position.DoubleStep ^ 7;
        return result;
    }

    // Probes a position of a class in all its forms, with either colour.
    static void ExpectValue(const TablePosition& position, bool hasPawns, TableValue value) {
        std::vector<TablePosition> forms{position, FlippedFiles(position)};
        for (size_t i = 0; !hasPawns && i < 2; ++i) {
            forms.push_back(Mirrored(forms[i], FlipRanks));
            forms.push_back(Mirrored(forms[i], FlipDiagonal));
            forms.push_back(Mirrored(forms.back(), FlipFiles));
        }
        for (const TablePosition& form : forms) {
            EXPECT_EQ(Probe(form), value) << FenOf(form);
            EXPECT_EQ(Probe(ChangeSides(form)), value) << FenOf(ChangeSides(form));
        }
    }
};

TEST_F(TableProbeTest, EveryFormOfAPositionHasOneValue) {
    const char* const names[] = {"kqk", "kpk", "kbk", "knkn", "kpkp"};
    for (const char* name : names) WriteTables(name);
    EXPECT_EQ(Register(), "");
    std::mt19937_64 random(11);
    for (const int bytes : {51, 1 << 20}) {
        EGTBHashSize = bytes;
        AllocateTablebaseCache();
        int playable = 0, enPassant = 0;
        for (int i = 0; i < 20000 / WORK_DIVISOR; ++i) {
            const char* name = names[random() % std::size(names)];
            const TableClass& tableClass = TableClasses[FindTableClass(name)];
            const int side = tableClass.HasBlackFile() ? static_cast<int>(random() % 2) : WHITE;
            const TableIndex& index = Registered(name, side)->Index();
            // Every other one of the few that know of en passant, where there are any.
            const bool isLate = tableClass.HasEnPassant() && i % 2 == 0;
            const int64_t first = isLate ? index.OrdinarySize() : 0;
            const auto count = static_cast<uint64_t>(index.FileEntries() - first);
            TablePosition position;
            if (!index.PositionAt(first + static_cast<int64_t>(random() % count), &position)) continue;
            ++playable;
            enPassant += position.DoubleStep >= 0 ? 1 : 0;
            ExpectValue(position, tableClass.HasPawns(), MadeUpValue(name, side, index.IndexOf(position)));
        }
        EXPECT_GT(playable, 1000 / WORK_DIVISOR);
        EXPECT_GT(enPassant, 100 / WORK_DIVISOR);
    }
    EXPECT_EQ(Take(), "");
}

TEST_F(TableProbeTest, WhatTablesDontKnowIsNotCovered) {
    for (const char* name : {"kqk", "krk", "kpk", "knkn"}) WriteTables(name);
    std::filesystem::remove(PathOf("krk.nbb"));
    EXPECT_EQ(Probe("8/8/8/4k3/8/8/8/K6Q w - -"), NOTHING) << "not registered yet";
    EXPECT_EQ(Register(), "");
    AllocateTablebaseCache();
    EXPECT_NE(Probe("8/8/8/4k3/8/8/8/K6Q w - -"), NOTHING);
    EXPECT_NE(Probe("8/8/8/4k3/8/8/8/4K2R w - -"), NOTHING);
    for (const char* fen : {
             "8/8/8/4k3/8/8/8/K7 w - -",      // kings only
             "8/8/8/4k3/8/8/8/K6B w - -",     // no file of the class
             "8/8/8/4k3/8/8/8/K6R b - -",     // none of the side
             "8/8/8/4K3/8/8/8/k6r w - -",     // the same with the colours changed
             "8/8/8/4k3/8/8/8/4K2R w K -",    // castling
             "4k3/8/8/8/8/8/8/3QQQQK w - -",  // too many men
             "8/8/8/8/8/8/8/K6Q w - -",       // no black king
             "8/8/8/8/8/8/1k6/K6Q w - -",     // side by side
             "8/8/8/4k2Q/8/8/8/K7 w - -",     // the king could be taken, over empty squares
             "8/8/8/4k3/8/8/8/K5P1 w - -",    // a pawn that has never moved so far
             "P7/8/8/4k3/8/8/8/K7 w - -",
             "8/8/8/4k3/8/8/8/KQ5K w - -",  // two kings
             "k7/8/8/4k3/8/8/8/K6Q w - -",
             "8/8/8/8/8/8/8/8 w - -",
         }) {
        EXPECT_EQ(Probe(fen), NOTHING) << fen;
    }
    // What the board editor makes of a square that was taken.
    for (const unsigned piece : {EMPTY, ROOK, KING}) {
        Probe("8/8/8/4k3/8/8/8/K6Q w - -");
        board.PieceOn[H1] = EMPTY;
        board.Occupied[WHITE] &= ~SquareBit(H1);
        if (piece != EMPTY) AddPiece(H1, WHITE, piece);
        ASSERT_NE(FindPositionFault(), nullptr);
        EXPECT_EQ(Probe(), NOTHING) << piece;
    }
    EXPECT_EQ(Take(), "") << "none of that is the fault of a table";
}

TEST_F(TableProbeTest, TheLastMoveTellsOfEnPassant) {
    WriteTables("kpkp");
    EXPECT_EQ(Register(), "");
    LoadCommonFEN("4k3/3p4/8/4P3/8/8/8/4K3 b - -");
    MakeMove(TextToMove("d7d5"), 1);
    const int capturable = Probe();
    EXPECT_EQ(capturable, Probe("4k3/8/8/3pP3/8/8/8/4K3 w - d5"));
    EXPECT_NE(capturable, Probe("4k3/8/8/3pP3/8/8/8/4K3 w - -"));
    EXPECT_EQ(Probe("4k3/8/8/3p1P2/8/8/8/4K3 w - d5"), Probe("4k3/8/8/3p1P2/8/8/8/4K3 w - -"))
        << "nobody can take it";
}

// In a class of which nearly nothing is known: its files take up no room.
TEST_F(TableProbeTest, ScoresAreThoseOfTheSearch) {
    const TablePosition mate = [] {
        TablePosition position;
        position.Men[WHITE][KING] = SquareBit(A1);
        position.Men[WHITE][PAWN] = SquareBit(A1 + 16) | SquareBit(B1 + 16);
        position.Men[BLACK][KING] = SquareBit(H8);
        position.Men[BLACK][PAWN] = SquareBit(A1 + 40);
        return position;
    }();
    const char* name = "kppkp";
    const TableIndex index(TableClasses[FindTableClass(name)], WHITE);
    const int64_t entry = index.IndexOf(mate), bytes = TableFileBytes(name, WHITE);
    const struct {
        TableValue Value;
        int Score;
    } rows[] = {{MateIn(1), 32698},   {MateIn(127), 32446}, {MateIn(400), 31900},
                {MatedIn(0), -32700}, {MatedIn(7), -32686}, {TABLE_DRAW, 0}};
    for (const auto& [value, expected] : rows) {
        WriteSparseTable(PathOf("kppkp.nbw"), bytes, {{entry, value}}, 2);
        EXPECT_EQ(Register(), "");
        EXPECT_EQ(Probe(mate), value);
        int score = NOTHING;
        EXPECT_TRUE(ProbeTablebase(&score));
        EXPECT_EQ(score, expected);
    }
    // No mate is that long.
    for (const TableValue value : {MateIn(401), MatedIn(401), MateIn(LongestMate(2))}) {
        WriteSparseTable(PathOf("kppkp.nbw"), bytes, {{entry, value}}, 2);
        EXPECT_EQ(Register(), "");
        EXPECT_EQ(Probe(mate), NOTHING);
        EXPECT_EQ(Take(), "*** " + PathOf("kppkp.nbw") + " corrupted, not used any more: bad entry at byte " +
                              std::to_string(2 * entry) + "\n");
    }
}

TEST_F(TableProbeTest, DamagedTablesAreGivenUpOnce) {
    const std::string fen = "8/8/8/4k3/8/8/8/K6Q b - -", path = PathOf("kqk.nbb");
    for (const int bytes : {51, 1 << 20}) {
        EGTBHashSize = bytes;
        WriteTables("kqk");
        WriteTables("krk");
        // Every entry is broken.
        std::filesystem::resize_file(path, 0);
        for (std::ofstream file(path); file.tellp() < 28644;) file.put(127);
        EXPECT_EQ(Register(), "");
        AllocateTablebaseCache();
        EXPECT_EQ(Probe(fen), NOTHING);
        EXPECT_TRUE(Take().starts_with("*** " + path + " corrupted, not used any more: bad entry at byte "));
        EXPECT_EQ(Probe(fen), NOTHING);
        // One that has become shorter.
        std::filesystem::resize_file(PathOf("krk.nbb"), 0);
        EXPECT_EQ(Probe("8/8/8/4k3/8/8/8/K6R b - -"), NOTHING);
        EXPECT_TRUE(Take().starts_with("*** " + PathOf("krk.nbb") +
                                       " corrupted, not used any more: nothing can be read at byte "));
        EXPECT_EQ(Registered("krk", BLACK), nullptr);
        EXPECT_NE(Probe("8/8/8/4k3/8/8/8/K6R w - -"), NOTHING);
        EXPECT_NE(Probe("8/8/8/4k3/8/8/8/K6Q w - -"), NOTHING);
        EXPECT_EQ(Take(), "");
        EXPECT_EQ(FoundPieces, 3);
    }
}

}  // namespace
