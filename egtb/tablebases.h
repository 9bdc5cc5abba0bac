#pragma once

#include <cstdint>
#include <string>

// Endgame tablebases. The settings are written by the settings file and by UCI options.

extern int UseEGTB;          // setting: probe tablebases
extern std::string tb_path;  // setting: directories, separated by ',' or ';'
extern int EGTBHashSize;     // setting: bytes

// Written by RegisterTablebases.
extern int FoundPieces;          // the most men for which tables were found, 0 for none
extern int64_t TablebaseMemory;  // bytes used by index and decompression tables

// Looks for tables in the directories of the path, in place of those registered before, and sets FoundPieces.
void RegisterTablebases();
