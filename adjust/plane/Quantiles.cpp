#include "adjust/plane/Quantiles.h"

#include <boost/math/distributions/chi_squared.hpp>
#include <boost/math/distributions/fisher_f.hpp>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>

#include <cmath>
#include <limits>

namespace kvn::detail {
namespace {

constexpr double kErrorProbability = 0.001;

}  // namespace

double normalCriticalValue() { return quantile(boost::math::normal(), 1.0 - 0.5 * kErrorProbability); }

double tauCriticalValue(int redundancy) {
  if (redundancy < 2) return std::numeric_limits<double>::quiet_NaN();
  double const f = redundancy;
  double const t = quantile(boost::math::students_t(f - 1.0), 1.0 - 0.5 * kErrorProbability);
  return std::sqrt(f) * t / std::sqrt(f - 1.0 + t * t);
}

double controlCriticalValue(int freed, int redundancy) {
  if (redundancy == 0) return quantile(boost::math::chi_squared(freed), 1.0 - kErrorProbability) / freed;
  return quantile(boost::math::fisher_f(freed, redundancy), 1.0 - kErrorProbability);
}

GlobalTest globalTest(double squares, int redundancy, double confidence, bool isAPriori) {
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  GlobalTest test;
  test.hasRedundancy = redundancy > 0;
  test.unitError = test.lower = test.upper = test.criticalValue = kNone;
  if (isAPriori) test.criticalValue = normalCriticalValue();
  if (!test.hasRedundancy) return test;
  test.unitError = std::sqrt(squares / redundancy);
  boost::math::chi_squared const distribution(redundancy);
  auto const boundAt = [&](double p) { return std::sqrt(quantile(distribution, p) / redundancy); };
  test.lower = boundAt(0.5 * (1.0 - confidence));
  test.upper = boundAt(0.5 * (1.0 + confidence));
  test.isPassed = test.unitError >= test.lower && test.unitError <= test.upper;
  if (!isAPriori) test.criticalValue = tauCriticalValue(redundancy);
  return test;
}

double rangeCriticalValue(int count) {
  boost::math::normal const distribution;
  double const errorProbability = cdf(complement(distribution, 3.0));  // on one side
  double const pairs = 0.5 * count * (count - 1.0);
  return std::sqrt(2.0) * quantile(complement(distribution, errorProbability / pairs));
}

double ellipseFactor(double confidence, int redundancy) {
  if (redundancy == 0) return std::sqrt(quantile(boost::math::chi_squared(2), confidence));
  return std::sqrt(2.0 * quantile(boost::math::fisher_f(2, redundancy), confidence));
}

}  // namespace kvn::detail
