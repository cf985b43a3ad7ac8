// AlgorithmData: the validated input of every plane calculation.
#pragma once

#include "adjust/NameIndex.h"
#include "records/CalculationRecords.h"
#include "records/Network.h"
#include "records/TraverseDataInfo.h"

#include <utils/Export.h>

#include <cstddef>
#include <functional>
#include <vector>

namespace kvn {

struct VRDStations;

/// Whether a load asks for control points.
enum class ControlPoints {
  AtLeastTwo,  ///< as every calculation needs them
  AnyNumber,   ///< for a job that is to be looked at before its control points are known
};

/// What a line without an observed direction (`horizontalAngleFlag` false) gives the calculators.
enum class MissingDirection {
  IsZero,     ///< a direction of 0, as every line does: wrong unless the target lies in the circle's zero
  IsLeftOut,  ///< its distance alone; a station without any direction has no orientation then
};

/// Known points, stations with their directions and distances, and six counts. All calculators read this and nothing
/// else. An object is loaded once: a second load appends, and fails on the name checks.
class KELVANE_EXPORT AlgorithmData {
 public:
  AlgorithmData();
  AlgorithmData(AlgorithmData const&);
  AlgorithmData(AlgorithmData&&) noexcept;
  AlgorithmData& operator=(AlgorithmData const&);
  AlgorithmData& operator=(AlgorithmData&&) noexcept;
  ~AlgorithmData();

  /// Loads the rows of a field job: a station row, then its sightings, first face and then second face backward.
  ///
  /// A direction is the mean of the two faces, a circle reading of the first face, radians. A distance is the mean of
  /// the faces and, where it was measured from both ends, of the ends, metres, horizontal by the sine of the reading
  /// from the zenith. The distances to each station's first target and from an earlier to a later known point are
  /// dropped; the one that follows a dropped distance in the list stays.
  ///
  /// @throws DataException "The line 1 error" when the first row is no station; QLogicError with the row number for a
  ///         row without a name, with the station's name for an odd number of sightings; AlgorithmException
  ///         StationNameRepeat, StationNotEnough, KnownPointNotEnough, KnownPointNameRepeat, SightNameRepeat. The
  ///         object must be discarded then.
  void initVRDData(std::vector<TraverseDataInfo> const& rows, ControlPoints control = ControlPoints::AtLeastTwo);

  /// Loads a network. The lines of one station must stand together; every line makes a direction, and one with a
  /// distance above 1e-6 m a distance too.
  ///
  /// @throws AlgorithmException (i, DataError), i the index of the line, for a distance below -1e-6 m or not finite and
  ///         for an angle outside 0 to 360; (DataError, name) for a known point whose coordinates are not finite;
  ///         KnownPointNotEnough for fewer than two known points, KnownPointNameRepeat, StationNotEnough,
  ///         StationNameRepeat with the name. The object must be discarded then.
  void readNetworkData(Network const& network, MissingDirection missing = MissingDirection::IsZero);

  std::vector<PointInfo> knPoints;    ///< control points
  std::vector<StationInfo> stations;  ///< directions in radians, distances in metres
  int pointsCount = 0;                ///< distinct names of all observations
  int stationsCount = 0;
  int directionsCount = 0;
  int knPointsCount = 0;
  int linesCount = 0;    ///< distances with at least one end that is not a known point
  int azimuthCount = 0;  ///< no loader fills azimuths, so it stays 0
  double m_PI;           ///< the arc cosine of -1

 protected:
  void judgeStationPointNameRepeat() const;  ///< @throws StationNameRepeat with the name that comes twice first
  void judgeStationCount() const;            ///< @throws StationNotEnough without a station
  void judgetKnpointCount() const;           ///< @throws KnownPointNotEnough for fewer than two known points
  void judgeKnPointNameRepeat() const;       ///< @throws KnownPointNameRepeat with the name that comes twice first
  void judgeSightPointNameRepeat() const;    ///< @throws SightNameRepeat with a target that one station has twice
  /// Whether the line runs from a known point to one that stands later in the list.
  bool deleteLastStationDistance(LineInfo const& line) const;
  /// Each distance of one station that the other measured back becomes the mean, at both.
  void calculateStationDistance(StationInfo& first, StationInfo& second) const;

 private:
  void readFaces(VRDStations const& station);
  void readKnownPoints(std::vector<KnownPoint> const& points);
  void readLines(std::vector<NetworkDataInfo> const& lines, MissingDirection missing);
  /// @param begin, end  places of the lines of one station
  void readStation(std::vector<NetworkDataInfo> const& lines, std::size_t begin, std::size_t end,
                   MissingDirection missing);
  void joinStationsWithoutDirections();
  void getPointsCount();
  void getDirectionsCount();
  void getLinesCount();
  void getKnPointsCount();
  void getAzimuthCount();
};

/// The distinct names of all observations, in the order of their first use.
KELVANE_EXPORT NameIndex observedNames(AlgorithmData const& data, std::function<void()> const& poll = {});

}  // namespace kvn
