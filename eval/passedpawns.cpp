#include "eval/passedpawns.h"

#include <algorithm>
#include <cstdlib>

#include "core/attacks.h"
#include "core/board.h"
#include "eval/evaluate.h"
#include "eval/pawnhash.h"
#include "eval/pawnsets.h"
#include "eval/weights.h"

namespace {

// How much of a bonus a pawn has earned by its rank, in 256ths, from the own back rank on.
constexpr int RankShare[8] = {0, 0, 8, 32, 84, 160, 256, 0};

// A number of plies that no race takes.
constexpr int NEVER = 99;

template <int side>
struct PassedPawns {
    static constexpr int enemy = 1 - side;

    const Bitboard Own = board.Pieces[PAWN][side];
    const Bitboard Passed = eval_info.passed_pawns[side];
    const int OwnKing = static_cast<int>(board.KingSquare[side]);
    const int EnemyKing = static_cast<int>(board.KingSquare[enemy]);
    Score Sum{0, 0};

    void EvaluatePawn(int square) {
        const int rank = RelativeRank(side, square), share = RankShare[rank];
        const Bitboard path = FileAhead<side>(square);
        Sum += PassedRank[static_cast<size_t>(std::clamp(rank, 1, 6) - 1)];
        Sum += ShareOf(PathBonus(square, path), share);
        Sum += ShareOf(SupportBonus(square), share);
        const int stop = square + (side == WHITE ? 8 : -8);
        const int kings = PassedKingDistance[0] * Distance(OwnKing, stop) +
                          PassedKingDistance[1] * Distance(EnemyKing, stop);
        Sum.Ending += ShareOf(kings, share);
    }

    // What the way to promotion is worth: the next square, then the whole of it.
    Score PathBonus(int square, Bitboard path) const {
        const Bitboard stop = ShiftAhead<side>(SquareBit(square));
        Score bonus{0, 0};
        if ((stop & board.Occupied[enemy]) == 0) bonus += PassedUnblocked;
        if ((path & AllOccupied()) == 0) bonus += PassedFreePath;
        // A rook or queen behind a pawn attacks or defends its whole way.
        const Bitboard rear = FileAhead<enemy>(square) & AttacksOnFile(square) & board.StraightSliders;
        const Bitboard attacked =
            (rear & board.Occupied[enemy]) != 0 ? path : path & eval_info.attacked[enemy];
        const Bitboard defended = (rear & board.Occupied[side]) != 0 ? path : path & eval_info.attacked[side];
        if (attacked == 0) {
            bonus += PassedSafePath;
        } else if ((attacked & ~defended) == 0) {
            bonus += PassedDefendedPath;
        } else if ((stop & attacked & ~defended) == 0) {
            bonus += PassedSafeStop;
        }
        if ((rear & board.Pieces[ROOK][side]) != 0) bonus += PassedRookBehind[0];
        if ((rear & board.Pieces[ROOK][enemy]) != 0) bonus += PassedRookBehind[1];
        return bonus;
    }

    Score SupportBonus(int square) const {
        const Bitboard bit = SquareBit(square);
        Score bonus{0, 0};
        if ((bit & eval_info.attacks[PAWN][side]) != 0) bonus += PassedProtected;
        const Bitboard beside = Neighbours(bit | ShiftAhead<side>(bit) | ShiftAhead<enemy>(bit));
        if ((beside & Passed) != 0) bonus += PassedConnected;
        const unsigned file = 1u << FileOf(square);
        if ((pawn_cache.CandidateFiles(side) & (file << 1 | file >> 1)) != 0) bonus += PassedByCandidate;
        return bonus;
    }

    // The plies after which a pawn becomes a queen if nobody hinders it; NEVER when a man other than the own
    // king, which costs a move, stands in its way.
    int PliesOf(int square, Bitboard path) const {
        const Bitboard inTheWay = path & AllOccupied();
        if ((inTheWay & ~SquareBit(OwnKing)) != 0) return NEVER;
        const int rank = RelativeRank(side, square);
        const int steps = 7 - rank - (rank == 1) + (inTheWay != 0);
        return 2 * steps - (board.SideToMove == side ? 1 : 0);
    }

    // The plies of the first pawn that the bare enemy king can't catch, or of the first pawn at all.
    int FirstQueen(bool onlyUncatchable) const {
        int first = NEVER;
        for (Bitboard pawns = Passed; pawns != 0;) {
            const int square = PopLowest(pawns);
            const Bitboard path = FileAhead<side>(square);
            const int plies = PliesOf(square, path);
            if (!onlyUncatchable || IsUncatchable(path, plies) || IsEscorted(square, path))
                first = std::min(first, plies);
        }
        return first;
    }

    // The square rule: the king may take the new queen with its next move.
    bool IsUncatchable(Bitboard path, int plies) const {
        const int goal = side == WHITE ? HighestSquare(path) : LowestSquare(path);
        const int kingMoves = (plies + (board.SideToMove == side ? 1 : 2)) / 2;
        return path != 0 && Distance(EnemyKing, goal) > kingMoves;
    }

    // The own king holds every square of the way, and the pawn can't be taken before it sets out.
    bool IsEscorted(int square, Bitboard path) const {
        const Bitboard held = KingTargets[OwnKing], pawn = SquareBit(square);
        const bool isSafe = board.SideToMove == side || (pawn & (held | ~KingTargets[EnemyKing])) != 0;
        return (path & ~held) == 0 && isSafe;
    }

    void Evaluate() {
        for (Bitboard pawns = Passed; pawns != 0;) {
            const int square = PopLowest(pawns);
            // The rear one of two pawns waits for the front one.
            if ((FileAhead<side>(square) & Own) == 0) EvaluatePawn(square);
        }
        eval_info.side_opening[side] += Sum.Opening;
        eval_info.side_ending[side] += Sum.Ending;
    }
};

// Pawns that run home against a king alone. When both sides have one, the earlier one counts if it comes two
// plies or more before the other; a pawn that only might run as fast makes the outcome doubtful.
void EvaluateRaces(const PassedPawns<WHITE>& whites, const PassedPawns<BLACK>& blacks) {
    const int white = board.PieceMaterial[BLACK] == 0 ? whites.FirstQueen(true) : NEVER;
    const int black = board.PieceMaterial[WHITE] == 0 ? blacks.FirstQueen(true) : NEVER;
    if (std::abs(white - black) < 2) return;
    const int winner = white < black ? WHITE : BLACK, plies = std::min(white, black);
    const int rival = winner == WHITE ? blacks.FirstQueen(false) : whites.FirstQueen(false);
    const int bonus = std::max(0, PassedUnstoppable - 10 * plies);
    eval_info.side_ending[winner] += rival <= plies + 1 ? bonus / 2 : bonus;
}

}  // namespace

void EvaluatePassedPawns() {
    PassedPawns<WHITE> whites;
    PassedPawns<BLACK> blacks;
    whites.Evaluate();
    blacks.Evaluate();
    EvaluateRaces(whites, blacks);
}
