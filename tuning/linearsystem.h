#pragma once

#include <cstddef>
#include <vector>

// Systems of linear equations with a symmetric, positive definite matrix.
class LinearSystem {
  public:
    explicit LinearSystem(size_t size) : size_(size), matrix_(size * size), right_(size) {}

    // Entries with row >= column count; the rest is their mirror image.
    double& At(size_t row, size_t column) { return matrix_[row * size_ + column]; }
    double& Right(size_t row) { return right_[row]; }
    size_t Size() const { return size_; }

    // Splits the matrix into a lower triangle and its mirror image (Cholesky), once and before the following;
    // false when it is not positive definite.
    bool Factor();
    std::vector<double> Solve() const;
    // The inverse matrix, row by row.
    std::vector<double> Inverse() const;

  private:
    double Lower(size_t row, size_t column) const { return matrix_[row * size_ + column]; }
    void SolveInPlace(std::vector<double>& values) const;

    size_t size_;
    std::vector<double> matrix_, right_;
};
