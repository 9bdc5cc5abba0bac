#include "eval/evalreport.h"

#include <string>

#include "core/board.h"
#include "eval/evaluate.h"
#include "platform/output.h"

namespace {

// A set of files, a to h, as eight digits.
std::string FileDigits(unsigned files) {
    std::string digits;
    for (int file = 0; file < 8; ++file) digits += (files >> file & 1) != 0 ? '1' : '0';
    return digits;
}

void PrintKingTerms(const EvalInfo& info) {
    // The evaluation has no pawn-shelter and king-attack terms yet: what they would contribute is nothing.
    constexpr int NO_DEFECTS = 0, NO_ATTACK = 0, NO_SHELTER = 0;
    Print("black_defects_k = %d black_defects_q = %d white_defects_k = %d white_defects_q = %d\n", NO_DEFECTS,
          NO_DEFECTS, NO_DEFECTS, NO_DEFECTS);
    Print("eval_info->shelter_penalty[BLACK] = %d eval_info->shelter_penalty[WHITE] = %d\n",
          info.shelter_penalty[BLACK], info.shelter_penalty[WHITE]);
    Print("eval_info->danger[BLACK] = %d eval_info->danger[WHITE] = %d\n", info.danger[BLACK],
          info.danger[WHITE]);
    Print("Attacks[ChangeSide(board->SideToMove)] = %d\n", NO_ATTACK);
    Print("Attacks[board->SideToMove] = %d\n", NO_ATTACK);
    Print("Shelter[BLACK] = %d Shelter[WHITE] = %d\n", NO_SHELTER, NO_SHELTER);
    Print("Dng = %d\n", NO_ATTACK + NO_SHELTER);
}

}  // namespace

void PrintEvaluation() {
    constexpr unsigned NO_PASSED_PAWNS = 0;  // the evaluation does not look for them yet
    EngineSide = board.SideToMove;
    int result = -32700;
    Evaluate(&result);
    const EvalInfo& info = eval_info;
    Print("Heuristic = %d\n", result);
    Print("PassedVector[BLACK] = %s PassedVector[WHITE] = %s\n", FileDigits(NO_PASSED_PAWNS).c_str(),
          FileDigits(NO_PASSED_PAWNS).c_str());
    Print("current_phase = %d, black_phase = %d, white_phase = %d\n", info.current_phase, info.black_phase,
          info.white_phase);
    Print("optimism[BLACK] = %d, optimism[WHITE] = %d\n", info.optimism[BLACK], info.optimism[WHITE]);
    Print("Material[WHITE] = %d board->Material[BLACK] = %d EvaluateMaterial() = %d\n", board.Material[WHITE],
          board.Material[BLACK], info.material);
    Print("ENDING(WHITE) = %d ENDING(BLACK) = %d\n", info.ENDING[WHITE], info.ENDING[BLACK]);
    PrintKingTerms(info);
    FlushOutput();
}
