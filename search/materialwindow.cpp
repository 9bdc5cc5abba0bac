#include "search/materialwindow.h"

#include <algorithm>

#include "core/board.h"
#include "eval/evaluate.h"
#include "search/root.h"

int MaterialLow = 0;
int MaterialHigh = 0;

void SetMaterialWindow() {
    const int balance = board.Material[EngineSide] - board.Material[ChangeSide(EngineSide)];
    const int centre = std::clamp(RootScore / 5, -150, 150);
    const int width = 10 * IterationDepth + 200;
    MaterialLow = centre - width + std::min(RootScore, balance);
    MaterialHigh = centre + width + std::max(RootScore, balance);
}
