#include "book/learnfile.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <random>

#include "book/booksettings.h"
#include "book/learnqueue.h"
#include "book/learnscore.h"
#include "core/board.h"
#include "core/fen.h"
#include "core/movetext.h"
#include "tests/support/bookwriter.h"
#include "tests/support/positions.h"
#include "tests/support/tempdirectory.h"
#include "tests/support/walker.h"

namespace {

constexpr char NAME[] = "Learn.kv1";
constexpr size_t TITLE = 23, HEAD = 262167, RECORD = 24;

bool operator==(const LearnedRecord& a, const LearnedRecord& b) {
    return a.Depth == b.Depth && a.Score == b.Score && a.Move == b.Move && a.Key == b.Key;
}

// The file stands in a directory of its own, which is the working directory meanwhile.
class LearnFileTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        std::filesystem::current_path(directory_.Path());
    }
    void TearDown() override {
        CloseLearningFile();
        ClearLearningQueue();
        LogLearningIntoFile = 0;
        std::filesystem::current_path("/");
    }

    std::string Contents() const { return directory_.ReadFile(NAME); }

    // Opens what is written, or what is there; returns what that prints.
    static std::string Open() {
        testing::internal::CaptureStdout();
        OpenLearningFile();
        return testing::internal::GetCapturedStdout();
    }
    std::string Open(const std::string& bytes) const {
        CloseLearningFile();
        directory_.WriteFile(NAME, bytes);
        return Open();
    }

    static bool Knows(const LearnedRecord& record) {
        LearnedRecord found;
        uint32_t place = 0;
        return FindLearned(record.Key, &found, &place) && found == record;
    }

    const TempDirectory directory_;
};

// Record i of a run of them, many to a bucket.
LearnedRecord MakeRecord(uint32_t i) {
    return {static_cast<int>(i % 90 * 60 + 30), -static_cast<int>(i), i, {i % 64 + 0x10000 * i, ~i}};
}

// What record i is refreshed with.
LearnedRecord MakeOtherRecord(uint32_t i) {
    return {static_cast<int>(60000 + i), -7777, ~i, MakeRecord(i).Key};
}

std::string Head(const std::string& buckets = "") {
    std::string head = "Kestrovan learning file" + buckets;
    head.resize(HEAD);
    return head;
}

TEST_F(LearnFileTest, IsLaidOutByteByByte) {
    EXPECT_EQ(Open(), "");
    std::string expected = Head();
    EXPECT_EQ(Contents(), expected);
    ASSERT_TRUE(AddLearned({510, -77, 0x31234, {0x89ABCDEF, 0x12345678}}));
    ASSERT_TRUE(AddLearned({450, 33, 7, {0x00000001, 2}}));
    ASSERT_TRUE(AddLearned({570, -1, 8, {0x0000CDEF, 3}}));
    const auto record = [](uint32_t depth, uint32_t score, uint32_t move, uint32_t key1, uint32_t key2,
                           size_t next) {
        return LittleEndian(depth) + LittleEndian(score) + LittleEndian(move) + LittleEndian(key1) +
               LittleEndian(key2) + LittleEndian(static_cast<uint32_t>(next));
    };
    const auto bucket = [&](size_t number, size_t place) {
        expected.replace(TITLE + 4 * number, 4, LittleEndian(static_cast<uint32_t>(place)));
    };
    bucket(0xCDEF, HEAD);
    bucket(1, HEAD + RECORD);
    expected += record(510, static_cast<uint32_t>(-77), 0x31234, 0x89ABCDEF, 0x12345678, HEAD + 2 * RECORD);
    expected += record(450, 33, 7, 1, 2, 0) + record(570, static_cast<uint32_t>(-1), 8, 0xCDEF, 3, 0);
    EXPECT_EQ(Contents(), expected);
    // A refreshed record keeps its link.
    LearnedRecord found;
    uint32_t place = 0;
    ASSERT_TRUE(FindLearned({0x89ABCDEF, 0x12345678}, &found, &place));
    EXPECT_EQ(place, HEAD);
    ASSERT_TRUE(RefreshLearned({630, -90, 9, found.Key}, place));
    expected.replace(HEAD, 12, record(630, static_cast<uint32_t>(-90), 9, 0, 0, 0).substr(0, 12));
    EXPECT_EQ(Contents(), expected);
    EXPECT_TRUE(Knows({570, -1, 8, {0xCDEF, 3}}));
    EXPECT_FALSE(FindLearned({0xCDEF, 4}, &found, &place)) << "both keys count";
    EXPECT_FALSE(FindLearned({0x1CDEF, 3}, &found, &place));
}

