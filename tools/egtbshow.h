#pragma once

#include <string>
#include <vector>

// The commands that look at tables. They print to standard output; what can't be read throws a TableError.

// "verify": compares every position of the classes with its moves; false when one of them has a fault or
// can't be read.
bool VerifyTables(const std::vector<int>& classNumbers, const std::string& directory, int threads);

// "stats": wins, draws and losses, the longest mates and the mutual zugzwangs of the classes; false when one
// of them can't be read.
bool ShowStatistics(const std::vector<int>& classNumbers, const std::string& directory, int threads);

// "probe": the value of a position and of each of its moves. False when the tables don't have it.
bool ShowPosition(const std::string& fen, const std::string& directory);

// "list": what the program finds in the directory; false when that is nothing.
bool ListTables(const std::string& directory);

// The classes whose tables are in the directory.
std::vector<int> FindClasses(const std::string& directory);
