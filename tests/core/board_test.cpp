#include "core/board.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/fen.h"
#include "core/keys.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/material.h"
#include "core/movetext.h"
#include "core/psqt.h"
#include "tests/support/positions.h"
#include "tests/support/slowposition.h"
#include "tests/support/walker.h"

namespace {

using BoardTest = CoreTest;

// The material signature from the counts alone: digits of the pieces, then of the pawns.
uint32_t SignatureOf(const Board& counted) {
    uint32_t signature = 0, weight = 1;
    for (const unsigned piece : {QUEEN, ROOK, BISHOP, KNIGHT, PAWN}) {
        for (const int side : {WHITE, BLACK}) {
            const uint32_t number = counted.PieceNumber[piece][side];
            if (piece != PAWN && number > 2) return 531441;
            signature += number * weight;
            weight *= piece == PAWN ? 9 : 3;
        }
    }
    return signature;
}

// Every field as its comment defines it, from the men alone.
Board FieldsOf(const SlowPosition& position) {
    Board fields{};
    fields.SideToMove = position.SideToMove;
    fields.CastlingFlags = position.Castling;
    fields.Fifty = position.Fifty;
    int opening = 0, ending = 0;
    for (int square = 0; square < 64; ++square) {
        const auto [piece, side] = position.Men[square];
        if (piece == EMPTY) continue;
        const Bitboard bit = Bitboard{1} << square;
        const int file = square % 8, rank = square / 8, sign = side == WHITE ? -1 : 1;
        constexpr int CENTIPAWNS[] = {0, 0, 300, 100, 0, 500, 300, 900};
        constexpr int UNITS[] = {0, 0, 3, 0, 0, 5, 3, 9};
        fields.PieceCount += 1;
        fields.PieceNumber[piece][side] += 1;
        fields.MajorCount[side] += piece == ROOK ? 1 : piece == QUEEN ? 2 : 0;
        fields.MinorCount[side] += piece == KNIGHT || piece == BISHOP;
        fields.Material[side] += CENTIPAWNS[piece];
        fields.PieceMaterial[side] += UNITS[piece];
        opening += sign * PsqTable[(static_cast<int>(piece) * 2 + side) * 64 + square].Opening;
        ending += sign * PsqTable[(static_cast<int>(piece) * 2 + side) * 64 + square].Ending;
        fields.Occupied[side] |= bit;
        fields.Pieces[piece][side] |= bit;
        fields.PieceOn[square] = piece;
        fields.RankOccupancy[rank] |= 1u << file;
        fields.FileOccupancy[file] |= 1u << rank;
        fields.DiagA8H1Occupancy[file + rank] |= 1u << rank;
        fields.DiagA1H8Occupancy[file - rank + 7] |= 1u << rank;
        if (piece == KING) fields.KingSquare[side] = square;
        if (piece == ROOK || piece == QUEEN) fields.StraightSliders |= bit;
        if (piece == BISHOP || piece == QUEEN) fields.DiagonalSliders |= bit;
        fields.HashKey ^= PieceKeys[side][piece][square];
        if (piece == PAWN) fields.PawnHashKey ^= PieceKeys[side][piece][square];
    }
    fields.PsqOpening = static_cast<int16_t>(opening);
    fields.PsqEnding = static_cast<int16_t>(ending);
    fields.MaterialSignature = SignatureOf(fields);
    std::copy_n(board.PieceNumber[KING], 2, fields.PieceNumber[KING]);  // only ever counted up
    return fields;
}

TEST_F(BoardTest, FieldsFollowFromTheMen) {
    VisitPositions(20000 / WORK_DIVISOR, 31,
                   [] { ASSERT_TRUE(board == FieldsOf(SlowPosition::FromBoard())); });
    for (const char* fen : NASTY_POSITIONS) {
        LoadFEN(fen);
        EXPECT_TRUE(board == FieldsOf(SlowPosition::FromBoard())) << fen;
        const int16_t opening = board.PsqOpening, ending = board.PsqEnding;
        board.PsqOpening = board.PsqEnding = 99;
        RebuildPsqSums();
        EXPECT_EQ(board.PsqOpening, opening) << fen;
        EXPECT_EQ(board.PsqEnding, ending) << fen;
    }
}

TEST_F(BoardTest, RebuildsTheSumsOfTheWholeGame) {
    const std::vector<PsqEntry> saved(PsqTable, PsqTable + PSQ_ENTRIES);
    for (const char* fen : NASTY_POSITIONS) {
        LoadFEN(fen);
        std::mt19937_64 random(32);
        for (int ply = 0; ply < 60; ++ply) {
            const std::vector<Move> legal = LegalOnes(MovesOf(GenerateMoves));
            if (legal.empty()) break;
            MakeMove(legal[random() % legal.size()], 1);
        }
        for (PsqEntry& entry : PsqTable) std::swap(entry.Opening, entry.Ending);
        RebuildPsqSums();
        EXPECT_TRUE(board == FieldsOf(SlowPosition::FromBoard())) << fen;
        while (HistoryLength > 0) {
            UnmakeMove();
            ASSERT_TRUE(board == FieldsOf(SlowPosition::FromBoard()))
                << fen << " after " << HistoryLength << " moves";
        }
        std::copy(saved.begin(), saved.end(), PsqTable);
    }
}

TEST_F(BoardTest, KnowsTheInitialPosition) {
    EXPECT_TRUE(board == FieldsOf(SlowPosition::FromBoard()));
    EXPECT_EQ(SlowPosition::FromBoard().Text(),
              "rnbqkbnr/pppppppp/11111111/11111111/11111111/11111111/PPPPPPPP/RNBQKBNR w KQkq -");
    EXPECT_EQ(board.PieceCount, 32u);
    for (const int side : {WHITE, BLACK}) {
        EXPECT_EQ(board.Material[side], 3900);
        EXPECT_EQ(board.PieceMaterial[side], 31u);
        EXPECT_EQ(board.MajorCount[side], 4u);
        EXPECT_EQ(board.MinorCount[side], 4u);
    }
    EXPECT_EQ(board.MaterialSignature, 531436u);
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(board.FileOccupancy[i], 0xC3u);
        EXPECT_EQ(board.RankOccupancy[i], i < 2 || i > 5 ? 255u : 0u);
    }
    EXPECT_EQ(LastMove(), NO_MOVE);
}

