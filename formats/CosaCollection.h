// CosaCollection: the network file of the COSA adjustment package.
#pragma once

#include "core/Configure.h"
#include "formats/INetworkDataCollection.h"

#include <utils/Export.h>
#include <utils/Pieces.h>

#include <string>
#include <vector>

namespace kvn {

namespace detail {
class CosaReading;
}

/// One observation to write.
struct OutView {
  std::string name;    ///< target
  double value = 0.0;  ///< direction in radians, or distance in metres
};

/// One station block of the file.
struct ExportStation {
  std::string name;
  std::vector<OutView> distances;
  std::vector<OutView> directions;
};

/// For the host: an observed target with its two optional values.
struct CosaViewInfo {
  std::string name;
  bool hasDirection = false;
  double direction = 0.0;
  bool hasDistance = false;
  double distance = 0.0;
};

/// For the host: a station with its targets.
struct CosaStationInfo {
  std::string name;
  std::vector<CosaViewInfo> views;
};

/// For the host: the stations and known points of a network.
class KELVANE_EXPORT CosaDataManage {
 public:
  std::vector<CosaStationInfo> const& getCosaData() const;
  void setCosaData(std::vector<CosaStationInfo> const& stations);

  std::vector<KnownPoint> knownPoints;

 private:
  std::vector<CosaStationInfo> cosaData;
};

/// Reads and writes a COSA network file, UTF-8 lines of fields separated by commas:
///
///     AngleError,LineFixedError,LineProportionError    on line 1 alone: seconds, millimetres, parts per million
///     NAME,N,E                                         a known point
///     NAME                                             a station; what follows belongs to it
///     TARGET,L,DD.MMSSss                               a direction
///     TARGET,S,DISTANCE                                a horizontal distance in metres
class KELVANE_EXPORT CosaCollection : public INetworkDataCollection {
 public:
  CosaCollection();
  ~CosaCollection() override;

  using INetworkDataCollection::read;
  using INetworkDataCollection::write;

  /// Fills the lists. The direction and the distance of a target become one line; of further lines with the same
  /// station and target only the observations that the first lacks are taken, one of 0 counting as lacking. A line that
  /// got no direction, or one whose text is no angle (it counts as 0), has `horizontalAngleFlag` false. Lines of no
  /// kind are passed over. `CarefulCosaCollection` tells what this one takes in silence.
  ///
  /// @throws DataException "The Format of Data is wrong" when line 1 has not three fields.
  /// @throws std::invalid_argument "invalid stod argument", std::out_of_range "stod argument out of range" for a number
  ///         that is none in the head, a coordinate or a distance. The lists hold what was read up to the failure.
  void read(std::istream& stream) override;
  /// Writes head, known points, and a block for each run of lines from one station. Angles have two decimals of a
  /// second, lengths four of a metre.
  void write(std::ostream& stream) override;

  /// A block for each run of consecutive lines with the same station, in order.
  std::vector<ExportStation> convertData(std::vector<NetworkDataInfo> const& lines) const;

  /// With the a-priori errors of the head; the defaults, or those of `setConfigure`, when no head was read.
  Configure const& getConfigure() const;
  /// For the head that `write` prints; `read` keeps what the head does not say.
  void setConfigure(Configure const& value);

 protected:
  void readHead(utils::Pieces const& fields);
  /// Takes a line of three fields; false when it is of no kind.
  bool readObservation(detail::CosaReading& reading, utils::Pieces const& fields);
  void writeHead(std::ostream& stream) const;  ///< the a-priori errors and the known points
  static void writeDirection(std::ostream& stream, std::string const& target, double radians);
  static void writeDistance(std::ostream& stream, std::string const& target, double metres);  ///< none for 0

 private:
  void readLines(std::istream& stream, detail::CosaReading& reading);

  Configure configure;
};

}  // namespace kvn
