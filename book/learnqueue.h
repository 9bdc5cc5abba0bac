#pragma once

#include <string>

#include "book/learnfile.h"

// What the game under way has taught so far: positions whose score was too high. It is written to the
// learning file when the loss has been confirmed, and forgotten when the score comes back.

struct Lesson {
    LearnedRecord Record;  // with the new score
    int OldScore = 0;      // centipawns, from the side to move's view
    std::string Fen;       // of the position, for the log
};

constexpr int LEARNING_QUEUE_SIZE = 3;
extern int LearningQueueCount;

// Puts a lesson about the position on the board into the queue, unless that is full, or the file knows as
// much of the position from as deep a search.
void QueueLesson(int depth, int oldScore, int newScore, Move move);

// Writes the lessons to the file and, with LogLearningIntoFile, a line for each to "learn.log"; then the
// queue is empty. While another program keeps the file to itself, they wait.
void FlushLearningQueue();

void ClearLearningQueue();