TEST_F(LearnFileTest, ChainsHoldEveryRecord) {
    constexpr uint32_t RECORDS = 3000;
    Open();
    for (uint32_t i = 0; i < RECORDS; ++i) ASSERT_TRUE(AddLearned(MakeRecord(i)));
    EXPECT_EQ(Contents().size(), HEAD + RECORDS * RECORD);
    CloseLearningFile();
    EXPECT_EQ(Open(), "");
    for (uint32_t i = 0; i < RECORDS; ++i) ASSERT_TRUE(Knows(MakeRecord(i))) << i;
}

TEST_F(LearnFileTest, KnowsALearningFile) {
    const std::string empty = Head();
    // One whose making was cut short is completed.
    for (const size_t length : {size_t{0}, size_t{1}, TITLE, TITLE + 5, HEAD - 1, HEAD}) {
        EXPECT_EQ(Open(empty.substr(0, length)), "") << length;
        EXPECT_EQ(Contents(), empty) << length;
    }
    const std::string other(HEAD + 100, 'x');
    for (const std::string& bytes : {other, other.substr(0, 10), Head("damage").substr(0, 5000)}) {
        EXPECT_EQ(Open(bytes), "Error opening \"Learn.kv1\"!\n");
        EXPECT_FALSE(AddLearned(MakeRecord(1)));
        EXPECT_FALSE(Knows(MakeRecord(1)));
        EXPECT_EQ(Contents(), bytes) << "what is no learning file is not touched";
    }
}

TEST_F(LearnFileTest, WithstandsDamage) {
    Open();
    // Two in the bucket of the first, and others.
    for (uint32_t i = 0; i < 8; ++i) AddLearned(MakeRecord(8 * i));
    AddLearned(MakeRecord(64));
    const std::string sound = Contents();
    const LearnedRecord fresh{90, 5, 6, {0x990000, 99}};  // of the bucket that all damage is done to
    const auto expectToGoOn = [&](const std::string& damaged, const std::string& what) {
        ASSERT_EQ(Open(damaged), "") << what;
        Knows(MakeRecord(64));
        if (AddLearned(fresh)) {
            EXPECT_TRUE(Knows(fresh)) << what;
        }
        const std::string after = Contents();
        // Nothing changes but the bucket's links.
        size_t changed = 0;
        for (size_t i = 0; i < damaged.size(); ++i) changed += after[i] != damaged[i];
        EXPECT_LE(changed, 4u) << what;
        for (uint32_t i = 1; i < 6; ++i) EXPECT_TRUE(Knows(MakeRecord(8 * i))) << what << " " << i;
    };
    // The bucket's link, and that of its first record, lead astray: to themselves, back, nowhere, between
    // records, into another bucket, behind the end.
    const uint32_t end = static_cast<uint32_t>(sound.size());
    for (const size_t link : {TITLE, HEAD + 20}) {
        for (const uint32_t place : {uint32_t{HEAD}, uint32_t{TITLE}, 1u, uint32_t{HEAD} + 7,
                                     uint32_t{HEAD + RECORD}, end, end - 1, 0xFFFFFFFFu}) {
            std::string damaged = sound;
            damaged.replace(link, 4, LittleEndian(place));
            expectToGoOn(damaged, "link " + std::to_string(link) + " to " + std::to_string(place));
        }
    }
    // A file that has lost its end, also in the middle of a record.
    for (const size_t lost : {1u, 23u, 24u, 60u}) {
        expectToGoOn(sound.substr(0, sound.size() - lost), "lost " + std::to_string(lost));
    }
}

TEST_F(LearnFileTest, QueuedLessonsAreWrittenAndLogged) {
    LogLearningIntoFile = 1;
    Open();
    LoadFEN("4k3/8/8/8/8/8/4P3/4K3 w - -");
    const Move move = TextToMove("e2e4");
    QueueLesson(510, 30, -20, move);
    EXPECT_EQ(LearningQueueCount, 1);
    EXPECT_EQ(Contents().size(), HEAD) << "not before the loss is confirmed";
    FlushLearningQueue();
    EXPECT_EQ(LearningQueueCount, 0);
    EXPECT_TRUE(Knows({510, -20, move, CurrentLearnedKey()}));
    QueueLesson(510, 10, -60, move);
    EXPECT_EQ(LearningQueueCount, 0) << "the file knows as much";
    QueueLesson(570, 10, -60, move);
    FlushLearningQueue();
    EXPECT_TRUE(Knows({570, -60, move, CurrentLearnedKey()}));
    EXPECT_EQ(Contents().size(), HEAD + RECORD);
    const std::string fen = GetFEN() + "\n";
    // The lines are counted since the program started.
    const std::string log = directory_.ReadFile("learn.log");
    const int number = std::stoi(log);
    EXPECT_EQ(log, std::to_string(number) +
                       "\tAdd: Depth = 510\tOldEvaluation = 30\tEvaluaton = -20\tFEN = " + fen +
                       std::to_string(number + 1) +
                       "\tRefresh: Depth = 570\tOldEvaluation = 10\tEvaluaton = -60\tFEN = " + fen);
    for (int i = 0; i < 9; ++i) QueueLesson(630 + i, 0, 0, move);
    EXPECT_EQ(LearningQueueCount, LEARNING_QUEUE_SIZE);
    LogLearningIntoFile = 0;
    FlushLearningQueue();
    EXPECT_EQ(directory_.ReadFile("learn.log"), log) << "without the setting";
}

