#include "egtb/tablebuild.h"

#include <atomic>
#include <chrono>
#include <cstdio>

#include "egtb/newfile.h"
#include "egtb/parallel.h"
#include "egtb/tablemoves.h"
#include "egtb/tablepath.h"
#include "platform/platform.h"

namespace {

constexpr int CODE_BYTES = 2;
constexpr int16_t SECOND_NUMBER = INT16_MIN;
constexpr auto SAVE_INTERVAL = std::chrono::minutes(10);

constexpr int16_t Encode(TableValue value) {
    return static_cast<int16_t>(CodeOfValue(value, CODE_BYTES));
}
constexpr TableValue Decode(int16_t code) {
    return ValueOfCode(code, CODE_BYTES);
}

template <typename T>
std::atomic_ref<T> Shared(std::vector<T>& values, int64_t number) {
    return std::atomic_ref<T>(values[static_cast<size_t>(number)]);
}

}  // namespace

TableBuilder::TableBuilder(const TableClass& tableClass, const TableStore& successors, Options options)
    : class_(tableClass), successors_(successors), options_(std::move(options)) {
    for (const int side : {WHITE, BLACK}) {
        if (side == BLACK && !tableClass.HasBlackFile()) continue;
        Half& half = halves_.emplace_back(Half{TableIndex(tableClass, side), {}, {}});
        half.Codes.resize(static_cast<size_t>(half.Index.Size()));
        half.MovesLeft.resize(static_cast<size_t>(half.Index.Size()));
    }
}

int64_t TableBuilder::WorkBytes(const TableClass& tableClass) {
    int64_t entries = 0;
    for (const int side : {WHITE, BLACK}) {
        if (side == WHITE || tableClass.HasBlackFile()) entries += TableIndex(tableClass, side).Size();
    }
    return entries * static_cast<int64_t>(sizeof(int16_t) + sizeof(uint8_t));
}

// The number of a position of the class in the half of its side to move.
int64_t TableBuilder::Locate(TablePosition* position) const {
    const int side = TableSide(class_, false, position);
    return halves_[static_cast<size_t>(side)].Index.IndexOf(*position);
}

void TableBuilder::NoteLength(int moves) {
    std::atomic_ref<int> last(next_.LastStep);
    for (int seen = last; seen < moves && !last.compare_exchange_weak(seen, moves);) {
    }
}

// Values a position by its captures and promotions and counts its other moves.
void TableBuilder::LookAt(Half& half, int64_t number) {
    TablePosition position;
    int16_t& code = half.Codes[static_cast<size_t>(number)];
    code = Encode(TABLE_BROKEN);
    if (!half.Index.PositionAt(number, &position)) return;
    code = SECOND_NUMBER;
    if (half.Index.IsSecondNumber(number, position)) return;
    const bool isSymmetric = IsSymmetric(position);
    constexpr TableValue NOTHING = TABLE_BROKEN;
    TableValue best = NOTHING;
    int movesLeft = 0;
    VisitMoves(position, [&](const TableMove& move, const TablePosition& after) {
        if (move.LeavesClass) {
            const TableValue value = BeforeMove(successors_.ValueOf(after));
            if (best == NOTHING || IsBetter(value, best)) best = value;
        } else if (!isSymmetric || !IsSecondImage(move.From, move.To)) {
            ++movesLeft;
        }
    });
    if (best == NOTHING && movesLeft == 0) best = ValueWithoutMoves(position);
    // A move that draws saves the position for good.
    if (best == TABLE_DRAW) ++movesLeft;
    if (best == NOTHING) best = TABLE_DRAW;
    code = Encode(best);
    half.MovesLeft[static_cast<size_t>(number)] = static_cast<uint8_t>(movesLeft);
    if (best != TABLE_DRAW) NoteLength(MateMoves(best));
}

