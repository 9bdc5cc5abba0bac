#include "eval/endings.h"
#include "eval/evaluate.h"
bool EvaluateLowMaterial(int*) {
    return false;
}
int ScaleDrawishMaterial(int score) {
    return score;
}
int ClampNoWin(int score) {
    return score;
}
