// FileData: a traverse or COSA file read in one go, to what an adjustment needs.
#pragma once

#include "core/Configure.h"
#include "records/CalculationRecords.h"

#include <utils/Export.h>
#include <utils/Pieces.h>

#include <iosfwd>
#include <string>
#include <vector>

namespace kvn {

/// A one-shot reader for the host: known points, stations with directions, distances and azimuths, the a-priori errors
/// and the counts. Stricter than the collections: what cannot be used is refused with its line, never passed over.
///
///     kvn::FileData const data("net.IN2");
///     for (kvn::StationInfo const& station : data.stations) ...
///
/// Paths are in the local 8-bit encoding. Lines count from 1, empty ones with them; blanks go, in names too. Failures
/// are DataExceptions:
///
/// | cause | form | word |
/// |---|---|---|
/// | an empty line; a sighting without a name | line | "SPACE" |
/// | a field too many or too few, another keyword or type, a station without a name, a number that is none or not
///   finite, an angle out of range | line | "ERROR" |
/// | an odd number of sights, a first direction that is not near zero, a name that comes twice | name | "ERROR" |
/// | an a-priori error of zero | text alone | "ERROR" |
/// | no known point, no station | text alone | "NO_KN_POINT", "NO_STATION" |
class KELVANE_EXPORT FileData {
 public:
  /// Reads the file when the path is not empty, as `readFileData`.
  FileData(std::string const& path);

  /// Reads a traverse file with the suffix "txt" or a COSA file with "IN2"; the case counts. A file with another suffix
  /// is not read.
  /// @return false when the file cannot be opened.
  bool readFileData(std::string const& path);
  /// A traverse file: face means of an even number of sights a station, the first within 25" above zero or half a
  /// degree below the full circle. Starts anew.
  bool readVRDFileData(std::string const& path);
  /// A COSA file with at least one known point; beside directions "L" and distances "S", in either case, it may have
  /// azimuths "T". Starts anew.
  bool readCosaFileData(std::string const& path);
  /// Whether the head of a COSA file is good; the whole file is read for it.
  /// @return false for another suffix than "IN2" and when the file cannot be opened.
  bool readCosaFileFirstLine(std::string const& path);

  std::vector<StationInfo> getStation() const;
  std::vector<PointInfo> getKnowPoint() const;
  /// The defaults with the a-priori errors of the head, in the units of this class: not those of `Configure`.
  Configure getCosaConfig() const;

  /// The pieces of a text without its blanks, empty ones too but for one behind a delimiter at the very end.
  std::vector<std::string> split(std::string const& text, char delimiter) const;
  /// The pieces that are not empty of a text without any `removed`.
  std::vector<std::string> split(std::string const& text, std::string const& removed, char delimiter) const;
  /// Removes every occurrence, those that a removal forms included.
  void deleteStr(std::string& text, std::string const& removed) const;
  bool judgeStringToDouble(std::string const& text) const;  ///< as in `CommonFunction`
  double dmsToRad(double dms) const;                        ///< as in `CommonFunction`, with the `m_PI` of the object
  /// @throws DataException(line, "ERROR") beyond the bounds of `CommonFunction::dmsToRad`
  double dmsToRad(double dms, int line) const;
  Degree radToDms(double radians) const;  ///< as in `CommonFunction`

  // A-priori errors of the head; those of a default `Configure` when none was read.
  float angleError;           ///< seconds of arc
  float lineFixedError;       ///< metres
  float lineProportionError;  ///< metres per metre
  std::vector<PointInfo> knowPoints;
  std::vector<StationInfo> stations;
  int pointsNumber = 0;  ///< known points and stations, a station that is a known point counted once
  int stationsNumber = 0;
  int directionsNumber = 0;
  int knowPointsNumber = 0;
  int linesNumber = 0;
  int azimuthNumber = 0;
  double m_PI;  ///< the arc cosine of -1

 private:
  struct CosaReader;
  struct TraverseReader;

  void clear();
  void readCosaContents(std::string const& bytes);
  void readHead(int line, utils::Pieces const& fields);
  void checkAndCount();
  void judgetKnpointCountZero() const;
  void judgeStationCountZero() const;
  void judgeKnPointNameRepeat() const;
  void judgeStationPointNameRepeat() const;
  void judgeSightPointNameRepeat() const;
  void count();
};

}  // namespace kvn
