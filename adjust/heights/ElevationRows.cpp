#include "adjust/ElevationRows.h"

#include "adjust/heights/Elevations.h"
#include "adjust/input/IndexError.h"
#include "adjust/input/PairIndex.h"
#include "adjust/linalg/Index.h"
#include "records/NewId.h"

#include <cmath>
#include <optional>
#include <unordered_map>
#include <utility>

namespace kvn {
namespace {

using detail::elevationOf;
using detail::hasDistance;
using detail::isAlongVertical;

/// A sight with the place where it was taken from.
struct Sight {
  std::size_t row;
  std::string station;
  std::size_t line;             // station name and target name
  std::size_t occupied;         // one occupation of the station and target name
  double occupationInstrument;  // metres
};

/// What the sights belong to.
class FieldBook {
 public:
  explicit FieldBook(std::vector<TraverseDataInfo> const& rows) {
    std::string station;
    double instrument = 0.0;
    std::size_t occupation = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      TraverseDataInfo const& row = rows[i];
      if (row.pointType == TraversePointType::StationPoint) {
        station = row.name;
        instrument = row.instrument;
        ++occupation;
        firstInstrument.try_emplace(station, instrument);
      } else if (row.pointType == TraversePointType::PrismPoint) {
        if (occupation == 0) {
          strays.push_back(i);
          continue;
        }
        sights.push_back({i, station, lines.numberOf(station, row.name),
                          occupations.numberOf(std::to_string(occupation), row.name), instrument});
      }
    }
  }

  std::vector<Sight> sights;
  std::vector<std::size_t> strays;  // sights before the first station row
  detail::PairIndex lines;
  detail::PairIndex occupations;
  std::unordered_map<std::string, double> firstInstrument;  // of each station name, metres
};

class Conversion {
 public:
  explicit Conversion(std::vector<TraverseDataInfo> const& list)
      : rows(list),
        book(list),
        distances(book.occupations.size()),
        targetHeights(book.lines.size()),
        sightsOfLine(book.lines.size(), 0),
        kept(list.size(), false),
        isSingle(list.size(), false) {}

  ElevationRows run() {
    takeOffIndexErrors();
    collectDistances();
    for (std::size_t const row : book.strays) leaveOut(row, {}, LeftOutSight::NoStation);
    for (Sight const& sight : book.sights) convert(sight);
    for (Sight const& sight : book.sights) isSingle[sight.row] = sightsOfLine[sight.line] == 1;
    return {keptRows(), std::move(leftOut)};
  }

 private:
  struct Mean {
    double sum = 0.0;
    int count = 0;
  };

  void takeOffIndexErrors() {
    std::vector<double> const errors = detail::indexErrors(rows);
    for (std::size_t i = 0; i < rows.size(); ++i) rows[i].vertical_angle -= errors[i];
  }

  // Horizontal ones: the slant distance depends on the height of the target, which may change from sight to sight.
  void collectDistances() {
    for (Sight const& sight : book.sights) {
      TraverseDataInfo const& row = rows[sight.row];
      std::optional<double> const elevation = elevationOf(row);
      if (!elevation || !hasDistance(row) || isAlongVertical(row, *elevation)) continue;
      distances[sight.occupied].sum += row.slant_distance * std::cos(*elevation);
      ++distances[sight.occupied].count;
    }
  }

  void leaveOut(std::size_t row, std::string const& station, LeftOutSight::Reason reason) {
    leftOut.push_back({station, rows[row].name, row, reason});
  }

  void convert(Sight const& sight) {
    TraverseDataInfo& row = rows[sight.row];
    std::optional<double> const elevation = elevationOf(row);
    Mean const& others = distances[sight.occupied];
    if (row.name == sight.station) return leaveOut(sight.row, sight.station, LeftOutSight::SightsItself);
    if (!elevation) return leaveOut(sight.row, sight.station, LeftOutSight::NoAngle);
    if (isAlongVertical(row, *elevation)) return leaveOut(sight.row, sight.station, LeftOutSight::AlongVertical);
    if (others.count == 0) return leaveOut(sight.row, sight.station, LeftOutSight::NoDistance);
    if (!hasDistance(row)) row.slant_distance = others.sum / others.count / std::cos(*elevation);
    row.isSlantDistanceHave = true;
    row.vertical_angle = *elevation;
    row.verticalAngleType = ElevationAngle;
    row.horizontal_distance = row.slant_distance * std::cos(*elevation);
    kept[sight.row] = true;
    ++sightsOfLine[sight.line];
    takeHeightsOfFirst(sight);
  }

  /// The same height difference, as with the first instrument height of the station and the first target height of the
  /// line.
  void takeHeightsOfFirst(Sight const& sight) {
    TraverseDataInfo& row = rows[sight.row];
    std::optional<double>& targetHeight = targetHeights[sight.line];
    if (!targetHeight) targetHeight = row.instrument;
    double const offset =
        (sight.occupationInstrument - row.instrument) - (book.firstInstrument.at(sight.station) - *targetHeight);
    row.instrument = *targetHeight;
    if (offset == 0.0) return;
    row.vertical_angle = std::atan(std::tan(row.vertical_angle) + offset / row.horizontal_distance);
    row.slant_distance = row.horizontal_distance / std::cos(row.vertical_angle);
  }

  /// To be called last: takes the rows away.
  std::vector<TraverseDataInfo> keptRows() {
    std::vector<TraverseDataInfo> result;
    result.reserve(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
      bool const isStation = rows[i].pointType == TraversePointType::StationPoint;
      if (rows[i].pointType == TraversePointType::PrismPoint && !kept[i]) continue;
      if (isStation) rows[i].instrument = book.firstInstrument.at(rows[i].name);
      result.push_back(std::move(rows[i]));
      if (!isSingle[i] || !kept[i]) continue;
      result.push_back(result.back());
      result.back().id = newId();
    }
    return result;
  }

  std::vector<TraverseDataInfo> rows;
  FieldBook book;
  std::vector<Mean> distances;                       // of each occupation and target
  std::vector<std::optional<double>> targetHeights;  // of each line, metres
  std::vector<int> sightsOfLine;                     // kept ones
  std::vector<bool> kept;                            // of each row
  std::vector<bool> isSingle;                        // of each row, whether it is alone on its line
  std::vector<LeftOutSight> leftOut;
};

}  // namespace

ElevationRows elevationRows(std::vector<TraverseDataInfo> const& rows) { return Conversion(rows).run(); }

}  // namespace kvn
