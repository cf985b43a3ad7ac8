// The state of a PlaneAdjustment.
#pragma once

#include "adjust/PlaneAdjustment.h"
#include "adjust/engine/FreeDatum.h"
#include "adjust/engine/PlaneEngine.h"

#include <utils/Circle.h>

#include <utils/detail/PrivateData.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kvn {

struct KELVANE_PRIVATE PlaneAdjustment::Data {
  KELVANE_LATER_MEMBER

  static constexpr double kSecondsPerRadian = utils::kSecondsPerRadian;
  /// Below this redundancy nothing checks an observation: rounding leaves 1e-9.
  static constexpr double kUncheckedRedundancy = 1e-6;
  /// What the error of an observation that is left out, and has no weight, is multiplied with, for the searches that
  /// need one.
  static constexpr double kLeftOutFactor = 1e6;
  static constexpr double kLeastWeight = 1.0 / (kLeftOutFactor * kLeftOutFactor);  ///< the same as a weight

  Data(std::shared_ptr<PlaneNetwork const> observed, PlaneSettings chosen)
      : shared(std::move(observed)), settings(chosen) {}

  std::shared_ptr<PlaneNetwork const> shared;
  PlaneNetwork const& network = *shared;
  PlaneSettings settings;
  std::function<bool()> cancelCall;
  bool tellFindings = true;
  detail::PlaneEngine engine;
  PlaneResult result;

  // Numbers of the engine and of the network.
  std::vector<int> numberOfPoint;
  std::vector<std::size_t> pointOfNumber;
  std::vector<std::size_t> directionOf;     ///< of each direction of the engine, that of the network
  std::vector<std::size_t> setUpOfStation;  ///< of each station of the engine
  std::vector<bool> isLeftOut;              ///< of the directions of the engine and, behind them, the distances
  std::vector<bool> isDirectionOut;         ///< of those of the network, as the host wants it; empty for none
  std::vector<bool> isDistanceOut;
  bool isAdjusted = false;
  bool hasLostSuspects = false;  ///< the iteration has settled without them alone
  /// Of the same observations in a robust run, 0 to 1; empty in others.
  std::vector<double> robustWeights;
  std::vector<PlaneLeftOut> leftOut;
  detail::FreeDatum datum;          ///< of a free network
  detail::Coordinates datumPlaces;  ///< where the points of a free network are wanted, those of the datum above all

  bool isFree() const { return settings.datum == PlaneSettings::Datum::Free; }

  // Input.
  void takeCalls();
  void begin(bool readsValues);
  void number();
  void numberPoints();
  void numberDirections();
  void numberDistances();
  void weigh();
  void takeOut();
  bool isIdle(int station) const;
  void place();
  void takeHints();
  void placeFirstPoints();
  void placeByGeometry();
  double addCentring(double leastChange = 0.0);
  std::vector<bool> observedPoints() const;

  // Run.
  void run();
  void solve();
  void treatSuspects();
  void runFree();
  bool mayBeLedAstray(bool hasFailed) const;
  void finish();
  bool iterateAgain();
  void moveFor(std::vector<std::size_t> const& changed);
  void iterate();
  void settle();
  void iterateDamped();
  void useTrustedPlaces();
  int leftOutCount() const;
  void forgetLeftOut();
  [[noreturn]] void fail();
  void chooseHeldUnknowns();
  void layOnDatum();
  std::vector<int> datumPoints() const;

  // Plan.
  void takeGivenPlaces();
  void forgetReadings();

  // Robust weights.
  void weighDown();
  void setWeight(std::size_t number, double weight);
  double weightOf(std::size_t number) const;
  std::vector<double> standardisedSizes();
  bool takeWeights(std::vector<double> const& sizes, bool isGentle, double step);
  bool startFromTrusted();
  void judgeWeighed();

  // Results.
  void takeResults();
  void keepResultsOnly();
  void takeUnitError();
  void takePoints();
  void takeObservations();
  void takeOrientations();
  void takeKinds();
  void findUnchecked();
  void findUncheckedOfFree(std::vector<double> const& moved);
  void judge();
  void leaveOut(int suspect);
  void leaveOutSuspects();
  void judgeWithFree(std::size_t point);
  void findAlternatives();
  std::vector<PlaneAlternative> alternativesWithout(std::size_t suspect);
  bool isExplainedBy(PlaneControl const& control) const;
  void findTwins();
  bool isTwinOf(int a, int b) const;
  bool isObservedBetween(int a, int b) const;
  bool isFixed(int point) const;
  PlaneObservation const& resultOf(std::size_t number) const;
  double errorOf(std::size_t number) const;
  double scaledErrorOf(std::size_t number) const;
  void testControl();
  std::vector<PlaneControl const*> suspectedControl();
  void findCommonControl();
  void tellControl(std::vector<PlaneControl const*> const& suspected);
  double scaleOfErrors() const;
  void test(PlaneObservation& observation, double error) const;
  void takeObservation(PlaneObservation& observation, double const* a, int const* at, int count, double error);
};

}  // namespace kvn