// Calls visit(half, number) for all entries, in all threads.
template <typename Visit>
void TableBuilder::ForAll(Visit visit) {
    for (Half& half : halves_) {
        ForAllParts(half.Index.Size(), options_.Threads, [&](int64_t begin, int64_t end) {
            for (int64_t number = begin; number < end; ++number) visit(half, number);
            NotePart(end - begin);
        });
    }
}

void TableBuilder::LookAtAll() {
    ForAll([this](Half& half, int64_t number) {
        if (!IsStopped()) LookAt(half, number);
    });
}

void TableBuilder::NoteWin(Half& half, int64_t number, int moves) {
    const std::atomic_ref<int16_t> code = Shared(half.Codes, number);
    const int16_t win = Encode(MateIn(moves));
    for (int16_t seen = code.load(std::memory_order_relaxed); seen != SECOND_NUMBER && seen < win;) {
        // Longer wins have lower codes, draws and what was taken for a loss, too; broken entries the highest.
        if (code.compare_exchange_weak(seen, win, std::memory_order_relaxed)) break;
    }
}

void TableBuilder::NoteLosingMove(Half& half, int64_t number, int moves) {
    const std::atomic_ref<int16_t> code = Shared(half.Codes, number);
    const TableValue value = Decode(code.load(std::memory_order_relaxed));
    if (value == TABLE_BROKEN || IsWin(value)) return;
    const std::atomic_ref<uint8_t> movesLeft = Shared(half.MovesLeft, number);
    if (movesLeft.fetch_sub(1, std::memory_order_relaxed) != 1) return;
    // The last move is gone; a capture or a promotion may hold out longer than this one.
    const int length = IsLoss(value) ? std::max(moves, MateMoves(value)) : moves;
    code.store(Encode(MatedIn(length)), std::memory_order_relaxed);
    NoteLength(length);
}

// Calls visit(half, number) for all positions that have the value.
template <typename Visit>
void TableBuilder::ForAllOf(TableValue value, Visit visit) {
    ForAll([visit, wanted = Encode(value)](Half& half, int64_t number) {
        if (Shared(half.Codes, number).load(std::memory_order_relaxed) == wanted) visit(half, number);
    });
}

// Calls visit(half, number) for all positions from which a move leads here, as often as it is counted there.
template <typename Visit>
void TableBuilder::VisitPredecessors(const TablePosition& position, Visit visit) {
    const bool isSymmetric = IsSymmetric(position);
    VisitUnmoves(position, [&](int from, int to, const TablePosition& before) {
        if (isSymmetric && IsSecondImage(from, to)) return;
        TablePosition placed = before;
        const int64_t number = Locate(&placed);
        if (number >= 0) visit(HalfOf(placed.SideToMove), number);
    });
}

// What wins in next_.Step moves makes the moves that lead to it losing ones.
void TableBuilder::SpreadWins() {
    ForAllOf(MateIn(next_.Step), [&](const Half& half, int64_t number) {
        TablePosition position;
        half.Index.PositionAt(number, &position);
        VisitPredecessors(position,
                          [&](Half& before, int64_t place) { NoteLosingMove(before, place, next_.Step); });
    });
}

// What is lost after next_.Step moves is won a move before.
void TableBuilder::SpreadLosses() {
    ForAllOf(MatedIn(next_.Step), [&](Half& half, int64_t number) {
        if (Shared(half.MovesLeft, number).load(std::memory_order_relaxed) != 0) return;
        TablePosition position;
        half.Index.PositionAt(number, &position);
        NoteLength(next_.Step + 1);
        VisitPredecessors(position,
                          [&](Half& before, int64_t place) { NoteWin(before, place, next_.Step + 1); });
    });
}

// What has a move left that nothing refutes is a draw, however its captures and promotions would end.
void TableBuilder::SettleDraws() {
    ForAll([](Half& half, int64_t number) {
        int16_t& code = half.Codes[static_cast<size_t>(number)];
        if (code == SECOND_NUMBER || half.MovesLeft[static_cast<size_t>(number)] == 0) return;
        if (IsLoss(Decode(code))) code = Encode(TABLE_DRAW);
    });
}

