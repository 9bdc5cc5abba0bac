#pragma once

#include <map>
#include <string>
#include <vector>

#include "egtb/tableclass.h"

// Where the files of tables are looked for, and what they are called.

// The directories of a path, which ',' and ';' separate, without the blanks around them; in order, empty ones
// left out.
std::vector<std::string> SplitTablePath(const std::string& path);

// The name of the file of a class and side to move, or of one of the parts that it is split into, counted
// from 0: "kqk.nbw", "krrkrr.0.nbb". A compressed file has the same name with COMPRESSED_ENDING behind it.
constexpr int WHOLE_FILE = -1;
std::string TableName(const TableClass& tableClass, int sideToMove, int part = WHOLE_FILE);
constexpr char COMPRESSED_ENDING[] = ".emd";

// What stands in a directory, as it was when this was made.
class TableDirectory {
  public:
    explicit TableDirectory(const std::string& path);

    // Whether anything there has a name that begins as those of the class's files.
    bool MayHave(const TableClass& tableClass) const;

    // The path of what has a name, whatever the case of its letters; empty when there is nothing.
    std::string Find(const std::string& name) const;

  private:
    std::string path_;
    std::map<std::string, std::string> names_;  // by themselves in small letters
};
