// VRDTraverseDataCollcetion: the traverse file, in which a total station hands over a field job.
#pragma once

#include "formats/ITraverseDataCollcetion.h"

#include <utils/Export.h>

#include <iosfwd>
#include <string>
#include <vector>

namespace kvn {

/// Reads and writes a traverse file, UTF-8 lines of fields separated by commas, one row a line:
///
///     STA,NAME,HEIGHT,,N,E,Z                                      the instrument stands here
///     SC,TARGET,HEIGHT,,HORIZONTAL,VERTICAL,SLANT,N,E,Z           a sighting from the latest station
///
/// Heights, coordinates and the slant distance are metres, angles DD.MMSSss, the vertical angle from the zenith, above
/// 180 degrees on the second face. An empty slant distance is a direction alone. Coordinates of zero mean that the
/// station is not known.
///
///     kvn::VRDTraverseDataCollcetion collection;
///     collection.read("job.txt");
///     for (kvn::TraverseDataInfo const& row : collection.getTraverseDataList()) ...
class KELVANE_EXPORT VRDTraverseDataCollcetion : public ITraverseDataCollcetion {
 public:
  VRDTraverseDataCollcetion();

  using ITraverseDataCollcetion::read;
  using ITraverseDataCollcetion::write;

  /// Appends a row a line; empty lines are passed over. A sighting takes the `groupId` of the station before it; those
  /// ahead of any station share one that no station has. A station is known unless N, E and Z are all below 1e-5 m in
  /// size. White space at the ends of a line goes, and every inner run of it becomes one blank, in names too. A text
  /// that is no angle is 0. "nan" and "inf" pass as coordinates and distances.
  ///
  /// @throws DataException "The line N is wrong", the lines counted from 1 and empty ones with them, for a line of
  ///         another form; "The Format of Data is wrong" for a coordinate or a distance that is no number.
  /// @throws std::invalid_argument "invalid stod argument", std::out_of_range "stod argument out of range" for a height
  ///         that does not begin with a number. The list holds the rows before the failure.
  void read(std::istream& stream) override;
  /// Writes the station and target rows and no others. Angles have two decimals of a second, lengths four of a metre,
  /// heights six digits. A row without a distance is written with its `slant_distance`, and so reads back as one that
  /// has it.
  void write(std::ostream& stream) override;

  /// Replaces the N and E of the rows by approximate coordinates computed from the observations.
  /// @return false when none can be computed; the rows stay as they are.
  bool correctData(std::vector<TraverseDataInfo>& rows);
};

}  // namespace kvn
