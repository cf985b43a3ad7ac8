#include "adjust/ElevationRows.h"

#include "adjust/NameIndex.h"
#include "adjust/heights/Elevations.h"
#include "adjust/input/IndexError.h"
#include "adjust/input/PairKey.h"
#include "adjust/linalg/Index.h"
#include "records/NewId.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
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
  int station;                  // number of its name
  std::size_t line;             // station name and target name
  std::size_t occupied;         // one occupation of the station and target name
  double occupationInstrument;  // metres
};

/// Numbers of pairs of numbers, in the order of their first use.
class PairNumbers {
 public:
  std::size_t operator()(int first, int second) {
    return numbers.try_emplace(detail::orderedKey(first, second), numbers.size()).first->second;
  }
  std::size_t size() const { return numbers.size(); }

 private:
  std::unordered_map<std::uint64_t, std::size_t> numbers;
};

/// What the sights belong to.
class FieldBook {
 public:
  explicit FieldBook(std::vector<TraverseDataInfo> const& rows) {
    int station = 0;
    double instrument = 0.0;
    int occupation = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      TraverseDataInfo const& row = rows[i];
      if (row.pointType == TraversePointType::StationPoint) {
        station = names.numberOf(row.name);
        instrument = row.instrument;
        ++occupation;
        instruments.try_emplace(station, instrument);
      } else if (row.pointType == TraversePointType::PrismPoint) {
        if (occupation == 0) {
          strays.push_back(i);
          continue;
        }
        int const target = names.numberOf(row.name);
        sights.push_back({i, station, lines(station, target), occupations(occupation, target), instrument});
      }
    }
  }

  std::string const& stationOf(Sight const& sight) const {
    return names.names()[static_cast<std::size_t>(sight.station)];
  }
  double firstInstrument(int station) const { return instruments.at(station); }
  double firstInstrument(std::string const& station) const { return instruments.at(names.find(station)); }

  std::vector<Sight> sights;
  std::vector<std::size_t> strays;  // sights before the first station row
  PairNumbers lines;
  PairNumbers occupations;

 private:
  NameIndex names;
  std::unordered_map<int, double> instruments;  // the first one of each station name, metres
};

class Conversion {
 public:
  explicit Conversion(std::vector<TraverseDataInfo> list)
      : rows(std::move(list)),
        book(rows),
        distances(book.occupations.size()),
        targetHeights(book.lines.size()),
        sightsOfLine(book.lines.size(), 0),
        kept(rows.size(), false),
        isSingle(rows.size(), false) {}

  ElevationRows run() {
    takeOffIndexErrors();
    collectDistances();
    for (std::size_t const row : book.strays) leaveOut(row, {}, LeftOutSight::NoStation);
    for (Sight const& sight : book.sights) convert(sight);
    for (Sight const& sight : book.sights) isSingle[sight.row] = kept[sight.row] && sightsOfLine[sight.line] == 1;
    takeFirstInstruments();
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
    std::string const& station = book.stationOf(sight);
    if (row.name == station) return leaveOut(sight.row, station, LeftOutSight::SightsItself);
    if (!elevation) return leaveOut(sight.row, station, LeftOutSight::NoAngle);
    if (isAlongVertical(row, *elevation)) return leaveOut(sight.row, station, LeftOutSight::AlongVertical);
    if (others.count == 0) return leaveOut(sight.row, station, LeftOutSight::NoDistance);
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
        (sight.occupationInstrument - row.instrument) - (book.firstInstrument(sight.station) - *targetHeight);
    row.instrument = *targetHeight;
    if (offset == 0.0) return;
    row.vertical_angle = std::atan(std::tan(row.vertical_angle) + offset / row.horizontal_distance);
    row.slant_distance = row.horizontal_distance / std::cos(row.vertical_angle);
  }

  void takeFirstInstruments() {
    for (TraverseDataInfo& row : rows) {
      if (row.pointType == TraversePointType::StationPoint) row.instrument = book.firstInstrument(row.name);
    }
  }

  /// To be called last: takes the rows away. Most books have no sight that is alone on its line; their rows stay where
  /// they are.
  std::vector<TraverseDataInfo> keptRows() {
    auto const singles = static_cast<std::size_t>(std::count(isSingle.begin(), isSingle.end(), true));
    std::vector<TraverseDataInfo> result;
    if (singles > 0) result.reserve(rows.size() + singles);
    std::size_t count = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (rows[i].pointType == TraversePointType::PrismPoint && !kept[i]) continue;
      if (singles > 0) {
        result.push_back(std::move(rows[i]));
        if (!isSingle[i]) continue;
        result.push_back(result.back());
        result.back().id = newId();
      } else {
        if (count != i) rows[count] = std::move(rows[i]);
        ++count;
      }
    }
    if (singles > 0) return result;
    rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(count), rows.end());
    return std::move(rows);
  }

  std::vector<TraverseDataInfo> rows;
  FieldBook book;
  std::vector<Mean> distances;                       // of each occupation and target
  std::vector<std::optional<double>> targetHeights;  // of each line, metres
  std::vector<int> sightsOfLine;                     // kept ones
  std::vector<bool> kept;                            // of each row
  std::vector<bool> isSingle;                        // of each row, whether it is kept and alone on its line
  std::vector<LeftOutSight> leftOut;
};

}  // namespace

ElevationRows elevationRows(std::vector<TraverseDataInfo> const& rows) { return Conversion(rows).run(); }
ElevationRows elevationRows(std::vector<TraverseDataInfo>&& rows) { return Conversion(std::move(rows)).run(); }

}  // namespace kvn
