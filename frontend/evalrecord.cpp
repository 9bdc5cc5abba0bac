#include "frontend/evalrecord.h"

#include <iterator>
#include <vector>

#include "core/attackquery.h"
#include "core/bitboard.h"
#include "core/board.h"
#include "core/fen.h"
#include "eval/evaluate.h"

namespace {

struct Record {
    const PgnGame& Game;
    int Ply;
};

int PliesLeft(const Record& record) {
    return static_cast<int>(record.Game.Moves.size()) - record.Ply;
}

// White's half points; -1 for a game without a result.
int HalfPoints(const Record& record) {
    switch (record.Game.Result) {
        case GameResult::WHITE_WINS:
            return 2;
        case GameResult::DRAWN:
            return 1;
        case GameResult::BLACK_WINS:
            return 0;
        case GameResult::UNKNOWN:
            break;
    }
    return -1;
}

// Whether no check, capture or promotion is in the air: the moves around the position are quiet ones.
int IsQuietPosition(const Record& record) {
    const std::vector<Move>& moves = record.Game.Moves;
    const auto next = static_cast<size_t>(record.Ply);
    return !IsKingAttacked(board.SideToMove) && TakesNothing(moves[next - 1]) &&
           (next == moves.size() || TakesNothing(moves[next]));
}

int PlainMaterial() {
    return board.Material[WHITE] - board.Material[BLACK];
}

// How many more men of the kind White has.
template <unsigned piece>
int Surplus(const Record& /*record*/) {
    return static_cast<int>(board.PieceNumber[piece][WHITE]) -
           static_cast<int>(board.PieceNumber[piece][BLACK]);
}

// How many more squares White's set has.
template <Bitboard (EvalInfo::*sets)[2]>
int SquareSurplus(const Record& /*record*/) {
    return CountSquares((eval_info.*sets)[WHITE]) - CountSquares((eval_info.*sets)[BLACK]);
}

// A number of the scratch record as it is, of one side, and a Black-positive one from White's view.
template <int EvalInfo::*number>
int Plain(const Record& /*record*/) {
    return eval_info.*number;
}
template <int (EvalInfo::*numbers)[2], int side>
int OfSide(const Record& /*record*/) {
    return (eval_info.*numbers)[side];
}
template <int EvalInfo::*number>
int Turned(const Record& /*record*/) {
    return -(eval_info.*number);
}

using Column = int (*)(const Record& record);

constexpr Column COLUMNS_BEFORE_TEXT[] = {
    // The place in the file, what became of the game, and how quiet it is.
    [](const Record& record) { return static_cast<int>(record.Game.Number); },
    [](const Record& record) { return record.Ply; },
    HalfPoints,
    [](const Record&) { return static_cast<int>(board.SideToMove); },
    IsQuietPosition,
    // The evaluation and the sums that it is tapered from.
    Turned<&EvalInfo::score>,
    [](const Record&) { return PlainMaterial(); },
    [](const Record&) { return -eval_info.material - PlainMaterial(); },
    Turned<&EvalInfo::opening>,
    Turned<&EvalInfo::ending>,
    Turned<&EvalInfo::pawn_structure>,
    Plain<&EvalInfo::current_phase>,
    OfSide<&EvalInfo::side_opening, WHITE>,
    OfSide<&EvalInfo::side_ending, WHITE>,
    Plain<&EvalInfo::white_phase>,
    OfSide<&EvalInfo::side_opening, BLACK>,
    OfSide<&EvalInfo::side_ending, BLACK>,
    Plain<&EvalInfo::black_phase>,
};

constexpr Column COLUMNS_BEHIND_TEXT[] = {
    Surplus<PAWN>,
    Surplus<KNIGHT>,
    Surplus<BISHOP>,
    Surplus<ROOK>,
    Surplus<QUEEN>,
    SquareSurplus<&EvalInfo::passed_pawns>,
    SquareSurplus<&EvalInfo::attacked>,
    OfSide<&EvalInfo::danger, WHITE>,
    OfSide<&EvalInfo::danger, BLACK>,
    OfSide<&EvalInfo::shelter_penalty, WHITE>,
    OfSide<&EvalInfo::shelter_penalty, BLACK>,
    Plain<&EvalInfo::margin>,
    PliesLeft,
};

// Other programs read these lines by position.
static_assert(std::size(COLUMNS_BEFORE_TEXT) == 18 && std::size(COLUMNS_BEHIND_TEXT) == 13);

}  // namespace

std::string GetEvaluationRecord(const PgnGame& game, int ply) {
    EngineSide = board.SideToMove;
    int result = 0;
    Evaluate(&result);
    const Record record{game, ply};
    std::string line;
    for (const Column column : COLUMNS_BEFORE_TEXT) line += std::to_string(column(record)) + ';';
    line += GetEPD();
    for (const Column column : COLUMNS_BEHIND_TEXT) line += ';' + std::to_string(column(record));
    return line + '\n';
}
