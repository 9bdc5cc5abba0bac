#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "egtb/tableclass.h"
#include "egtb/tableerror.h"
#include "egtb/tablefile.h"
#include "egtb/tableindex.h"
#include "egtb/tablevalue.h"

// Whole tables in memory, for whoever makes or checks them.

// Where the file of a class and side to move is, or would be, in a directory, whatever the case of its
// letters.
std::string TablePath(const std::string& directory, const TableClass& tableClass, int sideToMove);

// A class with one side to move. What is not in the file, its broken end, is broken.
class LoadedTable {
  public:
    // Reads the file; throws TableError when it can't be read or has not the length of the class.
    LoadedTable(const std::string& directory, const TableClass& tableClass, int sideToMove);

    const TableIndex& Index() const { return file_.Index(); }
    TableValue Value(int64_t index) const;
    int64_t Bytes() const { return static_cast<int64_t>(codes_.size()); }

  private:
    TableFile file_;
    std::vector<uint8_t> codes_;
};

// The tables of several classes, both sides.
class TableStore {
  public:
    explicit TableStore(std::string directory) : directory_(std::move(directory)) {}

    const std::string& Directory() const { return directory_; }

    // Whether the files of the class are there, of the right length.
    bool HasFiles(const TableClass& tableClass) const;

    // Keeps these classes, and no others, in memory.
    void Load(const std::vector<int>& classNumbers);

    const LoadedTable& Table(int classNumber, int sideToMove) const;

    // What the tables have for a playable position of kings only or of a class in memory; throws TableError
    // for another. In a damaged table it may be broken.
    TableValue EntryOf(const TablePosition& position) const;

    // The same, but a broken entry throws TableError.
    TableValue ValueOf(const TablePosition& position) const;

  private:
    std::string directory_;
    std::unique_ptr<LoadedTable> tables_[TABLE_CLASSES + 1][2];
};

// The classes to which a capture or a promotion can lead, without kings only; in ascending order.
std::vector<int> SuccessorClasses(const TableClass& tableClass);

// These classes and all that they lead to, each after those that it leads to.
std::vector<int> WithSuccessors(const std::vector<int>& classNumbers);

// The bytes of both tables of a class.
int64_t TableBytes(const TableClass& tableClass);
