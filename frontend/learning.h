#pragma once

// What the engine learns from the moves that it makes in a game.

// Book learning: a searched move whose score lies beyond BookLearningBound tells what the opening was worth.
// The move has not been made yet.
void LearnFromScore();

// Position learning, after each own move: a score that has fallen since the move before makes the position
// before that move a lesson; lessons are written when the game goes on to be lost and forgotten when the
// score comes back.
void UpdatePositionLearning();
