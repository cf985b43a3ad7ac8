// HeightAdjustment: least-squares adjustment of trigonometric heights in which every sight counts for itself.
#pragma once

#include "adjust/HeightNetwork.h"
#include "adjust/PlaneAdjustment.h"

#include <utils/Export.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kvn {

struct HeightSettings {
  PlaneSettings::UnitWeight unitWeight = PlaneSettings::UnitWeight::APosteriori;
  double confidence = 0.95;  ///< of the global test, above 0 and below 1
  int sparseFrom = 200;      ///< unknowns from which on the normal equations are kept sparse
};

/// What a test of the adjustment tells about one height, or several that share an error.
struct HeightTest {
  /// From 0, where nothing checks it, to 1: the share of an error that shows in the residuals.
  double redundancy = 0.0;
  /// The size of an error over the standard error that it is seen with, with the sign of the residuals: of a good
  /// height a standard normal variable, or one of Pope's τ. NaN where nothing checks it.
  double standardised = 0.0;
  /// Size of `standardised` over its critical value (error probability 0.1 %, two-sided): above 1 is marked. NaN as
  /// before.
  double test = 0.0;
  double detectable = 0.0;  ///< smallest error that is found with a power of 80 %, metres (Baarda 1968); NaN as before
  double gross = 0.0;       ///< what it seems to be too large by, metres; NaN unless it is marked
};

/// A height difference.
struct HeightObservation : HeightTest {
  double adjusted = 0.0;
  double residual = 0.0;       ///< adjusted minus observed, metres
  double adjustedError = 0.0;  ///< standard error of the adjusted difference
  double effect = 0.0;         ///< of an error of detectable size on the heights of its two points, the larger one
};

/// A height of the instrument, which is in all sights of a set-up, or of a target, which is in all sights to it.
struct SharedHeight : HeightTest {
  bool isInstrument = false;
  std::size_t setUp = 0;   ///< of an instrument
  std::size_t target = 0;  ///< point number, of a target
  double height = 0.0;     ///< as entered, metres
  std::size_t sights = 0;  ///< two and more
};

struct HeightPoint {
  double height = 0.0;
  double error = 0.0;        ///< standard error; 0 of a known point; NaN where there is none
  double approximate = 0.0;  ///< along single sights from the known points
  /// False where an error of some sight or instrument height moves it and shows nowhere. A height of a target that is
  /// the same in all sights to a point is not meant: nothing checks it.
  bool isChecked = false;
};

/// What does not fit.
struct HeightSuspect {
  enum Kind { Sight, Instrument, Target, Known };
  Kind kind = Sight;
  std::size_t number = 0;  ///< of the sight; place in `HeightResult::shared`; of the known point
  double gross = 0.0;      ///< what it is too large by, as all that is not suspected says; metres
  /// Others whose error cannot be told from one of this: their tests have a correlation of 0.99 and more.
  std::vector<std::pair<Kind, std::size_t>> alternatives;
};

/// Sights around a loop, with what their differences sum up to.
struct HeightLoop {
  std::vector<std::size_t> points;  ///< point numbers, the first one at the end again
  double misclosure = 0.0;          ///< metres
  double allowed = 0.0;             ///< 2.576 of its standard errors (99 %)
};

struct HeightResult {
  int redundancy = 0;
  bool hasRedundancy = false;  ///< without any there is no unit weight error, and errors are NaN unless a-priori
  double unitError = 0.0;      ///< 1 when the observations were as good as told; NaN without redundancy
  double lowerBound = 0.0;     ///< of the unit weight error, two-sided chi-square test; NaN without redundancy
  double upperBound = 0.0;
  bool isPassed = true;
  double criticalValue = 0.0;
  std::vector<HeightPoint> points;
  std::vector<HeightObservation> sights;
  std::vector<SharedHeight> shared;     ///< instruments first, then targets
  std::vector<HeightTest> known;        ///< of each point; of an unknown one with a redundancy of 0
  std::vector<HeightSuspect> suspects;  ///< the one that fits least first
  std::vector<HeightLoop> loops;        ///< beyond what is allowed, the worst first; empty unless the whole fails
};

/// Unknowns are the heights of all points; minimised is the sum of (residual / standard error)² over the sights. Known
/// heights are fixed. Linear: one solve.
///
/// The errors of the sights are taken as independent. The heights of instrument and target are not, since a set-up has
/// one and a target too: whether one shift of all its sights explains their residuals is tested as well, and so is
/// whether a known point would fit at another height.
///
///     kvn::HeightReduction reduction = kvn::heightNetworkOf(rows);
///     kvn::reduceSights(reduction.network, errors);
///     kvn::HeightAdjustment adjustment(reduction.network);
///     kvn::HeightResult const& result = adjustment.adjust();
class KELVANE_EXPORT HeightAdjustment {
 public:
  explicit HeightAdjustment(HeightNetwork network, HeightSettings settings = {});
  HeightAdjustment(HeightAdjustment const&) = delete;
  HeightAdjustment& operator=(HeightAdjustment const&) = delete;
  HeightAdjustment(HeightAdjustment&&) noexcept;
  HeightAdjustment& operator=(HeightAdjustment&&) noexcept;
  ~HeightAdjustment();

  /// Asked again and again in long work; true ends it with `QLogicError` "User Cancel".
  void setCancelCall(std::function<bool()> call);

  /// @throws std::invalid_argument for a setting out of range; AlgorithmException DataError for a record whose numbers
  /// do
  ///         not fit together or a sight without a usable difference or error, with the name of its target;
  ///         KnownPointNotEnough for points that no sight connects to a known one, `unplacedPoints` has them.
  HeightResult const& adjust();
  HeightResult const& result() const;  ///< of the last run
  HeightNetwork const& network() const;
  std::vector<std::string> const& unplacedPoints() const;

 private:
  struct Data;
  std::unique_ptr<Data> own;
};

}  // namespace kvn
