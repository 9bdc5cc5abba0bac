#include "eval/evaluate.h"

#include <algorithm>
#include <cstdlib>

#include "core/bitboard.h"
#include "core/board.h"
#include "eval/attacksets.h"
#include "eval/credit.h"
#include "eval/endings.h"
#include "eval/kingattack.h"
#include "eval/materialtable.h"
#include "eval/passedpawns.h"
#include "eval/pawnhash.h"
#include "eval/pawns.h"
#include "eval/pieces.h"
#include "eval/shelter.h"
#include "eval/threats.h"
#include "eval/weights.h"

EvalInfo eval_info;
int EngineSide = BLACK;

namespace {

constexpr int INITIAL_MARGIN = 6300;
constexpr int PAWN_VALUE = PieceValue[PAWN];

uint32_t UnitsOf(int side) {
    return board.PieceMaterial[side];
}

bool HasLittleMaterial() {
    const auto limit = static_cast<uint32_t>(std::max(EndingUnits, 0));
    return UnitsOf(WHITE) < limit || UnitsOf(BLACK) < limit;
}

bool IsPawnEnding() {
    return UnitsOf(WHITE) + UnitsOf(BLACK) == 0;
}

int Taper(int64_t opening, int64_t ending, int phase) {
    return static_cast<int>(((PHASE_LIMIT - phase) * opening + phase * ending) / PHASE_LIMIT);
}

// Centipawns by the number of files with passed pawns.
constexpr int RookAgainstMinors[9] = {0, 5, 10, 15, 20, 20, 20, 20, 20};

// A rook against two minors, a knight among them, is worth more with passed pawns to support.
void EvaluateRookAgainstMinors() {
    for (const int side : {WHITE, BLACK}) {
        const int enemy = ChangeSide(side);
        const bool isRook = UnitsOf(side) == PieceUnits[ROOK];
        const bool areMinors =
            UnitsOf(enemy) == 2 * PieceUnits[KNIGHT] && board.PieceNumber[KNIGHT][enemy] > 0;
        if (!isRook || !areMinors) continue;
        const int files = CountSquares(pawn_cache.PassedVector(side));
        eval_info.score += SignOf(side) * RookAgainstMinors[files];
    }
}

// Whether a king on the file stands on the near side of the other king and of all the pawns on `files`, or on
// their far side. `reach` is what being on move is worth, in files; no pawns, no cut.
bool CutsOff(int king, int other, int reach, unsigned files) {
    if (files == 0) return false;
    if (king - reach > other) return king < LowestSquare(files);
    return king + reach < other && king > HighestSquare(files);
}

// Pawn endings: a king that stands between the enemy king and the enemy pawns. The side that isn't on move
// needs a file to spare.
void EvaluateKingCutOff() {
    const int onMove = board.SideToMove == BLACK ? 1 : 0;
    const int white = FileOf(static_cast<int>(board.KingSquare[WHITE]));
    const int black = FileOf(static_cast<int>(board.KingSquare[BLACK]));
    if (CutsOff(white, black, onMove, pawn_cache.PawnFiles(BLACK))) eval_info.score -= KingCutOffBonus;
    if (CutsOff(black, white, 1 - onMove, pawn_cache.PawnFiles(WHITE))) eval_info.score += KingCutOffBonus;
}

// With a pawn each and little between the sides the position counts as drawn.
bool IsEvenPawnDuel() {
    if (board.Material[WHITE] != PAWN_VALUE || board.Material[BLACK] != PAWN_VALUE) return false;
    const int ending = eval_info.side_ending[BLACK] - eval_info.side_ending[WHITE] + eval_info.ending;
    return std::abs(ending + eval_info.score) < PAWN_VALUE;
}

void EvaluateShelters() {
    for (const int side : {WHITE, BLACK}) {
        if (eval_info.ENDING[side]) continue;
        const int enemy = ChangeSide(side), shelter = EvaluateShelter(side);
        eval_info.side_opening[enemy] -= shelter;
        // Settings beyond sense can turn a bad shelter into a good one.
        eval_info.optimism[enemy] -= std::min(shelter, 0);
    }
}

// Centipawns by how much worse the enemy king is sheltered.
constexpr int ShelterGap[] = {0, 0, 0, 5, 25, 30, 35, 40};

void CreditShelterGap(int side) {
    if (board.PieceNumber[QUEEN][side] == 0) return;
    const int gap = eval_info.shelter_penalty[ChangeSide(side)] - eval_info.shelter_penalty[side];
    const int bonus = ShelterGap[std::clamp(gap, 0, 7)];
    eval_info.side_opening[side] += bonus;
    eval_info.optimism[side] += bonus;
}

// The better sheltered side with a queen gains; a side whose king needs no shelter has the better one.
void EvaluateShelterGap() {
    const int gap = eval_info.shelter_penalty[BLACK] - eval_info.shelter_penalty[WHITE];
    if (eval_info.ENDING[WHITE] && eval_info.ENDING[BLACK]) return;
    if (eval_info.ENDING[WHITE] || (!eval_info.ENDING[BLACK] && gap >= 2)) {
        CreditShelterGap(WHITE);
    } else if (eval_info.ENDING[BLACK] || gap <= -2) {
        CreditShelterGap(BLACK);
    }
}

void TaperScore() {
    const EvalInfo& info = eval_info;
    eval_info.score = Taper(info.opening + info.score, info.ending + info.score, info.current_phase) +
                      Taper(info.side_opening[BLACK], info.side_ending[BLACK], info.black_phase) -
                      Taper(info.side_opening[WHITE], info.side_ending[WHITE], info.white_phase);
}

void EvaluateKingExposures() {
    for (const int side : {WHITE, BLACK}) {
        const int enemy = ChangeSide(side), exposure = KingExposureOf(side);
        eval_info.optimism[enemy] += exposure;
        eval_info.score += SignOf(enemy) * (board.SideToMove == enemy ? exposure : exposure >> 1);
    }
}

// Centre pawns that can't leave their first square while there is much to play with.
void EvaluateBlockedCentre() {
    constexpr uint32_t MANY_UNITS = 14;
    constexpr Bitboard CENTRE = FileBits(3) | FileBits(4);
    if (UnitsOf(WHITE) <= MANY_UNITS || UnitsOf(BLACK) <= MANY_UNITS) return;
    const Bitboard occupied = AllOccupied();
    const Bitboard white = board.Pieces[PAWN][WHITE] & RankBits(1) & CENTRE & occupied >> 8;
    const Bitboard black = board.Pieces[PAWN][BLACK] & RankBits(6) & CENTRE & occupied << 8;
    eval_info.score += BlockedCentrePawn * (CountSquares(white) - CountSquares(black));
}

// The bonus of being on move. The shift of -1 at phase 0 adds one point; deliberate.
int SideToMoveBonus() {
    return 8 - ((eval_info.current_phase - 1) >> 6) + eval_info.tempo[board.SideToMove];
}

// The terms that look at the position as a whole, before the taper.
void SumTerms(bool isPawnEnding) {
    eval_info.opening = board.PsqOpening;
    eval_info.ending = board.PsqEnding;
    EvaluatePawnStructure(&eval_info.opening, &eval_info.ending);
    eval_info.pawn_structure = Taper(eval_info.opening - board.PsqOpening, eval_info.ending - board.PsqEnding,
                                     eval_info.current_phase);
    EvaluateRookAgainstMinors();
    if (isPawnEnding) EvaluateKingCutOff();
    if ((eval_info.passed_pawns[WHITE] | eval_info.passed_pawns[BLACK]) != 0) EvaluatePassedPawns();
}

void SumPieceTerms() {
    EvaluateShelters();
    EvaluateShelterGap();
    EvaluatePieces();
    EvaluateThreats();
    EvaluateSpace();
    EvaluateTropism();
    EvaluateKingAttacks();
}

// Stores the running score, with the bonus for the side to move, as the result.
void StoreResult(int* result) {
    const int bonus = SignOf(board.SideToMove) * SideToMoveBonus();
    eval_info.score = std::clamp(eval_info.score + bonus, -SCORE_LIMIT, SCORE_LIMIT);
    *result = SignOf(board.SideToMove) * eval_info.score;
}

}  // namespace

