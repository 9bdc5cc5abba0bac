#include <gtest/gtest.h>

#include <algorithm>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/boardtext.h"
#include "core/fen.h"
#include "core/keys.h"
#include "core/movetext.h"
#include "tests/support/datafile.h"
#include "tests/support/walker.h"

// Worked positions: what the board, its keys and its text forms are.

namespace {

using WorkedPositionsTest = CoreTest;

std::string Picture() {
    testing::internal::CaptureStdout();
    PrintBoard();
    std::string text = testing::internal::GetCapturedStdout();
    std::replace(text.begin(), text.end(), '\n', '/');
    if (!text.empty()) text.pop_back();
    return text;
}

std::string Hex(uint64_t key) {
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(key));
    return text;
}

// The value of an entry for the position on the board; an unknown entry fails.
std::string ValueOf(const std::string& key) {
    const auto pair = [](auto white, auto black) {
        return std::to_string(white) + ' ' + std::to_string(black);
    };
    if (key == "castling_flags") return std::to_string(board.CastlingFlags);
    if (key == "last_move") return MoveToText(LastMove());
    if (key == "picture") return Picture();
    if (key == "piece_count") return std::to_string(board.PieceCount);
    if (key == "material_signature") return std::to_string(board.MaterialSignature);
    if (key == "material") return pair(board.Material[WHITE], board.Material[BLACK]);
    if (key == "piece_material") return pair(board.PieceMaterial[WHITE], board.PieceMaterial[BLACK]);
    if (key == "in_check") return IsKingAttacked(board.SideToMove) ? "1" : "0";
    if (key == "hash_key") return Hex(board.HashKey);
    if (key == "pawn_hash_key") return Hex(board.PawnHashKey);
    if (key == "position_key") return Hex(PositionKey());
    if (key == "text") return GetFEN();
    if (key == "legal") {
        std::vector<std::string> moves;
        for (const Move move : LegalMoves()) moves.push_back(MoveToPieceText(move));
        std::sort(moves.begin(), moves.end());
        return JoinWords(moves);
    }
    ADD_FAILURE() << "unknown entry " << key;
    return "";
}

TEST_F(WorkedPositionsTest, HaveTheirValues) {
    for (const DataRow& row : ReadDataRows("positions.txt")) {
        LoadFEN(row.Fen.c_str());
        EXPECT_GE(row.Entries.size(), 13u) << row.Fen;
        for (const std::vector<std::string>& entry : row.Entries) {
            std::string expected = JoinWords({entry.begin() + 1, entry.end()});
            std::replace(expected.begin(), expected.end(), '_', ' ');
            EXPECT_EQ(ValueOf(entry.front()), expected) << row.Fen << ' ' << entry.front();
        }
    }
}

}  // namespace
