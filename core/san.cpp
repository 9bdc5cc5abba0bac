#include "core/san.h"

#include <cstring>

#include "core/attackquery.h"
#include "core/attacks.h"
#include "core/bitboard.h"
#include "core/board.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/moverules.h"
#include "core/movetest.h"

namespace {

constexpr int SAN_TEXT_SIZE = 8;  // Qa1xb2# and exd8=Q#, the longest, and the NUL
char SanText[SAN_TEXT_SIZE];

// What a text says about its move.
struct SanMove {
    unsigned Piece = EMPTY;  // EMPTY without a letter
    int FromFile = -1, FromRank = -1;
    int To = 0;
    bool IsCapture = false;
    unsigned Promotion = EMPTY;
    int Castling = 0;  // the king's step: 1 short, -1 long

    bool HasFrom() const { return FromFile >= 0 && FromRank >= 0; }
};

// The piece with the letter, EMPTY for any other character.
unsigned PieceOfLetter(char letter) {
    for (const unsigned piece : {KNIGHT, BISHOP, ROOK, QUEEN, KING, PAWN}) {
        if (letter == PIECE_LETTERS[piece]) return piece;
    }
    return EMPTY;
}

bool IsOneOf(char character, const char* characters) {
    return character != '\0' && std::strchr(characters, character) != nullptr;
}

// Readers of one element: each takes what it knows off the text and leaves anything else.

int TakeFile(const char*& text) {
    return *text >= 'a' && *text <= 'h' ? *text++ - 'a' : -1;
}

int TakeRank(const char*& text) {
    return *text >= '1' && *text <= '8' ? *text++ - '1' : -1;
}

// The king's step, 0 when the text is no castling.
int TakeCastling(const char*& text) {
    constexpr char CASTLING[] = "O-O-O";
    int length = 0;
    while (length < 5 && (length % 2 == 0 ? IsOneOf(text[length], "O0o") : text[length] == CASTLING[length]))
        ++length;
    if (length < 3) return 0;
    const bool isShort = length < 5;  // a second hyphen alone is an assessment's
    text += isShort ? 3 : 5;
    return isShort ? 1 : -1;
}

bool TakeSquares(const char*& text, SanMove& san) {
    const int file = TakeFile(text), rank = TakeRank(text);
    const char* separator = text;
    if (IsOneOf(*text, "x:-")) ++text;
    int toFile = TakeFile(text), toRank = TakeRank(text);
    if (toFile >= 0 && toRank >= 0) {
        san.FromFile = file;
        san.FromRank = rank;
        san.IsCapture = IsOneOf(*separator, "x:");
    } else {
        text = separator;
        toFile = file;
        toRank = rank;
    }
    san.To = MakeSquare(toFile, toRank);
    return toFile >= 0 && toRank >= 0;
}

unsigned TakePromotion(const char*& text) {
    const char* letter = IsOneOf(*text, "=/(") ? text + 1 : text;
    for (const unsigned piece : {QUEEN, KNIGHT, ROOK, BISHOP}) {
        if (*letter != PIECE_LETTERS[piece] && *letter != PROMOTION_LETTERS[piece]) continue;
        text = letter + 1;
        if (*text == ')') ++text;
        return piece;
    }
    return EMPTY;
}

void TakeSigns(const char*& text) {
    while (*text != '\0') {
        if (IsOneOf(*text, "+#!?=-/~")) {
            ++text;
        } else if (text[0] == 'e' && (text[1] == 'p' || (text[1] == '.' && text[2] == 'p'))) {
            text += text[1] == 'p' ? 2 : 3;
            if (*text == '.') ++text;
        } else {
            return;
        }
    }
}

bool ReadSan(const char* text, SanMove& san) {
    san.Castling = TakeCastling(text);
    if (san.Castling == 0) {
        san.Piece = PieceOfLetter(*text);
        if (san.Piece != EMPTY) ++text;
        if (!TakeSquares(text, san)) return false;
        san.Promotion = TakePromotion(text);
    }
    TakeSigns(text);
    return *text == '\0';
}

// Whether a pseudo-legal move, of a side in check or not, is legal.
bool IsLegal(Move move, bool isInCheck) {
    return isInCheck ? LeavesKingSafe(move) : KeepsKingSafe(move);
}

bool IsCastlingLegal(int step) {
    const int us = board.SideToMove;
    if (IsKingAttacked(us)) return false;
    if (us == WHITE) return step > 0 ? IsCastlingOpen<WHITE, 1>() : IsCastlingOpen<WHITE, -1>();
    return step > 0 ? IsCastlingOpen<BLACK, 1>() : IsCastlingOpen<BLACK, -1>();
}

SanResult ResolveCastling(int step, Move* move) {
    if (!IsCastlingLegal(step)) return SAN_UNKNOWN;
    const int home = KingHome(board.SideToMove);
    *move = BuildMove(home, home + 2 * step, KING);
    return SAN_FOUND;
}

// The pawns that can capture on the square.
Bitboard CapturingPawns(int to) {
    const int us = board.SideToMove;
    const int victim = DoubleStepSquare();
    const bool isEnPassant = victim >= 0 && to == victim + PawnStep(us);
    if (board.PieceOn[to] == EMPTY && !isEnPassant) return 0;
    return PawnCaptures[ChangeSide(us)][to] & board.Pieces[PAWN][us];
}

// The pawns that can step to the square: one at most.
Bitboard SteppingPawns(int to) {
    const int us = board.SideToMove, from = to - PawnStep(us);
    if (board.PieceOn[to] != EMPTY || from < A1 || from > H8) return 0;
    if (board.PieceOn[from] != EMPTY) return SquareBit(from) & board.Pieces[PAWN][us];
    const int start = from - PawnStep(us);
    const Bitboard home = RelativeRankBits(us, 1) & board.Pieces[PAWN][us];
    return start < A1 || start > H8 ? 0 : SquareBit(start) & home;
}

// The men of the kind, less those that the text rules out, that could go to its square if their king were no
// matter.
Bitboard Candidates(const SanMove& san, unsigned piece) {
    const int us = board.SideToMove;
    if (board.Occupied[us] & SquareBit(san.To)) return 0;
    Bitboard men = 0;
    if (piece != PAWN) {
        if (san.Promotion != EMPTY) return 0;
        men = AttacksFrom(san.To, us, piece) & board.Pieces[piece][us];
    } else {
        const bool isLastRank = (RelativeRankBits(us, 7) & SquareBit(san.To)) != 0;
        if (isLastRank != (san.Promotion != EMPTY)) return 0;
        const bool changesFile = san.FromFile >= 0 && san.FromFile != FileOf(san.To);
        men = san.IsCapture || changesFile ? CapturingPawns(san.To) : SteppingPawns(san.To);
    }
    if (san.FromFile >= 0) men &= FileBits(san.FromFile);
    if (san.FromRank >= 0) men &= RankBits(san.FromRank);
    return men;
}

// The other men of its kind that have a legal move to the same square.
Bitboard Rivals(Move move) {
    const unsigned piece = MovePiece(move);
    const bool isInCheck = IsKingAttacked(board.SideToMove);
    SanMove san;
    san.To = MoveTo(move);
    Bitboard rivals = 0;
    for (Bitboard men = Candidates(san, piece) & ~SquareBit(MoveFrom(move)); men != 0;) {
        const int from = PopLowest(men);
        if (IsLegal(BuildMove(from, san.To, piece, MoveCaptured(move)), isInCheck)) rivals |= SquareBit(from);
    }
    return rivals;
}

char* WriteOrigin(char* text, Move move) {
    const int from = MoveFrom(move);
    const Bitboard rivals = Rivals(move), onFile = rivals & FileBits(FileOf(from));
    const bool needsRank = onFile != 0;
    const bool needsFile = rivals != 0 && (!needsRank || (rivals & RankBits(RankOf(from))) != 0);
    if (needsFile) *text++ = static_cast<char>('a' + FileOf(from));
    if (needsRank) *text++ = static_cast<char>('1' + RankOf(from));
    return text;
}

bool IsMate(Move move) {
    MakeMove(move, 1);
    const bool isMate = !HasLegalReply();
    UnmakeMove();
    return isMate;
}

}  // namespace

