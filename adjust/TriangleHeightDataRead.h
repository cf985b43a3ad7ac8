// TriangleHeightDataRead: from the rows of a field book to height differences.
#pragma once

#include "adjust/TriangleHeightRecords.h"
#include "records/TraverseDataInfo.h"

#include <utils/Export.h>

#include <memory>
#include <string>
#include <vector>

namespace kvn {

/// Pairs the faces of each target, works out distance and vertical angle, and gives for every line
///
///     height difference = S tan a + i - t + (1 - K) S² / 2 R
///
/// with the horizontal distance S, the mean a of the reduced vertical angles, the height i of the instrument, that of
/// the target t, the radius R of the earth and the refraction coefficient K. Lines between two known stations are
/// dropped, the two directions of a line become one: the first with the mean.
///
/// A line is needed on two faces. Its first, third, ... sighting counts as one on the first face, its second, fourth,
/// ... as one on the second. Zenith readings on a full circle are reduced to the elevation on the second face and to
/// its negative on the first, so that the mean is the index term of the circle and not the elevation: `elevationRows`
/// turns such rows into elevations, which this class takes as they are.
///
/// An object is used for one list of rows; a second one is added to what is there.
class KELVANE_EXPORT TriangleHeightDataRead {
 public:
  TriangleHeightDataRead();  ///< as `TriangleHeightDataRead(FullCircleZenith)`
  TriangleHeightDataRead(VerticalAngleType type);
  TriangleHeightDataRead(TriangleHeightDataRead const&);
  TriangleHeightDataRead& operator=(TriangleHeightDataRead const&);
  ~TriangleHeightDataRead();

  /// Takes effect at the next `setTraverseDataList`.
  void setVerticalAngleType(VerticalAngleType type);

  /// Copies both and runs the reduction. No rows give no lines.
  ///
  /// @param rows             in field-book order.
  /// @param atmosphericIndex K, about 0.1 to 0.2; 1 takes neither curvature nor refraction into account, 0 curvature
  ///                         alone.
  /// @throws std::exception "Triangulation Height Require The Information Of Distance" for a line that was sighted once
  ///         only, whose horizontal distance is below 1e-6 m, or in which a value is missing (1e29 and above) or not
  ///         finite; "Fine Station Instrument Height" for a sight without a station row.
  void setTraverseDataList(std::vector<TraverseDataInfo> const& rows, double atmosphericIndex);
  /// The same, but takes the rows over, of which a large job has no room for two lists.
  void setTraverseDataList(std::vector<TraverseDataInfo>&& rows, double atmosphericIndex);

  /// One entry for each station row, in row order.
  std::vector<TriangleStationData> getTriangleStationData() const;
  /// The lines, in the order of their first sighting.
  std::vector<TriangleViewData> getTriangleViewData() const;

 protected:
  void dataConvert();

  // The steps, in this order. The first two take the rows, so that the results above can be had of any object.
  void getTriangleStationData(std::vector<TraverseDataInfo> const& rows);
  void getTriangleViewData(std::vector<TraverseDataInfo> const& rows);
  void dealVerticalAngleAndDistance();
  void checkData() const;
  void calAverage();
  void calHeightValue();
  void deleteKnLine();
  void deleteBackFore();

  /// Curvature less refraction, (1 - K) S² / 2 R, added to every height difference; metres.
  double calf(double const& distance) const;
  /// That of the first entry of the name, metres. @throws std::exception "Fine Station Instrument Height"
  double getInstrumentHeight(std::string const& station) const;

 private:
  double reducedAngle(double reading, bool secondFace) const;

  struct Data;
  std::unique_ptr<Data> own;
};

}  // namespace kvn
