#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "egtb/tableclass.h"
#include "egtb/tablefile.h"

// The endgame tablebases that are in use. The settings are written by the settings file and by UCI options.

extern int UseEGTB;       // setting: probe tablebases
extern int EGTBHashSize;  // setting: bytes of the cache

// Setting: directories, separated by ',' or ';'. What is longer than the buffer is cut.
constexpr int TB_PATH_SIZE = 4096;
extern char tb_path[TB_PATH_SIZE];
void SetTablebasePath(const char* path);

// Where tables are looked for when nobody names a path: ANNOUNCED_TABLE_PATH or, where nothing is there, the
// directory "tablebases" beside the program if it holds anything.
constexpr char ANNOUNCED_TABLE_PATH[] = "c:\\tablebases\\";
std::string DefaultTablebasePath();

// Says of every file that is found what becomes of it, and what all of them take. Set by the UCI command
// "debug" and by tools.
extern int VerboseRegistration;

// The open files by the number of their class and by side to move; null where there is none. Written by the
// procedures below.
extern std::unique_ptr<TableFile> RegisteredTables[TABLE_CLASSES + 1][2];

// Written by the procedures below; AllocateTablebaseCache also sets FoundPieces to 0 when it fails.
extern int FoundPieces;          // the most men for which tables were found, 0 for none or to probe none
extern int64_t TablebaseMemory;  // bytes used by the tables that are registered, without the cache

// Looks for tables in the directories of the path, in place of those registered before, and sets FoundPieces.
// Not during a search; the cache is to be allocated anew. Of a class and side to move the first directory
// counts that has a good file; both sides need not lie in the same. Files that can't be good are reported and
// left out.
void RegisterTablebases();

// Closes all files. Nothing is found then.
void CloseTablebases();

// Gives up a table that has proved bad, for a reason that is reported, while the others stay in use.
void DisableTable(int classNumber, int sideToMove, int64_t place, const char* fault);

// Sets FoundPieces and TablebaseMemory to what the registered tables give.
void CountTablebases();