SanResult ResolveSan(const char* text, Move* move) {
    SanMove san;
    if (!ReadSan(text, san)) return SAN_UNKNOWN;
    if (san.Castling != 0) return ResolveCastling(san.Castling, move);
    unsigned piece = san.Piece != EMPTY ? san.Piece : unsigned{PAWN};
    if (san.HasFrom()) {
        const int from = MakeSquare(san.FromFile, san.FromRank);
        if (san.Piece == EMPTY) piece = board.PieceOn[from];
        const bool isCastling =
            from == KingHome(board.SideToMove) && (san.To == from + 2 || san.To == from - 2);
        if (piece == KING && isCastling && san.Promotion == EMPTY) {
            return ResolveCastling(san.To > from ? 1 : -1, move);
        }
    }
    Bitboard men = Candidates(san, piece);
    if (men == 0) return SAN_UNKNOWN;
    const bool isInCheck = IsKingAttacked(board.SideToMove);
    Move found = NO_MOVE;
    while (men != 0) {
        const Move candidate = BuildMove(PopLowest(men), san.To, piece, board.PieceOn[san.To], san.Promotion);
        if (!IsLegal(candidate, isInCheck)) continue;
        if (found != NO_MOVE) return SAN_AMBIGUOUS;
        found = candidate;
    }
    if (found == NO_MOVE) return SAN_UNKNOWN;
    *move = found;
    return SAN_FOUND;
}

const char* MoveToSan(Move move) {
    if (move == NO_MOVE) return std::strcpy(SanText, "--");
    char* text = SanText;
    const int from = MoveFrom(move), to = MoveTo(move);
    if (IsCastling(move)) {
        text = std::strcpy(text, to > from ? "O-O" : "O-O-O");
        text += std::strlen(text);
    } else {
        const bool isPawn = MovePiece(move) == PAWN;
        if (isPawn && ChangesFileParity(move)) {
            *text++ = static_cast<char>('a' + FileOf(from));
        } else if (!isPawn) {
            *text++ = PIECE_LETTERS[MovePiece(move)];
            text = WriteOrigin(text, move);
        }
        if (MoveCaptured(move) != EMPTY || IsEnPassant(move)) *text++ = 'x';
        *text++ = static_cast<char>('a' + FileOf(to));
        *text++ = static_cast<char>('1' + RankOf(to));
        if (MovePromotion(move) != EMPTY) {
            *text++ = '=';
            *text++ = PIECE_LETTERS[MovePromotion(move)];
        }
    }
    if (GivesCheck(move)) *text++ = IsMate(move) ? '#' : '+';
    *text = '\0';
    return SanText;
}
