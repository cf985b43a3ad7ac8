#include "adjust/plane/GrossErrors.h"

#include "adjust/linalg/Index.h"
#include "adjust/plane/Quantiles.h"
#include "adjust/plane/SparseNormals.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace kvn::detail {
namespace {

// Beyond this many standard errors lie 6 of 10 million good observations.
constexpr double kLeastCritical = 5.0;
constexpr int kPlainRounds = 15;
// Round limit of an attempt: 200, down to 20 where a round takes seconds.
constexpr int kManyRounds = 200;
constexpr int kFewRounds = 20;
constexpr int kRoundsTimesUnknowns = 2000000;
constexpr double kSettled = 1e-3;  // metres
constexpr int kRobustRounds = 30;
constexpr int kTestRounds = 40;
constexpr double kSameScale = 1.01;
// Weight of a suspect against its own: it decides where nothing else does.
constexpr double kSuspectWeight = 1e-8;
// A median of fewer observations may be that of gross errors.
constexpr std::size_t kFewOfAKind = 20;

class Fit {
 public:
  Fit(NumberedNetwork const& network, std::vector<Place> const& places, std::vector<HeldCoordinate> const& coordinates,
      Poll const& call)
      : net(network),
        poll(call),
        held(coordinates),
        state(orientedState(network, places, call)),
        normals(network, call) {
    linearise();
    weights.resize(equations.size());
  }

  /// Observations. Behind them stand the equations of what is held.
  std::size_t size() const { return equations.size() - held.size(); }
  std::vector<Place> const& places() const { return state.places; }
  double normalised(std::size_t i) const { return std::abs(equations[i].misclosure) / equations[i].error; }
  double misclosure(std::size_t i) const { return equations[i].misclosure; }

  /// Weights 1 / error² times the given factors. The largest move of a coordinate; not finite when it cannot be solved.
  double step(std::vector<double> const& factors) {
    for (std::size_t i = 0; i < weights.size(); ++i) {
      double const factor = i < size() ? factors[i] : 1.0;
      weights[i] = factor / (equations[i].error * equations[i].error);
    }
    if (!normals.factor(equations, weights, 0.0, poll)) return std::numeric_limits<double>::infinity();
    std::vector<double> const dx = normals.correction(equations, weights, poll);
    double largest = 0.0;
    for (int i = 0; i < 2 * (net.points - net.known); ++i) {
      if (!std::isfinite(dx[index(i)])) return std::numeric_limits<double>::infinity();
      largest = std::max(largest, std::abs(dx[index(i)]));
    }
    move(net, state, dx);
    linearise();
    return largest;
  }

  bool settle(std::vector<double> const& factors, int rounds, double smallest) {
    for (int round = 0; round < rounds; ++round) {
      double const largest = step(factors);
      if (largest <= smallest) return true;
      if (!std::isfinite(largest)) return false;
    }
    return false;
  }

  /// Weights that fall with the square of the residual (Cauchy), with a scale that comes down to the a-priori errors
  /// or, where residuals are larger throughout, to these.
  bool settleRobustly() {
    double width = std::max(1.0, medianMisfit(equations, size()));
    std::vector<double> factors(size());
    for (int round = 0; round < kRobustRounds; ++round) {
      for (std::size_t i = 0; i < size(); ++i) {
        double const relative = normalised(i) / (2.0 * width);
        factors[i] = 1.0 / (1.0 + relative * relative);
      }
      double const largest = step(factors);
      if (!std::isfinite(largest)) return false;
      double const least = scale();
      if (largest < kSettled && width <= kSameScale * least) return true;
      width = std::max(least, 0.5 * width);
    }
    return true;
  }

  /// How many times as large as the a-priori errors the residuals are, 1 at least.
  double scale() const { return std::max(1.0, medianMisfit(equations, size()) / kNormalMedian); }

  double doubt() const {
    double sum = 0.0;
    for (std::size_t i = 0; i < size(); ++i) sum += std::log1p(normalised(i) * normalised(i));
    return std::isfinite(sum) ? sum : std::numeric_limits<double>::infinity();
  }

  /// Of each observation, the residual over its standard error; of a suspect over that of its prediction. Where those
  /// of its kind that are no suspects are larger throughout than the a-priori errors, these are taken larger.
  std::vector<double> tests(std::vector<bool> const& isSuspect) {
    std::vector<double> result = normals.cofactors(equations, poll);
    result.resize(size());
    std::size_t const firstDistance = net.directions.size();
    std::vector<double> ofDirections;
    std::vector<double> ofDistances;
    for (std::size_t i = 0; i < size(); ++i) {
      double const share = result[i] / (equations[i].error * equations[i].error);
      double const checked = isSuspect[i] ? 1.0 + share : 1.0 - share;
      result[i] = checked < kUncheckedShare ? 0.0 : normalised(i) / std::sqrt(checked);
      if (!isSuspect[i] && result[i] > 0.0) (i < firstDistance ? ofDirections : ofDistances).push_back(result[i]);
    }
    std::vector<double> all = ofDirections;
    all.insert(all.end(), ofDistances.begin(), ofDistances.end());
    auto const scaleOf = [&all](std::vector<double> const& kind) {
      return std::max(1.0, medianOf(kind.size() < kFewOfAKind ? all : kind) / kNormalMedian);
    };
    double const directionScale = scaleOf(ofDirections);
    double const distanceScale = scaleOf(ofDistances);
    for (std::size_t i = 0; i < size(); ++i) result[i] /= i < firstDistance ? directionScale : distanceScale;
    return result;
  }

