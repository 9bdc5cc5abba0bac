#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct TableBuildOptions {
    std::string Directory;
    int Threads = 1;
    int64_t MemoryBytes = 0;
    bool Verifies = false;  // whether each class is checked when it is made
};

// "build": makes the tables of the classes, and those that they lead to, which are not in the directory yet.
// Ctrl-C stops it at a place from which the next call goes on. True when all are there. Throws TableError.
bool BuildTables(const std::vector<int>& classNumbers, const TableBuildOptions& options);
