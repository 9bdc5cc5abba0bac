#pragma once

#include <string>
#include <vector>

#include "tuning/tuner.h"

// The error curve as a picture (SVG): the logarithmic error of both parts by round. Throws std::runtime_error
// when the file can't be written.
void DrawErrorCurve(const std::string& path, const std::vector<CurvePoint>& curve);
