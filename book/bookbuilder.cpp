#include "book/bookbuilder.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <system_error>
#include <utility>

#include "book/bookerror.h"
#include "book/bookformat.h"
#include "book/bookkeys.h"
#include "book/littleendian.h"
#include "book/scratchfile.h"
#include "core/board.h"
#include "core/makemove.h"

namespace {

constexpr size_t BUFFER_BYTES = size_t{1} << 16;
constexpr int WHOLE_PERCENT = 100;

// Adds to a scratch file in pieces of a sensible size.
class BufferedFile {
  public:
    explicit BufferedFile(const std::string& path) : file_(path) {}

    int64_t Length() const { return file_.Length() + static_cast<int64_t>(buffer_.size()); }

    void Append(const std::vector<uint8_t>& bytes) {
        buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
        if (buffer_.size() >= BUFFER_BYTES) Flush();
    }

    // The whole file, to be read.
    ScratchFile& Finish() {
        Flush();
        return file_;
    }

  private:
    void Flush() {
        file_.Append(buffer_.data(), buffer_.size());
        buffer_.clear();
    }

    ScratchFile file_;
    std::vector<uint8_t> buffer_;
};

bool PassesFilters(const MoveRecord& move, uint64_t positionGames, const BookOptions& options) {
    const double games = move.Games();
    const double score = move.Good * 100.0 / std::max<double>(1, uint64_t{move.Good} + move.Bad);
    return games > 0 && games >= options.MinGames &&
           games * WHOLE_PERCENT >= options.MinShare * static_cast<double>(positionGames) &&
           score >= options.MinScore;
}

// A position's moves that the book gets, the most played first.
std::vector<MoveRecord> ChooseMoves(const std::vector<MoveRecord>& moves, uint64_t positionGames,
                                    const BookOptions& options) {
    std::vector<MoveRecord> chosen;
    for (const MoveRecord& move : moves) {
        if (PassesFilters(move, positionGames, options)) chosen.push_back(move);
    }
    if (chosen.empty()) {
        for (const MoveRecord& move : moves) {
            if (move.IsLine == 0) continue;
            chosen.push_back(move);
            chosen.back().Good = chosen.back().Bad = 0;
        }
    }
    std::stable_sort(chosen.begin(), chosen.end(),
                     [](const MoveRecord& a, const MoveRecord& b) { return a.Games() > b.Games(); });
    if (chosen.size() > BOOK_LIST_LIMIT) chosen.resize(BOOK_LIST_LIMIT);
    return chosen;
}

// The weight of a move in percent of its position's games; lines share alike.
uint8_t Weight(const MoveRecord& move, uint64_t positionGames, size_t lines) {
    const double share = move.Games() > 0
                             ? static_cast<double>(move.Games()) / static_cast<double>(positionGames)
                             : 1.0 / static_cast<double>(lines);
    return static_cast<uint8_t>(std::clamp<long>(std::lround(share * WHOLE_PERCENT), 1, WHOLE_PERCENT));
}

// The list of a position's moves as the book has it; empty for none.
std::vector<uint8_t> MakeList(const std::vector<MoveRecord>& moves, const BookOptions& options) {
    uint64_t games = 0;
    for (const MoveRecord& move : moves) games += move.Games();
    const std::vector<MoveRecord> chosen = ChooseMoves(moves, games, options);
    std::vector<uint8_t> list;
    if (chosen.empty()) return list;
    std::vector<MoveResults> results;
    for (const MoveRecord& move : chosen) results.push_back({move.Good, move.Bad});
    ScaleResults(results, static_cast<uint32_t>(options.MaxCount));
    list.push_back(static_cast<uint8_t>(chosen.size()));
    for (size_t i = 0; i < chosen.size(); ++i) {
        list.push_back(chosen[i].From);
        list.push_back(chosen[i].To);
        if (options.Version == 0) {
            list.push_back(Weight(chosen[i], games, chosen.size()));
        } else {
            list.push_back(static_cast<uint8_t>(results[i].Good));
            list.push_back(static_cast<uint8_t>(results[i].Bad));
        }
    }
    return list;
}

// Index and lists on their way into the book. The places in the index count from the first list.
class BookParts {
  public:
    BookParts(const BookOptions& options, const std::string& scratchPath)
        : options_(options), index_(scratchPath + "index"), lists_(scratchPath + "lists") {}

