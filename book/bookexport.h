#pragma once

#include <cstdio>

#include "book/bookimage.h"

// Writes the book as text: the tree of its moves from the initial position, so many plies deep, each position
// once, where it is reached first; elsewhere its number tells where. Whether that worked is for the caller to
// ask of the stream. Uses `board`.
void ExportBook(const BookImage& book, int maxPlies, std::FILE* stream);
