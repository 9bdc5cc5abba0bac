#include "tuning/linearsystem.h"

#include <cmath>
#include <numeric>

bool LinearSystem::Factor() {
    for (size_t row = 0; row < size_; ++row) {
        for (size_t column = 0; column <= row; ++column) {
            const double* const left = &matrix_[row * size_];
            const double* const other = &matrix_[column * size_];
            const double rest = At(row, column) - std::inner_product(left, left + column, other, 0.0);
            if (row != column) {
                At(row, column) = rest / other[column];
            } else if (rest > 0) {
                At(row, row) = std::sqrt(rest);
            } else {
                return false;
            }
        }
    }
    return true;
}

void LinearSystem::SolveInPlace(std::vector<double>& values) const {
    for (size_t row = 0; row < size_; ++row) {
        for (size_t column = 0; column < row; ++column) values[row] -= Lower(row, column) * values[column];
        values[row] /= Lower(row, row);
    }
    for (size_t row = size_; row-- > 0;) {
        for (size_t below = row + 1; below < size_; ++below) values[row] -= Lower(below, row) * values[below];
        values[row] /= Lower(row, row);
    }
}

std::vector<double> LinearSystem::Solve() const {
    std::vector<double> values = right_;
    SolveInPlace(values);
    return values;
}

std::vector<double> LinearSystem::Inverse() const {
    std::vector<double> inverse;
    inverse.reserve(size_ * size_);
    for (size_t i = 0; i < size_; ++i) {
        std::vector<double> row(size_);
        row[i] = 1;
        SolveInPlace(row);
        inverse.insert(inverse.end(), row.begin(), row.end());
    }
    return inverse;
}
