#include "adjust/HeightAdjustment.h"

#include "adjust/heights/HeightAdjustmentData.h"
#include "adjust/input/Missing.h"
#include "adjust/linalg/Index.h"
#include "adjust/plane/Quantiles.h"
#include "core/AlgorithmException.h"
#include "records/detail/Messages.h"

#include <utils/QLogicError.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <queue>
#include <random>
#include <stdexcept>
#include <utility>

namespace kvn {
namespace {

using detail::Effort;
using detail::index;

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
// What holds a known height or a shared one, against the weights of its sights.
constexpr double kHold = 1e8;
// A share of a height's standard error below which an observation does not move it.
constexpr double kNoMove = 1e-4;

}  // namespace

HeightAdjustment::HeightAdjustment(HeightNetwork network, HeightSettings settings) : own(std::make_unique<Data>()) {
  own->network = std::move(network);
  own->settings = settings;
}

HeightAdjustment::HeightAdjustment(HeightAdjustment&&) noexcept = default;
HeightAdjustment& HeightAdjustment::operator=(HeightAdjustment&&) noexcept = default;
HeightAdjustment::~HeightAdjustment() = default;

void HeightAdjustment::setCancelCall(std::function<bool()> call) { own->cancelCall = std::move(call); }
HeightResult const& HeightAdjustment::result() const { return own->result; }
HeightNetwork const& HeightAdjustment::network() const { return own->network; }
std::vector<std::string> const& HeightAdjustment::unplacedPoints() const { return own->unplaced; }

HeightResult const& HeightAdjustment::adjust() {
  if (!(own->settings.confidence > 0.0 && own->settings.confidence < 1.0)) {
    throw std::invalid_argument("the confidence lies between 0 and 1");
  }
  own->poll = [call = own->cancelCall] {
    if (call && call()) throw QLogicError(Messages::tr("User Cancel"));
  };
  own->result = HeightResult();
  own->requireSound();
  own->place();
  own->share();
  own->prepareNormals();
  own->solve();
  own->takeResults();
  own->findSuspects();
  own->forgetWork();
  return own->result;
}

/// What the next run makes anew: with the factor most of the memory.
void HeightAdjustment::Data::forgetWork() {
  normals.reset();
  for (std::vector<double>* list : {&approximate, &heights, &residuals}) *list = std::vector<double>();
  for (std::vector<int>* list : {&reachedBy, &depth, &instrumentOf, &targetOf, &heldOf}) *list = std::vector<int>();
  held = std::vector<Held>();
  isOut = std::vector<bool>();
}

// ---- Input.

void HeightAdjustment::Data::requireSound() const {
  auto const isPoint = [this](int number) { return number >= 0 && number < pointCount(); };
  auto const refuse = [](std::string const& name) { throw AlgorithmException(AlgorithmException::DataError, name); };
  for (HeightNetwork::Point const& point : network.points) {
    if (point.isKnown && !detail::isPresent(point.height)) refuse(point.name);
  }
  for (HeightNetwork::SetUp const& setUp : network.setUps) {
    if (!isPoint(setUp.station)) refuse("Data error");
  }
  for (HeightNetwork::Sight const& sight : network.sights) {
    bool const isThere = sight.setUp >= 0 && index(sight.setUp) < network.setUps.size() && isPoint(sight.target);
    if (!isThere) refuse("Data error");
    bool const isUsable = detail::isPresent(sight.difference) && sight.error > 0.0 && std::isfinite(sight.error) &&
                          network.setUps[index(sight.setUp)].station != sight.target;
    if (!isUsable) refuse(network.points[index(sight.target)].name);
  }
}

/// Heights along single sights, nearest to the known points first.
void HeightAdjustment::Data::place() {
  std::vector<std::vector<std::size_t>> sightsAt(network.points.size());
  for (std::size_t s = 0; s < network.sights.size(); ++s) {
    sightsAt[index(network.setUps[index(network.sights[s].setUp)].station)].push_back(s);
    sightsAt[index(network.sights[s].target)].push_back(s);
  }
  approximate.assign(network.points.size(), kNoNumber);
  reachedBy.assign(network.points.size(), -1);
  depth.assign(network.points.size(), 0);
  std::queue<int> open;
  for (int p = 0; p < pointCount(); ++p) {
    if (!network.points[index(p)].isKnown) continue;
    approximate[index(p)] = network.points[index(p)].height;
    open.push(p);
  }
  while (!open.empty()) {
    int const from = open.front();
    open.pop();
    for (std::size_t const s : sightsAt[index(from)]) {
      HeightNetwork::Sight const& sight = network.sights[s];
      int const station = network.setUps[index(sight.setUp)].station;
      int const other = station == from ? sight.target : station;
      if (std::isfinite(approximate[index(other)])) continue;
      approximate[index(other)] = approximate[index(from)] + (station == from ? sight.difference : -sight.difference);
      reachedBy[index(other)] = static_cast<int>(s);
      depth[index(other)] = depth[index(from)] + 1;
      open.push(other);
    }
  }
  unplaced.clear();
  for (int p = 0; p < pointCount(); ++p) {
    if (!std::isfinite(approximate[index(p)])) unplaced.push_back(network.points[index(p)].name);
  }
  if (!unplaced.empty()) throw AlgorithmException(AlgorithmException::KnownPointNotEnough, "No enough data");
  heights = approximate;
}

/// Which heights of instruments and targets are in several sights, and with them the numbers of the unknowns.
void HeightAdjustment::Data::share() {
  std::vector<std::size_t> ofSetUp(network.setUps.size(), 0);
  std::map<std::pair<int, double>, std::vector<std::size_t>> ofTarget;
  for (std::size_t s = 0; s < network.sights.size(); ++s) {
    ++ofSetUp[index(network.sights[s].setUp)];
    ofTarget[{network.sights[s].target, network.sights[s].targetHeight}].push_back(s);
  }
  held.clear();
  knownPoint.clear();
  heldOf.assign(network.points.size(), -1);
  auto const hold = [this](int unknown) {
    if (index(unknown) == heldOf.size()) heldOf.push_back(-1);
    heldOf[index(unknown)] = static_cast<int>(held.size());
    held.push_back({unknown});
  };
  for (int p = 0; p < pointCount(); ++p) {
    if (!network.points[index(p)].isKnown) continue;
    knownPoint.push_back(index(p));
    hold(p);
  }
  result.shared.clear();
  std::vector<int> unknownOfSetUp(network.setUps.size(), -1);
  for (std::size_t s = 0; s < network.setUps.size(); ++s) {
    if (ofSetUp[s] < 2) continue;
    unknownOfSetUp[s] = unknowns();
    hold(unknowns());
    SharedHeight shared;
    shared.isInstrument = true;
    shared.setUp = s;
    shared.height = network.setUps[s].instrumentHeight;
    shared.sights = ofSetUp[s];
    result.shared.push_back(shared);
  }
  instrumentOf.assign(network.sights.size(), -1);
  targetOf.assign(network.sights.size(), -1);
  for (std::size_t s = 0; s < network.sights.size(); ++s) {
    instrumentOf[s] = unknownOfSetUp[index(network.sights[s].setUp)];
  }
  for (auto const& [target, sights] : ofTarget) {
    if (sights.size() < 2) continue;
    for (std::size_t const s : sights) targetOf[s] = unknowns();
    hold(unknowns());
    SharedHeight shared;
    shared.target = index(target.first);
    shared.height = target.second;
    shared.sights = sights.size();
    result.shared.push_back(shared);
  }
  isOut.assign(network.sights.size(), false);
}

// ---- Solution.

/// v = h(target) - h(station) + shift of the instrument - shift of the target - difference.
int HeightAdjustment::Data::equationOf(std::size_t sight, double* a, int* at) const {
  HeightNetwork::Sight const& s = network.sights[sight];
  int count = 0;
  auto const add = [&](int unknown, double factor) {
    if (unknown < 0) return;
    at[count] = unknown;
    a[count++] = factor;
  };
  add(network.setUps[index(s.setUp)].station, -1.0);
  add(s.target, 1.0);
  add(instrumentOf[sight], 1.0);
  add(targetOf[sight], -1.0);
  return count;
}

double HeightAdjustment::Data::weightOf(std::size_t sight) const {
  double const error = network.sights[sight].error;
  return 1.0 / (error * error);
}

void HeightAdjustment::Data::prepareNormals() {
  detail::NormalEquations::Soundness const soundness{detail::PivotRule::NotZero,
                                                     std::numeric_limits<double>::infinity()};
  if (unknowns() < settings.sparseFrom) {
    normals = detail::fullNormals(unknowns(), soundness);
    return;
  }
  detail::NormalEquations::Pattern pattern;
  pattern.blockSizes.assign(index(unknowns()), 1);
  for (std::size_t s = 0; s < network.sights.size(); ++s) {
    double a[4] = {};
    int at[4] = {-1, -1, -1, -1};
    int const count = equationOf(s, a, at);
    pattern.cliques.push_back({at[0], at[1], at[2]});
    if (count < 4) continue;
    pattern.cliques.push_back({at[0], at[1], at[3]});
    pattern.cliques.push_back({at[2], at[3], -1});
  }
  normals = detail::sparseNormals(pattern, soundness, poll);
}

void HeightAdjustment::Data::solve() {
  poll();
  normals->clear();
  for (Held& h : held) h.weight = 0.0;
  double a[4] = {};
  int at[4] = {};
  for (std::size_t s = 0; s < network.sights.size(); ++s) {
    HeightNetwork::Sight const& sight = network.sights[s];
    int const count = equationOf(s, a, at);
    double const rise =
        approximate[index(sight.target)] - approximate[index(network.setUps[index(sight.setUp)].station)];
    double const weight = isOut[s] ? 0.0 : weightOf(s);
    normals->addEquation(a, at, count, weight, rise - sight.difference);
    for (int r = 0; r < count; ++r) {
      if (heldOf[index(at[r])] >= 0) held[index(heldOf[index(at[r])])].weight += weight;
    }
  }
  for (Held const& h : held) {
    if (!h.isFree) normals->add(h.unknown, h.unknown, kHold * (h.weight > 0.0 ? h.weight : 1.0));
  }
  bool const isSolved = normals->factor(poll);
  std::vector<double> const x = isSolved ? normals->solution(poll) : std::vector<double>();
  bool const isSound = isSolved && std::all_of(x.begin(), x.end(), [](double value) { return std::isfinite(value); });
  if (!isSound || !normals->invert(poll)) throw AlgorithmException(AlgorithmException::DataError, "Calculate failed");
  for (std::size_t p = 0; p < heights.size(); ++p) heights[p] = approximate[p] + x[p];
  for (Held& h : held) h.shift = x[index(h.unknown)];
  takeResiduals();
  takeHeld();
}

/// With the shifts of free suspects in them; those of held ones are nothing.
void HeightAdjustment::Data::takeResiduals() {
  residuals.resize(network.sights.size());
  auto const shiftOf = [this](int unknown) {
    if (unknown < 0) return 0.0;
    Held const& h = held[index(heldOf[index(unknown)])];
    return h.isFree ? h.shift : 0.0;
  };
  for (std::size_t s = 0; s < network.sights.size(); ++s) {
    HeightNetwork::Sight const& sight = network.sights[s];
    residuals[s] = heights[index(sight.target)] - heights[index(network.setUps[index(sight.setUp)].station)] +
                   shiftOf(instrumentOf[s]) - shiftOf(targetOf[s]) - sight.difference;
  }
}

/// With a weight w on its diagonal an unknown has the element 1 / (w + κ) in the inverse, where κ is what elimination
/// of the others leaves of its own equations.
void HeightAdjustment::Data::takeHeld() {
  for (Held& h : held) h.moment = 0.0;
  double a[4] = {};
  int at[4] = {};
  for (std::size_t s = 0; s < network.sights.size(); ++s) {
    if (isOut[s]) continue;
    int const count = equationOf(s, a, at);
    for (int r = 0; r < count; ++r) {
      int const h = heldOf[index(at[r])];
      if (h >= 0) held[index(h)].moment += a[r] * weightOf(s) * residuals[s];
    }
  }
  for (Held& h : held) {
    double const own = h.isFree ? 0.0 : kHold * (h.weight > 0.0 ? h.weight : 1.0);
    h.kappa = std::max(0.0, 1.0 / normals->inverse(h.unknown, h.unknown) - own);
  }
}

// ---- Results.

double HeightAdjustment::Data::scale() const {
  return settings.unitWeight == PlaneSettings::UnitWeight::APriori ? 1.0 : result.unitError;
}

void HeightAdjustment::Data::takeResults() {
  takeUnitError();
  double const m = scale();
  result.points.resize(network.points.size());
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    HeightPoint& point = result.points[p];
    bool const isKnown = network.points[p].isKnown;
    point.height = isKnown ? network.points[p].height : heights[p];
    point.approximate = approximate[p];
    auto const at = static_cast<int>(p);
    point.error = isKnown ? 0.0 : std::sqrt(normals->inverse(at, at)) * m;
    point.isChecked = true;
  }
  takeSights();
  takeShared();
  findUnchecked();
  if (!result.isPassed) findLoops();
}

