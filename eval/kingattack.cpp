#include "eval/kingattack.h"

#include <algorithm>
#include <array>

#include "core/attacks.h"
#include "core/board.h"
#include "eval/attacksets.h"
#include "eval/credit.h"
#include "eval/pawnsets.h"
#include "eval/weights.h"

namespace {

constexpr int INDEXES = 64;
constexpr int LAST_INDEX = INDEXES - 1;
constexpr unsigned PIECES[] = {KNIGHT, BISHOP, ROOK, QUEEN};  // the order of the weights by kind

// The two tables whose product is the worth of an attack. They are no weights: a weights file leaves them as
// they are, so that both always fit each other.

// Centipawns by danger index: the square law that makes the third attacker worth more than the first.
constexpr std::array<int, INDEXES> MakeDangerScale() {
    std::array<int, INDEXES> scale{};
    for (int danger = 0; danger < INDEXES; ++danger) scale[static_cast<size_t>(danger)] = danger * danger / 7;
    return scale;
}
constexpr std::array<int, INDEXES> DangerScale = MakeDangerScale();

// Sixteenths by shelter index: from three quarters of the attack against a whole shelter to twice as much
// against none.
constexpr std::array<int, INDEXES> MakeShelterScale() {
    std::array<int, INDEXES> scale{};
    for (int index = 0; index < INDEXES; ++index)
        scale[static_cast<size_t>(index)] = std::min(12 + index, 32);
    return scale;
}
constexpr std::array<int, INDEXES> ShelterScale = MakeShelterScale();

// Centipawns by the number of squares; the last entry stands for all higher ones.
constexpr int EXPOSURES = 18;
constexpr int KingExposure[EXPOSURES] = {0, 1, 3, 6, 10, 15, 20, 25, 30, 35, 40, 45, 50, 55, 60, 65, 70, 75};

// The attack of a side on the enemy king, in units of a hundredth of a danger index.
template <int side>
struct KingAttack {
    static constexpr int enemy = 1 - side;

    const int King = static_cast<int>(board.KingSquare[enemy]);
    const Bitboard Ring = KingTargets[King];
    // The squares around the king and those one step nearer to the attacker.
    const Bitboard Zone = Ring | SquareBit(King) | ShiftAhead<enemy>(Ring);
    // Squares beside the king that nothing but king and queen defends.
    const Bitboard Weak = Ring & eval_info.attacked[side] & ~eval_info.attacks[PAWN][enemy] &
                          ~eval_info.attacks[KNIGHT][enemy] & ~eval_info.attacks[BISHOP][enemy] &
                          ~eval_info.attacks[ROOK][enemy];

    int Attackers = 0;
    int Units = 0;

    void CountAttackers(unsigned piece, int weight) {
        for (Bitboard men = board.Pieces[piece][side]; men != 0;) {
            const Bitboard attacks = AttacksBySquare[PopLowest(men)] & Zone;
            if (attacks == 0) continue;
            ++Attackers;
            Units += weight + ZoneSquare * CountSquares(attacks & Ring);
        }
    }

    // Squares from which a man of the kind would check: safe ones count in full.
    void CountChecks(unsigned piece, Bitboard lines, int weight) {
        const Bitboard checks = lines & eval_info.attacks[piece][side] & ~board.Occupied[side];
        if (checks == 0) return;
        const Bitboard safe = checks & (~eval_info.attacked[enemy] | (Weak & eval_info.attacked_twice[side]));
        Units += safe != 0 ? weight : UnsafeCheck;
    }

    void CountAllChecks() {
        const Bitboard straight = StraightAttacks(King), diagonal = DiagonalAttacks(King);
        CountChecks(KNIGHT, KnightTargets[King], SafeCheck[0]);
        CountChecks(BISHOP, diagonal, SafeCheck[1]);
        CountChecks(ROOK, straight, SafeCheck[2]);
        CountChecks(QUEEN, straight | diagonal, SafeCheck[3]);
    }

