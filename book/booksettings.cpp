#include "book/booksettings.h"

int OwnBook = 1;
int UseBookWeights = 1;
int UseBookLearning = 1;
int BookLearningMode = 0;
int BookLearningBound = 400;
int VarietyOfPlay = 10;
int Learning = 0;
int UseLearningData = 0;
int LogLearningIntoFile = 0;