void HeightAdjustment::Data::takeUnitError() {
  double sum = 0.0;
  for (std::size_t s = 0; s < residuals.size(); ++s) sum += residuals[s] * residuals[s] * weightOf(s);
  int const unknown = pointCount() - static_cast<int>(knownPoint.size());
  result.redundancy = static_cast<int>(network.sights.size()) - unknown;
  bool const isAPriori = settings.unitWeight == PlaneSettings::UnitWeight::APriori;
  detail::GlobalTest const test = detail::globalTest(sum, result.redundancy, settings.confidence, isAPriori);
  result.hasRedundancy = test.hasRedundancy;
  result.unitError = test.unitError;
  result.lowerBound = test.lower;
  result.upperBound = test.upper;
  result.isPassed = test.isPassed;
  result.criticalValue = test.criticalValue;
}

/// @param size         how large the error seems to be, metres
/// @param sensitivity  1 / square of the standard error, a-priori, that it is seen with
void HeightAdjustment::Data::judge(HeightTest& test, double size, double sensitivity) const {
  test.standardised = test.test = test.detectable = test.gross = kNoNumber;
  if (test.redundancy < kUncheckedShare) return;
  test.standardised = -size * std::sqrt(sensitivity) / scale();
  test.test = std::abs(test.standardised) / result.criticalValue;
  test.detectable = detail::kDetectableShift / std::sqrt(sensitivity);
  if (test.test > 1.0) test.gross = size;
}