TEST_F(BoardTest, SetUpForgetsEverythingThatWasThere) {
    LoadFEN(START);
    const Board loaded = board;
    for (const char* fen : NASTY_POSITIONS) {
        LoadFEN(fen);
        board.Fifty = 49;
        LoadFEN(START);
        std::copy_n(loaded.PieceNumber[KING], 2, board.PieceNumber[KING]);
        EXPECT_TRUE(board == loaded) << fen;
        EXPECT_EQ(HistoryLength, 0);
    }
}

// Knights go out and home, `plies` times in all.
void Shuffle(int plies) {
    static constexpr const char* MOVES[] = {"g1f3", "g8f6", "f3g1", "f6g8"};
    for (int ply = 0; ply < plies; ++ply) {
        ReserveHistory(200);
        MakeMove(TextToMove(MOVES[GamePly() % 4]), 1);
    }
}

TEST_F(BoardTest, LongGamesKeepTheirLastMoves) {
    Shuffle(500);
    EXPECT_EQ(HistoryForgotten, 0);
    for (int ply = 500; ply < 2001; ++ply) {
        Shuffle(1);
        ASSERT_EQ(GamePly(), ply + 1);
        ASSERT_EQ(HistoryForgotten % 2, 0) << "the index tells the mover";
        ASSERT_LE(HistoryLength, HISTORY_SIZE - 199);
        ASSERT_GE(HistoryLength, 101) << "within reach of the fifty-move rule";
    }
    EXPECT_GT(HistoryForgotten, 0);
    EXPECT_STREQ(MoveToText(LastMove()), "g1f3");
    const int kept = HistoryLength;
    while (HistoryLength > 0) UnmakeMove();
    EXPECT_EQ(board.Fifty, 2001u - static_cast<unsigned>(kept));
    EXPECT_TRUE(board.PieceCount == 32 && GamePly() % 2 == board.SideToMove);
    ResetBoard();
    EXPECT_EQ(GamePly(), 0);
}

TEST_F(BoardTest, ReservesWhatIsAskedFor) {
    Shuffle(600);
    ReserveHistory(256);
    EXPECT_LE(HistoryLength + 256, HISTORY_SIZE);
    const uint64_t key = board.HashKey;
    bool isRepeated = false;
    for (int back = 2; back <= 100; back += 2) isRepeated |= History[HistoryLength - back].HashKey == key;
    EXPECT_TRUE(isRepeated);
    LoadFEN(START);
    EXPECT_EQ(GamePly(), 0);
}

}  // namespace
