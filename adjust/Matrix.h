// Matrix: a small dense matrix, and the inversion of a symmetric matrix in packed storage.
#pragma once

#include <utils/Export.h>

#include <cstddef>
#include <vector>

namespace kvn {

/// Dense matrix by rows, for small sizes.
///
/// Packed storage: a symmetric n by n matrix as a flat vector of n (n + 1) / 2 doubles, the lower triangle by rows:
/// element (i, j), i >= j, at i (i + 1) / 2 + j, all indices from 0.
class KELVANE_EXPORT Matrix {
 public:
  Matrix();                                              ///< 0 by 0
  Matrix(int r, int c);                                  ///< r rows, c columns, all 0.0
  Matrix(std::vector<double> const& packed, int n);      ///< n by n from packed storage
  Matrix(std::vector<std::vector<double>> const& rows);  ///< column count from the first row

  int getRow() const;
  int getColumn() const;
  double& operator()(int r, int c);  ///< unchecked
  double operator()(int r, int c) const;

  Matrix operator+(Matrix const& other) const;  ///< @throws int -1 when the shapes differ
  Matrix operator-(Matrix const& other) const;  ///< @throws int -2 when the shapes differ
  Matrix operator*(Matrix const& other) const;  ///< @throws int -3 when the inner dimensions differ

  /// Determinant of the argument by Laplace expansion along the first row; factorial cost.
  /// @throws int -4 when it is not square.
  double Determinant(Matrix const& m) const;
  /// Adjugate of the argument; 0.0 for a 1 by 1 matrix.
  /// @throws int -4 when it is not square.
  Matrix getCofactor(Matrix const& m) const;
  Matrix convertMatrix(std::vector<double> const& packed, int const& n) const;  ///< n by n from packed storage

  /// Inverts a symmetric matrix in place, in packed storage, with O(n³) operations and O(n) work space.
  ///
  /// @param packed  at least n (n + 1) / 2 elements.
  /// @return        false at a pivot of exactly 0.0; the matrix is then partly transformed and must not be used.
  ///
  /// A pivot that only rounding keeps from zero is no 0.0: a remainder of about 1e-16 times what was subtracted there
  /// passes, the result is true, and elements of the inverse are of the size of its reciprocal. Up to 64 unknowns are
  /// eliminated one after the other, more of them in blocks, which may leave another remainder or none where the
  /// processor rounds a product and its subtraction together.
  bool inverse(std::vector<double>& packed, int n) const;

 protected:
  /// Packed index of (i, j) for either order of the arguments.
  static std::size_t ij(int i, int j);
  /// Determinant of the first n rows and columns; 0.0 for n = 0.
  static double getDeterminant(std::vector<std::vector<double>> const& rows, int n);

 private:
  Matrix combined(Matrix const& other, double sign, int failure) const;

  int column = 0;
  int row = 0;
  std::vector<std::vector<double>> data;
};

}  // namespace kvn
