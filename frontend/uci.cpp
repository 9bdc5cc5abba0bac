#include <algorithm>
#include <cstring>
#include <sstream>
#include <string>

#include "book/bookfile.h"
#include "book/booklearning.h"
#include "book/booksettings.h"
#include "core/board.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/movetext.h"
#include "core/positionfault.h"
#include "egtb/tablebases.h"
#include "egtb/tablecache.h"
#include "eval/pawnhash.h"
#include "eval/weights.h"
#include "frontend/commands.h"
#include "frontend/hashtables.h"
#include "frontend/newgame.h"
#include "frontend/settings.h"
#include "frontend/startup.h"
#include "frontend/think.h"
#include "frontend/tokens.h"
#include "platform/output.h"
#include "platform/platform.h"
#include "search/draws.h"
#include "search/modes.h"
#include "search/multipv.h"
#include "search/parameters.h"
#include "search/root.h"
#include "search/timecontrol.h"
#include "search/transposition.h"

namespace {

constexpr int VALUE_TOKEN = 4;                // setoption name X value Y
constexpr int LARGEST_TABLEBASE_CACHE = 128;  // megabytes
constexpr char ANNOUNCED_BOOK[] = ".\\book.kvb";

// The rest of the line from the value on, inner blanks included.
const char* ValueText() {
    return InputLine + TokenOffset[VALUE_TOKEN];
}

// A table size in megabytes. A number beyond what the option announces must not exhaust the machine.
int ReadMegabytes() {
    return std::clamp(TokenNumber(VALUE_TOKEN), 0, LARGEST_TABLE);
}

void SetPawnHash() {
    PawnHashEntries = PawnEntries(ReadMegabytes());
    ReallocatePawnHash();
}

void SetTablebaseCache() {
    if (!UseEGTB) return;
    EGTBHashSize = std::clamp(TokenNumber(VALUE_TOKEN), 0, LARGEST_TABLEBASE_CACHE) * MEGABYTE;
    AllocateTablebaseCache();
}

void SetOwnBook() {
    if (MatchKeyword("false", Tokens[VALUE_TOKEN])) {
        OwnBook = 0;
    } else if (MatchKeyword("true", Tokens[VALUE_TOKEN])) {
        OwnBook = 1;
    }
}

// An interface that sets every option to the default that was announced wants the book it would get anyway.
void SetBook() {
    const std::string name = ValueText(), ours = DefaultBookPath();
    const bool isDefault = name == ANNOUNCED_BOOK && FileLength(name) < 0 && FileLength(ours) >= 0;
    OpenBook(isDefault ? ours : name);
}

struct OptionRow {
    const char* Name;
    void (*Apply)();
};

// The personality options take any number as it is; only the settings file has bounds.
const OptionRow OptionTable[] = {
    {"Tropism", [] { SetTropism(TokenNumber(VALUE_TOKEN)); }},
    {"Aggressivity", [] { SetAggressivity(TokenNumber(VALUE_TOKEN)); }},
    {"Defensivity", [] { SetCowardice(TokenNumber(VALUE_TOKEN)); }},
    {"MultiPV", [] { MultiPvCount = TokenNumber(VALUE_TOKEN); }},
    {"Hash", [] { ResizeTransposition(TokenNumber(VALUE_TOKEN)); }},
    {"PawnHash", SetPawnHash},
    {"NalimovCache", SetTablebaseCache},
    {"Clear", nullptr},  // a button of two words
    {"OwnBook", SetOwnBook},
    {"NalimovPath", [] { ChangeTablebasePath(ValueText()); }},
    {"OpeningsBook", SetBook},
};

const OptionRow* FindOption(const char* name) {
    const auto row = std::find_if(std::begin(OptionTable), std::end(OptionTable),
                                  [=](const OptionRow& option) { return MatchKeyword(option.Name, name); });
    return row == std::end(OptionTable) ? nullptr : row;
}

// What a build for trials has besides.
void AnnounceParameters() {
    for (const ParameterRow& row : SettableParameters()) {
        Print("option name %s type spin min %d max %d default %d\n", row.Name, row.Least, row.Greatest,
              *row.Value);
    }
}

// Milliseconds to centiseconds.
int ReadTime(int token) {
    return TokenNumber(token) / 10;
}

void ResetGoParameters() {
    MovesToGo = 0;
    MoveTime = 0;
    MaxDepth = UNLIMITED_DEPTH;
    OwnIncrement = OpponentIncrement = 0;
    NodeLimit = 0;
    // A limit of an earlier "go" neither times this one nor keeps it from ending.
    EngineTime = NO_CLOCK;
    OpponentTime = 0;
    MateSearch = 0;
}

template <int side>
void ReadClock(int token) {
    if (board.SideToMove == side) {
        EngineTime = BaseTime = ClockTime(ReadTime(token));
    } else {
        OpponentTime = ReadTime(token);
    }
}

template <int side>
void ReadIncrement(int token) {
    (board.SideToMove == side ? OwnIncrement : OpponentIncrement) = ReadTime(token);
}

template <int& variable>
void ReadInto(int token) {
    variable = TokenNumber(token);
}

// Less than a centisecond is still a limit.
void ReadMoveTime(int token) {
    MoveTime = std::max(1, ReadTime(token));
}

// A mate in more moves than the deepest iteration has plies is no other question.
void ReadMate(int token) {
    ReadInto<MateSearch>(token);
    MateSearch = std::clamp(MateSearch, 0, DEEPEST_ITERATION);
}

struct GoRow {
    const char* Keyword;
    void (*Read)(int token);  // the token that holds the value
};

const GoRow GoTable[] = {
    {"btime", ReadClock<BLACK>},    {"wtime", ReadClock<WHITE>},        {"binc", ReadIncrement<BLACK>},
    {"winc", ReadIncrement<WHITE>}, {"movestogo", ReadInto<MovesToGo>}, {"depth", ReadInto<MaxDepth>},
    {"nodes", ReadInto<NodeLimit>}, {"movetime", ReadMoveTime},         {"mate", ReadMate},
};

// Adds the tokens from `first` on that have the shape of a move; the root list keeps the legal ones.
void ReadSearchMoves(int first) {
    for (int i = first; i < TokenCount && SearchMovesCount < SEARCH_MOVES_SIZE; ++i) {
        if (LooksLikeMove(Tokens[i])) SearchMoves[SearchMovesCount++] = TextToMove(Tokens[i]);
    }
}

// Plays the words of the line behind its token `first`, however many they are; what is no legal move is
// skipped.
void PlayMoves(int first) {
    if (HasPhantomMen()) return;
    std::istringstream words(InputLine + TokenOffset[first] + std::strlen(Tokens[first]));
    for (std::string word; words >> word;) {
        if (!LooksLikeMove(word.c_str())) continue;
        const Move move = TextToMove(word.c_str());
        if (IsLegalMove(move)) PlayMove(move);
    }
}

// Loads the position behind the word "fen", as it stands in the line.
void LoadPosition() {
    constexpr size_t WORD = 3;
    const std::string word = std::string(Tokens[1]).substr(0, WORD);
    const char* place = std::strstr(InputLine, word.c_str());
    if (place == nullptr || std::strlen(place) <= WORD + 1) return;
    LoadFEN(place + WORD + 1);
}

// Plays the moves of the line, if it names any.
void PlayNamedMoves() {
    for (int i = 2; i < TokenCount; ++i) {
        if (MatchKeyword("moves", Tokens[i])) return PlayMoves(i);
    }
}

}  // namespace