TEST_F(LearnFileTest, ScoresAreThoseOfThePosition) {
    Open();
    int depth = 0, score = 0;
    LoadFEN("4k3/8/8/8/8/8/4P3/4K3 w - -");
    EXPECT_FALSE(FindLearnedScore(&depth, &score));
    AddLearned({510, -32600, TextToMove("e2e4"), CurrentLearnedKey()});
    EXPECT_TRUE(FindLearnedScore(&depth, &score));
    EXPECT_EQ(depth, 510);
    EXPECT_EQ(score, -31000) << "a mate of another game is none here";
    // The same men with Black to move have the same key.
    LoadFEN("4k3/8/8/8/8/8/4P3/4K3 b - -");
    EXPECT_FALSE(FindLearnedScore(&depth, &score));
}

// Runs `work` in a process of its own that tells by a byte each time it has done a piece.
template <typename Work>
pid_t StartWorker(int tell, Work work) {
    const pid_t worker = fork();
    if (worker != 0) return worker;
    OpenLearningFile();
    work([tell] { (void)!write(tell, "", 1); });
    _exit(0);
}

TEST_F(LearnFileTest, SurvivesAKillAtAnyMoment) {
    constexpr uint32_t UPDATES = 10000;
    std::mt19937 random(11);
    for (int round = 0; round < 10; ++round) {
        CloseLearningFile();
        std::filesystem::remove(NAME);
        int pipes[2];
        ASSERT_EQ(pipe(pipes), 0);
        const pid_t worker = StartWorker(pipes[1], [](auto tell) {
            for (uint32_t i = 0; i < UPDATES; ++i) {
                // Every second update writes over the record before.
                LearnedRecord known;
                uint32_t place = 0;
                if (i % 2 == 0) {
                    AddLearned(MakeRecord(i));
                } else if (FindLearned(MakeRecord(i - 1).Key, &known, &place)) {
                    RefreshLearned(MakeOtherRecord(i - 1), place);
                }
                tell();
            }
        });
        usleep(static_cast<useconds_t>(random() % 60000));
        kill(worker, SIGKILL);
        waitpid(worker, nullptr, 0);
        close(pipes[1]);
        uint32_t done = 0;
        for (char bytes[4096];;) {
            const ssize_t count = read(pipes[0], bytes, sizeof bytes);
            if (count <= 0) break;
            done += static_cast<uint32_t>(count);
        }
        close(pipes[0]);
        ASSERT_EQ(Open(), "") << done;
        for (uint32_t i = 0; i < done; i += 2) {
            const bool isOther = Knows(MakeOtherRecord(i));
            ASSERT_TRUE(isOther || Knows(MakeRecord(i))) << i << " of " << done;
            ASSERT_TRUE(isOther || i + 1 >= done) << i << " of " << done;
        }
        ASSERT_TRUE(AddLearned(MakeRecord(UPDATES)));
        ASSERT_TRUE(Knows(MakeRecord(UPDATES)));
    }
}

// Lessons of two programs at once; the positions are keys only.
TEST_F(LearnFileTest, IsSharedByTwoProcesses) {
    constexpr uint32_t LESSONS = 1500, BUCKETS = 64;
    pid_t workers[2];
    for (uint32_t program = 0; program < 2; ++program) {
        workers[program] = StartWorker(-1, [program](auto) {
            for (uint32_t i = program; i < 2 * LESSONS; i += 2) {
                board.HashKey = uint64_t{i} << 32 | i % BUCKETS;
                QueueLesson(510, 0, -static_cast<int>(i), i);
                // While the other one writes, it may take another try.
                while (LearningQueueCount > 0) FlushLearningQueue();
            }
        });
    }
    for (const pid_t worker : workers) waitpid(worker, nullptr, 0);
    ASSERT_EQ(Open(), "");
    EXPECT_EQ(Contents().size(), HEAD + 2 * LESSONS * RECORD);
    for (uint32_t i = 0; i < 2 * LESSONS; ++i) {
        ASSERT_TRUE(Knows({510, -static_cast<int>(i), i, {i % BUCKETS, i << 16}})) << i;
    }
}

}  // namespace
