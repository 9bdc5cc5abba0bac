#include <gtest/gtest.h>

#include "core/attacks.h"
#include "core/board.h"
#include "core/keys.h"
#include "eval/bitbase.h"
#include "eval/weights.h"

// The main procedure of the test programs from the evaluation room upwards: all tables are built, the weights
// and the personality have their defaults.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    InitHashKeys();
    InitAttackTables();
    InitPawnBitbase();
    InitWeights();
    ResetBoard();
    return RUN_ALL_TESTS();
}
