#include "tuning/tunestate.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iomanip>
#include <limits>
#include <stdexcept>

namespace {

constexpr char HEADER[] = "kestrovan-tune-state-1";
constexpr size_t MOST = 10'000;  // sources or rounds

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

// Everything but the errand, which must be this one.
bool ReadState(std::istream& file, const TuningErrand& errand, TuningState& state) {
    const TuningOptions& options = errand.Options;
    std::string header;
    size_t samples = 0, offsets = 0, points = 0;
    double hold = 0;
    file >> header >> samples >> hold;
    if (!file || header != HEADER || samples != errand.Samples || hold != options.Hold) return false;
    file >> state.IsDone >> state.Model.Scale >> offsets;
    if (!file || offsets != state.Model.Offsets.size()) return false;
    for (double& offset : state.Model.Offsets) file >> offset;
    if (!(file >> points) || points == 0 || points > MOST) return false;
    state.Curve.resize(points);
    for (CurvePoint& point : state.Curve) file >> point.Changed >> point.Training >> point.HeldBack;
    for (size_t place = 0; place < WEIGHT_COUNT; ++place) {
        int start = 0;
        bool isFree = false;
        file >> start >> state.Weights[place] >> state.Best[place] >> isFree;
        if (!file || start != options.Start[place] || isFree != IsFree(options, place)) return false;
    }
    return true;
}

}  // namespace

void SaveState(const std::string& path, const TuningErrand& errand, const TuningState& state) {
    const TuningOptions& options = errand.Options;
    const std::string fresh = path + ".new";
    std::ofstream file(fresh);
    file << std::setprecision(std::numeric_limits<double>::max_digits10);
    file << HEADER << '\n' << errand.Samples << ' ' << options.Hold << '\n';
    file << state.IsDone << ' ' << state.Model.Scale << ' ' << state.Model.Offsets.size();
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
    if (!file || std::rename(fresh.c_str(), path.c_str()) != 0) {
        throw std::runtime_error("can't write " + path);
    }
}

bool LoadState(const std::string& path, const TuningErrand& errand, TuningState& state) {
    std::ifstream file(path);
    if (!file) return false;
    TuningState read = state;
    if (!ReadState(file, errand, read)) {
        throw std::runtime_error(path + " is damaged, or belongs to other positions or options");
    }
    state = read;
    return true;
}
