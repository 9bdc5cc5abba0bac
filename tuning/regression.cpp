#include "tuning/regression.h"

#include <algorithm>
#include <cmath>
#include <numeric>

void Regression::AddSample(size_t i, const std::vector<double>& moves, const LogisticModel& model,
                           double* matrix, double* right) const {
    // 1. The unknowns that the sample depends on.
    const size_t unknowns = weights_ + model.Offsets.size() + 1;
    std::vector<size_t> which;
    std::vector<double> slope;
    const int16_t* const row = slopes_.Row(i);
    double score = scores_[i];
    for (size_t weight = 0; weight < weights_; ++weight) {
        if (row[weight] == 0) continue;
        which.push_back(weight);
        slope.push_back(model.Scale * row[weight]);
        score += row[weight] * moves[weight];
    }
    which.push_back(weights_ + samples_[i].Source);
    slope.push_back(1);
    which.push_back(unknowns - 1);
    slope.push_back(model.Scale * score);

    // 2. What it says about them.
    const double expected = ExpectedPoints(model.Exponent(score, samples_[i].Source));
    const double gap = samples_[i].Result - expected, information = expected * (1 - expected);
    for (size_t a = 0; a < which.size(); ++a) {
        right[which[a]] += gap * slope[a];
        double* const line = matrix + which[a] * unknowns;
        const double share = information * slope[a];
        for (size_t b = 0; b <= a; ++b) line[which[b]] += share * slope[b];
    }
}

LinearSystem Regression::Equations(const std::vector<double>& moves, const LogisticModel& model) const {
    const size_t unknowns = weights_ + model.Offsets.size() + 1, size = unknowns * unknowns + unknowns;
    const auto workers = static_cast<size_t>(labour_.Workers);
    const SharedArray<double> parts(workers * size);
    ShareWork(labour_, "solving", samples_.size(), [&](int worker, size_t begin, size_t end, int64_t* done) {
        double* const matrix = &parts[static_cast<size_t>(worker) * size];
        for (size_t i = begin; i < end; ++i, ++*done) {
            if (!samples_[i].IsUsed || samples_[i].IsHeldBack) continue;
            AddSample(i, moves, model, matrix, matrix + unknowns * unknowns);
        }
    });
    LinearSystem system(unknowns);
    for (size_t worker = 0; worker < workers; ++worker) {
        const double* const matrix = &parts[worker * size];
        for (size_t row = 0; row < unknowns; ++row) {
            for (size_t column = 0; column <= row; ++column) {
                system.At(row, column) += matrix[row * unknowns + column];
            }
            system.Right(row) += matrix[unknowns * unknowns + row];
        }
    }
    // A source without samples has an offset all the same.
    for (size_t row = weights_; row < unknowns; ++row) system.At(row, row) += 1e-6;
    return system;
}

std::vector<double> HoldsOf(double samples, const std::vector<WeightUse>& uses, const LogisticModel& model) {
    constexpr double AVERAGE_DOUBT = 0.25;
    std::vector<double> holds;
    for (const WeightUse& use : uses) {
        holds.push_back(samples * AVERAGE_DOUBT * use.UsualSquare() * model.Scale * model.Scale);
    }
    return holds;
}

void AddHolds(const std::vector<double>& holds, const FreeWeights& freeWeights, const WeightValues& start,
              const WeightValues& from, const std::vector<double>& moves, LinearSystem& system) {
    for (size_t i = 0; i < freeWeights.Count(); ++i) {
        const auto place = static_cast<size_t>(freeWeights.Places[i]);
        const double way = from[place] - start[place];
        system.At(i, i) += holds[i];
        system.Right(i) -= holds[i] * (moves[i] + way / (2 * freeWeights.Steps[i]));
    }
}

WeightValues RoundWeights(const WeightValues& from, const FreeWeights& freeWeights, std::vector<double> moves,
                          std::vector<double> inverse) {
    const size_t count = freeWeights.Count();
    const auto size = static_cast<size_t>(std::lround(std::sqrt(static_cast<double>(inverse.size()))));
    std::vector<size_t> order(count);
    std::iota(order.begin(), order.end(), size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](size_t a, size_t b) { return freeWeights.Steps[a] < freeWeights.Steps[b]; });
    WeightValues weights = from;
    for (const size_t i : order) {
        const double unit = 1.0 / (2 * freeWeights.Steps[i]);
        const auto change = static_cast<int>(std::lround(moves[i] / unit));
        weights[static_cast<size_t>(freeWeights.Places[i])] += change;
        // 1. The others follow.
        const std::vector<double> row(&inverse[i * size], &inverse[i * size] + size);
        const double lost = change * unit - moves[i];
        for (size_t k = 0; k < count; ++k) moves[k] += row[k] / row[i] * lost;
        // 2. This one stands from now on.
        for (size_t k = 0; k < size; ++k) {
            const double share = row[k] / row[i];
            for (size_t l = 0; l < size; ++l) inverse[k * size + l] -= share * row[l];
        }
    }
    return weights;
}
