#include "tuning/errorcurve.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

#include "core/textformat.h"

namespace {

constexpr double WIDTH = 720, HEIGHT = 400, LEFT = 80, RIGHT = 24, TOP = 40, BOTTOM = 48;  // pixels
constexpr int GRID_LINES = 5;

// The frame of the picture: rounds to the right, errors upwards.
struct Frame {
    double Least, Most;
    size_t Rounds;

    double X(size_t round) const {
        return LEFT + (WIDTH - LEFT - RIGHT) * static_cast<double>(round) /
                          static_cast<double>(std::max<size_t>(1, Rounds));
    }
    double Y(double error) const { return TOP + (HEIGHT - TOP - BOTTOM) * (Most - error) / (Most - Least); }
};

double ErrorOf(const CurvePoint& point, bool isHeldBack) {
    return (isHeldBack ? point.HeldBack : point.Training).Logarithmic;
}

Frame FrameOf(const std::vector<CurvePoint>& curve) {
    Frame frame{1e9, -1e9, curve.size() - 1};
    for (const CurvePoint& point : curve) {
        for (const bool isHeldBack : {false, true}) {
            if (isHeldBack && point.HeldBack.Samples == 0) continue;
            frame.Least = std::min(frame.Least, ErrorOf(point, isHeldBack));
            frame.Most = std::max(frame.Most, ErrorOf(point, isHeldBack));
        }
    }
    const double edge = std::max(1e-6, (frame.Most - frame.Least) * 0.08);
    return {frame.Least - edge, frame.Most + edge, frame.Rounds};
}

std::string DrawGrid(const Frame& frame) {
    std::string picture;
    for (int i = 0; i <= GRID_LINES; ++i) {
        const double error = frame.Least + (frame.Most - frame.Least) * i / GRID_LINES, y = frame.Y(error);
        picture +=
            Format("<line x1='%g' y1='%.1f' x2='%g' y2='%.1f' stroke='#ddd'/>\n", LEFT, y, WIDTH - RIGHT, y);
        picture += Format("<text x='%g' y='%.1f' text-anchor='end'>%.4f</text>\n", LEFT - 8, y + 4, error);
    }
    for (size_t round = 0; round <= frame.Rounds; ++round) {
        picture += Format("<text x='%.1f' y='%g' text-anchor='middle'>%zu</text>\n", frame.X(round),
                          HEIGHT - BOTTOM + 20, round);
    }
    return picture + Format("<text x='%g' y='%g' text-anchor='middle'>round</text>\n", WIDTH / 2, HEIGHT - 8);
}

std::string DrawCurve(const Frame& frame, const std::vector<CurvePoint>& curve, bool isHeldBack) {
    const char* const colour = isHeldBack ? "#c0392b" : "#1f618d";
    std::string line = Format("<polyline fill='none' stroke-width='2' stroke='%s' points='", colour), dots;
    for (size_t round = 0; round < curve.size(); ++round) {
        const double x = frame.X(round), y = frame.Y(ErrorOf(curve[round], isHeldBack));
        line += Format("%.1f,%.1f ", x, y);
        dots += Format("<circle cx='%.1f' cy='%.1f' r='3' fill='%s'/>\n", x, y, colour);
    }
    const char* const name = isHeldBack ? "the part that is held back" : "the part that is fitted";
    const double y = isHeldBack ? TOP + 32 : TOP + 14;
    return line.append("'/>\n").append(dots) +
           Format("<text x='%g' y='%g' fill='%s'>%s</text>\n", WIDTH - 250, y, colour, name);
}

}  // namespace

void DrawErrorCurve(const std::string& path, const std::vector<CurvePoint>& curve) {
    const Frame frame = FrameOf(curve);
    std::ofstream file(path);
    file << Format(
                "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 %g %g' font-family='sans-serif' "
                "font-size='13'>\n<rect width='%g' height='%g' fill='white'/>\n",
                WIDTH, HEIGHT, WIDTH, HEIGHT)
         << Format("<text x='%g' y='22' font-size='15'>Logarithmic error by round</text>\n", LEFT)
         << DrawGrid(frame) << DrawCurve(frame, curve, false);
    if (curve[0].HeldBack.Samples > 0) file << DrawCurve(frame, curve, true);
    file << "</svg>\n";
    file.close();
    if (!file) throw std::runtime_error("can't write " + path);
}
