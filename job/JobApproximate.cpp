// Coordinates that somebody has told a job: where the search for a start begins, and where planned points lie.
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/Job.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"
#include "records/NetworkFindings.h"
#include "records/detail/Messages.h"

#include <QHash>
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace kvn {
namespace {

// Approximate coordinates of a known point that are farther off are of another place or system, metres.
constexpr double kContradicts = 1.0;

using Points = std::vector<CoordinatePointInfo>;

/// Each by its name as text: those of a coordinate file are in the local 8-bit encoding, those of a network in UTF-8.
using PointsByName = QHash<QString, std::size_t>;

bool isSamePlace(CoordinatePointInfo const& a, CoordinatePointInfo const& b) { return a.N == b.N && a.E == b.E; }

PointsByName byName(QString const& file, Points const& points) {
  PointsByName table;
  for (std::size_t p = 0; p < points.size(); ++p) {
    QString const name = recordText(points[p].name);
    if (!std::isfinite(points[p].N + points[p].E)) {
      throw JobException(file, Messages::tr("the coordinates of %1 are no numbers").arg(name));
    }
    auto const before = table.constFind(name);
    if (before == table.constEnd()) {
      table.insert(name, p);
    } else if (!isSamePlace(points[*before], points[p])) {
      throw JobException(file, Messages::tr("%1 is given twice, in different places").arg(name));
    }
  }
  return table;
}

}  // namespace

std::vector<CoordinatePointInfo> detail::approximateOf(QString const& path) {
  if (suffixOf(path) != "dat") {
    throw JobException(path, Messages::tr("approximate coordinates are read from a coordinate file (.dat)"));
  }
  Project read;
  try {
    takeIn(read, path, bytesOf(path), false);
  } catch (...) {
    throwNaming(path, Network());
  }
  Points points = std::move(read.getCoordinatePointList());
  byName(path, points);
  return points;
}

void detail::requireUsable(QString const& file, std::vector<CoordinatePointInfo> const& points) {
  byName(file, points);
}

void detail::giveApproximate(JobState const& state, PlaneNetwork& network) {
  if (state.approximate.empty()) return;
  PointsByName const table = byName(state.file, state.approximate);
  for (PlaneNetwork::Point& point : network.points) {
    auto const found = table.constFind(recordText(point.name));
    if (found == table.constEnd() || point.isKnown) continue;
    point.x = state.approximate[*found].N;
    point.y = state.approximate[*found].E;
  }
}

/// Known points keep their own coordinates. Where the others are of another place, one of the two files is wrong.
std::vector<FieldFinding> detail::tellContradictions(JobState const& state, PlaneNetwork const& network) {
  std::vector<FieldFinding> findings;
  if (state.approximate.empty()) return findings;
  PointsByName const table = byName(state.file, state.approximate);
  QStringList names;
  for (PlaneNetwork::Point const& point : network.points) {
    auto const found = table.constFind(recordText(point.name));
    if (!point.isKnown || found == table.constEnd()) continue;
    CoordinatePointInfo const& told = state.approximate[*found];
    double const off = std::hypot(told.N - point.x, told.E - point.y);
    if (!(off > kContradicts)) continue;
    names << recordText(point.name);
    findings.push_back({FieldFinding::Warning,
                        {},
                        {point.name},
                        Messages::tr("the approximate coordinates are more than 1 m from its own, which count")});
  }
  if (names.isEmpty()) return findings;
  sendWarning(
      Messages::tr("Known points whose approximate coordinates are more than 1 m from their own, which count: %1")
          .arg(listedNames(names)));
  return findings;
}

void detail::tellUnusedApproximate(JobState const& state, PlaneNetwork const& network) {
  if (state.approximate.empty()) return;
  PointsByName const table = byName(state.file, state.approximate);
  auto const isTold = [&table](PlaneNetwork::Point const& point) { return table.contains(recordText(point.name)); };
  auto const unused = table.size() - std::count_if(network.points.begin(), network.points.end(), isTold);
  if (unused == 0) return;
  sendInfo(Messages::tr("Coordinates of points that the network does not have are ignored: %1 of %2")
               .arg(unused)
               .arg(state.approximate.size()));
}

void Job::openApproximate(QString const& path) { state->approximate = detail::approximateOf(path); }

void Job::setApproximate(std::vector<CoordinatePointInfo> points) {
  detail::requireUsable(state->file, points);
  state->approximate = std::move(points);
}

}  // namespace kvn
