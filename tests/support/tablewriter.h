#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "egtb/tableposition.h"
#include "egtb/tablevalue.h"

// Writes table files whose values are made up.

// The value of an entry in tables that are written whole: no two of them have the same ones.
TableValue MadeUpValue(const char* name, int sideToMove, int64_t index);

// The bytes that the file of a class must have.
int64_t TableFileBytes(const char* name, int sideToMove);

// Writes a whole file.
void WriteTable(const std::string& path, const char* name, int sideToMove);

// Writes a file of any length that holds draws, by taking up no room, and the entries that are given.
void WriteSparseTable(const std::string& path, int64_t bytes,
                      const std::map<int64_t, TableValue>& entries = {}, int entryBytes = 1);