void ComputePhase() {
    const MaterialEntry entry = CurrentMaterial();
    eval_info.current_phase = entry.current_phase;
    eval_info.black_phase = entry.black_phase;
    eval_info.white_phase = entry.white_phase;
}

void SetEndingFlags() {
    ComputePhase();
    const MaterialEntry entry = CurrentMaterial();
    for (const int side : {WHITE, BLACK}) eval_info.ENDING[side] = (entry.Flags[side] & MATERIAL_ENDING) != 0;
}

int ScaleScore(int score, int factor) {
    eval_info.margin = static_cast<int>(int64_t{eval_info.margin} * factor / PHASE_LIMIT);
    return static_cast<int>(int64_t{score} * factor / PHASE_LIMIT);
}

void Evaluate(int* result) {
    // 1. The scratch record, what the men attack, and what their number decides.
    PrefetchPawnHash(board.PawnHashKey);
    eval_info = EvalInfo{};
    eval_info.margin = INITIAL_MARGIN;
    SetEndingFlags();
    BuildAttackSets();
    eval_info.material = board.Material[BLACK] - board.Material[WHITE];

    // 2. Endings that need no other judgement.
    if (!HasLittleMaterial()) {
        eval_info.material += CurrentMaterial().Imbalance;
    } else if (EvaluateLowMaterial(result)) {
        eval_info.score = SignOf(board.SideToMove) * *result;
        return;
    }
    eval_info.score = eval_info.material;

    // 3. Everything that is tapered by the phase.
    const bool isPawnEnding = IsPawnEnding();
    SumTerms(isPawnEnding);
    if (IsEvenPawnDuel()) {
        eval_info.score = *result = 0;
        return;
    }
    if (!isPawnEnding) SumPieceTerms();
    TaperScore();

    // 4. What stands outside the taper, and what drawish material leaves of it.
    if (isPawnEnding) {
        eval_info.score = ClampNoWin(eval_info.score);
    } else {
        EvaluateKingExposures();
        EvaluateBlockedCentre();
        eval_info.score = ScaleDrawishMaterial(eval_info.score);
    }
    StoreResult(result);
}
