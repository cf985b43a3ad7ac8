#include "adjust/engine/FreeDatum.h"

#include "adjust/linalg/Index.h"

#include <utils/Circle.h>

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <complex>

namespace kvn::detail {
namespace {

using utils::kSecondsPerRadian;

}  // namespace

FreeDatum::FreeDatum(PlaneEngine const& engine, std::vector<int> const& datumPoints, int freedoms)
    : motions(freedoms), points(engine.network.points), xy(engine.xy) {
  for (int const p : datumPoints) {
    centreX += xy[2 * index(p)] / static_cast<double>(datumPoints.size());
    centreY += xy[2 * index(p) + 1] / static_cast<double>(datumPoints.size());
  }
  for (int const p : datumPoints) {
    extent = std::max(extent, std::hypot(xy[2 * index(p)] - centreX, xy[2 * index(p) + 1] - centreY));
  }
  Eigen::MatrixXd gbg = Eigen::MatrixXd::Zero(motions, motions);
  std::vector<std::vector<double>> bg(index(motions), std::vector<double>(index(engine.unknowns()), 0.0));
  for (int const p : datumPoints) {
    for (int const unknown : {2 * p, 2 * p + 1}) {
      Motion const g = motionOf(unknown);
      for (int m = 0; m < motions; ++m) {
        bg[index(m)][index(unknown)] = g[index(m)];
        for (int n = 0; n < motions; ++n) gbg(m, n) += g[index(m)] * g[index(n)];
      }
    }
  }
  for (int m = 0; m < motions; ++m) w.push_back(engine.normals->solved(bg[index(m)], engine.poll));
  Eigen::MatrixXd gbw = Eigen::MatrixXd::Zero(motions, motions);
  for (int m = 0; m < motions; ++m) {
    for (int n = 0; n < motions; ++n) {
      for (int const p : datumPoints) {
        for (std::size_t const unknown : {2 * index(p), 2 * index(p) + 1}) {
          gbw(m, n) += bg[index(m)][unknown] * w[index(n)][unknown];
        }
      }
    }
  }
  Eigen::MatrixXd const c = gbg.inverse();
  Eigen::MatrixXd const k = c * gbw * c;
  for (int m = 0; m < motions; ++m) {
    for (int n = 0; n < motions; ++n) {
      inverse[index(m)][index(n)] = c(m, n);
      middle[index(m)][index(n)] = k(m, n);
    }
  }
}

/// A turn by the azimuth e moves a point by (-y, x) e and every orientation by e.
FreeDatum::Motion FreeDatum::motionOf(int unknown) const {
  if (unknown >= 2 * points) return {0.0, 0.0, kSecondsPerRadian / extent, 0.0};
  double const dx = (xy[index(unknown / 2) * 2] - centreX) / extent;
  double const dy = (xy[index(unknown / 2) * 2 + 1] - centreY) / extent;
  return unknown % 2 == 0 ? Motion{1.0, 0.0, -dy, dx} : Motion{0.0, 1.0, dx, dy};
}

FreeDatum::Motion FreeDatum::weightedOf(int unknown) const {
  Motion row{};
  for (int m = 0; m < motions; ++m) row[index(m)] = w[index(m)][index(unknown)];
  return row;
}

/// Q - G C W' - W C G' + G (C G'BW C) G'.
void FreeDatum::transform(int const* at, int count, double* q) const {
  if (isEmpty()) return;
  for (int r = 0; r < count; ++r) {
    Motion const gr = motionOf(at[r]);
    Motion const wr = weightedOf(at[r]);
    for (int c = 0; c < count; ++c) {
      Motion const gc = motionOf(at[c]);
      Motion const wc = weightedOf(at[c]);
      double sum = 0.0;
      for (std::size_t m = 0; m < index(motions); ++m) {
        for (std::size_t n = 0; n < index(motions); ++n) {
          sum += gr[m] * middle[m][n] * gc[n] - gr[m] * inverse[m][n] * wc[n] - wr[m] * inverse[m][n] * gc[n];
        }
      }
      q[r * count + c] += sum;
    }
  }
}

/// x - G C G'B x, where G'B x = (Q B G)' b.
void FreeDatum::transformShifts(double const* a, int const* from, int fromCount, int const* at, int count,
                                double* x) const {
  if (isEmpty()) return;
  Motion gbx{};
  for (int i = 0; i < fromCount; ++i) {
    Motion const row = weightedOf(from[i]);
    for (std::size_t m = 0; m < index(motions); ++m) gbx[m] += row[m] * a[i];
  }
  for (int i = 0; i < count; ++i) {
    Motion const g = motionOf(at[i]);
    for (std::size_t m = 0; m < index(motions); ++m) {
      for (std::size_t n = 0; n < index(motions); ++n) x[i] -= g[m] * inverse[m][n] * gbx[n];
    }
  }
}

std::vector<int> minimalConstraints(std::vector<double> const& xy, std::vector<int> const& points, int freedoms) {
  int const first = points.front();
  auto const x = [&](int p) { return xy[2 * index(p)] - xy[2 * index(first)]; };
  auto const y = [&](int p) { return xy[2 * index(p) + 1] - xy[2 * index(first) + 1]; };
  int const farthest = *std::max_element(points.begin(), points.end(),
                                         [&](int a, int b) { return std::hypot(x(a), y(a)) < std::hypot(x(b), y(b)); });
  std::vector<int> held = {2 * first, 2 * first + 1};
  // A line that runs north is turned by its end's y.
  bool const runsNorth = std::abs(x(farthest)) >= std::abs(y(farthest));
  held.push_back(2 * farthest + (runsNorth ? 1 : 0));
  if (freedoms == FreeDatum::kMost) held.push_back(2 * farthest + (runsNorth ? 0 : 1));
  return held;
}

void layOn(std::vector<double>& xy, std::vector<double> const& wanted, std::vector<int> const& points,
           bool hasFreeScale) {
  auto const at = [](std::vector<double> const& list, int p) {
    return Place(list[2 * index(p)], list[2 * index(p) + 1]);
  };
  Place centre;
  Place goal;
  for (int const p : points) {
    centre += at(xy, p) / static_cast<double>(points.size());
    goal += at(wanted, p) / static_cast<double>(points.size());
  }
  Place sum;
  double size = 0.0;
  for (int const p : points) {
    sum += std::conj(at(xy, p) - centre) * (at(wanted, p) - goal);
    size += std::norm(at(wanted, p) - goal);
  }
  // Σ (wanted - goal) · (moved - wanted) is null for the factor size / |sum|.
  Place const factor = std::polar(hasFreeScale ? size / std::abs(sum) : 1.0, std::arg(sum));
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    Place const moved = goal + factor * (Place(xy[i], xy[i + 1]) - centre);
    xy[i] = moved.real();
    xy[i + 1] = moved.imag();
  }
}

}  // namespace kvn::detail
