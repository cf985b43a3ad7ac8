#include "adjust/PlaneAdjustment.h"

#include "adjust/engine/PlaneAdjustmentData.h"
#include "adjust/input/CalculationFailure.h"
#include "adjust/input/Missing.h"
#include "adjust/linalg/Index.h"
#include "core/AlgorithmException.h"
#include "records/detail/Messages.h"

#include <utils/QLogicError.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kvn {
namespace {

using detail::index;
using detail::NumberedNetwork;
using detail::PlaneEngine;

// No coordinate moves by more than this in the last round, metres.
constexpr double kSettledMove = 1e-5;

/// The middle one of the errors; 0 of none.
double medianError(std::vector<double> errors) {
  if (errors.empty()) return 0.0;
  auto const middle = errors.begin() + static_cast<std::ptrdiff_t>(errors.size() / 2);
  std::nth_element(errors.begin(), middle, errors.end());
  return *middle;
}

[[noreturn]] void refuse(std::string const& name) { throw AlgorithmException(AlgorithmException::DataError, name); }

bool isNumber(std::size_t size, int number) { return number >= 0 && index(number) < size; }

/// A record that a program filled may hold anything.
void requireSound(PlaneNetwork const& network) {
  std::size_t const points = network.points.size();
  for (PlaneNetwork::Point const& point : network.points) {
    bool const isSound = point.error >= 0.0 && (!point.isKnown || std::isfinite(point.x + point.y));
    if (!isSound) refuse(point.name);
  }
  for (PlaneNetwork::SetUp const& setUp : network.setUps) {
    if (!isNumber(points, setUp.station)) refuse("Data error");
  }
  for (PlaneNetwork::Direction const& d : network.directions) {
    if (!isNumber(network.setUps.size(), d.setUp) || !isNumber(points, d.target)) refuse("Data error");
    int const station = network.setUps[index(d.setUp)].station;
    bool const isSound = d.target != station && d.error > 0.0 && std::isfinite(d.value + d.error);
    if (!isSound) refuse(network.points[index(station)].name);
  }
  for (PlaneNetwork::Distance const& d : network.distances) {
    if (!isNumber(points, d.from) || !isNumber(points, d.to)) refuse("Data error");
    bool const isSound = d.from != d.to && d.error > 0.0 && d.value > 0.0 && std::isfinite(d.value + d.error);
    if (!isSound) refuse(network.points[index(d.from)].name);
  }
}

}  // namespace

PlaneAdjustment::PlaneAdjustment(PlaneNetwork network, PlaneSettings settings) : own(std::make_unique<Data>()) {
  own->network = std::move(network);
  own->settings = settings;
}

PlaneAdjustment::PlaneAdjustment(PlaneAdjustment&&) noexcept = default;
PlaneAdjustment& PlaneAdjustment::operator=(PlaneAdjustment&&) noexcept = default;
PlaneAdjustment::~PlaneAdjustment() = default;

void PlaneAdjustment::setCancelCall(std::function<bool()> call) { own->cancelCall = std::move(call); }
void PlaneAdjustment::setProgressCall(AdjustProgressCall call) { own->engine.progress = std::move(call); }
void PlaneAdjustment::setTellFindings(bool tell) { own->tellFindings = tell; }

PlaneNetwork const& PlaneAdjustment::network() const { return own->network; }
PlaneResult const& PlaneAdjustment::result() const { return own->result; }
std::vector<UnplacedPoint> const& PlaneAdjustment::unplacedPoints() const { return own->engine.unplacedPoints; }
std::vector<SuspectObservation> const& PlaneAdjustment::suspects() const { return own->engine.suspects; }
std::vector<LooseMotion> const& PlaneAdjustment::looseMotions() const { return own->engine.looseMotions; }
std::vector<std::pair<std::string, std::string>> const& PlaneAdjustment::coincidentPoints() const {
  return own->engine.coincidentPoints;
}

