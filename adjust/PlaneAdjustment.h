// PlaneAdjustment: least-squares adjustment of a plane network in which every observation counts for itself.
#pragma once

#include "adjust/AdjustProgress.h"
#include "adjust/PlaneNetwork.h"
#include "records/NetworkFindings.h"

#include <utils/Export.h>

#include <QString>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kvn {

/// How a network is adjusted and judged.
struct PlaneSettings {
  /// Standard errors of results: by the unit weight error of the adjustment, or by the a-priori one, 1.
  enum class UnitWeight { APosteriori, APriori };

  /// What the coordinates refer to: the known points, each with its own error, or the inner geometry alone. Of a free
  /// network every point is unknown; the shifts of its known points from their given coordinates (of all points from
  /// their approximate ones, where none is known) have no translation, no rotation and, without any distance, no change
  /// of scale.
  enum class Datum { Known, Free };

  Datum datum = Datum::Known;
  UnitWeight unitWeight = UnitWeight::APosteriori;
  /// Standard error of each coordinate of instrument and target about their marks, metres: it adds 2 (centring / S)² to
  /// the variance of a direction over the distance S, in square radians, and 2 centring² to that of a distance.
  double centring = 0.0;
  /// Whether suspects are left out, one after the other, the one that fits least first, until none is left. They keep
  /// their rows, with a weight of 0.
  bool leavesOutSuspects = false;
  double confidence = 0.95;  ///< of the global test and the confidence ellipses, above 0 and below 1
  int iterationLimit = 100;  ///< rounds
  int sparseFrom = 200;      ///< unknowns from which on the normal equations are kept sparse
  /// Whether observations that do not fit the others weigh less, in place of `leavesOutSuspects`: by Yang's IGG III
  /// (1994), fully up to 2.5 standard errors of the difference from what the others say, not at all from 6 on. Of these
  /// the suspects are. Errors and tests are those of the final weights. An observation of weight 0 does not count in
  /// the redundancy, any other counts as one. What nothing checks keeps its weight. Where the network does not settle
  /// so, the result is that of full weights, which a `Warning` tells; the same of `leavesOutSuspects`.
  bool weighsDownSuspects = false;
  /// Whether what `adjustAgain` needs stays, the factor of the normal equations above all, which is more than half of
  /// what a large network takes. Without it that is given back before the results are listed; `adjustAgain` is then
  /// `adjust`.
  bool keepsSystem = true;
};

/// One adjusted observation. Angles in radians, lengths in metres, as in the network.
struct PlaneObservation {
  double adjusted = 0.0;
  double residual = 0.0;  ///< adjusted minus observed
  double weight = 1.0;    ///< 0 of one that is out, 0 to 1 in a robust run
  double error = 0.0;     ///< a-priori standard error, centring included
  double azimuth = 0.0;   ///< of the line, adjusted, 0 to 2π
  double azimuthError = 0.0;
  double length = 0.0;  ///< of the line, adjusted
  double lengthError = 0.0;
  double adjustedError = 0.0;  ///< standard error of the adjusted value; of a direction together with its orientation
  /// From 0, where nothing checks the observation, to 1: the share of an error of it that shows in its residual.
  double redundancy = 0.0;
  /// residual / (unit weight error · a-priori error · √redundancy); NaN where nothing checks the observation. With a
  /// weight between 0 and 1 the error is the one given all the same, and not the larger one that the weight stands for;
  /// so in `detectable`.
  double standardised = 0.0;
  /// Size of the standardised residual over its critical value (error probability 0.1 %, two-sided; Pope's τ with the
  /// a-posteriori unit weight error, Baarda's normal test with the a-priori one): above 1 is marked. At most 1 where
  /// the residual is below a thousandth of the a-priori error, which is the rounding of digits. NaN as before.
  double test = 0.0;
  /// Smallest gross error that the test finds with a power of 80 %: 4.13 a-priori error / √redundancy (Baarda 1968);
  /// NaN as before.
  double detectable = 0.0;
  /// What a gross error of that size moves a coordinate of one of its two points by, the largest; metres; NaN as
  /// before.
  double effect = 0.0;
  /// What the observation seems to be too large by, -residual / redundancy; NaN unless it is marked.
  double gross = 0.0;
};