    // Takes the moves of the positions in order; Finish ends the last position.
    void Take(const MoveRecord& move) {
        if (!moves_.empty() && !moves_.back().IsSamePosition(move)) Finish();
        moves_.push_back(move);
    }

    void Finish() {
        if (moves_.empty()) return;
        const std::vector<uint8_t> list = MakeList(moves_, options_);
        if (!list.empty()) {
            std::vector<uint8_t> record(BOOK_RECORD_BYTES);
            PutWord(&record[0], static_cast<uint32_t>(moves_[0].Key1));
            PutWord(&record[4], static_cast<uint32_t>(moves_[0].Key2));
            PutWord(&record[8], static_cast<uint32_t>(lists_.Length()));
            index_.Append(record);
            lists_.Append(list);
            ++positions_;
            moveCount_ += list[0];
            if (Totals().Bytes > std::numeric_limits<uint32_t>::max()) {
                throw BookError("the book would pass four gigabytes; filter more of its moves");
            }
        }
        moves_.clear();
    }

    BookTotals Totals() const {
        return {positions_, moveCount_, BOOK_HEADER_BYTES + index_.Length() + lists_.Length()};
    }

    // Writes the whole book.
    void Write(std::ostream& stream) {
        std::vector<uint8_t> header(BOOK_HEADER_BYTES);
        std::copy_n(BOOK_MAGIC, BOOK_MAGIC_BYTES, header.begin());
        PutWord(&header[BOOK_VERSION_PLACE], static_cast<uint32_t>(options_.Version));
        PutWord(&header[BOOK_COUNT_PLACE], static_cast<uint32_t>(positions_));
        WriteBytes(stream, header);
        const auto listsPlace = static_cast<uint32_t>(BOOK_HEADER_BYTES + index_.Length());
        Copy(index_.Finish(), stream, [=](std::vector<uint8_t>& bytes) {
            for (size_t i = 8; i < bytes.size(); i += BOOK_RECORD_BYTES) {
                PutWord(&bytes[i], GetWord(&bytes[i]) + listsPlace);
            }
        });
        Copy(lists_.Finish(), stream, [](std::vector<uint8_t>&) {});
    }

  private:
    static void WriteBytes(std::ostream& stream, const std::vector<uint8_t>& bytes) {
        stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }

    // Copies in pieces of whole index records, each changed on its way.
    template <typename Change>
    static void Copy(ScratchFile& file, std::ostream& stream, Change change) {
        constexpr int64_t PIECE_BYTES = BUFFER_BYTES / BOOK_RECORD_BYTES * BOOK_RECORD_BYTES;
        std::vector<uint8_t> piece;
        for (int64_t place = 0; place < file.Length(); place += PIECE_BYTES) {
            piece.resize(static_cast<size_t>(std::min(PIECE_BYTES, file.Length() - place)));
            file.Read(place, piece.data(), piece.size());
            change(piece);
            WriteBytes(stream, piece);
        }
    }

    BookOptions options_;
    BufferedFile index_, lists_;
    std::vector<MoveRecord> moves_;          // of the position that is being read
    int64_t positions_ = 0, moveCount_ = 0;  // in the book so far
};

}  // namespace

