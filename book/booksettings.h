#pragma once

// Settings of the opening book and of learning, written by the settings file and by UCI options.

extern int OwnBook;              // use the book
extern int UseBookWeights;       // choose among good moves by their record
extern int UseBookLearning;      // write results back into the book
extern int BookLearningMode;     // 0 kill, 1 discover
extern int BookLearningBound;    // centipawns that a score must pass to be taken for the game's result
extern int VarietyOfPlay;        // percent: 0 plays the best moves only, 100 any
extern int Learning;             // remember positions that were misjudged
extern int UseLearningData;      // use what was remembered
extern int LogLearningIntoFile;  // keep a log of it
