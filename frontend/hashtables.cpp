#include "frontend/hashtables.h"

#include <cstdlib>

#include "eval/pawnhash.h"
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