void ChangeTablebasePath(const char* path) {
    if (!UseEGTB) return;
    // An interface that sets every option to the default that was announced wants what it would get anyway,
    // and writes an empty text in this way.
    const bool isDefault = std::strcmp(path, ANNOUNCED_TABLE_PATH) == 0;
    const bool isEmpty = std::strcmp(path, "<empty>") == 0;
    SetTablebasePath(isDefault ? DefaultTablebasePath().c_str() : isEmpty ? "" : path);
    RegisterTablebases();
    AllocateTablebaseCache();
}

// Interfaces say "ucinewgame" before a game, which the chain gives to "uci", deliberately: what there is to
// be done about the book happens here.
void RunUci() {
    Print("id name Kestrovan 1.50\n");
    Print("id author Tomas K. Varnel\n");
    Print("option name Hash type spin min 0 max 1024 default 10\n");
    Print("option name PawnHash type spin min 0 max 1024 default 7\n");
    Print("option name NalimovPath type string default %s\n", ANNOUNCED_TABLE_PATH);
    Print("option name OpeningsBook type string default %s\n", ANNOUNCED_BOOK);
    Print("option name OwnBook type check default true\n");
    Print("option name NalimovCache type spin min 1 max %d default 1\n", LARGEST_TABLEBASE_CACHE);
    Print("option name MultiPV type spin min 1 max 1024 default 1\n");
    Print("option name Aggressivity type spin min 0 max 300 default %d\n", Aggressivity.Raw);
    Print("option name Defensivity type spin min 0 max 300 default %d\n", Cowardice.Raw);
    Print("option name Tropism type spin min 0 max 300 default %d\n", Tropism.Raw);
    Print("option name Clear Hash type button\n");
    AnnounceParameters();
    Print("uciok\n");
    FlushOutput();
    UciMode = 1;
    PonderingOn = 0;
    LearnPreviousGame();
    ResetBookGame();
}