    // Pawns that come up to the king on its file and beside it; a pawn that an enemy pawn stops counts less.
    void CountStorm() {
        for (Bitboard pawns = board.Pieces[PAWN][side] & FilesAround(FileOf(King)); pawns != 0;) {
            const int square = PopLowest(pawns), rank = RelativeRank(side, square);
            if (rank < 3 || rank >= RelativeRank(side, King)) continue;
            const bool isStopped = (ShiftAhead<side>(SquareBit(square)) & board.Pieces[PAWN][enemy]) != 0;
            const int units = PawnStorm[static_cast<size_t>(rank - 3)];
            Units += isStopped ? ShareOf(units, PawnStormStopped) : units;
        }
    }

    int DangerIndex() {
        for (size_t kind = 0; kind < std::size(PIECES); ++kind)
            CountAttackers(PIECES[kind], KingAttacker[kind]);
        if (Attackers == 0) return 0;
        Units += PawnAttacker * CountSquares(eval_info.attacks[PAWN][side] & Zone);
        Units += WeakSquare * CountSquares(Weak) + PinnedDefender * CountSquares(eval_info.pinned[enemy]);
        CountAllChecks();
        CountStorm();
        // A lone attacker and an attack without the queen come to little.
        if (Attackers == 1) Units = ShareOf(Units, LoneAttacker);
        if (board.PieceNumber[QUEEN][side] == 0) Units = ShareOf(Units, QueenlessAttack);
        return std::clamp(Units / 100, 0, LAST_INDEX);
    }

    static void Evaluate() {
        if (eval_info.ENDING[enemy]) return;
        eval_info.danger[side] = KingAttack().DangerIndex();
        const int worth = KingAttackOn(enemy);
        eval_info.side_opening[side] += worth;
        eval_info.side_ending[side] += ShareOf(worth, KingAttackEnding);
        eval_info.optimism[side] += worth;
        eval_info.tempo[side] += ShareOf(worth, KingAttackTempo);
    }
};

// Quarters of a centipawn for every step that the side's pieces stand nearer to the enemy king than seven.
int ClosenessOf(int side) {
    const int king = static_cast<int>(board.KingSquare[ChangeSide(side)]);
    int sum = 0;
    for (size_t kind = 0; kind < std::size(PIECES); ++kind) {
        for (Bitboard men = board.Pieces[PIECES[kind]][side]; men != 0;)
            sum += PieceTropism[kind] * (7 - Distance(PopLowest(men), king));
    }
    return sum;
}

}  // namespace

int KingAttackOn(int side) {
    const int shelter = std::clamp(eval_info.shelter_penalty[side], 0, LAST_INDEX);
    const int danger = eval_info.danger[ChangeSide(side)];
    return DangerScale[static_cast<size_t>(danger)] * ShelterScale[static_cast<size_t>(shelter)] >> 4;
}

void EvaluateKingAttacks() {
    KingAttack<WHITE>::Evaluate();
    KingAttack<BLACK>::Evaluate();
}

void EvaluateTropism() {
    constexpr int FULL_TROPISM = 200;  // the scaled setting at 100 percent
    const int64_t closeness = int64_t{ClosenessOf(BLACK) - ClosenessOf(WHITE)} * Tropism.Scaled;
    eval_info.opening += static_cast<int>(closeness / (4 * FULL_TROPISM));
}

int KingExposureOf(int side) {
    const int enemy = ChangeSide(side), king = static_cast<int>(board.KingSquare[side]);
    if (board.PieceNumber[QUEEN][enemy] == 0) return 0;
    // What the enemy's pieces can reach, and what no pawn of the side can ever cover: such a hole counts
    // twice.
    const Bitboard targets = eval_info.attacks[KNIGHT][enemy] | eval_info.attacks[BISHOP][enemy] |
                             eval_info.attacks[ROOK][enemy] | eval_info.attacks[QUEEN][enemy];
    const Bitboard covers = FillAhead(side, eval_info.attacks[PAWN][side]);
    const Bitboard exposed = (StraightAttacks(king) | DiagonalAttacks(king)) & ~eval_info.attacked[side] &
                             ~board.Occupied[enemy] & targets;
    const int count = CountSquares(exposed) + CountSquares(exposed & ~covers);
    return KingExposure[std::min(count, EXPOSURES - 1)];
}
