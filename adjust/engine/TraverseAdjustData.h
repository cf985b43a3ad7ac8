// The state of a TraverseAdjust: the engine, the settings and the results of the literal adjustment.
#pragma once

#include "adjust/TraverseAdjust.h"
#include "adjust/engine/PlaneEngine.h"

#include <utils/detail/PrivateData.h>

#include <cmath>
#include <string>
#include <vector>

namespace kvn {

/// Input, weights and stopping rule are those of the calculator's description: distances of a line are merged into
/// their mean with the weight of one, a station has one circle, known points are fixed, and a round that moves nothing
/// by more than a centimetre is the last.
struct KELVANE_PRIVATE TraverseAdjust::Data {
  KELVANE_LATER_MEMBER

  detail::PlaneEngine engine;

  // Settings.
  double angleError = 2.0;            ///< seconds
  double lineFixedError = 0.003;      ///< metres
  double lineProportionError = 3e-6;  ///< plain ratio
  bool lineCalculateExpression = true;
  bool tellFindings = true;

  // Results.
  double pvv = 0.0;
  double unitError = 0.0;
  bool hasRedundancy = true;
  std::vector<double> mx;
  std::vector<double> my;
  std::vector<double> mp;
  std::vector<DirectionResult> directionResults;
  std::vector<LineErrorInfo> lineErrorInfos;
  ErrorEllipseManage errorEllipses;
  std::vector<double> lineErrors;                        ///< errors of the distances without a threshold, metres
  std::vector<std::vector<double>> directionLineErrors;  ///< the same for the lines of the directions

  /// A cofactor below 1e-8 in size counts as zero.
  static double thresholded(double cofactor) { return std::abs(cofactor) < 1e-8 ? 0.0 : cofactor; }
  int pointsCount() const { return engine.network.points; }
  /// Distances between known points, where they count.
  std::vector<detail::NumberedNetwork::Line> const& judgedControlLines() const {
    static std::vector<detail::NumberedNetwork::Line> const kNone;
    return engine.countControlLines ? engine.controlLines : kNone;
  }
  int countedControlDistances() const { return static_cast<int>(judgedControlLines().size()); }
  int redundancy() const { return engine.redundancy() + countedControlDistances(); }
  /// A-priori variance by which the residual of a distance is weighed, square metres.
  double distanceVariance(double distance) const;
  PointInfo pointOf(int number, std::vector<double> const& coordinates) const;
  std::vector<PointInfo> pointsOf(std::vector<double> const& coordinates) const;
  void forgetResults();
  detail::NumberedNetwork::Line numbered(LineInfo const& line);
  void readDistances(std::vector<LineInfo> const& distances);
};

}  // namespace kvn
