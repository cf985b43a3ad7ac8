// The state of a HeightAdjustment.
#pragma once

#include "adjust/HeightAdjustment.h"
#include "adjust/linalg/NormalEquations.h"
#include "adjust/linalg/Poll.h"

#include <utils/detail/PrivateData.h>

#include <functional>
#include <string>
#include <vector>

namespace kvn {

/// Unknowns are the height of every point, known ones too, and behind them a shift of every height that several sights
/// share. Known heights and shifts are held by a weight that is `kHold` times that of all their sights together: this
/// moves the results by one part in 10⁸, and the elements of the inverse tell what would be if one of them were free.
struct KELVANE_PRIVATE HeightAdjustment::Data {
  KELVANE_LATER_MEMBER

  /// Below this share of an error nothing checks a height: rounding leaves 1e-7 where it is held.
  static constexpr double kUncheckedShare = 1e-5;

  /// One held unknown: what its sights say of it.
  struct Held {
    int unknown = 0;
    double weight = 0.0;  ///< sum of the weights of its sights, 1 / square metres
    double moment = 0.0;  ///< Σ ± weight residual: the gradient of the sum of squares
    double kappa = 0.0;   ///< what elimination of the others leaves of `weight`
    bool isFree = false;  ///< a suspect, which is no longer held
    double shift = 0.0;   ///< of a free one, metres
  };

  HeightNetwork network;
  HeightSettings settings;
  std::function<bool()> cancelCall;
  detail::Poll poll;
  HeightResult result;
  std::vector<std::string> unplaced;

  std::vector<double> approximate;  ///< heights of the points, metres
  std::vector<int> reachedBy;       ///< the sight by which a point has its approximate height; -1 of a known one
  std::vector<int> depth;           ///< sights between a point and its known one
  std::vector<double> heights;
  std::vector<int> instrumentOf;  ///< of each sight the unknown of its shared instrument height, or -1
  std::vector<int> targetOf;
  std::vector<int> heldOf;              ///< of each unknown, its place in `held`, or -1
  std::vector<Held> held;               ///< known points first, then shared heights in their order
  std::vector<std::size_t> knownPoint;  ///< of the first ones
  std::vector<bool> isOut;              ///< sights that are suspected
  std::vector<double> residuals;        ///< adjusted minus observed
  detail::OwnedNormals normals;

  int pointCount() const { return static_cast<int>(network.points.size()); }
  int unknowns() const { return static_cast<int>(heldOf.size()); }
  int equationOf(std::size_t sight, double* a, int* at) const;
  double weightOf(std::size_t sight) const;

  // Input.
  void requireSound() const;
  void share();
  void place();

  // Solution.
  void prepareNormals();
  void solve();
  void takeResiduals();
  void takeHeld();

  // Results.
  void takeResults();
  void takeUnitError();
  void takeSights();
  void takeShared();
  void findUnchecked();
  void judge(HeightTest& test, double size, double sensitivity) const;
  double scale() const;

  // What does not fit.
  struct Candidate {
    HeightSuspect::Kind kind = HeightSuspect::Sight;
    std::size_t number = 0;  ///< as in `HeightSuspect`
    double moment = 0.0;     ///< gradient of the sum of squares along it
    double kappa = 0.0;      ///< variance of that, a-priori
    double test() const;     ///< size of the standardised moment, a-priori
  };
  void findSuspects();
  std::vector<Candidate> candidates() const;
  std::size_t heldNumber(Candidate const& candidate) const;
  std::vector<double> covariancesWith(Candidate const& candidate) const;
  void findAlternatives(HeightSuspect& suspect, Candidate const& candidate, std::vector<Candidate> const& all) const;
  void release(Candidate const& candidate);
  double grossOf(HeightSuspect const& suspect) const;
  void findLoops();

  void forgetWork();
};

}  // namespace kvn
