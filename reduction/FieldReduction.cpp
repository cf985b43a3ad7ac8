#include "reduction/FieldReduction.h"

#include "adjust/NameIndex.h"
#include "adjust/input/IndexError.h"
#include "records/detail/Messages.h"
#include "records/detail/Recorded.h"
#include "reduction/detail/Circle.h"
#include "reduction/detail/FieldRounds.h"
#include "reduction/detail/JoinedCircle.h"
#include "reduction/detail/RoundOrder.h"

#include <utils/Circle.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <optional>
#include <unordered_map>
#include <utility>

namespace kvn {
namespace {

using detail::CircleMean;
using detail::hasVertical;
using detail::kRoundTolerance;
using detail::kSameReading;
using detail::MeanDistance;
using utils::foldedAngle;
using utils::onCircle;
using Round = detail::FieldRound;
using Sighted = detail::SightedTarget;
using Station = detail::FieldStation;

// Metres. Below these coordinates are none, and two positions are the same.
constexpr double kNoCoordinate = 1e-5;
constexpr double kSamePosition = 1e-4;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class Reducer {
 public:
  explicit Reducer(std::vector<TraverseDataInfo> const& fieldRows)
      : rows(fieldRows), indexErrors(detail::indexErrors(fieldRows)), places(detail::roundPlaces(fieldRows)) {}

  FieldReduction run() {
    openStations();
    // Known points have the first numbers, so that all of them come before the first observation.
    detail::StationObservations observations(result.network.knownPoints);
    for (std::vector<std::size_t> const& occupations : occupationsOf) {
      takeStation(occupations);
      addLines(current);
      observations.add(current);
    }
    result.observations = observations.take();
    joinFindings();
    return std::move(result);
  }

 private:
  /// Names of stations and known points, before the first reading is taken: a station may be occupied anew at the very
  /// end of the book.
  void openStations() {
    std::string const* station = nullptr;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      TraverseDataInfo const& row = rows[i];
      bool const isStation = row.pointType == TraversePointType::StationPoint;
      bool const isSight = row.pointType == TraversePointType::PrismPoint;
      if ((isStation || isSight) && row.name.empty()) {
        tellOfRow(FieldFinding::Error, station == nullptr ? std::string() : *station, {},
                  Messages::tr("the row has no name"), i);
      }
      if (isStation) {
        station = &row.name;
        auto const number = static_cast<std::size_t>(stationNames.numberOf(row.name));
        if (number == occupationsOf.size()) occupationsOf.emplace_back();
        occupationsOf[number].push_back(i);
        if (row.isKnown) takeKnown(i);
      } else if (isSight && station == nullptr) {
        tellOfRow(FieldFinding::Warning, {}, {row.name},
                  Messages::tr("the sight stands before any station and is left out"), i);
      }
    }
  }

  /// All that was read on one station. Only one is held at a time: rounds and their names take more memory than the
  /// rows.
  void takeStation(std::vector<std::size_t> const& occupations) {
    current = Station();
    current.row = occupations.front();
    current.name = rows[current.row].name;
    for (std::size_t const occupation : occupations) {
      current.rounds.emplace_back();
      current.rounds.back().occupation = occupation;
      for (std::size_t i = occupation + 1; i < rows.size(); ++i) {
        if (rows[i].pointType == TraversePointType::StationPoint) break;
        if (rows[i].pointType != TraversePointType::PrismPoint) continue;
        double const distance = takeDistance(i);
        takeReading(i);
        takeDistanceOfRound(i, distance);
      }
    }
  }

  /// Those on single readings, in the order of the rows, and behind them those on stations.
  void joinFindings() {
    std::stable_sort(ofRows.begin(), ofRows.end(),
                     [](FieldFinding const& a, FieldFinding const& b) { return a.row < b.row; });
    if (result.lostRound) *result.lostRound += ofRows.size();
    ofRows.insert(ofRows.end(), std::make_move_iterator(result.findings.begin()),
                  std::make_move_iterator(result.findings.end()));
    result.findings = std::move(ofRows);
  }

  void takeKnown(std::size_t i) {
    TraverseDataInfo const& row = rows[i];
    auto const number = static_cast<std::size_t>(knownNames.numberOf(row.name));
    if (number == result.network.knownPoints.size()) {
      KnownPoint point;
      point.name = row.name;
      point.x = row.N;
      point.y = row.E;
      knownHeights.push_back(row.Z);
      if (std::abs(row.N) < kNoCoordinate && std::abs(row.E) < kNoCoordinate && row.Z != 0.0) {
        tellOfRow(FieldFinding::Warning, row.name, {},
                  Messages::tr("known by its height alone, the station counts as known at 0, 0"), i);
      }
      result.network.knownPoints.push_back(std::move(point));
      return;
    }
    KnownPoint const& known = result.network.knownPoints[number];
    if (std::abs(knownHeights[number] - row.Z) > kSamePosition) {
      tellOfRow(FieldFinding::Warning, row.name, {},
                Messages::tr("the known point has two heights, of which the first counts"), i);
    }
    if (std::hypot(known.x - row.N, known.y - row.E) <= kSamePosition) return;
    tellOfRow(FieldFinding::Error, row.name, {}, Messages::tr("the known point has two positions"), i);
  }