void HeightAdjustment::Data::takeSights() {
  Effort effort(poll);
  result.sights.resize(network.sights.size());
  double a[4] = {};
  int at[4] = {};
  double q[16] = {};
  for (std::size_t s = 0; s < network.sights.size(); ++s) {
    effort.step();
    int const count = equationOf(s, a, at);
    normals->block(at, count, q);
    // Station and target come first.
    double const variance = q[0] - q[1] - q[count] + q[count + 1];
    HeightObservation& sight = result.sights[s];
    sight.residual = residuals[s];
    sight.adjusted = network.sights[s].difference + residuals[s];
    sight.adjustedError = std::sqrt(std::max(variance, 0.0)) * scale();
    sight.redundancy = std::min(1.0, std::max(0.0, 1.0 - variance * weightOf(s)));
    judge(sight, -residuals[s] / sight.redundancy, sight.redundancy * weightOf(s));
    sight.effect = kNoNumber;
    if (sight.redundancy < kUncheckedShare) continue;
    // An error g moves the unknowns by Q a' p g.
    double const moved = std::max(std::abs(q[1] - q[0]), std::abs(q[count + 1] - q[count]));
    sight.effect = moved * weightOf(s) * sight.detectable;
  }
}

void HeightAdjustment::Data::takeShared() {
  result.known.assign(network.points.size(), HeightTest());
  for (HeightTest& test : result.known) judge(test, 0.0, 0.0);
  for (std::size_t h = 0; h < held.size(); ++h) {
    bool const isKnown = h < knownPoint.size();
    HeightTest& test =
        isKnown ? result.known[knownPoint[h]] : static_cast<HeightTest&>(result.shared[h - knownPoint.size()]);
    test.redundancy = held[h].weight > 0.0 ? std::min(1.0, held[h].kappa / held[h].weight) : 0.0;
    // A shared height that is too large leaves residuals against it; a known point would move with them.
    double const size = held[h].moment / held[h].kappa;
    judge(test, isKnown ? size : -size, held[h].kappa);
  }
}

