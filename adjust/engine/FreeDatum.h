// FreeDatum: inner constraints of a network that no known point holds.
#pragma once

#include "adjust/engine/PlaneEngine.h"

#include <array>
#include <vector>

namespace kvn::detail {

/// A free network is calculated with as few unknowns held as the observations leave free (minimal constraints), and its
/// results are then brought onto the inner constraints: with G for the small motions of the whole, column by column
/// shift north, shift east, turn and, where no distance is measured, scale, and B for the choice of the coordinates of
/// the datum points, S = I - G (G'BG)⁻¹ G'B, and the covariances are S Q S' (Baarda's S-transformation, 1973). Of these
/// an element needs only the same element of Q and W = Q B G, one solution of the system for each motion.
class FreeDatum {
 public:
  static constexpr int kMost = 4;
  using Motion = std::array<double, kMost>;  // one row of G

  FreeDatum() = default;
  /// @param engine  inverted, about its final coordinates.
  /// @param points  numbers of the datum points, two at least.
  FreeDatum(PlaneEngine const& engine, std::vector<int> const& points, int freedoms);

  bool isEmpty() const { return motions == 0; }
  /// Makes the elements of Q of some unknowns, row by row in q[count * count], those of S Q S'.
  void transform(int const* at, int count, double* q) const;
  /// S x for the elements `at` of x = Q b, where b has the elements `a` at the unknowns `from`.
  /// @param x  these elements; changed in place.
  void transformShifts(double const* a, int const* from, int fromCount, int const* at, int count, double* x) const;

 private:
  Motion motionOf(int unknown) const;
  Motion weightedOf(int unknown) const;

  int motions = 0;
  int points = 0;
  std::vector<double> xy;  // metres
  double centreX = 0.0;
  double centreY = 0.0;
  double extent = 1.0;                  // makes turn and scale as large as the shifts, metres
  std::vector<std::vector<double>> w;   // columns of Q B G
  std::array<Motion, kMost> inverse{};  // (G'BG)⁻¹
  std::array<Motion, kMost> middle{};   // (G'BG)⁻¹ G'B Q B G (G'BG)⁻¹
};

/// Which unknowns to hold: x and y of the first datum point and, of the one farthest from it, the coordinate across the
/// line between them, and with a free scale the other one too.
std::vector<int> minimalConstraints(std::vector<double> const& xy, std::vector<int> const& points, int freedoms);

/// Moves all points so that the shifts of the datum points from the places `wanted` have no translation, no turn and,
/// with `hasFreeScale`, no change of scale.
void layOn(std::vector<double>& xy, std::vector<double> const& wanted, std::vector<int> const& points,
           bool hasFreeScale);

}  // namespace kvn::detail