  /// Metres, horizontal; 0 for none.
  double takeDistance(std::size_t i) {
    TraverseDataInfo const& row = rows[i];
    auto const number = static_cast<std::size_t>(current.targets.numberOf(row.name));
    if (number == current.distances.size()) current.distances.emplace_back();
    if (row.isSlantDistanceHave && row.slant_distance < 0.0) {
      tellOfRow(FieldFinding::Error, current.name, {row.name}, Messages::tr("the distance is negative"), i);
      return 0.0;
    }
    double const distance = row.isSlantDistanceHave ? horizontalDistance(i) : 0.0;
    if (row.isSlantDistanceHave && row.slant_distance > detail::kNotRecorded && !(distance > detail::kNotRecorded)) {
      tellOfRow(FieldFinding::Warning, current.name, {row.name},
                Messages::tr("the distance has no vertical reading to make it horizontal and is left out"), i);
    }
    if (!(distance > detail::kNotRecorded)) return 0.0;
    current.distances[number].add(distance, i);
    return distance;
  }

  void takeDistanceOfRound(std::size_t i, double distance) {
    if (distance == 0.0) return;
    Round& round = current.rounds.back();
    auto const number = static_cast<std::size_t>(round.distanceNames.numberOf(rows[i].name));
    if (number == round.distances.size()) {
      round.distances.emplace_back();
      round.distances.back().row = i;
    }
    round.distances[number].add(distance, i);
    bool const isSecond = hasVertical(rows[i]) && detail::isSecondFace(rows[i].vertical_angle);
    ++round.distances[number].ofFace[isSecond ? 1 : 0];
  }

  /// Metres; a distance that was measured on one face is not left with the index error of its vertical reading.
  double horizontalDistance(std::size_t i) const {
    TraverseDataInfo const& row = rows[i];
    if (row.verticalAngleType != FullCircleZenith) return row.getHorizontalDisance();
    return std::abs(row.slant_distance * std::sin(row.vertical_angle - indexErrors[i]));
  }

  void takeReading(std::size_t i) {
    TraverseDataInfo const& row = rows[i];
    if (row.angleMark == 0.0) return;
    detail::RoundPlace const& place = places[i];
    if (place.beginsRound) {
      std::size_t const occupation = current.rounds.back().occupation;
      current.rounds.emplace_back();
      current.rounds.back().occupation = occupation;
      current.rounds.back().isUnturned = !place.isTurned;
    }
    if (!place.fits) {
      tellOfRow(FieldFinding::Error, current.name, {row.name},
                Messages::tr("the readings of the target do not belong together"), i);
      return;
    }
    Round& round = current.rounds.back();
    auto const number = static_cast<std::size_t>(round.names.numberOf(row.name));
    double const reading = onCircle(row.horizontal_angle - place.face * utils::kPi);
    if (number == round.targets.size()) {
      round.targets.emplace_back();
      round.targets.back().firstRow = i;
      round.targets.back().firstReading = reading;
    }
    Sighted& target = round.targets[number];
    if (!target.isTold && std::abs(foldedAngle(reading - target.firstReading)) > kRoundTolerance) {
      target.isTold = true;
      tellOfRow(FieldFinding::Warning, current.name, {row.name},
                Messages::tr("the readings of the target differ by more than 30\""), i);
    }
    target.faces[place.face].add(reading);
    if (!target.rowOfFace[place.face]) target.rowOfFace[place.face] = i;
  }

  /// A round of the first target alone beside fuller ones of its occupation is no round: the circle or the tripod
  /// moved, or another target was booked under its name.
  void tellLoneRounds(Station const& station) {
    std::unordered_map<std::size_t, std::size_t> mostOf;
    for (Round const& round : station.rounds) {
      mostOf[round.occupation] = std::max(mostOf[round.occupation], round.targets.size());
    }
    for (Round const& round : station.rounds) {
      if (round.isUnturned || round.targets.size() != 1 || mostOf[round.occupation] == 1) continue;
      tell(FieldFinding::Error, station.name, round.names.names(),
           Messages::tr("the readings of the first target do not belong together"), round.targets.front().firstRow);
    }
  }

