#pragma once

// The positions of "bench", in the form of LoadFEN. Each has two legal moves at least, and none is a draw by
// rule: such a search would be none, or would announce a result. Another list gives other numbers of nodes.

constexpr const char* BENCH_POSITIONS[] = {
    // The first moves.
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -",
    "rnbqkbnr/ppp2ppp/4p3/3pP3/8/8/PPPP1PPP/RNBQKBNR w KQkq d5",
    "rnbqkbnr/pppp1p1p/8/4N3/4PppP/8/PPPP2P1/RNBQKB1R b KQkq -",
    "r1bqkb1r/p4ppp/2p2n2/nB2p1N1/8/8/PPPP1PPP/RNBQK2R w KQkq -",
    "rnb1kb1r/1p3ppp/p2ppn2/6B1/3NPP2/q1N5/P1PQ2PP/1R2KB1R w Kkq -",
    "rn1qkb1r/4pp1p/3p1np1/2pP4/4P3/2N5/PP3PPP/R1BQ1KNR w kq -",
    // Closed, open and opposite-sided middlegames.
    "r1b2rk1/2q1bppp/p2p1n2/npp1p3/3PP3/2P2N1P/PPB2PP1/RNBQR1K1 w - -",
    "r2q1rk1/pp1bppbp/2np1np1/8/2BNP3/2N1BP2/PPPQ2PP/2KR3R b - -",
    "r1bq1rk1/pppnn1bp/3p2p1/3Ppp2/2P1P3/2NN4/PP2BPPP/R1BQ1RK1 w - -",
    "rnbq1rk1/pp2nppp/4p3/2ppP3/3P2Q1/P1PB4/2P2PPP/R1B1K1NR b KQ -",
    "r2qkbnr/pp1nppp1/2p4p/7P/3P4/3Q1NN1/PPP2PP1/R1B1K2R b KQkq -",
    "2r2r1k/1nqbbpp1/3p3p/pp1Pp3/4Pn2/1PP1QN1P/1BBN1PP1/R3R2K w - -",
    "r5k1/pp1b2p1/nr4np/q2pP2Q/2pN4/P1P5/2PBBPPP/R4RK1 b - -",
    "1r2q1k1/ppp2p1p/1n3bp1/3P1b2/3B4/2NQ2P1/PP3PBP/R5K1 w - -",
    "4k3/1p1b2p1/1P1p1pP1/p1pPpP2/P1P1P3/2B2N2/4K3/8 w - -",
    // Kings under attack, checks and threats of mate.
    "r3k2r/ppp1qp1p/2n1bn1B/3p4/7P/2NP4/PPPKBQ2/R6R w kq -",
    "r1b1k3/1p1n1p2/p1n1p3/q7/8/1RN5/P1PQBbPP/4K2R w Kq -",
    "r4rk1/pb3ppp/1p2p3/8/3P2Q1/P1qBR3/5PPP/R5K1 w - -",
    "6r1/8/2p2Qpk/p2pp3/2P5/7q/PP2n1PP/1B5K w - -",
    "6k1/p1qrbpp1/2p4p/2P4P/3pN3/3Q1P2/6P1/1R4K1 b - -",
    "2b5/8/p2Q4/1kr1N3/1p3P2/3R4/P1P4P/6K1 w - -",
    "4r1k1/5p1p/3p1bp1/3P4/2q3PK/3n1P2/P6P/1R3Q1R w - -",
    // Many queens, and pawns about to become some.
    "1q2q1k1/5ppp/8/8/8/8/Q1Q2PPP/1Q4K1 w - -",
    "3n4/4P1pk/7p/8/8/P6K/1p4P1/2N5 w - -",
    "1n1n4/P1P1k3/8/8/8/8/3K1p1p/4N1N1 b - -",
    // Endings with pieces.
    "8/p3k2p/1nR3p1/5p2/1P6/2Nr2P1/P4P1P/6K1 w - -",
    "8/5pk1/R5p1/1p2r2p/1P5P/6P1/5PK1/8 w - -",
    "8/p5pk/2r4p/8/1P2K3/7q/6R1/8 w - -",
    "8/5k2/3b2p1/1p1P1p2/1P3P2/2B3P1/5K2/8 w - -",
    "8/2p4p/8/1kp5/p6P/2P5/2bK4/2B5 b - -",
    "7k/4Q3/8/6p1/6Pp/5q1P/7K/8 b - -",
    // Few men.
    "8/8/3k4/8/4K3/2N5/4B3/8 w - -",
    "8/8/2kr4/8/8/4Q3/3K4/8 w - -",
    "8/8/8/2k5/1p6/8/6R1/4K3 w - -",
    // Pawn endings: opposition, breakthrough, zugzwang, races, en passant.
    "8/8/8/4k3/8/2K5/3P4/8 w - -",
    "8/ppp5/8/PPP5/6k1/8/8/6K1 w - -",
    "8/6p1/5p1p/3k1P1P/1p1P2P1/1P1K4/8/8 w - -",
    "8/5p2/p3k1p1/1p5p/3K1P1P/P5P1/1P6/8 b - -",
    "8/8/8/1p3k2/p1p2Pp1/2P3P1/PP3K2/8 w - -",
    "8/2p3p1/3p4/1K5k/4Pp2/6P1/8/8 b - e4",
};