 private:
  void linearise() {
    equations = equationsOf(net, state, poll);
    for (HeldCoordinate const& coordinate : held) {
      Place const place = state.places[index(net.known + coordinate.unknown / 2)];
      double const now = coordinate.unknown % 2 == 0 ? place.real() : place.imag();
      equations.push_back({{coordinate.unknown}, {1.0}, 1, now - coordinate.value, coordinate.error});
    }
  }

  NumberedNetwork const& net;
  Poll const& poll;
  std::vector<HeldCoordinate> const& held;
  NetworkState state;
  std::vector<Equation> equations;
  std::vector<double> weights;
  SparseNormals normals;
};

std::size_t worstOf(std::vector<double> const& tests, std::vector<bool> const& isSuspect) {
  std::size_t worst = tests.size();
  for (std::size_t i = 0; i < tests.size(); ++i) {
    if (!isSuspect[i] && (worst == tests.size() || tests[i] > tests[worst])) worst = i;
  }
  return worst;
}

std::vector<double> factorsFor(std::vector<bool> const& isSuspect) {
  std::vector<double> factors;
  factors.reserve(isSuspect.size());
  for (bool const suspect : isSuspect) factors.push_back(suspect ? kSuspectWeight : 1.0);
  return factors;
}

/// Takes back suspects that fit what the others say; the observation that fits least becomes one. False when the others
/// have no solution: then nothing can be said.
bool testOneByOne(Fit& fit, std::vector<bool>& isSuspect) {
  std::vector<bool> wasTakenBack(isSuspect.size(), false);
  double const critical = criticalTest(isSuspect.size());
  for (int round = 0; round < kTestRounds; ++round) {
    if (!fit.settle(factorsFor(isSuspect), kPlainRounds, kSettled)) return false;
    std::vector<double> const tests = fit.tests(isSuspect);
    bool changed = false;
    for (std::size_t i = 0; i < tests.size(); ++i) {
      if (!isSuspect[i] || wasTakenBack[i] || tests[i] > critical) continue;
      isSuspect[i] = false;
      wasTakenBack[i] = changed = true;
    }
    if (changed) continue;
    std::size_t const worst = worstOf(tests, isSuspect);
    if (worst == tests.size() || tests[worst] <= critical) return true;
    isSuspect[worst] = true;
  }
  return true;
}

}  // namespace

// Of n good observations, n exp(-t²/2) at most lie beyond t.
double criticalTest(std::size_t observations) {
  return std::max(kLeastCritical, std::sqrt(2.0 * std::log(20.0 * static_cast<double>(observations) + 1.0)));
}

int attemptRounds(int unknowns) {
  return std::max(kFewRounds, std::min(kManyRounds, kRoundsTimesUnknowns / std::max(unknowns, 1)));
}

bool settles(NumberedNetwork const& network, std::vector<Place> const& places, double smallestMove, Poll const& poll,
             std::vector<HeldCoordinate> const& held) {
  Fit fit(network, places, held, poll);
  return fit.settle(std::vector<double>(fit.size(), 1.0), attemptRounds(unknownsOf(network)), smallestMove);
}

namespace {

struct Verdict {
  double doubt = std::numeric_limits<double>::infinity();
  std::vector<GrossError> errors;
  std::vector<Place> places;
};

Verdict judgedFrom(NumberedNetwork const& network, std::vector<Place> const& places,
                   std::vector<HeldCoordinate> const& held, bool plainFirst, Poll const& poll) {
  Verdict verdict;
  Fit fit(network, places, held, poll);
  if (plainFirst && !fit.settle(std::vector<double>(fit.size(), 1.0), kPlainRounds, kSettled)) return verdict;
  if (!fit.settleRobustly()) return verdict;
  double const critical = criticalTest(fit.size()) * fit.scale();
  std::vector<bool> isSuspect(fit.size(), false);
  for (std::size_t i = 0; i < fit.size(); ++i) isSuspect[i] = fit.normalised(i) > critical;
  if (!testOneByOne(fit, isSuspect)) return verdict;
  verdict.doubt = fit.doubt();
  verdict.places = fit.places();
  for (std::size_t i = 0; i < fit.size(); ++i) {
    if (isSuspect[i]) verdict.errors.push_back({static_cast<int>(i), fit.misclosure(i)});
  }
  return verdict;
}

}  // namespace

std::optional<GrossErrorSearch> grossErrors(NumberedNetwork const& network, std::vector<Place> const& places,
                                            std::function<std::vector<Place>()> const& otherPlaces, Poll const& poll,
                                            std::vector<HeldCoordinate> const& held) {
  Verdict best = judgedFrom(network, places, held, false, poll);
  bool const isClean = best.errors.empty() && std::isfinite(best.doubt);
  if (otherPlaces && !isClean) {
    // A robust fit keeps near to where it began, and a gross error may have led the start astray.
    std::vector<Place> const others = otherPlaces();
    for (bool const plainFirst : {true, false}) {
      for (std::vector<Place> const* start : {&places, &others}) {
        if (start->empty() || (start == &places && !plainFirst)) continue;
        Verdict verdict = judgedFrom(network, *start, held, plainFirst, poll);
        if (verdict.doubt < best.doubt) best = std::move(verdict);
      }
    }
  }
  if (!std::isfinite(best.doubt)) return std::nullopt;
  return GrossErrorSearch{std::move(best.errors), std::move(best.places)};
}

}  // namespace kvn::detail
