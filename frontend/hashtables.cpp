#include "frontend/hashtables.h"

#include <algorithm>
#include <cstdlib>

#include "eval/pawnhash.h"
#include "frontend/settings.h"
#include "platform/output.h"
#include "search/evalcache.h"
#include "search/transposition.h"

namespace {

void RequireMemory(bool isAllocated) {
    if (isAllocated) return;
    Print("An error occured while memory allocation!\n");
    FlushOutput();
    std::exit(1);
}

}  // namespace

void AllocateHashTables() {
    ReallocateTransposition();
    ReallocatePawnHash();
    RequireMemory(AllocateEvalCache());
}

void ResizeTransposition(int megabytes) {
    // A number beyond what is announced must not exhaust the machine.
    HashEntries = TranspositionEntries(std::clamp(megabytes, 0, LARGEST_TABLE));
    ReallocateTransposition();
}

void ReallocateTransposition() {
    RequireMemory(AllocateTransposition());
}

void ReallocatePawnHash() {
    RequireMemory(AllocatePawnHash());
}

void FreeHashTables() {
    FreeTransposition();
    FreePawnHash();
    FreeEvalCache();
}

void ClearHashTables() {
    ClearHash();
    ClearPawnHash();
    ClearEvalCache();
}