PlaneResult const& PlaneAdjustment::adjust() {
  requireSound(own->network);
  own->result = PlaneResult();
  own->engine.poll = [call = own->cancelCall] {
    if (call && call()) throw QLogicError(Messages::tr("User Cancel"));
  };
  own->engine.tell = own->tellFindings ? Messages::send : nullptr;
  own->number();
  own->place();
  own->iterate();
  own->takeResults();
  own->judge();
  return own->result;
}

/// Known points first, then the others, each in the order of the network. A set-up without a direction has no unknown.
void PlaneAdjustment::Data::number() {
  engine.network = NumberedNetwork();
  engine.names = NameIndex();
  engine.heldUnknowns.clear();
  engine.holdingWeights.clear();
  engine.isDamped = false;
  engine.smallestMove = kSettledMove;
  engine.iterationLimit = settings.iterationLimit;
  engine.sparseFrom = settings.sparseFrom;
  numberPoints();
  numberDirections();
  numberDistances();
  engine.prepare();
}

void PlaneAdjustment::Data::numberPoints() {
  NumberedNetwork& numbered = engine.network;
  numbered.points = static_cast<int>(network.points.size());
  numberOfPoint.assign(network.points.size(), -1);
  pointOfNumber.clear();
  for (bool const isKnown : {true, false}) {
    for (std::size_t p = 0; p < network.points.size(); ++p) {
      if (network.points[p].isKnown != isKnown) continue;
      numberOfPoint[p] = static_cast<int>(pointOfNumber.size());
      pointOfNumber.push_back(p);
    }
    if (isKnown) numbered.known = static_cast<int>(pointOfNumber.size());
  }
  engine.xy.clear();
  for (std::size_t const p : pointOfNumber) {
    PlaneNetwork::Point const& point = network.points[p];
    if (engine.names.numberOf(point.name) + 1 != engine.names.size() ||
        index(engine.names.size()) * 2 <= engine.xy.size()) {
      refuse(point.name);  // two points of one name
    }
    bool const hasPlace = std::isfinite(point.x + point.y);
    engine.xy.push_back(hasPlace ? point.x : detail::kMissing);
    engine.xy.push_back(hasPlace ? point.y : 0.0);
    if (!point.isKnown) continue;
    bool const isFixed = point.error < 1e-9;
    engine.holdingWeights.push_back(isFixed ? PlaneEngine::kFixedWeight : 1.0 / (point.error * point.error));
  }
}

void PlaneAdjustment::Data::numberDirections() {
  NumberedNetwork& numbered = engine.network;
  std::vector<std::vector<std::size_t>> ofSetUp(network.setUps.size());
  for (std::size_t d = 0; d < network.directions.size(); ++d) {
    ofSetUp[index(network.directions[d].setUp)].push_back(d);
  }
  engine.directionWeights.clear();
  directionOf.clear();
  setUpOfStation.clear();
  numbered.directionStart = {0};
  std::vector<double> errors;
  for (std::size_t s = 0; s < network.setUps.size(); ++s) {
    if (ofSetUp[s].empty()) continue;
    auto const station = static_cast<int>(setUpOfStation.size());
    setUpOfStation.push_back(s);
    numbered.stationPoint.push_back(numberOfPoint[index(network.setUps[s].station)]);
    for (std::size_t const d : ofSetUp[s]) {
      PlaneNetwork::Direction const& direction = network.directions[d];
      numbered.directions.push_back(
          {station, numberOfPoint[index(direction.target)], direction.value, direction.error});
      double const seconds = direction.error * kSecondsPerRadian;
      engine.directionWeights.push_back(1.0 / (seconds * seconds));
      directionOf.push_back(d);
      errors.push_back(direction.error);
    }
    numbered.directionStart.push_back(static_cast<int>(numbered.directions.size()));
  }
  numbered.directionError = medianError(std::move(errors));
}

