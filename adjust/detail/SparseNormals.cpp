#include "adjust/detail/SparseNormals.h"

#include "adjust/detail/Missing.h"

#include <Eigen/SparseCholesky>
#include <algorithm>
#include <random>

namespace kvn::detail {
namespace {

using SparseMatrix = Eigen::SparseMatrix<double>;
using Cholesky = Eigen::SimplicialLDLT<SparseMatrix, Eigen::Lower, Eigen::AMDOrdering<int>>;
using Vector = Eigen::VectorXd;

/// Those elements of the inverse of L D L' that lie in the pattern of L, by Takahashi's recursion: column j follows
/// from the later columns, and the pattern holds all that is asked of them.
class SelectedInverse {
 public:
  explicit SelectedInverse(Cholesky const& cholesky)
      : l(cholesky.matrixL().nestedExpression()),
        diagonal(l.cols()),
        below(index(static_cast<int>(l.nonZeros()))),
        column(index(static_cast<int>(l.cols())), 0.0),
        sum(column),
        markedBy(column.size(), -1) {
    Vector const d = cholesky.vectorD();
    for (int j = static_cast<int>(l.cols()) - 1; j >= 0; --j) fillColumn(j, d[j]);
  }

  double at(int i, int j) const {
    if (i == j) return diagonal[i];
    if (i < j) std::swap(i, j);
    int const* const begin = l.innerIndexPtr() + l.outerIndexPtr()[j];
    int const* const end = l.innerIndexPtr() + l.outerIndexPtr()[j + 1];
    int const* const found = std::lower_bound(begin, end, i);
    // An equation whose points coincided when its pattern was taken reaches outside of it.
    return found != end && *found == i ? below[index(static_cast<int>(found - l.innerIndexPtr()))] : 0.0;
  }

 private:
  void fillColumn(int j, double pivot) {
    int const begin = l.outerIndexPtr()[j];
    int const end = l.outerIndexPtr()[j + 1];
    for (int p = begin; p < end; ++p) {
      column[index(l.innerIndexPtr()[p])] = l.valuePtr()[p];
      markedBy[index(l.innerIndexPtr()[p])] = j;
    }
    for (int p = begin; p < end; ++p) addColumn(l.innerIndexPtr()[p], j);
    diagonal[j] = 1.0 / pivot;
    for (int p = begin; p < end; ++p) {
      int const row = l.innerIndexPtr()[p];
      below[index(p)] = -sum[index(row)];
      diagonal[j] += l.valuePtr()[p] * sum[index(row)];
    }
    for (int p = begin; p < end; ++p) sum[index(l.innerIndexPtr()[p])] = 0.0;
  }

  /// Adds the part of column k of the inverse, times its factor in column j.
  void addColumn(int k, int j) {
    double const factor = column[index(k)];
    sum[index(k)] += factor * diagonal[k];
    for (int p = l.outerIndexPtr()[k]; p < l.outerIndexPtr()[k + 1]; ++p) {
      int const i = l.innerIndexPtr()[p];
      if (markedBy[index(i)] != j) continue;
      sum[index(i)] += factor * below[index(p)];
      sum[index(k)] += column[index(i)] * below[index(p)];
    }
  }

  SparseMatrix const& l;
  Vector diagonal;
  std::vector<double> below;   // in the places of L's elements
  std::vector<double> column;  // column j of L, spread over its rows
  std::vector<double> sum;
  std::vector<int> markedBy;  // the column that has this row and was filled last
};

}  // namespace

struct SparseNormals::Factor {
  SparseMatrix matrix;
  Cholesky cholesky;
};

SparseNormals::SparseNormals(int unknowns) : factored(std::make_unique<Factor>()) {
  factored->matrix.resize(unknowns, unknowns);
}

SparseNormals::~SparseNormals() = default;

bool SparseNormals::factor(std::vector<Equation> const& equations, std::vector<double> const& weights, double ridge) {
  std::vector<Eigen::Triplet<double>> entries;
  for (std::size_t e = 0; e < equations.size(); ++e) {
    Equation const& q = equations[e];
    for (int r = 0; r < q.count; ++r) {
      for (int c = 0; c < q.count; ++c) {
        if (q.unknown[index(r)] < q.unknown[index(c)]) continue;
        double const value = weights[e] * q.factor[index(r)] * q.factor[index(c)];
        entries.emplace_back(q.unknown[index(r)], q.unknown[index(c)], value);
      }
    }
  }
  for (int i = 0; i < factored->matrix.rows(); ++i) entries.emplace_back(i, i, ridge);
  factored->matrix.setFromTriplets(entries.begin(), entries.end());
  factored->cholesky.compute(factored->matrix);
  return factored->cholesky.info() == Eigen::Success && factored->cholesky.vectorD().minCoeff() > 0.0;
}

std::vector<std::vector<double>> SparseNormals::freeVectors(double weakness, int count) const {
  // L D L' v = 0 where L' v is 0 at every pivot that is one, and anything at the others.
  Vector const pivots = factored->cholesky.vectorD();
  Vector const diagonal = factored->cholesky.permutationP() * Vector(factored->matrix.diagonal());
  std::mt19937 random(1);
  std::vector<std::vector<double>> vectors;
  for (int i = 0; i < count; ++i) {
    Vector v = Vector::Zero(pivots.size());
    for (int k = 0; k < pivots.size(); ++k) {
      double const number = static_cast<double>(random()) / 2147483648.0 - 1.0;
      if (!(pivots[k] > weakness * std::max(diagonal[k], 1.0))) v[k] = number;
    }
    factored->cholesky.matrixU().solveInPlace(v);
    v = factored->cholesky.permutationPinv() * v;
    vectors.emplace_back(v.data(), v.data() + v.size());
  }
  return vectors;
}

std::vector<double> SparseNormals::solve(std::vector<double> const& right) const {
  Vector const x = factored->cholesky.solve(Eigen::Map<Vector const>(right.data(), static_cast<long>(right.size())));
  return {x.data(), x.data() + x.size()};
}

std::vector<double> SparseNormals::correction(std::vector<Equation> const& equations,
                                              std::vector<double> const& weights) const {
  std::vector<double> right(index(static_cast<int>(factored->matrix.rows())), 0.0);
  for (std::size_t e = 0; e < equations.size(); ++e) {
    Equation const& q = equations[e];
    for (int r = 0; r < q.count; ++r) {
      right[index(q.unknown[index(r)])] -= weights[e] * q.factor[index(r)] * q.misclosure;
    }
  }
  return solve(right);
}

std::vector<double> SparseNormals::cofactors(std::vector<Equation> const& equations) const {
  SelectedInverse const inverse(factored->cholesky);
  auto const& order = factored->cholesky.permutationP().indices();
  std::vector<double> result;
  result.reserve(equations.size());
  for (Equation const& q : equations) {
    double sum = 0.0;
    for (int r = 0; r < q.count; ++r) {
      for (int c = 0; c < q.count; ++c) {
        sum += q.factor[index(r)] * q.factor[index(c)] *
               inverse.at(order[q.unknown[index(r)]], order[q.unknown[index(c)]]);
      }
    }
    result.push_back(sum);
  }
  return result;
}

}  // namespace kvn::detail
