#include "core/san.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

#include "core/board.h"
#include "core/fen.h"
#include "core/movetext.h"
#include "tests/support/datafile.h"
#include "tests/support/positions.h"
#include "tests/support/walker.h"

namespace {

using SanTest = CoreTest;

constexpr Move UNTOUCHED = 0xFFFFFFFF;

// The move that the text names, as coordinates; why there is none otherwise.
std::string Resolved(const std::string& text) {
    Move move = UNTOUCHED;
    const SanResult result = ResolveSan(text.c_str(), &move);
    EXPECT_TRUE((result == SAN_FOUND) == (move != UNTOUCHED)) << text;
    if (result == SAN_FOUND) return MoveToText(move);
    return result == SAN_AMBIGUOUS ? "ambiguous" : "unknown";
}

struct Row {
    const char *Fen, *Texts, *Move;
};

// Resolves each of the blank-separated texts in the position.
void ExpectRow(const Row& row) {
    for (const std::string& text : SplitWords(row.Texts)) {
        LoadFEN(row.Fen);
        EXPECT_EQ(Resolved(text), row.Move) << row.Fen << ": " << text;
    }
}

TEST_F(SanTest, ReadsBackWhatItWrites) {
    VisitPositions(5000 / WORK_DIVISOR, 61, [] {
        const Board before = board;
        for (const Move move : LegalMoves()) {
            const std::string coordinates = MoveToText(move);
            ASSERT_EQ(Resolved(MoveToSan(move)), coordinates);
            ASSERT_EQ(Resolved(coordinates), coordinates);
            if (MovePromotion(move) != EMPTY) continue;
            const std::string withPiece = MoveToPieceText(move);
            ASSERT_EQ(Resolved(withPiece), coordinates) << withPiece;
        }
        ASSERT_TRUE(board == before);
    });
}

// What the text leaves out can't be told from it: a shorter one is another move's, too, or nobody's.
TEST_F(SanTest, WritesNoMoreThanNeeded) {
    VisitPositions(3000 / WORK_DIVISOR, 62, [] {
        for (const Move move : LegalMoves()) {
            const std::string text = MoveToSan(move);
            if (MovePiece(move) == PAWN || IsCastling(move)) continue;
            const size_t target = text.find_last_of("abcdefgh");
            for (size_t i = 1; i < target; ++i) {
                if (text[i] == 'x') continue;
                ASSERT_EQ(Resolved(text.substr(0, i) + text.substr(i + 1)), "ambiguous") << text;
            }
        }
    });
}

// Coordinates name a move exactly when the generator has it.
TEST_F(SanTest, FindsLegalMovesOnly) {
    VisitRandomBoards(40 / std::min(WORK_DIVISOR, 10), 63, [] {
        std::string expected, found;
        for (const Move move : LegalMoves()) expected += MoveToText(move) + std::string(" ");
        for (int from = A1; from <= H8; ++from) {
            for (int to = A1; to <= H8; ++to) {
                for (const unsigned promotion : {EMPTY, KNIGHT, PAWN, ROOK, BISHOP, QUEEN}) {
                    Move move = NO_MOVE;
                    const std::string text = MoveToText(BuildMove(from, to, KING, EMPTY, promotion));
                    if (promotion == PAWN || ResolveSan(text.c_str(), &move) != SAN_FOUND) continue;
                    ASSERT_EQ(MoveToText(move), text);
                    ASSERT_NE((" " + expected).find(" " + text + " "), std::string::npos) << text;
                    found += text + " ";
                }
            }
        }
        ASSERT_EQ(found.size(), expected.size()) << found << " for " << expected;
    });
}

TEST_F(SanTest, UnderstandsWhatPeopleWrite) {
    const Row rows[] = {
        {START, "e4 e4! e4!? e4+ e4= e4+- e4-+ e4+/= e2e4 e2-e4 Pe4 Pe2e4 Pe2-e4 ee4 e2e4??", "e2e4"},
        {START, "Nf3 Ngf3 N1f3 Ng1f3 Ng1-f3 N-f3 g1f3 g1-f3 Nf3# Nf3++ Nxf3", "g1f3"},
        {CASTLING_ALL, "O-O 0-0 o-o O-O+ 0-0! O-O-+ e1g1 Ke1g1 Ke1-g1", "e1g1"},
        {CASTLING_ALL, "O-O-O 0-0-0 o-o-o O-O-O# 0-0-0!? e1c1", "e1c1"},
        {PROMOTION_CAPTURES_ROOK, "b8=Q b8Q b8(Q) b8/Q b8=Q+ b8(Q)+ b8q b7b8q b7-b8=Q b8=q!", "b7b8q"},
        {PROMOTION_CAPTURES_ROOK, "bxa8=N ba8N b:a8(N) b7xa8/N b7a8n bxa8n xa8=N", "b7a8n"},
        {EN_PASSANT_ANSWERS_CHECK, "exd3 ed3 e:d3 exd3e.p. exd3ep exd3e.p.+ exd3ep. e4xd3 e4d3 exd3+!",
         "e4d3"},
        {EN_PASSANT_BOTH_SIDES, "exd6 exd6+ ed6", "e5d6"},
        {OPEN_LINES, "Rxb6 R:b6 Rb6 Rbxb6 R3xb6 Rb3xb6", "b3b6"},
        {MANY_QUEENS, "Qaa3 Qa1a3 Qa1-a3", "a1a3"},
    };
    for (const Row& row : rows) ExpectRow(row);
}

TEST_F(SanTest, RefusesTheRest) {
    const Row rows[] = {
        {START, "e5 Nf6 e7e5 g8f6 Nd2 Ke2 O-O 0-0-0 e1g1 exd3 xe4 e3e4 Bb5 a1 Nf9 Ni3 N Nf e 4 e2 e2e P",
         "unknown"},
        {START, "Sf3 nf3 e4x Ne5: e4=Q Nf3=N Nf3N e4e.q. -- O O- OO Z0 1-0 0-1 * @@@@ N@f3 +e4 Pg1f3 Ng2f3",
         "unknown"},
        {PROMOTION_RACE, "g1 g1=K g1=P g1= fxg1 f1=Q Kd7 gxf1 g1() g1=(Q)", "unknown"},
        {CASTLING_IN_CHECK, "O-O O-O-O e8g8 Ke8c8 Rd8", "unknown"},
        {"r3k2r/8/3Q4/8/8/5q2/8/R3K2R b KQkq -", "O-O-O", "unknown"},
        {"8/8/8/K2pP2r/8/8/8/4k3 w - d5", "exd6 e5d6", "unknown"},           // it would uncover the rank
        {"4k3/8/8/8/7b/8/3n4/r3K2R w K -", "Kf1 O-O Kxh4 Rxh4", "unknown"},  // double check
        {EN_PASSANT_BOTH_SIDES, "d6 xd7 exf6", "unknown"},
        {MATED, "Kg7 Kf8 Kh8 h6 O-O", "unknown"},
        {STALEMATE, "Kg8 Kg7", "unknown"},
    };
    for (const Row& row : rows) ExpectRow(row);
    LoadFEN(START);
    EXPECT_EQ(Resolved(""), "unknown");
    EXPECT_EQ(Resolved(std::string(100000, 'x')), "unknown");
}

TEST_F(SanTest, CountsLegalMovesOnlyAsRivals) {
    LoadFEN("4k3/8/3r4/8/4N3/8/2N3N1/4K3 w - -");
    EXPECT_EQ(Resolved("Ne3"), "ambiguous");
    EXPECT_EQ(Resolved("Nce3"), "c2e3");
    EXPECT_EQ(Resolved("N2e3"), "ambiguous");
    LoadFEN("4r1k1/8/8/8/8/4N3/8/N3K3 w - -");
    EXPECT_EQ(Resolved("Nc2"), "a1c2") << "the other knight is pinned";
    EXPECT_EQ(MoveToSan(BuildMove(A1, 10, KNIGHT)), std::string("Nc2"));
    LoadFEN(EN_PASSANT_BOTH_SIDES);
    EXPECT_EQ(Resolved("xd6"), "ambiguous");
}

TEST_F(SanTest, WritesItsForms) {
    const struct {
        const char *Fen, *Text, *San;
    } rows[] = {
        {START, "e2e4", "e4"},
        {START, "b1c3", "Nc3"},
        {CASTLING_ALL, "e1g1", "O-O"},
        {CASTLING_ALL, "e1c1", "O-O-O"},
        {"5k2/8/8/8/8/8/8/4K2R w K -", "e1g1", "O-O+"},
        {PROMOTION_CAPTURES_ROOK, "b7a8q", "bxa8=Q+"},
        {PROMOTION_CAPTURES_ROOK, "b7b8n", "b8=N"},
        {EN_PASSANT_BOTH_SIDES, "e5d6", "exd6"},
        {EN_PASSANT_BOTH_SIDES, "c5d6", "cxd6"},
        {"6k1/5ppp/8/8/8/8/8/R5K1 w - -", "a1a8", "Ra8#"},
        {"7k/8/8/8/Q5Q1/8/8/Q6K w - -", "a4d1", "Qa4d1"},
        {"7k/8/8/8/Q6Q/8/8/Q6K w - -", "h4d8", "Qd8+"},
        {"R7/8/7k/8/8/8/8/R6K w - -", "a1a4", "R1a4"},
        {"6k1/8/8/8/8/8/8/R3K2R w - -", "a1d1", "Rd1"},
    };
    for (const auto& row : rows) {
        LoadFEN(row.Fen);
        EXPECT_STREQ(MoveToSan(TextToMove(row.Text)), row.San) << row.Fen;
    }
    EXPECT_STREQ(MoveToSan(NO_MOVE), "--");
}

}  // namespace
