#include "core/movetext.h"

#include <cstdlib>
#include <cstring>

#include "core/board.h"
#include "core/textfold.h"
#include "platform/output.h"

char MoveToken[MOVE_TOKEN_LENGTH + 1];

namespace {

char MoveTextBuffer[MOVE_TEXT_SIZE];

char* WriteSquare(char* text, int square) {
    *text++ = static_cast<char>('a' + FileOf(square));
    *text++ = static_cast<char>('1' + RankOf(square));
    return text;
}

char* WriteSquares(char* text, Move move) {
    return WriteSquare(WriteSquare(text, MoveFrom(move)), MoveTo(move));
}

bool IsFileLetter(char letter) {
    return FoldCase(letter) >= 'a' && FoldCase(letter) <= 'h';
}
bool IsRankDigit(char digit) {
    return digit >= '1' && digit <= '8';
}

unsigned PromotionOfLetter(char letter) {
    for (const unsigned piece : {QUEEN, ROOK, BISHOP, KNIGHT}) {
        if (letter == PROMOTION_LETTERS[piece]) return piece;
    }
    return EMPTY;
}

bool IsTokenCharacter(int character) {
    if (character >= 'a' && character <= 'h') return true;
    if (character >= '0' && character <= '8') return true;
    return character != '\0' && std::strchr("KQNBR=-O:x", character) != nullptr;
}

}  // namespace

const char* MoveToText(Move move) {
    if (move == NO_MOVE) return std::strcpy(MoveTextBuffer, "0000");
    char* end = WriteSquares(MoveTextBuffer, move);
    *end++ = PROMOTION_LETTERS[MovePromotion(move) & 7];
    *end = '\0';
    return MoveTextBuffer;
}

const char* MoveToPieceText(Move move) {
    if (move == NO_MOVE) return std::strcpy(MoveTextBuffer, "-");
    MoveTextBuffer[0] = PIECE_LETTERS[MovePiece(move)];
    *WriteSquares(MoveTextBuffer + 1, move) = '\0';
    return MoveTextBuffer;
}

bool LooksLikeMove(const char* text) {
    return IsFileLetter(text[0]) && IsRankDigit(text[1]) && IsFileLetter(text[2]) && IsRankDigit(text[3]);
}

const char* FindMoveText(const char* line) {
    constexpr char WORD[] = "usermove ";
    const char* text = line + std::strspn(line, " ");
    const char* word = WORD;
    while (*word != '\0' && FoldCase(*text) == *word) ++text, ++word;
    if (*word != '\0') return LooksLikeMove(line) ? line : nullptr;
    text += std::strspn(text, " ");
    return LooksLikeMove(text) ? text : nullptr;
}

Move TextToMove(char fromFile, char fromRank, char toFile, char toRank, char promotionLetter) {
    const int from = MakeSquare(FoldCase(fromFile) - 'a', fromRank - '1');
    const int to = MakeSquare(FoldCase(toFile) - 'a', toRank - '1');
    return BuildMove(from, to, board.PieceOn[from], board.PieceOn[to], PromotionOfLetter(promotionLetter));
}

Move TextToMove(const char* text) {
    return TextToMove(text[0], text[1], text[2], text[3], FoldCase(text[4]));
}

bool ReadMoveToken(std::FILE* stream) {
    int length = 0;
    int character = 0;
    while ((character = std::getc(stream)) != EOF && IsTokenCharacter(character)) {
        MoveToken[length++] = static_cast<char>(character);
        if (length == MOVE_TOKEN_LENGTH) {
            MoveToken[length] = '\0';
            Print("Error parsing move (move too long): %s...\n", MoveToken);
            FlushOutput();
            std::exit(2);
        }
    }
    MoveToken[length] = '\0';
    return character == EOF;
}
