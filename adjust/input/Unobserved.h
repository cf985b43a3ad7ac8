// Known points that no observation mentions.
#pragma once

#include "adjust/NameIndex.h"
#include "records/CalculationRecords.h"
#include "records/NetworkFindings.h"
#include "records/detail/Messages.h"

#include <QString>
#include <QStringList>
#include <vector>

namespace kvn::detail {

/// Sends one `Warning` that lists them as `listedNames` does, if there are any.
///
/// @param text  with %1 for the names.
inline void warnOfUnobserved(std::vector<PointInfo> const& knownPoints, NameIndex const& observed,
                             QString const& text) {
  QStringList names;
  for (PointInfo const& point : knownPoints) {
    if (!observed.contains(point.name)) names.append(QString::fromStdString(point.name));
  }
  if (!names.isEmpty()) Messages::send(text.arg(listedNames(names)), Warning);
}

/// Of those that the adjustment of a plane network leaves out.
inline void warnOfLeftOut(std::vector<PointInfo> const& knownPoints, NameIndex const& observed) {
  warnOfUnobserved(knownPoints, observed, Messages::tr("Known points without an observation are left out: %1"));
}

}  // namespace kvn::detail