/// The points that errors of unchecked sights and instruments move: all these are disturbed at once, at random, so that
/// one solution shows every point that one of them moves. Heights of targets are left out: most points are sighted at
/// one height alone, which nothing but care checks.
void HeightAdjustment::Data::findUnchecked() {
  std::mt19937 random(1);
  auto const anySize = [&random] { return 1.0 + static_cast<double>(random()) / 4294967296.0; };
  std::vector<double> right(heldOf.size(), 0.0);
  std::vector<double> shift(heldOf.size(), 0.0);  // of each unknown that is shared and unchecked
  bool hasUnchecked = false;
  for (std::size_t h = knownPoint.size(); h < held.size(); ++h) {
    SharedHeight const& shared = result.shared[h - knownPoint.size()];
    if (!shared.isInstrument || shared.redundancy >= kUncheckedShare) continue;
    shift[index(held[h].unknown)] = anySize() / std::sqrt(held[h].weight);
    hasUnchecked = true;
  }
  double a[4] = {};
  int at[4] = {};
  for (std::size_t s = 0; s < network.sights.size(); ++s) {
    int const count = equationOf(s, a, at);
    double error = 0.0;
    if (result.sights[s].redundancy < kUncheckedShare) {
      error = anySize() * network.sights[s].error;
      hasUnchecked = true;
    }
    for (int r = 2; r < count; ++r) error += a[r] * shift[index(at[r])];
    for (int r = 0; r < 2; ++r) right[index(at[r])] += a[r] * weightOf(s) * error;
  }
  if (!hasUnchecked) return;
  std::vector<double> const moved = normals->solved(right, poll);
  for (int p = 0; p < pointCount(); ++p) {
    double const error = std::sqrt(normals->inverse(p, p));
    bool const isMoved = !network.points[index(p)].isKnown && std::abs(moved[index(p)]) > kNoMove * error;
    if (isMoved) result.points[index(p)].isChecked = false;
  }
}

}  // namespace kvn
