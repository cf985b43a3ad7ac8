// TriangleHeightAdjust: least-squares adjustment of trigonometric heights.
#pragma once

#include "adjust/TriangleHeightDataConvert.h"
#include "adjust/TriangleHeightRecords.h"
#include "records/CoordinatePointInfo.h"

#include <utils/Export.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace kvn {

/// One linear solve. Unknowns are the heights of all points; minimised is the sum of the squared residuals of the
/// height differences, each weighted by 1 / length in metres, so that a line of 1 m has the weight 1 and the unit
/// weight error is the standard error of such a line. Known points are unknowns too and are held by a weight of 1e30;
/// they have the first numbers. The system is singular when lines do not connect a point to a known
/// one.
///
/// One object serves many runs: `clearCalData`, `setTriangleHeightDataConvert`, `heightLSAdjust`. Points keep their
/// numbers from run to run while the names and what is known about them stay the same; otherwise numbers start anew.
class KELVANE_EXPORT TriangleHeightAdjust {
 public:
  TriangleHeightAdjust();
  TriangleHeightAdjust(TriangleHeightAdjust const&);
  TriangleHeightAdjust& operator=(TriangleHeightAdjust const&);
  ~TriangleHeightAdjust();

  /// Drops heights and equations; names, observations and the list of adjusted heights stay.
  void clearCalData();
  void setTriangleHeightDataConvert(TriangleHeightDataConvert const& convert);

  /// The solve. After a failure no height is left for `convertCoordZ`.
  ///
  /// @throws std::exception "Calculate Height Failed, The Height Of Data Is Error" when lines do not connect a point to
  ///         a known one; when a height, known or approximate, is -9999.0 or below, 1e29 or above, or not finite; for a
  ///         height difference that is missing or not finite; for a singular system.
  void heightLSAdjust();

  /// Number of points from which on the normal equations are kept sparse, and the inverse only where lines meet; below
  /// it the matrix is full. The results are the same but for rounding. 100 by default.
  void setSparseFrom(int points);

  /// Adjusted heights in number order, known points too. Each run appends its points to those of the runs before it.
  std::vector<TriangleHeightPointInfo> getTriangleHeightPointInfo() const;
  /// The approximate heights of the last run in number order.
  std::vector<TriangleHeightPointInfo> getTriangleHeightPointInfoH0() const;
  /// Writes the heights of the last run into the points of the same name; the others stay as they are.
  void convertCoordZ(std::vector<CoordinatePointInfo>& points) const;

  /// Adjusted less observed height difference of each line of the last run, metres, in the order of the lines.
  std::vector<double> const& getResiduals() const;
  /// Unit weight error of the last run, metres for a line of 1 m; NaN without redundancy.
  double getUnitError() const;
  /// Lines and known points less points; 0 when nothing is redundant, and then there are no errors.
  int getRedundancy() const;

 protected:
  void calculateH0();  ///< by walks along the lines, in list order, again and again
  void calculateATPA();
  void calculatedX();
  double calculateV();  ///< returns the weighted sum of the squared residuals
  void calculateHeightError();
  int getStationNumber(std::string const& name);  ///< a new name gets the next number
  /// As `Matrix::inverse`, but false at a pivot p that is too small to change 1.0.
  bool inverse(std::vector<double>& packed, int n) const;
  static std::size_t ij(int i, int j);

 private:
  struct Data;
  class HeightWalk;

  void requireUsableInput();
  [[noreturn]] void fail();

  std::unique_ptr<Data> own;
};

}  // namespace kvn
