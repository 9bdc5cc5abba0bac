#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "egtb/tableindex.h"
#include "egtb/tablestore.h"
#include "egtb/tablevalue.h"
#include "egtb/tablework.h"

// Makes the tables of a class by retrograde analysis.
//
// First every position is looked at once: what captures and promotions lead to is known from smaller classes,
// and the other moves are counted. Then mates spread backwards, a move longer at every step. A move into a
// position that is lost for the opponent wins; a position is lost when the last of its moves has turned out
// to lose. Values found in the step of their length are final: nothing shorter is left. Within a pass the
// order does not matter, so the threads need no locks and the result is always the same.
class TableBuilder {
  public:
    struct Progress {
        const TableClass& Class;
        int Step = 0;      // moves to mate; 0 at the first look
        int LastStep = 0;  // there will be this many at least
        int Percent = 0;   // of the pass
    };
    struct Options {
        int Threads = 1;
        // Whether work that is stopped, or lasts long, is kept in a file in the store's directory.
        bool KeepsWork = true;
        // Set from outside to stop the work: the first look at once, other passes when they are complete.
        const std::atomic<bool>* Stop = nullptr;
        // Called now and then from the thread of Build.
        std::function<void(const Progress&)> Report = {};
        // Called when work could not be put by, and goes on without that.
        std::function<void(const std::string&)> Warn = {};
    };

    // The successor classes must be loaded in the store.
    TableBuilder(const TableClass& tableClass, const TableStore& successors, Options options);

    // Makes the tables, going on from the work file if that has a state of this class. False when it was
    // stopped; the work file then has the state, once the first look is complete. Throws TableError when that
    // can't be written.
    bool Build();

    // Writes the files of a built class into the store's directory, each under its name when it is complete,
    // and removes the work file.
    void WriteFiles() const;

    // Bytes that building a class takes, apart from its successors.
    static int64_t WorkBytes(const TableClass& tableClass);

  private:
    // The positions with one side to move.
    struct Half {
        TableIndex Index;
        // By number: a code of two bytes (see tablevalue.h). A loss whose moves have not all been counted
        // down is the longest way to lose found so far; SECOND_NUMBER marks the second number of a position.
        std::vector<int16_t> Codes;
        std::vector<uint8_t> MovesLeft;  // moves that may save the position yet
    };

    Half& HalfOf(int side) { return halves_[static_cast<size_t>(side)]; }
    int64_t Locate(TablePosition* position) const;
    void LookAtAll();
    void LookAt(Half& half, int64_t number);
    void SpreadWins();
    void SpreadLosses();
    void NoteWin(Half& half, int64_t number, int moves);
    void NoteLosingMove(Half& half, int64_t number, int moves);
    void NoteLength(int moves);
    template <typename Visit>
    void ForAll(Visit visit);
    template <typename Visit>
    void ForAllOf(TableValue value, Visit visit);
    template <typename Visit>
    void VisitPredecessors(const TablePosition& position, Visit visit);
    void SettleDraws();
    void FillSecondNumbers();
    void NotePart(int64_t entries);
    void BeginPass();
    bool IsStopped() const { return options_.Stop != nullptr && *options_.Stop; }
    std::string WorkName() const;
    void KeepWork();
    std::vector<WorkEntries> Entries();
    void WriteFile(const Half& half, int side) const;

    const TableClass& class_;
    const TableStore& successors_;
    const Options options_;
    std::vector<Half> halves_;  // one where the sides are alike
    WorkState next_;            // what is to be done next
    // How far the pass is, in entries, and when that was reported last.
    std::atomic<int64_t> done_ = 0;
    std::thread::id builder_;
    std::chrono::steady_clock::time_point reported_;
};