void ScaleResults(std::vector<MoveResults>& moves, uint32_t limit) {
    uint32_t most = 0;
    for (const MoveResults& move : moves) most = std::max({most, move.Good, move.Bad});
    if (most <= limit) return;
    for (MoveResults& move : moves) {
        const MoveResults old = move;
        for (uint32_t* count : {&move.Good, &move.Bad}) {
            *count = static_cast<uint32_t>((uint64_t{*count} * limit + most / 2) / most);
        }
        if (move.Good > 0 || move.Bad > 0 || (old.Good == 0 && old.Bad == 0)) continue;
        move.Good = old.Good >= old.Bad;
        move.Bad = old.Bad >= old.Good;
    }
}

namespace {

// Where a book of the name is to stand: a link is followed, and nothing but a file replaced.
std::string BookPlace(const std::string& path) {
    if (!std::filesystem::exists(path)) return path;
    if (!std::filesystem::is_regular_file(path)) throw BookError(path + " is no file");
    return std::filesystem::canonical(path).string();
}

}  // namespace

BookBuilder::BookBuilder(const BookOptions& options, const std::string& path)
    : options_(options),
      path_(BookPlace(path)),
      records_(static_cast<size_t>(options.MemoryBytes) / sizeof(MoveRecord), path_ + ".tmp-run") {}

GameUse BookBuilder::AddGame(const PgnGame& game) {
    MoveRecord results[2];  // by the mover's side
    switch (game.Result) {
        case GameResult::UNKNOWN:
            return game.HasSetUp ? GameUse::SET_UP : GameUse::NO_RESULT;
        case GameResult::WHITE_WINS:
            results[WHITE].Good = results[BLACK].Bad = 2;
            break;
        case GameResult::BLACK_WINS:
            results[BLACK].Good = results[WHITE].Bad = 2;
            break;
        case GameResult::DRAWN:
            for (MoveRecord& record : results) record.Good = record.Bad = 1;
            break;
    }
    return AddMoves(game, results);
}

GameUse BookBuilder::AddLine(const PgnGame& game) {
    MoveRecord results[2];
    results[WHITE].IsLine = results[BLACK].IsLine = 1;
    return AddMoves(game, results);
}

GameUse BookBuilder::AddMoves(const PgnGame& game, const MoveRecord results[2]) {
    if (game.HasSetUp) return GameUse::SET_UP;
    if (game.Moves.empty()) return GameUse::NO_MOVES;
    ResetBoard();
    const size_t plies = std::min(game.Moves.size(), static_cast<size_t>(options_.Depth));
    for (size_t ply = 0; ply < plies; ++ply) {
        const Move move = game.Moves[ply];
        const BookKey key = CurrentBookKey();
        MoveRecord record = results[board.SideToMove];
        record.Key1 = static_cast<int32_t>(key.Key1);
        record.Key2 = static_cast<int32_t>(key.Key2);
        record.From = static_cast<uint8_t>(MoveFrom(move));
        record.To = static_cast<uint8_t>(MoveTo(move));
        const bool isLeftOut = record.IsLine && ply < game.IsMistake.size() && game.IsMistake[ply];
        if (!isLeftOut) records_.Add(record);
        MakeMove(move, 1);
        ReserveHistory(HISTORY_RESERVE);
    }
    return GameUse::USED;
}

BookTotals BookBuilder::Write() {
    BookParts parts(options_, path_ + ".tmp-");
    records_.Drain([&](const MoveRecord& record) { parts.Take(record); });
    parts.Finish();
    const std::string newPath = path_ + ".tmp-new";
    std::ofstream stream(newPath, std::ios::binary | std::ios::trunc);
    if (!stream) throw BookError("can't make " + newPath);
    std::error_code error;
    try {
        parts.Write(stream);
    } catch (const BookError&) {
        stream.close();
        std::remove(newPath.c_str());
        throw;
    }
    stream.close();
    if (!stream) {
        std::remove(newPath.c_str());
        throw BookError("can't write " + newPath + ": is the disk full?");
    }
    std::filesystem::rename(newPath, path_, error);
    if (error) {
        std::remove(newPath.c_str());
        throw BookError("can't put the book in its place, " + path_ + ": " + error.message());
    }
    return parts.Totals();
}
