// Quantiles of the distributions by which an adjustment is judged.
#pragma once

namespace kvn::detail {

/// A unit weight error beyond is that of a gross error or of wrong given coordinates, and not of a-priori errors that
/// are too small; those that would fit mean nothing then.
constexpr double kDoubtfulUnitError = 20.0;

constexpr double kNormalMedian = 0.6745;  ///< of the size of a standard normal variable

/// Critical size of a residual over its standard error, error probability 0.1 % two-sided, where the unit weight error
/// is known: 3.29.
double normalCriticalValue();

/// Shift of a standardised residual that its test with this error probability finds with a power of 80 %: 3.29 + 0.84
/// (Baarda 1968).
constexpr double kDetectableShift = 4.13;

/// The critical size where the unit weight error comes from f degrees of freedom of the same adjustment: √f t / √(f - 1
/// + t²) with the quantile t of Student's distribution of f - 1 (Pope 1976). NaN for f below 2.
double tauCriticalValue(int redundancy);

/// Critical value of the reduction of the weighted sum of squares by one or two more unknowns, over their number and
/// the variance factor of f degrees of freedom: F(0.999; freed, f) and, with f of 0, where the variance factor is
/// known, χ²(0.999; freed) / freed.
double controlCriticalValue(int freed, int redundancy);

/// By what a standard error ellipse is enlarged to hold the point with the given probability: √(2 F(p; 2, f)) and, with
/// f of 0, where the unit weight error is known, √χ²(p; 2).
double ellipseFactor(double confidence, int redundancy);

/// What the largest and the smallest of some observations of standard error 1 may differ by: 3 √2 of two, and for more
/// by the same error probability, 0.27 %, shared by all pairs.
double rangeCriticalValue(int count);

/// An adjustment as a whole: its unit weight error, the bounds that it lies between with the given probability when the
/// a-priori errors are right, √(χ²(p; f) / f) at both ends for a redundancy of f, and the critical size of a
/// standardised residual.
struct GlobalTest {
  bool hasRedundancy = false;
  double unitError = 0.0;  ///< NaN without redundancy, as the bounds
  double lower = 0.0;
  double upper = 0.0;
  bool isPassed = true;  ///< without redundancy too
  /// By `normalCriticalValue` where the unit weight error counts as 1, else by `tauCriticalValue`; NaN where that needs
  /// a redundancy that is not there.
  double criticalValue = 0.0;
};

/// @param squares     weighted sum of the squares of all residuals.
/// @param redundancy  0 or less where nothing is redundant.
/// @param confidence  probability of the bounds, above 0 and below 1.
/// @param isAPriori   the unit weight error counts as 1 in the tests of single residuals.
GlobalTest globalTest(double squares, int redundancy, double confidence, bool isAPriori);

}  // namespace kvn::detail
