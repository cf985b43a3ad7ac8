#include "reduction/FieldInspection.h"

#include "adjust/NameIndex.h"
#include "adjust/input/DistanceError.h"
#include "adjust/input/PairKey.h"
#include "adjust/plane/Quantiles.h"
#include "records/detail/Messages.h"

#include <utils/Circle.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace kvn {
namespace {

using utils::kSecondsPerRadian;

bool isStation(TraverseDataInfo const& row) { return row.pointType == TraversePointType::StationPoint; }
bool isTarget(TraverseDataInfo const& row) { return row.pointType == TraversePointType::PrismPoint; }
bool isOnCircle(double angle) { return angle >= -1e-6 && angle <= utils::kFullCircle; }

double tenthsOfSeconds(double radians) { return std::round(radians * kSecondsPerRadian * 10.0); }
bool isShown(double radians) { return tenthsOfSeconds(radians) != 0.0; }

/// With one decimal, and without the sign of a zero.
QString seconds(double radians) {
  double const rounded = tenthsOfSeconds(radians) / 10.0;
  return QString::number(rounded + 0.0, 'f', 1) + "\"";
}

/// One occupation: the rows from a station row up to the next one.
struct Occupation {
  std::size_t row = 0;
  std::vector<std::size_t> sights;
};

std::vector<Occupation> occupationsOf(std::vector<TraverseDataInfo> const& rows) {
  std::vector<Occupation> occupations;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (isStation(rows[i])) occupations.push_back({i, {}});
    if (isTarget(rows[i]) && !occupations.empty()) occupations.back().sights.push_back(i);
  }
  return occupations;
}

class RowInspection {
 public:
  RowInspection(std::vector<TraverseDataInfo> const& fieldRows, FieldReduction const& fieldReduction,
                FieldFinding::Severity leastSeverity)
      : rows(fieldRows), reduction(fieldReduction), least(leastSeverity) {}

