// What there is to look at in adjusted heights.
#include "adjust/HeightAdjustment.h"
#include "job/detail/HeightTexts.h"
#include "job/detail/JobSteps.h"
#include "records/detail/Messages.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kvn {
namespace {

using detail::findingAt;
using detail::millimetres;

/// "12.3 mm too large".
QString wrongBy(double metres) {
  QString const text = metres < 0.0 ? Messages::tr("%1 mm too small") : Messages::tr("%1 mm too large");
  return text.arg(millimetres(std::abs(metres)));
}

class Findings {
 public:
  explicit Findings(HeightAdjustment const& adjustment) : network(adjustment.network()), result(adjustment.result()) {}

  std::vector<FieldFinding> run() {
    addSuspects();
    if (result.hasRedundancy && result.unitError > detail::kDoubtfulUnitError) {
      add({}, {},
          Messages::tr(
              "The unit weight error of the heights is far above 1: a gross error, or known heights that do not fit"),
          0.0);
    }
    addUnchecked();
    std::vector<FieldFinding> const ofLines = detail::differencesOfLines(network, {});
    list.insert(list.end(), ofLines.begin(), ofLines.end());
    return std::move(list);
  }

 private:
  std::string const& nameOf(std::size_t point) const { return network.points[point].name; }
  std::size_t stationOf(std::size_t setUp) const { return static_cast<std::size_t>(network.setUps[setUp].station); }

  void add(std::string const& station, std::vector<std::string> targets, QString const& text, double cost,
           HeightNetwork::Origin const& origin = {}) {
    list.push_back(findingAt(station, std::move(targets), text, cost, origin));
  }

  /// A finding on what a suspect, or an alternative to one, is.
  void addAt(HeightSuspect::Kind kind, std::size_t number, QString const& sight, QString const& instrument,
             QString const& target, QString const& known, double cost) {
    switch (kind) {
      case HeightSuspect::Sight: {
        HeightNetwork::Sight const& s = network.sights[number];
        std::size_t const station = stationOf(static_cast<std::size_t>(s.setUp));
        add(nameOf(station), {nameOf(static_cast<std::size_t>(s.target))}, sight, cost, s.origin);
        return;
      }
      case HeightSuspect::Instrument: {
        HeightNetwork::SetUp const& setUp = network.setUps[result.shared[number].setUp];
        add(nameOf(static_cast<std::size_t>(setUp.station)), {}, instrument, cost, setUp.origin);
        return;
      }
      case HeightSuspect::Target:
        add({}, {nameOf(result.shared[number].target)}, target.arg(result.shared[number].height, 0, 'f', 3), cost);
        return;
      case HeightSuspect::Known:
        add({}, {nameOf(number)}, known, cost, network.points[number].origin);
        return;
    }
  }

  void addSuspects() {
    for (HeightSuspect const& suspect : result.suspects) {
      QString const size = wrongBy(suspect.gross);
      double const cost = std::abs(suspect.gross);
      addAt(suspect.kind, suspect.number, Messages::tr("suspected gross error of the height difference: %1").arg(size),
            Messages::tr("the height of the instrument seems to be %1").arg(size),
            Messages::tr("the height of the target (%2 m) seems to be %1").arg(size, "%1"),
            Messages::tr("the known height does not fit: it seems to be %1").arg(size), cost);
      for (auto const& [kind, number] : suspect.alternatives) {
        addAt(kind, number, Messages::tr("the height difference cannot be told apart from a suspected height"),
              Messages::tr("the height of the instrument cannot be told apart from a suspected height"),
              Messages::tr("the height of the target (%1 m) cannot be told apart from a suspected height"),
              Messages::tr("the known height cannot be told apart from a suspected height"), cost);
      }
    }
  }

  void addUnchecked() {
    constexpr double kUnchecked = 1e-5;
    for (SharedHeight const& shared : result.shared) {
      if (!shared.isInstrument || shared.redundancy >= kUnchecked) continue;
      HeightNetwork::SetUp const& setUp = network.setUps[shared.setUp];
      add(nameOf(stationOf(shared.setUp)), {}, Messages::tr("nothing checks the height of the instrument"), 0.0,
          setUp.origin);
    }
    for (std::size_t p = 0; p < result.points.size(); ++p) {
      if (!result.points[p].isChecked)
        add({}, {nameOf(p)}, Messages::tr("nothing checks the height of the point"), 0.0);
    }
  }

  HeightNetwork const& network;
  HeightResult const& result;
  std::vector<FieldFinding> list;
};

}  // namespace

std::vector<FieldFinding> detail::findingsOnHeights(HeightAdjustment const& run) { return Findings(run).run(); }

}  // namespace kvn
