#include "book/bookfile.h"

#include <unistd.h>

#include <filesystem>
#include <random>
#include <set>

#include "book/bookchoice.h"
#include "core/board.h"
#include "tests/book/booktest.h"

namespace {

using BookFileTest = BookTest;

TEST_F(BookFileTest, TakesEveryFileOfAVersionItKnows) {
    const std::string magic = "~Kestrovan openings book";
    const auto header = [](const std::string& text, int version, int count) {
        return text + LittleEndian(static_cast<uint32_t>(version)) + LittleEndian(77) +
               LittleEndian(static_cast<uint32_t>(count));
    };
    const struct {
        std::string Bytes, Printed;
        int Loaded, Version0, Learns;
    } rows[] = {
        {header(magic, 1, 5), "5 nodes in openings book\n", 1, 0, 1},
        {header(std::string(24, 'x'), 1, 5), "5 nodes in openings book\n", 1, 0, 1},
        {header("~Kestrovan openings boo\n", 1, 0), "0 nodes in openings book\n", 1, 0, 1},
        {header(magic, -3, -7), "-7 nodes in openings book\n", 1, 0, 1},
        {"", "-1 nodes in openings book\n", 1, 0, 1},
        {header(magic, 2, 5), "Book version 2 not supported\n", 0, 0, 1},
        {header(magic, 0, 9),
         "NG: Book learning not supported for book version 0\n9 nodes in openings book\n", 1, 1, 0},
    };
    for (const auto& row : rows) {
        UseBookLearning = UseBookWeights = 1;
        EXPECT_EQ(Open(row.Bytes), row.Printed);
        EXPECT_EQ(BookLoaded, row.Loaded) << row.Printed;
        EXPECT_EQ(IsBookVersion0, row.Version0) << row.Printed;
        EXPECT_EQ(UseBookLearning, row.Learns) << row.Printed;
        EXPECT_EQ(UseBookWeights, row.Learns) << row.Printed;
        EXPECT_EQ(ChooseBookMove(), NO_MOVE) << row.Printed;
    }
    const std::string missing = Path() + ".not";
    EXPECT_EQ(Printed([&] { OpenBook(missing); }), "Error opening \"" + missing + "\"!\n");
    EXPECT_FALSE(BookLoaded) << "the book that was open has been closed";
    EXPECT_EQ(Printed([&] { OpenBook("/"); }), "Error opening \"/\"!\n");
}

TEST_F(BookFileTest, FindsEveryPositionItHasAndNoOther) {
    constexpr int POSITIONS = 600;
    BookWriter writer, other;
    std::set<std::string> all;
    VisitPositions(POSITIONS, 3, [&] { all.insert(TextOfBoard()); });
    for (const std::string& fen : all) {
        writer.Add(fen, {{"a1h8", 1, 2}});
        // Positions that differ in one of the words.
        const auto [key1, key2] = BookWriter::KeyOf(fen);
        other.AddKey(key1, key2 + 1, {{"a1h8", 1, 2}});
        other.AddKey(key1 + 1, key2, {{"a1h8", 1, 2}});
    }
    int64_t place = 0;
    Open(writer.Bytes());
    VisitPositions(POSITIONS, 3, [&] {
        ASSERT_TRUE(FindBookPosition(&place));
        EXPECT_EQ(static_cast<size_t>(place), writer.ListPlace(TextOfBoard()));
    });
    VisitPositions(POSITIONS, 4, [&] { EXPECT_EQ(FindBookPosition(&place), all.count(TextOfBoard()) != 0); });
    Open(other.Bytes());
    VisitPositions(POSITIONS, 3, [&] { EXPECT_FALSE(FindBookPosition(&place)); });
}

// Whatever a file holds: no crash, and nothing written but into move lists.
TEST_F(BookFileTest, WithstandsDamage) {
    BookWriter writer;
    writer.Add(START, {{"e2e4", 200, 254}, {"d2d4", 3, 2}, {"??a1", 1, 1}, {"g1f3", 255, 255}});
    writer.Add("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b", {{"e7e5", 100, 60}});
    const std::string sound = writer.Bytes();
    std::vector<std::string> files;
    for (size_t length = 0; length < sound.size(); ++length) files.push_back(sound.substr(0, length));
    std::mt19937 random(5);
    for (int i = 0; i < 2000 / WORK_DIVISOR; ++i) {
        std::string damaged = sound;
        for (unsigned flips = 1 + random() % 4; flips > 0; --flips) {
            constexpr size_t VERSION_END = 28;
            damaged[VERSION_END + random() % (sound.size() - VERSION_END)] = static_cast<char>(random());
        }
        files.push_back(damaged);
    }
    for (const uint32_t place : {0u, 8u, 35u, 36u, 59u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        std::string damaged = sound;
        for (const size_t record : {36u, 48u}) damaged.replace(record + 8, 4, LittleEndian(place));
        files.push_back(damaged);
    }
    for (const uint32_t count : {0x7FFFFFFFu, 0x7FFFFFFDu, 0x80000000u, 0xFFFFFFFDu}) {
        files.push_back(sound.substr(0, 32) + LittleEndian(count) + sound.substr(36));
    }
    constexpr size_t LISTS = 36 + 2 * 12;
    for (const std::string& file : files) {
        UseBookLearning = UseBookWeights = 1;
        Open(file);
        Printed(ListBookMoves);
        for (int mode : {0, 1}) {
            BookLearningMode = mode;
            const Move move = ChooseBookMove();
            EXPECT_TRUE(move == NO_MOVE || LooksLikeMove(MoveToText(move)));
        }
        UpdateBookMove(LINE_WENT_WELL, TextToMove("e2e4"));
        Play({"e2e4", "e7e5", "g1f3"});
        LearnBookGame(LINE_WENT_BADLY);
        ResetBoard();
        const std::string after = Contents();
        ASSERT_EQ(after.size(), file.size());
        ASSERT_EQ(after.substr(0, LISTS), file.substr(0, LISTS)) << "header and index are never written";
    }
}

TEST_F(BookFileTest, PlaysFromABookItCannotWriteTo) {
    BookWriter writer;
    writer.Add(START, {{"e2e4", 20, 10}});
    const std::string bytes = writer.Bytes();
    Open(bytes);
    using std::filesystem::perms;
    std::filesystem::permissions(Path(), perms::owner_read | perms::group_read);
    std::filesystem::permissions(Path().substr(0, Path().rfind('/')), perms::group_exec,
                                 std::filesystem::perm_options::add);
    // Nothing is read-only for root.
    constexpr uid_t NOBODY = 65534;
    const uid_t user = geteuid();
    ASSERT_EQ(seteuid(user == 0 ? NOBODY : user), 0);
    Printed([this] { OpenBook(Path()); });
    ASSERT_EQ(seteuid(user), 0);
    EXPECT_FALSE(BookFile.IsWritable());
    EXPECT_NE(ChooseBookMove(), NO_MOVE);
    UpdateBookMove(LINE_WENT_WELL, TextToMove("e2e4"));
    EXPECT_EQ(Contents(), bytes);
}

}  // namespace
