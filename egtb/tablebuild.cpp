#include "egtb/tablebuild.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "egtb/parallel.h"
#include "egtb/tablemoves.h"
#include "egtb/tablepath.h"
#include "platform/platform.h"
#include "platform/sharedfile.h"

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
    std::atomic_ref<int> last(lastStep_);
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
    if (half.Index.IndexOf(position) != number) return;
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
    if (best == NOTHING && movesLeft == 0) {
        const int us = position.SideToMove, them = ChangeSide(us);
        const bool isMate = IsAttacked(position, position.King(us), them, AllOccupied(position));
        best = isMate ? MatedIn(0) : TABLE_DRAW;
    }
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

// What wins in step_ moves makes the moves that lead to it losing ones.
void TableBuilder::SpreadWins() {
    ForAllOf(MateIn(step_), [&](const Half& half, int64_t number) {
        TablePosition position;
        half.Index.PositionAt(number, &position);
        VisitPredecessors(position,
                          [&](Half& before, int64_t place) { NoteLosingMove(before, place, step_); });
    });
}

// What is lost after step_ moves is won a move before.
void TableBuilder::SpreadLosses() {
    ForAllOf(MatedIn(step_), [&](Half& half, int64_t number) {
        if (Shared(half.MovesLeft, number).load(std::memory_order_relaxed) != 0) return;
        TablePosition position;
        half.Index.PositionAt(number, &position);
        NoteLength(step_ + 1);
        VisitPredecessors(position, [&](Half& before, int64_t place) { NoteWin(before, place, step_ + 1); });
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
    options_.Report({class_, step_, lastStep_, static_cast<int>(done * 100 / all)});
}

bool TableBuilder::Build() {
    builder_ = std::this_thread::get_id();
    if (!Resume()) {
        BeginPass();
        LookAtAll();
        if (IsStopped()) return false;
    }
    auto saved = std::chrono::steady_clock::now();
    while (step_ <= lastStep_) {
        const bool isDue = std::chrono::steady_clock::now() - saved > SAVE_INTERVAL;
        if (options_.KeepsWork && (isDue || IsStopped())) {
            SaveWork();
            saved = std::chrono::steady_clock::now();
        }
        if (IsStopped()) return false;
        BeginPass();
        if (isSpreadingLosses_) {
            SpreadLosses();
            ++step_;
        } else {
            SpreadWins();
        }
        isSpreadingLosses_ = !isSpreadingLosses_;
    }
    SettleDraws();
    FillSecondNumbers();
    return true;
}

namespace {

// The beginning of a work file; codes and counts of each half follow, then their checksum. It is read by the
// machine that has written it.
struct WorkHeader {
    char Magic[24] = "Kestrovan table at work";
    char Name[8] = {};
    int32_t Step = 0, IsSpreadingLosses = 0, LastStep = 0, HalfCount = 0;
    int64_t Sizes[2] = {};  // entries
};

// FNV-1a over words of eight bytes.
uint64_t Checksum(uint64_t sum, const void* bytes, size_t count) {
    const auto* next = static_cast<const unsigned char*>(bytes);
    for (uint64_t word; count >= sizeof word; count -= sizeof word, next += sizeof word) {
        std::memcpy(&word, next, sizeof word);
        sum = (sum ^ word) * 0x100000001B3u;
    }
    for (; count > 0; --count) sum = (sum ^ *next++) * 0x100000001B3u;
    return sum;
}
constexpr uint64_t FIRST_SUM = 0xCBF29CE484222325u;

// A file that stands under its name only when it is complete.
class NewFile {
  public:
    explicit NewFile(std::string name) : name_(std::move(name)), out_(name_ + ".new", std::ios::binary) {}
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile() {
        if (!isComplete_) std::remove((name_ + ".new").c_str());
    }

    void Write(const void* bytes, size_t count) {
        out_.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(count));
    }

    void Complete() {
        out_.close();
        std::error_code error;
        if (out_) std::filesystem::rename(name_ + ".new", name_, error);
        if (!out_ || error) throw TableError(name_ + " can't be written");
        isComplete_ = true;
    }

  private:
    const std::string name_;
    std::ofstream out_;
    bool isComplete_ = false;
};

}  // namespace

std::string TableBuilder::WorkName() const {
    return JoinPath(successors_.Directory(), std::string(class_.Name) + ".work");
}

void TableBuilder::SaveWork() const {
    WorkHeader header;
    std::memcpy(header.Name, class_.Name, sizeof class_.Name);
    header.Step = step_;
    header.IsSpreadingLosses = isSpreadingLosses_;
    header.LastStep = lastStep_;
    header.HalfCount = static_cast<int32_t>(halves_.size());
    for (size_t i = 0; i < halves_.size(); ++i) header.Sizes[i] = halves_[i].Index.Size();
    uint64_t sum = Checksum(FIRST_SUM, &header, sizeof header);
    NewFile file(WorkName());
    file.Write(&header, sizeof header);
    for (const Half& half : halves_) {
        const size_t codeBytes = half.Codes.size() * sizeof half.Codes[0];
        sum = Checksum(Checksum(sum, half.Codes.data(), codeBytes), half.MovesLeft.data(),
                       half.MovesLeft.size());
        file.Write(half.Codes.data(), codeBytes);
        file.Write(half.MovesLeft.data(), half.MovesLeft.size());
    }
    file.Write(&sum, sizeof sum);
    file.Complete();
}

bool TableBuilder::Resume() {
    SharedFile file;
    if (!options_.KeepsWork || !file.Open(WorkName(), SharedFile::READ_ONLY)) return false;
    WorkHeader header;
    const WorkHeader blank;
    if (file.ReadAt(0, &header, sizeof header) != sizeof header) return false;
    if (std::memcmp(header.Magic, blank.Magic, sizeof blank.Magic) != 0) return false;
    if (std::memcmp(header.Name, class_.Name, sizeof class_.Name) != 0) return false;
    if (header.HalfCount != static_cast<int32_t>(halves_.size())) return false;
    uint64_t sum = Checksum(FIRST_SUM, &header, sizeof header), stored = 0;
    int64_t place = sizeof header;
    const auto read = [&](void* bytes, size_t count) {
        if (file.ReadAt(place, bytes, count) != count) return false;
        place += static_cast<int64_t>(count);
        sum = Checksum(sum, bytes, count);
        return true;
    };
    for (size_t i = 0; i < halves_.size(); ++i) {
        Half& half = halves_[i];
        if (header.Sizes[i] != half.Index.Size()) return false;
        if (!read(half.Codes.data(), half.Codes.size() * sizeof half.Codes[0])) return false;
        if (!read(half.MovesLeft.data(), half.MovesLeft.size())) return false;
    }
    if (file.ReadAt(place, &stored, sizeof stored) != sizeof stored || stored != sum) return false;
    step_ = header.Step;
    isSpreadingLosses_ = header.IsSpreadingLosses;
    lastStep_ = header.LastStep;
    return true;
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
    NewFile file(JoinPath(successors_.Directory(), TableName(class_, side)));
    file.Write(codes.data(), codes.size());
    file.Complete();
}

void TableBuilder::WriteFiles() const {
    for (size_t i = 0; i < halves_.size(); ++i) WriteFile(halves_[i], static_cast<int>(i));
    std::remove(WorkName().c_str());
}
