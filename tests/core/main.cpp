#include <gtest/gtest.h>

#include <random>

#include "core/attacks.h"
#include "core/board.h"
#include "core/keys.h"
#include "core/psqt.h"

namespace {

// Entries of no meaning, all different: a sum that takes the wrong one shows.
void FillPsqTable() {
    std::mt19937 random(7);
    const auto next = [&] { return static_cast<int16_t>(static_cast<int>(random() % 1801) - 900); };
    for (PsqEntry& entry : PsqTable) entry = {next(), next()};
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    InitHashKeys();
    InitAttackTables();
    FillPsqTable();
    ResetBoard();
    return RUN_ALL_TESTS();
}
