#include "tuning/tunestate.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <limits>
#include <stdexcept>

namespace {

constexpr char HEADER[] = "kestrovan-tune-state-1";
constexpr size_t MOST_POINTS = 10'000;

bool IsFree(const TuningOptions& options, size_t place) {
    return std::find(options.Places.begin(), options.Places.end(), static_cast<int>(place)) !=
           options.Places.end();
}

std::ostream& operator<<(std::ostream& file, const PredictionError& error) {
    return file << error.Logarithmic << ' ' << error.Squared << ' ' << error.Samples;
}

std::istream& operator>>(std::istream& file, PredictionError& error) {
    return file >> error.Logarithmic >> error.Squared >> error.Samples;
}

bool IsSame(const PredictionError& a, const PredictionError& b) {
    return a.Logarithmic == b.Logarithmic && a.Squared == b.Squared && a.Samples == b.Samples;
}

// False when the file is damaged or belongs to another errand. That the positions and their evaluations are
// the same shows in the errors at the beginning.
bool ReadState(std::istream& file, const TuningOptions& options, TuningState& state) {
    const CurvePoint begin = state.Curve.at(0);
    std::string header;
    size_t offsets = 0, points = 0;
    double hold = 0;
    file >> header >> hold >> state.IsExhausted >> state.Model.Scale >> offsets;
    if (!file || header != HEADER || hold != options.Hold || offsets != state.Model.Offsets.size())
        return false;
    for (double& offset : state.Model.Offsets) file >> offset;
    if (!(file >> points) || points == 0 || points > MOST_POINTS) return false;
    state.Curve.resize(points);
    for (CurvePoint& point : state.Curve) file >> point.Changed >> point.Training >> point.HeldBack;
    const CurvePoint& first = state.Curve[0];
    if (!file || !IsSame(first.Training, begin.Training) || !IsSame(first.HeldBack, begin.HeldBack))
        return false;
    const auto isWeight = [](int value) { return std::abs(value) <= LARGEST_WEIGHT; };
    for (size_t place = 0; place < WEIGHT_COUNT; ++place) {
        int start = 0;
        bool isFree = false;
        file >> start >> state.Weights[place] >> state.Best[place] >> isFree;
        if (!file || start != options.Start[place] || isFree != IsFree(options, place)) return false;
        if (!isWeight(state.Weights[place]) || !isWeight(state.Best[place])) return false;
    }
    return true;
}

}  // namespace

void SaveState(const std::string& path, const TuningOptions& options, const TuningState& state) {
    const std::string fresh = path + ".new";
    std::ofstream file(fresh);
    file << std::setprecision(std::numeric_limits<double>::max_digits10);
    file << HEADER << '\n' << options.Hold << ' ' << state.IsExhausted << '\n';
    file << state.Model.Scale << ' ' << state.Model.Offsets.size();
    for (const double offset : state.Model.Offsets) file << ' ' << offset;
    file << '\n' << state.Curve.size() << '\n';
    for (const CurvePoint& point : state.Curve) {
        file << point.Changed << ' ' << point.Training << ' ' << point.HeldBack << '\n';
    }
    for (size_t place = 0; place < WEIGHT_COUNT; ++place) {
        file << options.Start[place] << ' ' << state.Weights[place] << ' ' << state.Best[place] << ' '
             << IsFree(options, place) << '\n';
    }
    file.close();
    std::error_code error;
    if (file) std::filesystem::rename(fresh, path, error);
    if (!file || error) throw std::runtime_error("can't write " + path);
}

bool LoadState(const std::string& path, const TuningOptions& options, TuningState& state) {
    std::error_code error;
    if (!std::filesystem::exists(path, error)) return false;
    std::ifstream file(path);
    TuningState read = state;
    if (!ReadState(file, options, read)) {
        throw std::runtime_error(path +
                                 " is damaged, or belongs to other positions, options or evaluations; "
                                 "remove it to begin anew");
    }
    state = read;
    return true;
}