struct PlanePoint {
  double x = 0.0;
  double y = 0.0;
  double mx = 0.0;  ///< standard errors, metres
  double my = 0.0;
  double mp = 0.0;         ///< root of mx² + my²
  double semiMajor = 0.0;  ///< of the standard error ellipse, metres
  double semiMinor = 0.0;
  double bearing = 0.0;    ///< azimuth of the major axis, radians, 0 to π
  bool isChecked = false;  ///< false where a gross error of some observation moves it and shows nowhere
};

/// An observation whose error cannot be told from one of a suspect: their residuals have a correlation of 0.99 and
/// more.
struct PlaneAlternative {
  std::size_t suspect = 0;  ///< its place in `PlaneAdjustment::suspects`
  bool isDirection = false;
  std::size_t observation = 0;  ///< number among the directions or distances of the network
  /// Where the suspect has no weight: by how much a coordinate would be elsewhere at most if this observation had none
  /// in its place; metres, else 0.
  double apart = 0.0;
};

/// What leaving an observation out has done.
struct PlaneLeftOut {
  bool isDirection = false;
  std::size_t observation = 0;  ///< number among the directions or distances of the network
  double gross = 0.0;           ///< by what it is too large, as the others say; radians or metres
  double largestMove = 0.0;     ///< of a coordinate, metres
  /// Observations that may be the wrong ones in its place; their `suspect` is 0.
  std::vector<PlaneAlternative> alternatives;
};

/// Two points that lie where one could: within what the a-priori errors allow, and nothing is observed between them.
/// Often one point under two names. At least one of them is not fixed.
struct PlaneTwins {
  std::size_t first = 0;  ///< numbers in the network
  std::size_t second = 0;
  double apart = 0.0;  ///< metres, up to 0.1
};

/// A known point, tested: would it fit if it were free?
struct PlaneControl {
  std::size_t point = 0;      ///< number in the network
  bool isDetermined = false;  ///< false where the network has no datum without it; nothing can be said then
  double reduction = 0.0;     ///< of the weighted sum of squares, if it were free
  double north = 0.0;         ///< where it would lie, from its given coordinates, metres
  double east = 0.0;
  int directions = 0;  ///< in which something else holds it: 2, or 1 where only one coordinate or a distance is tested
  /// reduction / directions over the variance factor with the point free, over its critical value (F of `directions`
  /// and f - `directions` degrees of freedom, error probability 0.1 %; chi-square where none of f is left): above 1 is
  /// significant. NaN where it is not determined.
  double test = 0.0;
};

/// What `PlaneAdjustment` gives. Lists run parallel to those of the network.
struct PlaneResult {
  int redundancy = 0;
  int iterations = 0;
  bool hasRedundancy = false;  ///< without any there is no unit weight error, and errors are NaN unless a-priori
  double unitError = 0.0;      ///< 1 when the observations were as good as told; NaN without redundancy

  /// The unit weight error lies between these with the probability `confidence` when the a-priori errors are right
  /// (two-sided chi-square test); NaN without redundancy.
  double lowerBound = 0.0;
  double upperBound = 0.0;
  bool isPassed = true;
  /// The iteration came to an end only without the suspected observations, which have no weight.
  bool isWithoutSuspects = false;

  double directionUnitError = 0.0;  ///< √(Σ (v/σ)² / Σ r) over the directions; NaN where nothing checks them
  double distanceUnitError = 0.0;
  double criticalValue = 0.0;  ///< of the size of a standardised residual; NaN where there is none
  /// Confidence ellipses are the standard ones times this.
  double confidenceFactor = 0.0;

  std::vector<PlanePoint> points;
  std::vector<double> orientations;       ///< of each set-up: azimuth of the circle's zero, radians, 0 to 2π
  std::vector<double> orientationErrors;  ///< radians
  std::vector<PlaneObservation> directions;
  std::vector<PlaneObservation> distances;
  std::vector<PlaneAlternative> alternatives;  ///< to the suspects
  /// Known points that most of the suspects have in common.
  std::vector<std::size_t> commonControl;
  std::vector<PlaneLeftOut> leftOut;  ///< in the order in which they were left out
  /// Of each known point where its coordinates are observations; of fixed ones where the residuals as a whole are too
  /// large, else empty.
  std::vector<PlaneControl> control;
  /// False where an observation explains the misfit as well as the suspected known points do.
  bool isControlAlone = true;
  std::vector<std::size_t> suspectedControl;  ///< points: the one that does not fit or, of several, one of them
  /// Coordinates from which the iteration began, x and y of each point.
  std::vector<std::pair<double, double>> approximate;
  std::vector<PlaneTwins> twins;  ///< the nearest first
  /// Where the network does not settle with robust weights, or without the suspects, the result is that of all with
  /// their full weights, and this says so; else empty.
  QString untreated;
};