void PlaneAdjustment::Data::numberDistances() {
  engine.lineWeights.clear();
  std::vector<double> errors;
  for (PlaneNetwork::Distance const& d : network.distances) {
    engine.network.lines.push_back({numberOfPoint[index(d.from)], numberOfPoint[index(d.to)], d.value, d.error});
    engine.lineWeights.push_back(1.0 / (d.error * d.error));
    errors.push_back(d.error);
  }
  engine.network.distanceFixed = medianError(std::move(errors));
}

void PlaneAdjustment::Data::place() {
  bool const isComplete = !isFree() || engine.network.known >= 2;
  if (!isComplete) placeFirstPoints();
  bool const isPlaced = engine.placePoints(engine.network.lines.empty() ? PlaneEngine::Walk::ByTriangles
                                                                        : PlaneEngine::Walk::ByDistances);
  if (!isPlaced) throw AlgorithmException(AlgorithmException::KnownPointNotEnough, "No enough data");
  engine.x0y0 = engine.xy;
  addCentring();
}

/// The lengths of the sights are known well enough from the approximate coordinates.
void PlaneAdjustment::Data::addCentring() {
  double const variance = 2.0 * settings.centring * settings.centring;
  if (!(variance > 0.0)) return;
  double a[4];
  int at[4];
  for (std::size_t d = 0; d < engine.network.directions.size(); ++d) {
    NumberedNetwork::Direction& direction = engine.network.directions[d];
    double const length = engine.distanceFactors(engine.network.pointOf(direction.station), direction.target, a, at);
    direction.error = std::sqrt(direction.error * direction.error + variance / (length * length));
    double const seconds = direction.error * kSecondsPerRadian;
    engine.directionWeights[d] = 1.0 / (seconds * seconds);
  }
  for (std::size_t e = 0; e < engine.network.lines.size(); ++e) {
    NumberedNetwork::Line& line = engine.network.lines[e];
    line.error = std::sqrt(line.error * line.error + variance);
    engine.lineWeights[e] = 1.0 / (line.error * line.error);
  }
}

/// A network that nothing holds lies anywhere: on its first line, along the x axis from 0, 0.
void PlaneAdjustment::Data::placeFirstPoints() {
  NumberedNetwork const& numbered = engine.network;
  bool const hasPlaces = std::count_if(pointOfNumber.begin(), pointOfNumber.end(), [&](std::size_t p) {
                           return std::isfinite(network.points[p].x + network.points[p].y);
                         }) >= 2;
  if (hasPlaces) return;
  if (!numbered.lines.empty()) {
    NumberedNetwork::Line const& line = numbered.lines.front();
    detail::place(engine.xy, line.start, 0.0, 0.0);
    detail::place(engine.xy, line.end, line.value, 0.0);
  } else if (!numbered.directions.empty()) {
    constexpr double kAnyLength = 100.0;
    NumberedNetwork::Direction const& direction = numbered.directions.front();
    detail::place(engine.xy, numbered.pointOf(direction.station), 0.0, 0.0);
    detail::place(engine.xy, direction.target, kAnyLength, 0.0);
  }
}

void PlaneAdjustment::Data::iterate() {
  if (isFree()) chooseHeldUnknowns();
  if (engine.redundancy() < 0) fail();
  if (!engine.settles()) iterateDamped();
  if (isFree()) layOnDatum();
  if (!engine.invert()) fail();
}

/// From the walk's coordinates or, where plain steps do not settle, from better ones, with steps that never make the
/// sum of squares larger.
void PlaneAdjustment::Data::iterateDamped() {
  engine.xy = engine.x0y0;
  if (!isFree()) engine.findSuspects(engine.xy, true);
  engine.start = engine.xy;
  engine.isDamped = true;
  PlaneEngine::Outcome const outcome = engine.iterateUpTo(engine.iterationLimit);
  if (outcome == PlaneEngine::Outcome::Singular) fail();
  if (outcome == PlaneEngine::Outcome::Unsettled) {
    throw detail::CalculationFailure(Messages::tr("total station data is error"));
  }
}

void PlaneAdjustment::Data::fail() {
  engine.explainFailure();
  throw AlgorithmException(AlgorithmException::DataError, "Calculate failed");
}

}  // namespace kvn
