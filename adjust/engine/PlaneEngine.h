// PlaneEngine: least squares of a plane network, from the start to residuals and cofactors.
#pragma once

#include "adjust/AdjustProgress.h"
#include "adjust/NameIndex.h"
#include "adjust/linalg/NormalEquations.h"
#include "adjust/linalg/Poll.h"
#include "adjust/plane/GrossErrors.h"
#include "adjust/plane/NumberedNetwork.h"
#include "adjust/start/PolarFit.h"
#include "adjust/start/Walks.h"
#include "records/MessType.h"
#include "records/NetworkFindings.h"

#include <QString>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace kvn::detail {

/// Indirect (parametric) adjustment of directions and distances. Unknowns are x and y of every point, known ones too,
/// and one orientation of every station:
///
///     2 n, 2 n + 1         corrections to x and y of point n, metres
///     2 points + s         correction to the orientation of station s, seconds of arc
///
/// Known points are held by weight, so that the numbering does not depend on which points are known, and a known point
/// with an error of its own is no other case than a fixed one.
///
/// Its owner fills the input, calls `prepare`, then `placePoints`, `tryToSettle` or `iterateUpTo`, `invert`.
class PlaneEngine {
 public:
  /// 1e20 is a standard error of 1e-10 m: far below a millimetre, and still far from overflow in the products.
  static constexpr double kFixedWeight = 1e20;

  /// The stopping rule of the calculators, metres.
  static constexpr double kCalculatorMove = 0.01;

  enum class Outcome { Settled, Unsettled, Singular };
  enum class Walk { ByDistances, ByTriangles };

  // ---- Input.
  NumberedNetwork network;
  NameIndex names;                       ///< of the points, in the order of their numbers
  std::vector<double> directionWeights;  ///< 1 / square seconds
  std::vector<double> lineWeights;       ///< 1 / square metres
  /// Of each known point, for x and y alike, 1 / square metres. Below `kFixedWeight` its given coordinates are
  /// observations with that weight.
  std::vector<double> holdingWeights;
  /// Unknowns that are held in place of the known points, which move with all others then: as many as the observations
  /// leave free. Empty where known points hold the network.
  std::vector<int> heldUnknowns;
  /// Orientations that no observation with a weight has: held as well, and no unknowns.
  std::vector<int> idleUnknowns;
  /// Distances between known points that move nothing; `countControlLines` tells whether they are judged.
  std::vector<NumberedNetwork::Line> controlLines;
  bool countControlLines = false;

  double smallestMove =
      kCalculatorMove;         ///< no coordinate moves by more when the iteration ends, metres; exactly this ends it
  int iterationLimit = 10000;  ///< rounds
  int sparseFrom = kSparseFrom;
  bool isDamped = false;  ///< steps that would make the sum of squares larger are shortened
  /// Directions are compared with the orientation on which most of their station agree, and not with the first one: a
  /// gross direction is then off by itself alone.
  bool hasCommonOrientations = false;
  /// The start is looked for by orientations first, which is faster. It lies elsewhere by millimetres, and so does, by
  /// less, what a calculator with a loose stopping rule gives.
  bool fitsByOrientations = false;

  /// Whether the normal equations stay beside their inverse. Without them `needFactor` has to make them again.
  bool keepsNormals = true;

  Poll poll;  ///< called again and again in long work; may throw to end it
  AdjustProgressCall progress;
  std::function<void(QString const&, MessType)> tell;  ///< of findings; may be empty

  /// About where the points lie, as somebody has told, NaN where nobody did; may be empty. They decide between two
  /// places that agree with all observations, and stand in for what no search finds.
  std::vector<Place> hints;

  /// The numbers that its owner has for the directions, in the order of the engine; null where it has none. Suspects
  /// are told by them. Distances have the order of the owner.
  std::vector<std::size_t> const* ownerDirections = nullptr;

  // ---- State.
  Coordinates given;                ///< of the known points, metres
  Coordinates xy;                   ///< current
  Coordinates x0y0;                 ///< approximate, as reported
  Coordinates start;                ///< where the iteration began; as x0y0 but for points that were moved before it
  Coordinates linearised;           ///< about which the equations of the last round were made, metres
  std::vector<double> corrections;  ///< of the last round
  std::vector<double> directionResiduals;  ///< reduced observations, then residuals, seconds
  std::vector<double> lineResiduals;       ///< metres
  OwnedNormals normals;                    ///< after `invert` with the inverse
  int iterations = 0;
  double largestMove = std::numeric_limits<double>::quiet_NaN();

  // ---- Findings.
  std::vector<UnplacedPoint> unplacedPoints;
  std::vector<SuspectObservation> suspects;
  std::vector<LooseMotion> looseMotions;
  std::vector<std::pair<std::string, std::string>> coincidentPoints;

  /// Look-ups and empty states for the input.
  void prepare();

  // ---- Start.
  /// Approximate coordinates of all points, into `xy`. False when points are left, which are told.
  bool placePoints(Walk walk);
  /// An attempt without the searches that take long, from `xy`. Most networks settle in a few rounds. False leaves `xy`
  /// anywhere.
  bool tryToSettle();

