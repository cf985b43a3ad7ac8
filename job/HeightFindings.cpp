// What there is to look at in heights: before their adjustment, and by it.
#include "adjust/HeightAdjustment.h"
#include "job/detail/JobSteps.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace kvn {
namespace {

// Standard errors by which two measurements of one difference may differ.
constexpr double kApart = 3.0;

QString millimetres(double metres) { return QString::number(1000.0 * metres, 'f', 1); }

/// "12.3 mm too large".
QString wrongBy(double metres) {
  return QString(metres < 0.0 ? "%1 mm too small" : "%1 mm too large").arg(millimetres(std::abs(metres)));
}

class Findings {
 public:
  explicit Findings(HeightAdjustment const& adjustment) : network(adjustment.network()), result(adjustment.result()) {}

  std::vector<FieldFinding> run() {
    addSuspects();
    if (result.hasRedundancy && result.unitError > detail::kDoubtfulUnitError) {
      add({}, {},
          "The unit weight error of the heights is far above 1: a gross error, or known heights that do not fit", 0.0);
    }
    addUnchecked();
    addDifferences();
    return std::move(list);
  }

 private:
  std::string const& nameOf(std::size_t point) const { return network.points[point].name; }
  std::size_t stationOf(std::size_t setUp) const { return static_cast<std::size_t>(network.setUps[setUp].station); }

  FieldFinding& add(std::string const& station, std::vector<std::string> targets, QString const& text, double cost) {
    FieldFinding finding{FieldFinding::Warning, station, std::move(targets), text};
    finding.cost = std::isfinite(cost) ? cost : 0.0;
    list.push_back(std::move(finding));
    return list.back();
  }

  static void place(FieldFinding& finding, HeightNetwork::Origin const& origin) {
    if (origin.row >= 0) finding.row = static_cast<std::size_t>(origin.row);
  }

  /// A finding on what a suspect, or an alternative to one, is.
  void addAt(HeightSuspect::Kind kind, std::size_t number, QString const& sight, QString const& instrument,
             QString const& target, QString const& known, double cost) {
    switch (kind) {
      case HeightSuspect::Sight: {
        HeightNetwork::Sight const& s = network.sights[number];
        std::size_t const station = stationOf(static_cast<std::size_t>(s.setUp));
        place(add(nameOf(station), {nameOf(static_cast<std::size_t>(s.target))}, sight, cost), s.origin);
        return;
      }
      case HeightSuspect::Instrument: {
        HeightNetwork::SetUp const& setUp = network.setUps[result.shared[number].setUp];
        place(add(nameOf(static_cast<std::size_t>(setUp.station)), {}, instrument, cost), setUp.origin);
        return;
      }
      case HeightSuspect::Target:
        add({}, {nameOf(result.shared[number].target)}, target.arg(result.shared[number].height, 0, 'f', 3), cost);
        return;
      case HeightSuspect::Known:
        place(add({}, {nameOf(number)}, known, cost), network.points[number].origin);
        return;
    }
  }

  void addSuspects() {
    for (HeightSuspect const& suspect : result.suspects) {
      QString const size = wrongBy(suspect.gross);
      double const cost = std::abs(suspect.gross);
      addAt(suspect.kind, suspect.number, QString("suspected gross error of the height difference: %1").arg(size),
            QString("the height of the instrument seems to be %1").arg(size),
            QString("the height of the target (%2 m) seems to be %1").arg(size, "%1"),
            QString("the known height does not fit: it seems to be %1").arg(size), cost);
      for (auto const& [kind, number] : suspect.alternatives) {
        addAt(kind, number, "the height difference cannot be told apart from a suspected height",
              "the height of the instrument cannot be told apart from a suspected height",
              "the height of the target (%1 m) cannot be told apart from a suspected height",
              "the known height cannot be told apart from a suspected height", cost);
      }
    }
  }

  void addUnchecked() {
    constexpr double kUnchecked = 1e-5;
    for (SharedHeight const& shared : result.shared) {
      if (!shared.isInstrument || shared.redundancy >= kUnchecked) continue;
      HeightNetwork::SetUp const& setUp = network.setUps[shared.setUp];
      place(add(nameOf(stationOf(shared.setUp)), {}, "nothing checks the height of the instrument", 0.0), setUp.origin);
    }
    for (std::size_t p = 0; p < result.points.size(); ++p) {
      if (!result.points[p].isChecked) add({}, {nameOf(p)}, "nothing checks the height of the point", 0.0);
    }
  }

  /// Sights of one line, against the first one.
  void addDifferences() {
    std::map<std::pair<std::size_t, std::size_t>, std::size_t> firstOf;
    for (std::size_t i = 0; i < network.sights.size(); ++i) {
      HeightNetwork::Sight const& sight = network.sights[i];
      std::size_t const station = stationOf(static_cast<std::size_t>(sight.setUp));
      auto const target = static_cast<std::size_t>(sight.target);
      auto const [place, isFirst] = firstOf.try_emplace(std::minmax(station, target), i);
      if (isFirst) continue;
      HeightNetwork::Sight const& first = network.sights[place->second];
      bool const isBack = stationOf(static_cast<std::size_t>(first.setUp)) == target;
      double const apart = std::abs(sight.difference - (isBack ? -first.difference : first.difference));
      if (!(apart > kApart * std::hypot(sight.error, first.error))) continue;
      QString const text = isBack ? "the height differences of both ends differ by %1 mm"
                                  : "the height differences of two set-ups differ by %1 mm";
      this->place(add(nameOf(station), {nameOf(target)}, text.arg(millimetres(apart)), apart), sight.origin);
    }
  }

  HeightNetwork const& network;
  HeightResult const& result;
  std::vector<FieldFinding> list;
};

}  // namespace

std::vector<FieldFinding> detail::findingsOnHeights(HeightAdjustment const& run) { return Findings(run).run(); }

}  // namespace kvn
