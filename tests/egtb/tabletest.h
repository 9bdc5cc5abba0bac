#pragma once

#include <string>
#include <utility>

#include "core/attacks.h"
#include "egtb/tablebases.h"
#include "egtb/tablecache.h"
#include "egtb/tablereport.h"
#include "tests/support/tablewriter.h"
#include "tests/support/tempdirectory.h"
#include "tests/support/walker.h"

// Every test has an empty directory for its tables and begins and ends with none registered.
class TableTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        Said.clear();
        TableReporter = [](const char* line) { Said += std::string(line) + "\n"; };
    }
    void TearDown() override {
        FreeTablebaseCache();
        CloseTablebases();
        SetTablebasePath("");
        EGTBHashSize = 1048576;
        VerboseRegistration = 0;
        TableReporter = reporter_;
    }

    // Registers what stands in the directories; returns what is said.
    std::string Register(const std::string& path) {
        SetTablebasePath(path.c_str());
        RegisterTablebases();
        return Take();
    }
    std::string Register() { return Register(directory_.Path()); }

    static std::string Take() { return std::exchange(Said, ""); }

    // Writes whole tables of a class, for both sides to move.
    void WriteTables(const char* name) const {
        WriteTable(PathOf(std::string(name) + ".nbw"), name, WHITE);
        if (TableClasses[FindTableClass(name)].HasBlackFile())
            WriteTable(PathOf(std::string(name) + ".nbb"), name, BLACK);
    }

    static const TableFile* Registered(const char* name, int side) {
        return RegisteredTables[FindTableClass(name)][side].get();
    }

    std::string PathOf(const std::string& name) const { return directory_.FilePath(name); }

  private:
    static inline std::string Said;
    void (*const reporter_)(const char* line) = TableReporter;
    TempDirectory directory_;
};
