#include "eval/materialtable.h"

#include <algorithm>
#include <array>
#include <optional>

#include "core/board.h"
#include "eval/weights.h"

MaterialEntry MaterialTable[SIGNATURE_COUNT];

namespace {

constexpr int SIDE_UNITS = 12;    // a side's four minors, two rooks and a queen
constexpr int TYPICAL_PAWNS = 5;  // a worth per pawn is counted from here
constexpr int MAX_IMBALANCE = 5000;

// The men of a side.
struct Army {
    int Pawns, Knights, Bishops, Rooks, Queens;

    constexpr int Minors() const { return Knights + Bishops; }
    constexpr int PhaseUnits() const { return Minors() + 2 * (Rooks + 2 * Queens); }
    constexpr int Units() const { return 3 * Minors() + 5 * Rooks + 9 * Queens; }
};

// What is gone of an army of `full` units, 0..256, rounded.
int16_t PhaseOf(int units, int full) {
    return static_cast<int16_t>((std::max(0, full - units) * PHASE_LIMIT + full / 2) / full);
}

int QueenAgainstPieces(const Army& own, const Army& enemy) {
    if (own.Queens != enemy.Queens + 1) return 0;
    const int rooks = enemy.Rooks - own.Rooks, minors = enemy.Minors() - own.Minors();
    if (rooks == 2 && minors == 0) return QueenAgainst[0];
    if (rooks == 1 && minors >= 1) return QueenAgainst[1];
    return rooks == 0 && minors == 3 ? QueenAgainst[2] : 0;
}

// An exchange, a minor or two minors against a rook: between armies of equal queens.
int UnequalPieces(const Army& own, const Army& enemy) {
    if (own.Queens != enemy.Queens) return 0;
    const int rooks = own.Rooks - enemy.Rooks, minors = own.Minors() - enemy.Minors();
    if (rooks == 1 && minors == -1) return Exchange[0] + Exchange[1] * enemy.Rooks;
    if (rooks == -1 && minors == 2) return TwoMinorsForRook;
    return rooks == 0 && minors == 1 ? MinorAhead : 0;
}

// What the composition of the own army is worth beyond the sum of its men.
int Composition(const Army& own, const Army& enemy) {
    const int pawns = own.Pawns - TYPICAL_PAWNS;
    int value = pawns * (own.Knights * WorthPerPawn[0] + own.Bishops * WorthPerPawn[1] +
                         own.Rooks * WorthPerPawn[2] + own.Queens * WorthPerPawn[3]);
    if (own.Bishops >= 2) value += BishopPair[0] + BishopPair[1] * pawns;
    if (own.Knights >= 2) value += KnightPair[0] + KnightPair[1] * pawns;
    if (own.Rooks >= 2) value += RookPair[0] + RookPair[1] * pawns;
    if (own.Pawns == 0 && own.Units() > 0) value += NoPawns;
    const bool isBishopAgainstKnight = own.Minors() * own.Bishops == 1 && enemy.Minors() * enemy.Knights == 1;
    if (isBishopAgainstKnight) value += LoneMinor[own.Queens * enemy.Queens > 0 ? 1 : 0];
    return value + QueenAgainstPieces(own, enemy) + UnequalPieces(own, enemy);
}

// Pieces alone that can't mate an enemy who doesn't help: at most a minor, or two knights against nothing.
bool CannotWin(const Army& own, const Army& enemy) {
    if (own.Pawns > 0) return false;
    return own.Units() <= 3 || (own.Units() == 6 && own.Knights == 2 && enemy.Pawns == 0);
}

// The most that an enemy may have for a king to be safe without shelter, in pawn units.
struct EndingLimits {
    int WithQueen, WithoutQueen;
};

// The table has limits of its own, deliberately: a weights file moves only what is computed outside of it.
constexpr EndingLimits TABLE_LIMITS{9, 15};

bool IsEnding(const Army& enemy, const EndingLimits& limits) {
    return enemy.Units() <= limits.WithQueen || (enemy.Queens == 0 && enemy.Units() <= limits.WithoutQueen);
}

uint8_t FlagsOf(const Army& own, const Army& enemy, const EndingLimits& limits) {
    return static_cast<uint8_t>((CannotWin(own, enemy) ? MATERIAL_CANNOT_WIN : 0) |
                                (IsEnding(enemy, limits) ? MATERIAL_ENDING : 0));
}

MaterialEntry EntryOf(const Army& white, const Army& black, const EndingLimits& limits) {
    // Weights from a file may be anything; the sum must fit.
    const int imbalance = Composition(black, white) - Composition(white, black);
    return {{FlagsOf(white, black, limits), FlagsOf(black, white, limits)},
            PhaseOf(white.PhaseUnits() + black.PhaseUnits(), 2 * SIDE_UNITS),
            PhaseOf(black.PhaseUnits(), SIDE_UNITS),
            PhaseOf(white.PhaseUnits(), SIDE_UNITS),
            static_cast<int16_t>(std::clamp(imbalance, -MAX_IMBALANCE, MAX_IMBALANCE))};
}

Army ArmyOf(int side) {
    const auto number = [side](unsigned piece) { return static_cast<int>(board.PieceNumber[piece][side]); };
    return {number(PAWN), number(KNIGHT), number(BISHOP), number(ROOK), number(QUEEN)};
}

// The weights that the table is made of.
struct MaterialWeights {
    Ints<2> BishopPair, KnightPair, RookPair;
    Ints<4> WorthPerPawn;
    Ints<3> QueenAgainst;
    Ints<2> Exchange;
    int TwoMinorsForRook, MinorAhead;
    Ints<2> LoneMinor;
    int NoPawns;

    bool operator==(const MaterialWeights&) const = default;
};

MaterialWeights CurrentMaterialWeights() {
    return {BishopPair, KnightPair,       RookPair,   WorthPerPawn, QueenAgainst,
            Exchange,   TwoMinorsForRook, MinorAhead, LoneMinor,    NoPawns};
}

// What the table has been filled from, once it has been.
std::optional<MaterialWeights> filledFrom;

}  // namespace

void FillMaterialTable() {
    const MaterialWeights weights = CurrentMaterialWeights();
    if (weights == filledFrom) return;
    filledFrom = weights;
    for (uint32_t signature = 0; signature < SIGNATURE_COUNT; ++signature) {
        uint32_t rest = signature;
        const auto digit = [&rest](uint32_t base) {
            const uint32_t value = rest % base;
            rest /= base;
            return static_cast<int>(value);
        };
        // The digits come in the order of their weights.
        Army armies[2];
        for (int Army::*const men : {&Army::Queens, &Army::Rooks, &Army::Bishops, &Army::Knights}) {
            for (Army& army : armies) army.*men = digit(3);
        }
        for (Army& army : armies) army.Pawns = digit(9);
        MaterialTable[signature] = EntryOf(armies[WHITE], armies[BLACK], TABLE_LIMITS);
    }
}

MaterialEntry CurrentMaterial() {
    if (board.MaterialSignature < SIGNATURE_COUNT) return MaterialTable[board.MaterialSignature];
    return EntryOf(ArmyOf(WHITE), ArmyOf(BLACK), {EndingUnits, EndingUnitsNoQueen});
}
