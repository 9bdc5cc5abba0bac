#include "core/fen.h"

#include <cstring>

#include "core/bitboard.h"
#include "core/board.h"
#include "core/keys.h"
#include "core/moverules.h"
#include "core/psqt.h"
#include "core/textfold.h"

namespace {

constexpr char BLACK_LETTERS[] = ".knp?rbq";
constexpr char CASTLING_LETTERS[] = "KQkq";

// The man of a FEN letter; false for any other character.
bool ReadMan(char letter, int& side, unsigned& piece) {
    for (const unsigned code : {KING, KNIGHT, PAWN, ROOK, BISHOP, QUEEN}) {
        if (letter != PIECE_LETTERS[code] && letter != BLACK_LETTERS[code]) continue;
        side = letter == PIECE_LETTERS[code] ? WHITE : BLACK;
        piece = code;
        return true;
    }
    return false;
}

const char* SkipSpaces(const char* text) {
    while (*text == ' ') ++text;
    return text;
}

// Reads the placement field; returns what follows it.
const char* ReadPlacement(const char* text) {
    int file = 0, rank = 7;
    for (; *text != '\0' && *text != ' '; ++text) {
        int side = WHITE;
        unsigned piece = EMPTY;
        if (*text == '/') {
            file = 0;
            if (--rank < 0) break;
        } else if (*text >= '1' && *text <= '8') {
            file += *text - '0';
        } else if (ReadMan(*text, side, piece)) {
            // Men beyond the h-file have no square; a rank that is too long loses them.
            if (file < 8) AddPiece(MakeSquare(file, rank), side, piece);
            ++file;
        }
    }
    while (*text != '\0' && *text != ' ') ++text;
    return text;
}

const char* ReadCastling(const char* text) {
    board.CastlingFlags = 0;
    const bool hasNone = *text == '-';
    for (; *text != '\0' && *text != ' '; ++text) {
        const char* letter = std::strchr(CASTLING_LETTERS, *text);
        if (letter != nullptr && !hasNone) board.CastlingFlags |= 1u << (letter - CASTLING_LETTERS);
    }
    return text;
}

void CutCastlingRights() {
    if (!HasMan(E1, WHITE, KING)) board.CastlingFlags &= ~(WHITE_SHORT | WHITE_LONG);
    if (!HasMan(E8, BLACK, KING)) board.CastlingFlags &= ~(BLACK_SHORT | BLACK_LONG);
    if (!HasMan(A1, WHITE, ROOK)) board.CastlingFlags &= ~WHITE_LONG;
    if (!HasMan(H1, WHITE, ROOK)) board.CastlingFlags &= ~WHITE_SHORT;
    if (!HasMan(A8, BLACK, ROOK)) board.CastlingFlags &= ~BLACK_LONG;
    if (!HasMan(H8, BLACK, ROOK)) board.CastlingFlags &= ~BLACK_SHORT;
}

// Writes the double step that led to `to` into History[0], with the state that taking it back restores.
void RecordDoubleStep(int from, int to, int mover) {
    const PsqEntry* table = &PsqTable[PsqIndex(PAWN, mover, 0)];
    const int sign = mover == BLACK ? 1 : -1;
    HistoryRecord& record = History[0];
    record.HashKey = board.HashKey ^ PieceKeys[mover][PAWN][from] ^ PieceKeys[mover][PAWN][to];
    record.Fifty = 0;
    record.Move = BuildMove(from, to, PAWN);
    record.CastlingFlags = board.CastlingFlags;
    record.MaterialSignature = board.MaterialSignature;
    record.PsqOpening =
        static_cast<int16_t>(board.PsqOpening + sign * (table[from].Opening - table[to].Opening));
    record.PsqEnding = static_cast<int16_t>(board.PsqEnding + sign * (table[from].Ending - table[to].Ending));
    HistoryLength = 1;
}

void ReadEnPassant(const char* text) {
    const char fileLetter = FoldCase(text[0]);
    if (fileLetter < 'a' || fileLetter > 'h') return;
    const int mover = ChangeSide(board.SideToMove);
    const int rank = mover == BLACK ? 4 : 3;
    if (text[1] != '1' + rank) return;
    const int to = MakeSquare(fileLetter - 'a', rank);
    if (HasMan(to, mover, PAWN)) RecordDoubleStep(to + (mover == BLACK ? 16 : -16), to, mover);
}

// The text with an en-passant square behind the pawn, e3 or e6, made the pawn's own, e4 or e5.
std::string WithOwnEnPassant(std::string text) {
    constexpr int EN_PASSANT_FIELD = 3;
    size_t place = text.find_first_not_of(' ');
    for (int field = 0; field < EN_PASSANT_FIELD && place != std::string::npos; ++field) {
        place = text.find_first_not_of(' ', text.find(' ', place));
    }
    if (place == std::string::npos || place + 1 >= text.size()) return text;
    char& rank = text[place + 1];
    rank = rank == '3' ? '4' : rank == '6' ? '5' : rank;
    return text;
}

void WritePlacement(std::string& text, bool hasBlackKing) {
    for (int rank = 7; rank >= 0; --rank) {
        int empty = 0;
        for (int file = 0; file < 8; ++file) {
            const int square = MakeSquare(file, rank);
            const unsigned piece = board.PieceOn[square];
            const bool isBlack = (board.Occupied[BLACK] & SquareBit(square)) != 0;
            if (piece == EMPTY) {
                ++empty;
            } else {
                if (empty > 0) text += static_cast<char>('0' + empty);
                empty = 0;
                if (hasBlackKing || piece != KING || !isBlack)
                    text += (isBlack ? BLACK_LETTERS : PIECE_LETTERS)[piece];
            }
        }
        if (empty > 0) text += static_cast<char>('0' + empty);
        if (rank > 0) text += '/';
    }
}

void WriteSideAndRights(std::string& text) {
    text += board.SideToMove == WHITE ? " w " : " b ";
    for (int right = 0; right < 4; ++right) {
        if (board.CastlingFlags >> right & 1) text += CASTLING_LETTERS[right];
    }
    text += board.CastlingFlags != 0 ? " " : "- ";
}

void WriteSquare(std::string& text, int square) {
    text += static_cast<char>('a' + FileOf(square));
    text += static_cast<char>('1' + RankOf(square));
}

// Whether a pawn of the side to move stands beside the square.
bool IsBesidePawn(int square) {
    const int file = FileOf(square), us = board.SideToMove;
    return (file > 0 && HasMan(square - 1, us, PAWN)) || (file < 7 && HasMan(square + 1, us, PAWN));
}

void WriteEnPassant(std::string& text) {
    const Move last = LastMove();
    if (!IsDoubleStep(last)) {
        text += "- ";
    } else if (IsBesidePawn(MoveTo(last))) {
        WriteSquare(text, MoveTo(last));
        text += ' ';
    }
}

}  // namespace

void LoadFEN(const char* text) {
    HistoryLength = 0;
    HistoryForgotten = 0;
    ClearBoard();
    text = SkipSpaces(ReadPlacement(SkipSpaces(text)));
    board.SideToMove = *text == 'w' ? WHITE : BLACK;
    if (*text != '\0') ++text;
    text = SkipSpaces(ReadCastling(SkipSpaces(text)));
    CutCastlingRights();
    if (text[0] != '\0') ReadEnPassant(text);
}

void LoadCommonFEN(const char* text) {
    LoadFEN(WithOwnEnPassant(text).c_str());
}

std::string GetFEN(const char* extra) {
    std::string text;
    WritePlacement(text, false);
    WriteSideAndRights(text);
    WriteEnPassant(text);
    if (extra != nullptr) text += extra;
    return text;
}

std::string GetEPD() {
    std::string text;
    WritePlacement(text, true);
    WriteSideAndRights(text);
    const int pawn = DoubleStepSquare();
    if (pawn >= 0 && IsBesidePawn(pawn)) {
        WriteSquare(text, pawn + PawnStep(board.SideToMove));
    } else {
        text += '-';
    }
    return text;
}