  void addLines(Station const& station) {
    tellLoneRounds(station);
    std::vector<CircleMean> means(static_cast<std::size_t>(station.targets.size()));
    joinRounds(station, means);
    for (std::size_t i = 0; i < means.size(); ++i) {
      NetworkDataInfo line;
      line.start_name = station.name;
      line.end_name = station.targets.names()[i];
      line.horizontalAngleFlag = !means[i].isEmpty();
      if (line.horizontalAngleFlag) line.horizontal_angle = onCircle(means[i].value());
      MeanDistance const& distance = station.distances[i];
      if (distance.count > 0) line.horizontal_distance = distance.sum / distance.count;
      if (distance.count > 1) addSpread(station, line.end_name, distance);
      if (line.horizontalAngleFlag || distance.count > 0) result.network.lines.push_back(std::move(line));
    }
  }

  void addSpread(Station const& station, std::string const& target, MeanDistance const& distance) {
    auto const [first, last] = std::minmax(distance.leastRow, distance.greatestRow);
    // Rows of two set-ups have a record of the station between them.
    auto const next = std::upper_bound(station.rounds.begin(), station.rounds.end(), first,
                                       [](std::size_t row, Round const& round) { return row < round.occupation; });
    bool const isOfTwo = next != station.rounds.end() && next->occupation < last;
    result.spreads.push_back({station.name, target, last, distance.least, distance.greatest, distance.count, isOfTwo});
  }

  void joinRounds(Station const& station, std::vector<CircleMean>& means) {
    std::vector<detail::CirclePart> parts(station.rounds.size());
    bool const isOneFaced = tellOneFaced(station);
    FacesOnCircle faces;
    for (std::size_t r = 0; r < parts.size(); ++r) {
      Round const& round = station.rounds[r];
      if (!round.isUnturned) faces = facesOnCircle(station, r);
      if (!isOneFaced) tellFaces(station, round, faces);
      notePairs(station, round);
      if (round.isUnturned) tellDrift(station, station.rounds[r - 1], round);
      for (std::size_t i = 0; i < round.targets.size(); ++i) {
        parts[r].directions.push_back(
            {numberAt(station, round, i), round.targets[i].direction(), round.targets[i].readings()});
      }
    }
    detail::JoinedCircle joined = detail::joinedCircle(parts, means.size(), [&](std::size_t r, std::size_t i) {
      Round const& round = station.rounds[r];
      tell(FieldFinding::Warning, station.name, {round.names.names()[i]},
           Messages::tr("the direction differs by more than 30\" from that of the rounds before"),
           round.targets[i].firstRow);
    });
    means = std::move(joined.means);
    tellUnrelated(station, joined.isJoined);
  }

  void tellUnrelated(Station const& station, std::vector<bool> const& joined) {
    for (std::size_t r = 0; r < joined.size(); ++r) {
      Round const& round = station.rounds[r];
      if (joined[r] || round.targets.empty()) continue;
      if (!result.lostRound) result.lostRound = result.findings.size();
      tell(FieldFinding::Warning, station.name, round.names.names(),
           Messages::tr("the round has no target in common with the others of its station"),
           round.targets.front().firstRow);
    }
  }

  static std::size_t numberAt(Station const& station, Round const& round, std::size_t i) {
    return static_cast<std::size_t>(station.targets.find(round.names.names()[i]));
  }

  /// The circle that nobody turned, by the median of the common targets, of which one may be misread.
  void tellDrift(Station const& station, Round const& before, Round const& round) {
    std::vector<double> drifts;
    for (std::size_t i = 0; i < round.targets.size(); ++i) {
      int const number = before.names.find(round.names.names()[i]);
      if (number < 0) continue;
      Sighted const& earlier = before.targets[static_cast<std::size_t>(number)];
      for (int const face : {0, 1}) {
        CircleMean const& mean = earlier.faces[face];
        CircleMean const& later = round.targets[i].faces[face];
        if (!mean.isEmpty() && !later.isEmpty()) drifts.push_back(foldedAngle(later.value() - mean.value()));
      }
    }
    if (drifts.empty()) return;
    auto const middle = drifts.begin() + static_cast<std::ptrdiff_t>(drifts.size() / 2);
    std::nth_element(drifts.begin(), middle, drifts.end());
    if (std::abs(*middle) <= kRoundTolerance) return;
    tell(FieldFinding::Warning, station.name, {}, Messages::tr("between two rounds the circle moved by more than 30\""),
         round.targets.front().firstRow);
  }

