#include "tools/elo.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// Worked out by another program from the formulas, the variances being those of samples.
TEST(Elo, AgreesWithFiguresFromElsewhere) {
    const struct {
        PairCounts Pairs;
        double Score, Elo, Error, Superiority, Gain,
            NoLoss;  // the ratios of 10 against 0 and of 0 against -5
    } rows[] = {
        {{5, 20, 40, 25, 10}, 0.5375, 26.1067, 35.0031, 0.92954, 0.67158, 0.45201},
        {{3, 30, 100, 60, 7}, 0.5475, 33.1062, 19.1030, 0.99969, 2.82360, 1.73161},
        {{40, 30, 20, 8, 2}, 0.255, -186.2464, 47.7335, 0.0, -2.68425, -1.30598},
        {{0, 0, 10, 1, 0}, 0.52273, 15.8034, 31.1002, 0.84134, 0.30962, 0.15909},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.Score);
        EXPECT_NEAR(MeanScore(row.Pairs), row.Score, 1e-5);
        EXPECT_NEAR(EloOfScore(MeanScore(row.Pairs)), row.Elo, 1e-4);
        EXPECT_NEAR(EloError(row.Pairs), row.Error, 1e-4);
        EXPECT_NEAR(LikelihoodOfSuperiority(row.Pairs), row.Superiority, 1e-5);
        EXPECT_NEAR(LogLikelihoodRatio(row.Pairs, 0, 10), row.Gain, 1e-5);
        EXPECT_NEAR(LogLikelihoodRatio(row.Pairs, -5, 0), row.NoLoss, 1e-5);
    }
}

TEST(Elo, HasNoOpinionWithoutResults) {
    const PairCounts none{}, one{0, 1, 0, 0, 0}, even{0, 0, 7, 0, 0}, won{0, 0, 0, 0, 3};
    EXPECT_EQ(LikelihoodOfSuperiority(none), 0.5);
    EXPECT_EQ(LikelihoodOfSuperiority(one), 0.5);
    EXPECT_TRUE(std::isinf(EloError(none)));
    EXPECT_TRUE(std::isinf(EloError(one)));
    EXPECT_NEAR(LogLikelihoodRatio(none, 0, 5), 0, 1e-3);
    EXPECT_EQ(LikelihoodOfSuperiority(even), 0.5);
    EXPECT_EQ(EloError(even), 0);
    EXPECT_EQ(LikelihoodOfSuperiority(won), 1);
    EXPECT_TRUE(std::isinf(EloError(won)));
    EXPECT_EQ(EloOfScore(MeanScore(won)), INFINITY);
    EXPECT_EQ(EloOfScore(0), -INFINITY);
}

}  // namespace
