#pragma once

#include <cstdint>

// Endgame tablebases. The settings are written by the settings file and by UCI options.

extern int UseEGTB;       // setting: probe tablebases
extern int EGTBHashSize;  // setting: bytes

// Setting: directories, separated by ',' or ';'. What is longer than the buffer is cut.
constexpr int TB_PATH_SIZE = 4096;
extern char tb_path[TB_PATH_SIZE];
void SetTablebasePath(const char* path);

// Written by RegisterTablebases.
extern int FoundPieces;          // the most men for which tables were found, 0 for none
extern int64_t TablebaseMemory;  // bytes used by index and decompression tables

// Looks for tables in the directories of the path, in place of those registered before, and sets FoundPieces.
void RegisterTablebases();