void TableBuilder::FillSecondNumbers() {
    ForAll([](Half& half, int64_t number) {
        int16_t& code = half.Codes[static_cast<size_t>(number)];
        TablePosition position;
        if (code != SECOND_NUMBER || !half.Index.PositionAt(number, &position)) return;
        code = half.Codes[static_cast<size_t>(half.Index.IndexOf(position))];
    });
}

void TableBuilder::BeginPass() {
    done_ = 0;
    reported_ = {};
    NotePart(0);
}

void TableBuilder::NotePart(int64_t entries) {
    using std::chrono::steady_clock;
    constexpr auto REPORT_INTERVAL = std::chrono::seconds(1);
    const int64_t done = done_ += entries;
    if (!options_.Report || std::this_thread::get_id() != builder_) return;
    if (steady_clock::now() - reported_ < REPORT_INTERVAL) return;
    reported_ = steady_clock::now();
    int64_t all = 0;
    for (const Half& half : halves_) all += half.Index.Size();
    const int lastStep = std::atomic_ref<int>(next_.LastStep);
    options_.Report({class_, next_.Step, lastStep, static_cast<int>(done * 100 / all)});
}

bool TableBuilder::Build() {
    builder_ = std::this_thread::get_id();
    if (!options_.KeepsWork || !LoadWork(WorkName(), class_.Name, &next_, Entries())) {
        BeginPass();
        LookAtAll();
        if (IsStopped()) return false;
    }
    auto saved = std::chrono::steady_clock::now();
    while (next_.Step <= next_.LastStep) {
        const bool isDue = std::chrono::steady_clock::now() - saved > SAVE_INTERVAL;
        if (options_.KeepsWork && (isDue || IsStopped())) {
            KeepWork();
            saved = std::chrono::steady_clock::now();
        }
        if (IsStopped()) return false;
        BeginPass();
        if (next_.IsLosses) {
            SpreadLosses();
            ++next_.Step;
        } else {
            SpreadWins();
        }
        next_.IsLosses = !next_.IsLosses;
    }
    BeginPass();
    SettleDraws();
    BeginPass();
    FillSecondNumbers();
    return true;
}

std::string TableBuilder::WorkName() const {
    return JoinPath(successors_.Directory(), std::string(class_.Name) + ".work");
}

// While there is time to go on, a full disk is no reason to give the work up.
void TableBuilder::KeepWork() {
    try {
        SaveWork(WorkName(), class_.Name, next_, Entries());
    } catch (const TableError& error) {
        if (IsStopped()) throw;
        if (options_.Warn) options_.Warn(error.what());
    }
}

std::vector<WorkEntries> TableBuilder::Entries() {
    std::vector<WorkEntries> entries;
    for (Half& half : halves_) entries.push_back({half.Codes, half.MovesLeft});
    return entries;
}

void TableBuilder::WriteFile(const Half& half, int side) const {
    const int bytes = class_.EntryBytes();
    std::vector<uint8_t> codes;
    codes.reserve(static_cast<size_t>(half.Index.FileEntries() * bytes));
    for (int64_t number = 0; number < half.Index.FileEntries(); ++number) {
        const TableValue value = Decode(half.Codes[static_cast<size_t>(number)]);
        if (value != TABLE_BROKEN && MateMoves(value) > LongestMate(bytes)) {
            throw TableError(std::string(class_.Name) + " has a mate that is too long for its entries");
        }
        const int code = CodeOfValue(value, bytes);
        codes.push_back(static_cast<uint8_t>(code));
        if (bytes == CODE_BYTES) codes.push_back(static_cast<uint8_t>(code >> 8));
    }
    NewFile file(TablePath(successors_.Directory(), class_, side));
    file.Write(codes.data(), codes.size());
    file.Complete();
}

void TableBuilder::WriteFiles() const {
    for (size_t i = 0; i < halves_.size(); ++i) WriteFile(halves_[i], static_cast<int>(i));
    std::remove(WorkName().c_str());
    NewFile::RemoveUnfinished(WorkName());
}
