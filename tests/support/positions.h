#pragma once

// Positions that the tests share, by what they are nasty for. En-passant fields are in the program's own
// form: the square of the pawn that has just moved.

constexpr char START[] = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -";
constexpr char EVERYTHING_AT_ONCE[] = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -";
constexpr char EN_PASSANT_ANSWERS_CHECK[] = "8/8/8/2k5/3Pp3/8/8/4K3 b - d4";
constexpr char EN_PASSANT_BOTH_SIDES[] = "4k3/8/8/2PpP3/8/8/8/4K3 w - d5";
constexpr char PROMOTION_RACE[] = "n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - -";
constexpr char PROMOTION_CAPTURES_ROOK[] = "r3k2r/1P4P1/8/8/8/8/1p4p1/R3K2R w KQkq -";
constexpr char CASTLING_ALL[] = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq -";
constexpr char CASTLING_IN_CHECK[] = "r3k2r/8/8/4R3/8/8/8/R3K2R b KQkq -";
constexpr char MANY_QUEENS[] = "qqq1k3/8/8/p7/7P/8/8/QQQ1K3 w - -";
constexpr char OPEN_LINES[] = "2r1r1k1/1b3pb1/1q1p2n1/3N4/2B1PR2/1R2B1Q1/5PP1/6K1 w - -";
constexpr char STALEMATE[] = "7k/5Q2/6K1/8/8/8/8/8 b - -";
constexpr char MATED[] = "R5k1/5ppp/8/8/8/8/8/6K1 b - -";

constexpr const char* NASTY_POSITIONS[] = {
    START,
    EVERYTHING_AT_ONCE,
    "8/8/8/K2pP2r/8/8/8/4k3 w - d5",     // en passant uncovers a rank
    "3k4/8/8/b2pP3/8/2P5/3K4/8 w - d5",  // en passant uncovers a diagonal
    EN_PASSANT_ANSWERS_CHECK,
    EN_PASSANT_BOTH_SIDES,
    PROMOTION_RACE,
    PROMOTION_CAPTURES_ROOK,
    CASTLING_ALL,
    CASTLING_IN_CHECK,
    "r3k2r/8/3Q4/8/8/5q2/8/R3K2R b KQkq -",              // castling past attacked squares
    "4k3/8/8/8/7b/8/3n4/r3K2R w K -",                    // double check
    "4r2k/8/1b3b2/2P1N3/r2RK1Qr/3B4/2b1R1b1/4q3 w - -",  // many pins
    MANY_QUEENS,
    "4k3/8/3r4/8/4N3/8/2N3N1/4K3 b - -",  // three knights
    OPEN_LINES,
    "8/PPPPk1PP/8/8/8/8/ppppK1pp/8 w - -",  // pawns before their last step
    STALEMATE,
    MATED,
};