  // ---- Iteration.
  Outcome iterateUpTo(int rounds);
  /// Empty normal equations.
  void clearNormals();
  /// Empty ones unless there are some.
  void needNormals();
  void buildNormals();
  void holdKnownPoints();
  /// False for a singular system; the coordinates are as they were then.
  bool solve();
  /// False for a system that turns out to be singular.
  bool invert();
  /// Makes the inverse of a system that has been factored.
  void needInverse();
  /// Brings the factor of the last round again, where it was given back.
  void needFactor();
  double inverse(int i, int j) const { return normals->inverse(i, j); }
  double cofactor(double const* a, int const* at, int count) const { return normals->cofactor(a, at, count); }
  /// Residuals of all observations about `xy`. @return the weighted sum of their squares, with the weights of the
  /// equations.
  double calculateResiduals();
  /// The same of any coordinates, each station being turned so that its directions fit best.
  double sumOfSquares(Coordinates const& at) const;

  /// Factors of x and y of i and j in the azimuth from i to j, seconds per metre. @return the azimuth, 0 to 2π.
  double azimuthFactors(int i, int j, double* a, int* at) const;
  /// The same of the distance. @return it.
  double distanceFactors(int i, int j, double* a, int* at) const;

  void tellProgress(AdjustProgress::Stage stage) const;
  /// The error equation of an observation without its misclosure: of a direction in seconds, with its orientation, of a
  /// distance, numbered behind all directions, in metres. @return the number of its unknowns, 5 or 4.
  int equationFactors(std::size_t observation, double* a, int* at) const;
  /// The same about `linearised`, as the normal equations and their inverse have it: the last round may have moved a
  /// short sight by a millionth of its length, and what hangs on one observation alone is known by less than that.
  int solvedFactors(std::size_t observation, double* a, int* at) const;

  int unknowns() const { return 2 * network.points + network.stations(); }
  /// Observations less unknowns. A fixed coordinate is none.
  int redundancy() const;

  // ---- Findings.
  /// Observations that do not fit the others, about `about`, told in one `Warning`. With `improveStart`, `xy` moves to
  /// better coordinates where plain least squares do not settle about these.
  void findSuspects(Coordinates const& about, bool improveStart);
  /// Where the last `findSuspects` has the points: by the observations that it does not suspect. Empty when it came to
  /// nothing.
  std::vector<Place> trustedPlaces;
  std::vector<int> suspectNumbers;  ///< of the last `findSuspects`: directions and, behind them, distances
  /// The same about the finished adjustment. Where each observation fits the others within its errors nothing is
  /// searched for.
  void judgeObservations();
  /// Points that can move without an observation feeling it, and observations between points at one place, each told in
  /// one `Error`; about the approximate coordinates.
  /// @param hasFailed  the system has no solution: weaker motions count too.
  void determine(bool hasFailed);
  /// What there is to say of a system without a solution.
  void explainFailure();

  /// @param observation  number of the direction or, behind all directions, of the distance.
  /// @param difference   what the others say less what was observed, radians or metres.
  SuspectObservation suspectOf(int observation, double difference) const;
  void tellSuspects() const;

  std::string const& nameOf(int point) const { return names.names()[static_cast<std::size_t>(point)]; }

 private:
  static constexpr int kSparseFrom = 200;

  // Start.
  std::vector<PolarSight> polarSights() const;
  std::vector<Place> const& fitted();
  bool hasFit();
  bool placeRemainingPoints();
  bool searchRemainingPoints(bool tellsLeft);
  bool searchOnce(bool tellsLeft, bool usesHints);
  template <typename Chosen>
  void takeFit(Chosen const& chosen);

  // Iteration.
  static double azimuthFactors(Coordinates const& about, int i, int j, double* a, int* at);
  static double distanceFactors(Coordinates const& about, int i, int j, double* a, int* at);
  int factorsAbout(Coordinates const& about, std::size_t observation, double* a, int* at) const;
  double orientationOf(int station) const;
  bool agrees(int station, double orientation) const;
  double commonOrientation(Coordinates const& at, int station) const;
  void holdElements();
  void shortenStep(Coordinates const& before);
  std::vector<int> const& eliminationOrder();
  std::vector<sparse::BlockPlace> placesOfBlocks() const;

  // Findings.
  /// What holds the network where its known points do not, all of which are unknown then.
  std::vector<HeldCoordinate> heldCoordinates(std::vector<Place> const& places) const;
  bool hasMisfits() const;
  void addControlSuspects();
  void findLooseMotions(bool hasFailed);
  std::pair<int, int> firmPair() const;
  NumberedNetwork heldInFront(std::pair<int, int> const& firm, std::vector<int>& numberOf) const;
  void findCoincidentPoints();
  void say(QString const& text, MessType type) const;

  std::vector<Place> fittedPlaces;  // once they are asked for
  bool isFactored = false;
  bool isInverted = false;
};

/// The coordinates as complex numbers.
std::vector<Place> placesOf(Coordinates const& coordinates);

}  // namespace kvn::detail
