#include "tools/matchcourse.h"

#include <mutex>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movelist.h"
#include "core/movetext.h"
#include "core/san.h"
#include "search/draws.h"

namespace {

// Whoever holds it owns `board` and all that belongs to it.
std::mutex BoardLock;

constexpr uint32_t FIFTY_MOVES_PLIES = 100;

void PlayOnBoard(Move move) {
    MakeMove(move, 1);
    ReserveHistory(HISTORY_RESERVE);
}

bool HasLegalMove() {
    MoveListTop = 0;
    GenerateMoves();
    for (int i = 0; i < MoveListTop; ++i) {
        if (LeavesKingSafe(MoveList[i].Move)) return true;
    }
    return false;
}

// A mate comes before everything else, also with the move that completes the fifty.
Ending EndingOnBoard() {
    if (!HasLegalMove()) return IsKingAttacked(board.SideToMove) ? Ending::MATE : Ending::STALEMATE;
    if (IsMateImpossible()) return Ending::NO_MATERIAL;
    if (board.Fifty >= FIFTY_MOVES_PLIES) return Ending::FIFTY_MOVES;
    return CountOccurrences() >= 3 ? Ending::REPETITION : Ending::NONE;
}

}  // namespace

void MatchCourse::SetUpStart() const {
    ResetBoard();
    if (!fen_.empty()) LoadCommonFEN(fen_.c_str());
}

void MatchCourse::SetUp() const {
    SetUpStart();
    for (const Move move : moves_) PlayOnBoard(move);
}

void MatchCourse::Judge() {
    const std::lock_guard lock(BoardLock);
    SetUp();
    sideToMove_ = board.SideToMove;
    ending_ = EndingOnBoard();
}

bool MatchCourse::Play(const std::string& text) {
    {
        const std::lock_guard lock(BoardLock);
        SetUp();
        if (!LooksLikeMove(text.c_str())) return false;
        const Move move = TextToMove(text.c_str());
        // No other form of the move will do, and nothing behind it.
        if (!IsLegalMove(move) || text != MoveToText(move)) return false;
        moves_.push_back(move);
    }
    Judge();
    return true;
}

std::string MatchCourse::PositionLine() const {
    const std::lock_guard lock(BoardLock);
    std::string line = fen_.empty() ? "position startpos" : "position fen " + fen_;
    if (!moves_.empty()) line += " moves";
    for (const Move move : moves_) line.append(1, ' ').append(MoveToText(move));
    return line;
}

std::string MatchCourse::MoveText() const {
    constexpr size_t LINE_LENGTH = 80;
    const std::lock_guard lock(BoardLock);
    SetUpStart();
    std::string text, line;
    int number = 1;
    for (const Move move : moves_) {
        std::string word = MoveToSan(move);
        if (board.SideToMove == WHITE) {
            word = std::to_string(number) + ". " + word;
        } else if (text.empty() && line.empty()) {
            word = "1... " + word;
        }
        number += board.SideToMove == BLACK;
        if (line.size() + word.size() >= LINE_LENGTH) text += line + "\n", line.clear();
        line += (line.empty() ? "" : " ") + word;
        PlayOnBoard(move);
    }
    return line.empty() ? text : text + line + "\n";
}