  /// A station without a single pair of faces, of several targets, is told once and not with each of them.
  bool tellOneFaced(Station const& station) {
    auto const hasPair = [](Round const& round) {
      return std::any_of(round.targets.begin(), round.targets.end(),
                         [](Sighted const& target) { return target.rowOfFace[0] && target.rowOfFace[1]; });
    };
    if (station.targets.size() < 2 || std::any_of(station.rounds.begin(), station.rounds.end(), hasPair)) return false;
    bool const isSighted = std::any_of(station.rounds.begin(), station.rounds.end(),
                                       [](Round const& round) { return !round.targets.empty(); });
    if (!isSighted) return false;
    result.findings.push_back(
        {FieldFinding::Warning,
         station.name,
         {},
         Messages::tr("observed on one face only: collimation and index errors stay in all of its readings"),
         station.row,
         0});
    return true;
  }

  using FacesOnCircle = std::unordered_map<std::string, std::array<bool, 2>>;

  /// The faces of each target in the rounds from one on between which the circle was not turned.
  static FacesOnCircle facesOnCircle(Station const& station, std::size_t first) {
    FacesOnCircle faces;
    for (std::size_t r = first; r < station.rounds.size() && (r == first || station.rounds[r].isUnturned); ++r) {
      Round const& round = station.rounds[r];
      for (std::size_t i = 0; i < round.targets.size(); ++i) {
        for (std::size_t const face : {0U, 1U}) {
          if (round.targets[i].rowOfFace[face]) faces[round.names.names()[i]][face] = true;
        }
      }
    }
    return faces;
  }

  /// The collimation error turns a round that is on one face altogether as a whole. Its targets are told unless other
  /// rounds have their other face.
  void tellFaces(Station const& station, Round const& round, FacesOnCircle const& faces) {
    bool const isOnOne = !hasFace(round, 0) || !hasFace(round, 1);
    for (std::size_t i = 0; i < round.targets.size(); ++i) {
      Sighted const& target = round.targets[i];
      std::string const& name = round.names.names()[i];
      if (target.rowOfFace[0] && target.rowOfFace[1]) continue;
      auto const [first, second] = faces.at(name);
      if (isOnOne && first && second) continue;
      tell(FieldFinding::Warning, station.name, {name}, Messages::tr("sighted on one face only"), target.firstRow);
    }
  }

  static bool hasFace(Round const& round, int face) {
    return std::any_of(round.targets.begin(), round.targets.end(),
                       [face](Sighted const& target) { return target.rowOfFace[face].has_value(); });
  }

  void notePairs(Station const& station, Round const& round) {
    for (std::size_t i = 0; i < round.targets.size(); ++i) {
      Sighted const& target = round.targets[i];
      if (!target.rowOfFace[0] || !target.rowOfFace[1]) continue;
      FacePair pair{station.name, round.names.names()[i], *target.rowOfFace[0], *target.rowOfFace[1], 0.0, kNaN};
      TraverseDataInfo const& first = rows[pair.firstRow];
      TraverseDataInfo const& second = rows[pair.secondRow];
      pair.doubleCollimation = foldedAngle(first.horizontal_angle - second.horizontal_angle - utils::kPi);
      if (hasVertical(first) && hasVertical(second)) {
        pair.indexError = (first.vertical_angle + second.vertical_angle - utils::kFullCircle) / 2;
      }
      if (std::abs(pair.indexError) > kSameReading) {
        tell(FieldFinding::Warning, station.name, {pair.target},
             Messages::tr("the vertical readings of the faces differ by more than 12'"), pair.firstRow);
      }
      result.pairs.push_back(std::move(pair));
    }
  }

  void tell(FieldFinding::Severity severity, std::string const& station, std::vector<std::string> targets,
            QString const& text, std::size_t row) {
    result.findings.push_back({severity, station, std::move(targets), text, row, 0});
  }
  void tellOfRow(FieldFinding::Severity severity, std::string const& station, std::vector<std::string> targets,
                 QString const& text, std::size_t row) {
    ofRows.push_back({severity, station, std::move(targets), text, row, 0});
  }

  std::vector<TraverseDataInfo> const& rows;
  std::vector<double> indexErrors;  // of each row, radians
  std::vector<detail::RoundPlace> places;
  FieldReduction result;
  std::vector<FieldFinding> ofRows;
  NameIndex stationNames;
  std::vector<std::vector<std::size_t>> occupationsOf;  // of each station, the rows of its station records
  NameIndex knownNames;
  std::vector<double> knownHeights;
  Station current;  // the only one that is held
};

}  // namespace

FieldReduction reduceField(std::vector<TraverseDataInfo> const& rows) { return Reducer(rows).run(); }

void markKnownStations(std::vector<TraverseDataInfo>& rows) {
  for (TraverseDataInfo& row : rows) {
    bool const isStation = row.pointType == TraversePointType::StationPoint;
    bool const isNowhere =
        std::abs(row.N) < kNoCoordinate && std::abs(row.E) < kNoCoordinate && std::abs(row.Z) < kNoCoordinate;
    if (isStation && row.hasCoordinate && !isNowhere) row.isKnown = true;
  }
}

}  // namespace kvn
