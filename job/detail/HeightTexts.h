// Findings on heights, for their sources alone.
#pragma once

#include "adjust/HeightNetwork.h"
#include "records/FieldFinding.h"

#include <QString>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace kvn::detail {

inline QString millimetres(double metres) { return QString::number(1000.0 * metres, 'f', 1); }

/// A `Warning`. @param cost  metres; no number counts as 0.
inline FieldFinding findingAt(std::string const& station, std::vector<std::string> targets, QString const& text,
                              double cost, HeightNetwork::Origin const& origin = {}) {
  FieldFinding finding{FieldFinding::Warning, station, std::move(targets), text};
  finding.cost = std::isfinite(cost) ? cost : 0.0;
  finding.isOfHeights = true;
  if (origin.row >= 0) finding.row = static_cast<std::size_t>(origin.row);
  return finding;
}

}  // namespace kvn::detail
