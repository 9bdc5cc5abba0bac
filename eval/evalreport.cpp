#include "eval/evalreport.h"

#include <string>

#include "core/board.h"
#include "eval/evaluate.h"
#include "eval/kingattack.h"
#include "eval/pawnhash.h"
#include "eval/pawns.h"
#include "eval/shelter.h"
#include "platform/output.h"

namespace {

// A set of files, a to h, as eight digits.
std::string FileDigits(unsigned files) {
    std::string digits;
    for (int file = 0; file < 8; ++file) digits += (files >> file & 1) != 0 ? '1' : '0';
    return digits;
}

void PrintPawnTerms() {
    Print("PassedVector[BLACK] = %s PassedVector[WHITE] = %s\n",
          FileDigits(pawn_cache.PassedVector(BLACK)).c_str(),
          FileDigits(pawn_cache.PassedVector(WHITE)).c_str());
}

void PrintKingTerms(const EvalInfo& info) {
    const int side = board.SideToMove, enemy = ChangeSide(side);
    const int shelters[2] = {ShelterValueOf(info.shelter_penalty[WHITE]),
                             ShelterValueOf(info.shelter_penalty[BLACK])};
    Print("black_defects_k = %d black_defects_q = %d white_defects_k = %d white_defects_q = %d\n",
          pawn_cache.black_defects_k, pawn_cache.black_defects_q, pawn_cache.white_defects_k,
          pawn_cache.white_defects_q);
    Print("eval_info->shelter_penalty[BLACK] = %d eval_info->shelter_penalty[WHITE] = %d\n",
          info.shelter_penalty[BLACK], info.shelter_penalty[WHITE]);
    Print("eval_info->danger[BLACK] = %d eval_info->danger[WHITE] = %d\n", info.danger[BLACK],
          info.danger[WHITE]);
    Print("Attacks[ChangeSide(board->SideToMove)] = %d\n", KingAttackOn(enemy));
    Print("Attacks[board->SideToMove] = %d\n", KingAttackOn(side));
    Print("Shelter[BLACK] = %d Shelter[WHITE] = %d\n", shelters[BLACK], shelters[WHITE]);
    Print("Dng = %d\n", KingAttackOn(enemy) + shelters[enemy]);
}

}  // namespace

void PrintEvaluation() {
    EngineSide = board.SideToMove;
    int result = -32700;
    Evaluate(&result);
    const EvalInfo& info = eval_info;
    // An ending that is settled by its material leaves the pawns aside.
    int opening = 0, ending = 0;
    EvaluatePawnStructure(&opening, &ending);
    Print("Heuristic = %d\n", result);
    PrintPawnTerms();
    Print("current_phase = %d, black_phase = %d, white_phase = %d\n", info.current_phase, info.black_phase,
          info.white_phase);
    Print("optimism[BLACK] = %d, optimism[WHITE] = %d\n", info.optimism[BLACK], info.optimism[WHITE]);
    Print("Material[WHITE] = %d board->Material[BLACK] = %d EvaluateMaterial() = %d\n", board.Material[WHITE],
          board.Material[BLACK], info.material);
    Print("ENDING(WHITE) = %d ENDING(BLACK) = %d\n", info.ENDING[WHITE], info.ENDING[BLACK]);
    PrintKingTerms(info);
    FlushOutput();
}