/// Unknowns are x and y of every point and the orientation of every set-up; minimised is the sum of (residual /
/// standard error)² over directions, distances and given coordinates of known points that are not fixed. Singular when
/// points can move without an observation feeling it.
///
///     PlaneAdjustment adjustment(network);
///     PlaneResult const& result = adjustment.adjust();
class KELVANE_EXPORT PlaneAdjustment {
 public:
  explicit PlaneAdjustment(PlaneNetwork network, PlaneSettings settings = {});
  /// Of a network that others hold too, and which nobody changes as long as this one is there.
  /// @throws std::invalid_argument for none.
  explicit PlaneAdjustment(std::shared_ptr<PlaneNetwork const> network, PlaneSettings settings = {});
  PlaneAdjustment(PlaneAdjustment const&) = delete;
  PlaneAdjustment& operator=(PlaneAdjustment const&) = delete;
  PlaneAdjustment(PlaneAdjustment&&) noexcept;
  PlaneAdjustment& operator=(PlaneAdjustment&&) noexcept;
  ~PlaneAdjustment();

  /// Asked again and again in long work; true ends it with `QLogicError` "User Cancel".
  void setCancelCall(std::function<bool()> call);
  void setProgressCall(AdjustProgressCall call);
  /// Whether findings are told as messages when they come up; on by default.
  void setTellFindings(bool tell);

  /// Ends when no coordinate moves by more than 0.01 mm in a round.
  ///
  /// @throws std::invalid_argument for a setting out of range; std::exception, with the line, for an observation that
  ///         has no usable value or error; AlgorithmException StationNotEnough for fewer than two points or no
  ///         observation at all, DataError for a record whose numbers do not fit together;
  ///         KnownPointNotEnough for points that cannot be placed, `unplacedPoints` has them; DataError "Calculate
  ///         failed" for a singular system, `looseMotions` has what can move. std::exception when the iteration does
  ///         not settle.
  PlaneResult const& adjust();

  /// Takes an observation out, or puts it back in, from the next run on. One that is out keeps its row, with a weight
  /// of 0 and the residual that the others give it; NaN where these do not orient its set-up.
  /// @throws std::out_of_range for a number that the network has not.
  void setDirectionUsed(std::size_t direction, bool isUsed);
  void setDistanceUsed(std::size_t distance, bool isUsed);
  /// `adjust` from the coordinates of the last run, with the order of elimination and the places in the factor that are
  /// known from it: for observations that were taken out or put back since, in about half of the time. Where it does
  /// not settle from there, or where there is no result yet, it is `adjust`.
  /// @throws as `adjust`.
  PlaneResult const& adjustAgain();

  /// What the results would be worth before anything is measured: `adjust` at the coordinates that all points have been
  /// given, one solution without any iteration. Readings do not count, errors are those by the unit weight error 1.
  /// There are errors, ellipses, redundancy numbers, smallest detectable errors and unchecked points; what comes of
  /// readings is NaN: residuals and their tests, orientations, unit weight errors. `adjusted` and the lengths follow
  /// from the coordinates.
  ///
  ///     setPlannedValues(network);
  ///     setErrors(network, ObservationErrors());  // of distances, which grow with their lengths
  ///     PlaneAdjustment planned(network);
  ///     PlaneResult const& result = planned.plan();
  ///
  /// @throws as `adjust`, but that a point without coordinates is a std::exception with its name.
  PlaneResult const& plan();
  PlaneResult const& result() const;  ///< of the last run
  PlaneNetwork const& network() const;

  std::vector<UnplacedPoint> const& unplacedPoints() const;
  std::vector<SuspectObservation> const& suspects() const;
  std::vector<LooseMotion> const& looseMotions() const;
  std::vector<std::pair<std::string, std::string>> const& coincidentPoints() const;

 private:
  struct Data;
  std::unique_ptr<Data> own;
};

}  // namespace kvn
