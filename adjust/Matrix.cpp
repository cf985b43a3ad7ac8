#include "adjust/Matrix.h"

#include "adjust/linalg/PackedInverse.h"

#include <utility>

namespace kvn {
namespace {

using Rows = std::vector<std::vector<double>>;

/// The rows without one row and one column.
Rows minorOf(Rows const& rows, std::size_t n, std::size_t row, std::size_t column) {
  Rows result;
  for (std::size_t r = 0; r < n; ++r) {
    if (r == row) continue;
    std::vector<double> kept;
    for (std::size_t c = 0; c < n; ++c) {
      if (c != column) kept.push_back(rows[r][c]);
    }
    result.push_back(std::move(kept));
  }
  return result;
}

}  // namespace

Matrix::Matrix() = default;

Matrix::Matrix(int r, int c)
    : column(c), row(r), data(static_cast<std::size_t>(r), std::vector<double>(static_cast<std::size_t>(c), 0.0)) {}

Matrix::Matrix(std::vector<double> const& packed, int n) : Matrix(n, n) {
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) (*this)(i, j) = packed[ij(i, j)];
  }
}

Matrix::Matrix(Rows const& rows)
    : column(rows.empty() ? 0 : static_cast<int>(rows.front().size())),
      row(static_cast<int>(rows.size())),
      data(rows) {}

int Matrix::getRow() const { return row; }
int Matrix::getColumn() const { return column; }

double& Matrix::operator()(int r, int c) { return data[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)]; }

double Matrix::operator()(int r, int c) const { return data[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)]; }

Matrix Matrix::combined(Matrix const& other, double sign, int failure) const {
  if (row != other.row || column != other.column) throw failure;
  Matrix result(row, column);
  for (int r = 0; r < row; ++r) {
    for (int c = 0; c < column; ++c) result(r, c) = (*this)(r, c) + sign * other(r, c);
  }
  return result;
}

Matrix Matrix::operator+(Matrix const& other) const { return combined(other, 1.0, -1); }
Matrix Matrix::operator-(Matrix const& other) const { return combined(other, -1.0, -2); }

Matrix Matrix::operator*(Matrix const& other) const {
  if (column != other.row) throw -3;
  Matrix result(row, other.column);
  for (int r = 0; r < row; ++r) {
    for (int c = 0; c < other.column; ++c) {
      for (int k = 0; k < column; ++k) result(r, c) += (*this)(r, k) * other(k, c);
    }
  }
  return result;
}

double Matrix::Determinant(Matrix const& m) const {
  if (m.row != m.column) throw -4;
  return getDeterminant(m.data, m.row);
}

double Matrix::getDeterminant(Rows const& rows, int n) {
  if (n == 1) return rows[0][0];
  double sum = 0.0;
  double sign = 1.0;
  for (int c = 0; c < n; ++c) {
    Rows const smaller = minorOf(rows, static_cast<std::size_t>(n), 0, static_cast<std::size_t>(c));
    sum += sign * rows[0][static_cast<std::size_t>(c)] * getDeterminant(smaller, n - 1);
    sign = -sign;
  }
  return sum;
}

Matrix Matrix::getCofactor(Matrix const& m) const {
  if (m.row != m.column) throw -4;
  Matrix result(m.row, m.column);
  for (int i = 0; i < m.row; ++i) {
    for (int j = 0; j < m.column; ++j) {
      Rows const smaller =
          minorOf(m.data, static_cast<std::size_t>(m.row), static_cast<std::size_t>(i), static_cast<std::size_t>(j));
      double const value = getDeterminant(smaller, m.row - 1);
      result(j, i) = (i + j) % 2 == 0 ? value : -value;
    }
  }
  return result;
}

Matrix Matrix::convertMatrix(std::vector<double> const& packed, int const& n) const { return Matrix(packed, n); }

bool Matrix::inverse(std::vector<double>& packed, int n) const {
  return detail::invertPacked(packed.data(), static_cast<std::size_t>(n), detail::PivotRule::NotZero);
}

std::size_t Matrix::ij(int i, int j) {
  auto const larger = static_cast<std::size_t>(i > j ? i : j);
  auto const smaller = static_cast<std::size_t>(i > j ? j : i);
  return larger * (larger + 1) / 2 + smaller;
}

}  // namespace kvn
