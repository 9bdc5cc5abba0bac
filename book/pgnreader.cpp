#include "book/pgnreader.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "book/bookkeys.h"
#include "core/board.h"
#include "core/fen.h"
#include "core/makemove.h"
#include "core/positionfault.h"
#include "core/san.h"
#include "core/textfold.h"

namespace {

// The tags that are kept.
constexpr struct {
    const char* Name;
    std::string PgnGame::*Value;
} TAGS[] = {
    {"Event", &PgnGame::Event},      {"White", &PgnGame::White}, {"Black", &PgnGame::Black},
    {"Result", &PgnGame::ResultTag}, {"FEN", &PgnGame::Fen},     {"Variant", &PgnGame::Variant},
};

// Names of the game that this program plays, in small letters.
constexpr const char* STANDARD_VARIANTS[] = {"", "?", "-", "chess", "standard", "normal", "from position"};

bool IsSameName(const std::string& text, const char* name) {
    return std::equal(text.begin(), text.end(), name, name + std::strlen(name),
                      [](char a, char b) { return FoldCase(a) == FoldCase(b); });
}

GameResult ReadResult(const std::string& text) {
    if (text == "1-0") return GameResult::WHITE_WINS;
    if (text == "0-1") return GameResult::BLACK_WINS;
    return text == "1/2-1/2" || text == "1/2" ? GameResult::DRAWN : GameResult::UNKNOWN;
}

// Whether a move's mark is ? or ??, not one of those that leave it open.
bool IsMarkedAsMistake(const std::string& word) {
    return word.size() >= 2 && word.back() == '?' && word[word.size() - 2] != '!';
}

}  // namespace

void SetUpStart(const PgnGame& game) {
    if (game.HasSetUp) {
        LoadCommonFEN(game.Fen.c_str());
    } else {
        ResetBoard();
    }
}

PgnStatus PgnReader::Next(PgnGame& game) {
    if (!isTokenRead_) Advance();
    isTokenRead_ = false;
    if (token_ == PgnToken::END) return PgnStatus::END;
    game.Moves.clear();
    game.IsMistake.clear();
    for (const auto& tag : TAGS) (game.*tag.Value).clear();
    game.Fault.clear();
    game.FaultLine = 0;
    game.MoveFault = SAN_FOUND;
    game.FaultMove.clear();
    game.Number = ++number_;
    game.Line = lexer_.Line();
    game.Result = GameResult::UNKNOWN;
    ReadTags(game);
    ReadMoves(game);
    if (game.Result == GameResult::UNKNOWN) game.Result = ReadResult(game.ResultTag);
    return game.Fault.empty() ? PgnStatus::GAME : PgnStatus::BROKEN;
}

// Reads the tags and sets up the position that they name. A second event is the next game's.
void PgnReader::ReadTags(PgnGame& game) {
    bool hasEvent = false, isFirst = true;
    int64_t fenLine = 0;
    game.HasTagComment = false;
    for (; token_ == PgnToken::TAG; Advance()) {
        const bool isEvent = IsSameName(lexer_.TagName(), "Event");
        if (isEvent && std::exchange(hasEvent, true)) break;
        // A comment before the first tag of a later game belongs to the game before it.
        const bool isOwn = !std::exchange(isFirst, false) || number_ == 1;
        game.HasTagComment |= isOwn && lexer_.FollowsComment();
        for (const auto& tag : TAGS) {
            if (IsSameName(lexer_.TagName(), tag.Name)) game.*tag.Value = lexer_.TagValue();
        }
        if (IsSameName(lexer_.TagName(), "FEN")) fenLine = lexer_.Line();
        if (IsSameName(lexer_.TagName(), "Variant") &&
            std::none_of(std::begin(STANDARD_VARIANTS), std::end(STANDARD_VARIANTS),
                         [&](const char* name) { return IsSameName(game.Variant, name); })) {
            Break(game, "variant " + game.Variant);
        }
    }
    ResetBoard();
    game.HasSetUp = false;
    if (fenLine == 0 || !game.Fault.empty()) return;
    const BookKey startKey = CurrentBookKey();
    const uint32_t startRights = board.CastlingFlags;
    LoadCommonFEN(game.Fen.c_str());
    game.HasSetUp = CurrentBookKey() != startKey || board.CastlingFlags != startRights;
    const char* fault = FindPositionFault();
    if (fault == nullptr) return;
    game.Fault = std::string("illegal position: ") + fault;
    game.FaultLine = fenLine;
}

// Reads on to the end of the game, resolving moves until it is broken or has as many as are wanted.
void PgnReader::ReadMoves(PgnGame& game) {
    for (;; Advance()) {
        switch (token_) {
            case PgnToken::WORD:
                ReadMove(game);
                break;
            case PgnToken::RESULT:
                game.Result = ReadResult(lexer_.Word());
                return;
            case PgnToken::UNCLOSED:
                Break(game, "unclosed " + lexer_.Word());
                return;
            case PgnToken::TAG:
            case PgnToken::END:
                isTokenRead_ = true;
                return;
        }
    }
}

void PgnReader::ReadMove(PgnGame& game) {
    if (!game.Fault.empty() || game.Moves.size() >= static_cast<size_t>(maxPlies_)) return;
    Move move = NO_MOVE;
    const SanResult result = ResolveSan(lexer_.Word().c_str(), &move);
    if (result != SAN_FOUND) return BreakAtMove(game, result);
    game.Moves.push_back(move);
    game.IsMistake.push_back(IsMarkedAsMistake(lexer_.Word()));
    MakeMove(move, 1);
    ReserveHistory(HISTORY_RESERVE);
}

void PgnReader::BreakAtMove(PgnGame& game, SanResult fault) {
    game.MoveFault = fault;
    game.FaultMove = lexer_.Word();
    Break(game, (fault == SAN_AMBIGUOUS ? "ambiguous move " : "can't recognize ") + game.FaultMove);
}

// Only the first fault of a game is told.
void PgnReader::Break(PgnGame& game, std::string fault) {
    if (!game.Fault.empty()) return;
    game.Fault = std::move(fault);
    game.FaultLine = lexer_.Line();
}