// The chain gives this line to "uci", deliberately; the branch waits for a chain that does not.
void RunUciNewGame() {
    LastBestMove = NO_MOVE;
    LearnPreviousGame();
    ResetGameMemory();
}

void RunSetOption() {
    if (TokenCount < 3 || !MatchKeyword("name", Tokens[1])) return;
    const bool hasValue =
        TokenCount > VALUE_TOKEN && Tokens[VALUE_TOKEN][0] != '\0' && MatchKeyword("value", Tokens[3]);
    if (hasValue && SetParameter(Tokens[2], TokenNumber(VALUE_TOKEN))) return;
    const OptionRow* option = FindOption(Tokens[2]);
    if (option == nullptr) return;
    if (option->Apply == nullptr) {
        if (TokenCount > 3 && MatchKeyword("Hash", Tokens[3])) ClearHash();
        return;
    }
    if (hasValue) option->Apply();
}

void RunPosition() {
    if (TokenCount < 2) return;
    LastBestMove = NO_MOVE;
    // It follows from the clocks of the game, whichever this is.
    DrawScore = 0;
    if (MatchKeyword("startpos", Tokens[1])) {
        NewGame();
    } else if (MatchKeyword("fen", Tokens[1])) {
        LoadPosition();
    }
    if (TokenCount >= 4) PlayNamedMoves();
    // Nothing else tells of a new game: what an interface says for that is answered as "uci", deliberately.
    if (!ContinuesSearchedGame()) ResetRootMemory();
}

void ReadGoParameters() {
    ResetGoParameters();
    for (int i = 1; i < TokenCount; ++i) {
        const char* token = Tokens[i];
        const auto row = std::find_if(std::begin(GoTable), std::end(GoTable),
                                      [=](const GoRow& entry) { return MatchKeyword(entry.Keyword, token); });
        if (row != std::end(GoTable)) {
            row->Read(++i);
        } else if (MatchKeyword("infinite", token)) {
            EngineTime = INFINITE_TIME;
            InfiniteSearch = 1;
        } else if (MatchKeyword("searchmoves", token)) {
            ReadSearchMoves(i + 1);
            return;
        } else if (MatchKeyword("ponder", token)) {
            PonderSearch = 1;
        }
    }
}

void RunDebug() {
    if (TokenCount < 2) return;
    if (MatchKeyword("on", Tokens[1])) {
        DebugMode = VerboseRegistration = 1;
    } else if (MatchKeyword("off", Tokens[1])) {
        DebugMode = VerboseRegistration = 0;
    }
}

// Makes and announces the move of a "go ponder" that has ended unanswered. Searches wait for their answer, so
// that there is none now; the branch is kept, deliberately, for one that does not.
void RunPonderHit() {
    if (!PonderSearch) return;
    PonderSearch = 0;
    const Move move = RootMove(0);
    if (move == NO_MOVE || !IsLegalMove(move)) return;
    PlayMove(move);
    AnnounceBestMove(move);
}

// Repeats the last answer. The chain gives this line to "st", deliberately; kept for a chain that does not.
void RunLateStop() {
    if (LastBestMove != NO_MOVE) Print("bestmove %s\n", MoveToText(LastBestMove));
}
