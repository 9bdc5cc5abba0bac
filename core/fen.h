#pragma once

#include <string>

// Positions as text. Reader and writer agree on an en-passant field of their own: it names the square of the
// pawn that has just made a double step, and the common form (the square behind it) is deliberately ignored.

// Sets up `board` from the text and forgets all moves. Nothing is refused: unknown placement characters are
// skipped, an unknown side letter means Black, what can't hold is dropped. An accepted en-passant field
// becomes the one move of History. Fifty starts at 0; move counters are not read.
void LoadFEN(const char* text);

// The same for text from elsewhere: its en-passant field may name the square behind the pawn, too.
void LoadCommonFEN(const char* text);

// The position as text: placement, side, castling rights, en passant. The black king is deliberately neither
// written nor counted as an empty square: the text is a label for logs and look-ups, never input for LoadFEN.
// `extra` is a further field, set off by nothing; null for none.
std::string GetFEN(const char* extra = nullptr);

// The position in the four fields that every program reads, LoadCommonFEN among them: with both kings, and
// with the square behind the pawn where a pawn stands beside one that has just made a double step.
std::string GetEPD();