  std::vector<FieldFinding> run() {
    bool const isAnyMarked =
        std::any_of(rows.begin(), rows.end(), [](TraverseDataInfo const& row) { return !row.isHorizontalAngleValid; });
    for (std::size_t i = 0; isAnyMarked && i < rows.size(); ++i) {
      if (isTarget(rows[i])) ++sightsOf[rows[i].groupId + '\n' + rows[i].name];
    }
    std::string station;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (isStation(rows[i])) station = rows[i].name;
      lookAtFlags(station, i);
    }
    if (least == FieldFinding::Note) addNotes();
    std::stable_sort(findings.begin(), findings.end(),
                     [](FieldFinding const& a, FieldFinding const& b) { return a.row < b.row; });
    return std::move(findings);
  }

 private:
  void addNotes() {
    std::vector<Occupation> const occupations = occupationsOf(rows);
    for (Occupation const& occupation : occupations) lookAtPairing(occupation);
    lookAtFirstDistances(occupations);
    for (FacePair const& pair : reduction.pairs) noteErrors(pair);
  }

  void tell(FieldFinding::Severity severity, std::string const& station, std::string const& target, QString const& text,
            std::size_t row) {
    if (severity < least) return;
    std::vector<std::string> targets;
    if (!target.empty()) targets.push_back(target);
    findings.push_back({severity, station, std::move(targets), text, row, 0});
  }

  void lookAtFlags(std::string const& station, std::size_t i) {
    TraverseDataInfo const& row = rows[i];
    std::string const target = isStation(row) ? std::string() : row.name;
    auto const warn = [&](QString const& text) { tell(FieldFinding::Warning, station, target, text, i); };
    auto const note = [&](QString const& text) { tell(FieldFinding::Note, station, target, text, i); };
    // Further set-ups and rounds are in order where their readings agree, which the reduction looks at.
    if (!row.isNameValid && isStation(row))
      note(Messages::tr("the station comes twice, or one of its targets has its name"));
    if (!row.isNameValid && !isStation(row)) warn(Messages::tr("the target has the name of its station"));
    if (!row.isHorizontalAngleValid) {
      if (!isOnCircle(row.horizontal_angle)) {
        warn(Messages::tr("the horizontal reading is not between 0 and 360 degrees"));
      } else if (sightsOf[row.groupId + '\n' + row.name] == 2) {
        warn(Messages::tr("the sights of the target do not differ by half a circle"));
      } else {
        note(Messages::tr("the row checks expect one sight on each face, and there are more"));
      }
    }
    if (!row.isVerticalAngleValid) warn(Messages::tr("the vertical reading is not between 0 and 360 degrees"));
    // Before any station; the reduction tells the others, and what is no number is told with its text.
    if (!row.isSlantDistanceValid && row.slant_distance < 0.0 && station.empty()) {
      warn(Messages::tr("the distance is negative"));
    }
  }

  /// Whether the sights stand as first face and second face backward; the first pair that does not is told.
  void lookAtPairing(Occupation const& occupation) {
    std::size_t const n = occupation.sights.size();
    std::string const& station = rows[occupation.row].name;
    if (n % 2 != 0) {
      tell(FieldFinding::Note, station, {},
           Messages::tr("an odd number of sights: a program that pairs faces by their place refuses them"),
           occupation.row);
    }
    for (std::size_t k = 0; k < n / 2; ++k) {
      TraverseDataInfo const& first = rows[occupation.sights[k]];
      TraverseDataInfo const& second = rows[occupation.sights[n - k - 1]];
      if (first.name == second.name) continue;
      findings.push_back({FieldFinding::Note,
                          station,
                          {first.name, second.name},
                          Messages::tr("a program that pairs faces by their place takes these two for one"),
                          occupation.sights[k],
                          0});
      return;
    }
  }

  /// Distances to the first target of their station that the other end does not have either, or has to its own first
  /// target.
  void lookAtFirstDistances(std::vector<Occupation> const& occupations) {
    NameIndex names;
    std::unordered_set<std::uint64_t> kept;
    struct First {
      std::uint64_t key;
      std::string const& station;
      std::size_t row;
    };
    std::vector<First> dropped;
    for (Occupation const& occupation : occupations) {
      if (occupation.sights.empty()) continue;
      int const station = names.numberOf(rows[occupation.row].name);
      std::string const& first = rows[occupation.sights.front()].name;
      for (std::size_t const i : occupation.sights) {
        bool const isMeasured = rows[i].isSlantDistanceHave && rows[i].slant_distance > 0.0;
        auto const key = detail::unorderedKey(station, names.numberOf(rows[i].name));
        if (isMeasured && rows[i].name != first) kept.insert(key);
        if (isMeasured && rows[i].name == first) dropped.push_back({key, rows[occupation.row].name, i});
      }
    }
    for (First const& first : dropped) {
      if (!kept.insert(first.key).second) continue;
      tell(FieldFinding::Note, first.station, rows[first.row].name,
           Messages::tr("a program that keeps distances forward only drops this one at both ends"), first.row);
    }
  }

  /// Nothing of readings that were made up or reduced already, which have no such errors.
  void noteErrors(FacePair const& pair) {
    bool const hasIndexError = !std::isnan(pair.indexError) && isShown(pair.indexError);
    if (!isShown(pair.doubleCollimation) && !hasIndexError) return;
    QString text = Messages::tr("double collimation error %1").arg(seconds(pair.doubleCollimation));
    if (!std::isnan(pair.indexError)) text += Messages::tr(", index error %1").arg(seconds(pair.indexError));
    tell(FieldFinding::Note, pair.station, pair.target, text, pair.firstRow);
  }

  std::vector<TraverseDataInfo> const& rows;
  FieldReduction const& reduction;
  FieldFinding::Severity least;
  std::unordered_map<std::string, int> sightsOf;  // by group and name; empty where no row is marked
  std::vector<FieldFinding> findings;
};

// A file for a single traverse has errors of 0: any difference counts then, metres.
constexpr double kLeastError = 1e-6;

}  // namespace

std::vector<FieldFinding> inspectDistances(FieldReduction const& reduction, ObservationErrors const& errors,
                                           double centring) {
  std::vector<FieldFinding> findings;
  for (DistanceSpread const& spread : reduction.spreads) {
    double const own = detail::distanceError(errors, spread.least);
    // Instrument and target stand anew in another set-up.
    double const error = spread.isOfTwoSetUps ? std::sqrt(own * own + 2.0 * centring * centring) : own;
    double const difference = spread.greatest - spread.least;
    if (!(difference > detail::rangeCriticalValue(spread.count) * std::max(error, kLeastError))) continue;
    QString const text = Messages::tr("the distances to the target differ by %1 mm, more than their errors allow");
    findings.push_back({FieldFinding::Warning,
                        spread.station,
                        {spread.target},
                        text.arg(QString::number(1000.0 * difference, 'f', 1)),
                        spread.row,
                        0,
                        0.5 * difference});
    findings.back().isOfDistance = true;
  }
  return findings;
}

std::vector<FieldFinding> inspectRows(std::vector<TraverseDataInfo> const& rows, FieldReduction const& reduction) {
  return inspectRows(rows, reduction, FieldFinding::Note);
}

std::vector<FieldFinding> inspectRows(std::vector<TraverseDataInfo> const& rows, FieldReduction const& reduction,
                                      FieldFinding::Severity least) {
  return RowInspection(rows, reduction, least).run();
}

}  // namespace kvn
