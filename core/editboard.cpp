#include "core/editboard.h"

#include <string>

#include "core/bitboard.h"
#include "core/board.h"
#include "core/textfold.h"
#include "platform/input.h"
#include "platform/output.h"

namespace {

// Standard input, a character at a time.
class CharacterReader {
  public:
    // The next character, folded; a line feed ends every line, 0 stands for the end of input.
    char Next() {
        if (position_ > line_.size()) {
            position_ = 0;
            if (!ReadLine(line_)) return '\0';
        }
        const size_t here = position_++;
        return here < line_.size() ? FoldCase(line_[here]) : '\n';
    }

    // Gives back what is left of the current line.
    void Release() {
        if (position_ < line_.size()) UnreadLine(line_.substr(position_));
    }

  private:
    std::string line_;
    size_t position_ = 1;  // behind the line: nothing has been read
};

unsigned PieceOfLetter(char letter) {
    switch (letter) {
        case 'p':
            return PAWN;
        case 'n':
            return KNIGHT;
        case 'b':
            return BISHOP;
        case 'r':
            return ROOK;
        case 'q':
            return QUEEN;
        case 'k':
            return KING;
        default:
            return EMPTY;
    }
}

void EmptySquare(int square) {
    for (Bitboard& side : board.Occupied) side &= ~SquareBit(square);
    board.PieceOn[square] = EMPTY;
    ClearOccupancy(square);
}

// Carries out one entry that begins with `letter`; false when it makes no sense. `last` becomes the last
// character read.
bool EditSquare(CharacterReader& reader, char letter, int side, char& last) {
    const unsigned piece = PieceOfLetter(letter);
    if (piece == EMPTY && letter != 'x') return false;
    const char file = last = reader.Next();
    if (file < 'a' || file > 'h') return false;
    const char rank = last = reader.Next();
    if (rank < '1' || rank > '8') return false;
    const int square = MakeSquare(file - 'a', rank - '1');
    EmptySquare(square);
    if (piece != EMPTY) AddPiece(square, side, piece);
    return true;
}

void DeriveCastlingRights() {
    board.CastlingFlags = 0;
    for (const int side : {WHITE, BLACK}) {
        const int home = side == WHITE ? E1 : E8;
        if (!HasMan(home, side, KING)) continue;
        if (HasMan(home + 3, side, ROOK)) board.CastlingFlags |= side == WHITE ? WHITE_SHORT : BLACK_SHORT;
        if (HasMan(home - 4, side, ROOK)) board.CastlingFlags |= side == WHITE ? WHITE_LONG : BLACK_LONG;
    }
}

}  // namespace

void EditBoard() {
    CharacterReader reader;
    int side = WHITE;
    for (char letter = reader.Next(); letter != '.' && letter != '\0';) {
        char last = letter;
        if (letter == 'c') {
            side = ChangeSide(side);
        } else if (letter == '#') {
            ClearBoard();
        } else if (letter != ' ' && letter != '\n' && letter != '\r' &&
                   !EditSquare(reader, letter, side, last)) {
            Print("Error");
            FlushOutput();
        }
        // An entry that broke off at the end mark must not swallow it.
        const bool hasEnded = last == '.' || last == '\0';
        letter = hasEnded ? last : reader.Next();
    }
    reader.Release();
    DeriveCastlingRights();
    HistoryLength = 0;
    HistoryForgotten = 0;
}
