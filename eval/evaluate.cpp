#include "eval/evaluate.h"

#include <algorithm>

#include "core/board.h"
#include "eval/weights.h"

EvalInfo eval_info;
int EngineSide = BLACK;

namespace {

constexpr int INITIAL_MARGIN = 6300;
constexpr int PHASE_LIMIT = 256;
constexpr int SIDE_UNITS = 12;  // an army of four minors, two rooks and a queen

// What is gone of an army of `full` units, 0..256, rounded.
int PhaseOf(int units, int full) {
    return (std::max(0, full - units) * PHASE_LIMIT + full / 2) / full;
}

int ArmyUnits(int side) {
    return static_cast<int>(board.MinorCount[side] + 2 * board.MajorCount[side]);
}

int Taper(int opening, int ending, int phase) {
    return ((PHASE_LIMIT - phase) * opening + phase * ending) / PHASE_LIMIT;
}

// The bonus of being on move. The shift of -1 at phase 0 adds one point; deliberate.
int SideToMoveBonus() {
    return 8 - ((eval_info.current_phase - 1) >> 6) + eval_info.tempo[board.SideToMove];
}

}  // namespace

void ComputePhase() {
    eval_info.white_phase = PhaseOf(ArmyUnits(WHITE), SIDE_UNITS);
    eval_info.black_phase = PhaseOf(ArmyUnits(BLACK), SIDE_UNITS);
    eval_info.current_phase = PhaseOf(ArmyUnits(WHITE) + ArmyUnits(BLACK), 2 * SIDE_UNITS);
}

void SetEndingFlags() {
    ComputePhase();
    for (const int side : {WHITE, BLACK}) {
        const int enemy = ChangeSide(side), units = static_cast<int>(board.PieceMaterial[enemy]);
        const bool hasQueen = board.PieceNumber[QUEEN][enemy] > 0;
        eval_info.ENDING[side] = units <= EndingUnits || (!hasQueen && units <= EndingUnitsNoQueen);
    }
}

void Evaluate(int* result) {
    eval_info = EvalInfo{};
    eval_info.margin = INITIAL_MARGIN;
    SetEndingFlags();
    eval_info.material = board.Material[BLACK] - board.Material[WHITE];
    eval_info.opening = board.PsqOpening;
    eval_info.ending = board.PsqEnding;
    const int score =
        eval_info.material + Taper(eval_info.opening, eval_info.ending, eval_info.current_phase);
    const int bonus = SideToMoveBonus();
    eval_info.score =
        std::clamp(board.SideToMove == BLACK ? score + bonus : score - bonus, -SCORE_LIMIT, SCORE_LIMIT);
    *result = board.SideToMove == BLACK ? eval_info.score : -eval_info.score;
}
