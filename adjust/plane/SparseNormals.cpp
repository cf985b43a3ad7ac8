#include "adjust/plane/SparseNormals.h"

#include "adjust/linalg/Index.h"
#include "adjust/plane/NetworkBlocks.h"

namespace kvn::detail {
namespace {

std::vector<int> orderOf(NumberedNetwork const& network) {
  std::vector<int> order;
  for (int const block : network.blockOrder) {
    if (block >= network.known) order.push_back(block - network.known);
  }
  return order;
}

}  // namespace

SparseNormals::SparseNormals(NumberedNetwork const& network, Poll const& poll)
    : cholesky(blockSizesOf(network, network.known), cliquesOf(network, network.known), orderOf(network), poll) {}

bool SparseNormals::factor(std::vector<Equation> const& equations, std::vector<double> const& weights, double ridge,
                           Poll const& poll) {
  cholesky.clear();
  Effort effort(poll);
  for (std::size_t e = 0; e < equations.size(); ++e) {
    effort.step();
    Equation const& q = equations[e];
    cholesky.addEquation(q.factor.data(), q.unknown.data(), q.count, weights[e]);
  }
  for (int i = 0; ridge != 0.0 && i < cholesky.unknowns(); ++i) cholesky.add(i, i, ridge);
  return cholesky.factor({}, poll);
}

std::vector<std::vector<double>> SparseNormals::freeVectors(double weakness, int count) const {
  return cholesky.freeVectors(weakness, count);
}

std::vector<double> SparseNormals::correction(std::vector<Equation> const& equations,
                                              std::vector<double> const& weights, Poll const& poll) const {
  std::vector<double> x(index(cholesky.unknowns()), 0.0);
  Effort effort(poll);
  for (std::size_t e = 0; e < equations.size(); ++e) {
    effort.step();
    Equation const& q = equations[e];
    for (int r = 0; r < q.count; ++r) {
      x[index(q.unknown[index(r)])] -= weights[e] * q.factor[index(r)] * q.misclosure;
    }
  }
  cholesky.solve(x, poll);
  return x;
}

std::vector<double> SparseNormals::cofactors(std::vector<Equation> const& equations, Poll const& poll) {
  cholesky.invert(poll);
  std::vector<double> result;
  result.reserve(equations.size());
  Effort effort(poll);
  for (Equation const& q : equations) {
    effort.step();
    result.push_back(cholesky.cofactor(q.factor.data(), q.unknown.data(), q.count));
  }
  return result;
}

}  // namespace kvn::detail
