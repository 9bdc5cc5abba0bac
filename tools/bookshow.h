#pragma once

#include <string>

// The commands that look at a book. They print to standard output; a book that can't be read, and a request
// that makes no sense, throws a BookError.

// "list": the book's moves in the position behind `moves` (coordinates or algebraic notation), which are
// played from `fen` or, if that is empty, from the initial position.
void ListBook(const std::string& bookPath, const std::string& moves, const std::string& fen);

// "export": the book as text, into the file or, without a name, to standard output.
void ExportBookTo(const std::string& bookPath, const std::string& textPath, int maxPlies);

// "check": every fault of the book; true if there is none.
bool CheckBookFile(const std::string& bookPath);
