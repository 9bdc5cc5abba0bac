#include "book/learnqueue.h"

#include <cstdio>

#include "book/booksettings.h"
#include "core/fen.h"

int LearningQueueCount = 0;

namespace {

constexpr char LOG_NAME[] = "learn.log";

Lesson LearningQueue[LEARNING_QUEUE_SIZE];
int LogCount = 0;  // lines logged since start-up

void LogLesson(const char* what, const Lesson& lesson) {
    if (!LogLearningIntoFile) return;
    std::FILE* log = std::fopen(LOG_NAME, "a");
    if (log == nullptr) return;
    std::fprintf(log, "%d%c%s Depth = %d%cOldEvaluation = %d%cEvaluaton = %d%cFEN = %s\n", LogCount++, '\t',
                 what, lesson.Record.Depth, '\t', lesson.OldScore, '\t', lesson.Record.Score, '\t',
                 lesson.Fen.c_str());
    std::fclose(log);
}

// The file is locked.
void WriteLesson(const Lesson& lesson) {
    LearnedRecord known;
    uint32_t place = 0;
    if (FindLearned(lesson.Record.Key, &known, &place)) {
        if (RefreshLearned(lesson.Record, place)) LogLesson("Refresh:", lesson);
    } else if (AddLearned(lesson.Record)) {
        LogLesson("Add:", lesson);
    }
}

}  // namespace

void QueueLesson(int depth, int oldScore, int newScore, Move move) {
    if (LearningQueueCount >= LEARNING_QUEUE_SIZE) return;
    LearnedRecord known;
    uint32_t place = 0;
    const LearnedKey key = CurrentLearnedKey();
    if (FindLearned(key, &known, &place) && known.Depth >= depth) return;
    LearningQueue[LearningQueueCount++] = {{depth, newScore, move, key}, oldScore, GetFEN()};
}

void FlushLearningQueue() {
    const FileLock lock(LearningFile);
    if (LearningFile.IsOpen() && !lock.IsHeld()) return;
    for (int i = 0; i < LearningQueueCount; ++i) WriteLesson(LearningQueue[i]);
    ClearLearningQueue();
}

void ClearLearningQueue() {
    LearningQueueCount = 0;
}
