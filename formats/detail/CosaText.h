// What can stand in a network file.
#pragma once

#include "core/DataException.h"
#include "formats/detail/CarefulText.h"
#include "formats/detail/LineSource.h"
#include "records/detail/Messages.h"

#include <cmath>
#include <string>

namespace kvn::detail {

/// @throws DataException for a name that would not be read back as it is.
inline void requireReadableName(std::string const& name) {
  if (!name.empty() && name.find(',') == std::string::npos && simplifiedUtf8(name) == name) return;
  throw DataException(Messages::tr("The name cannot stand in a network file: %1").arg(quoted(name)).toStdString());
}

/// @throws DataException
inline void requireFinite(std::string const& name, double value) {
  if (std::isfinite(value)) return;
  throw DataException(Messages::tr("A number of %1 is not finite").arg(quoted(name)).toStdString());
}

/// @throws DataException
inline void requireNotNegative(std::string const& from, std::string const& to, double distance) {
  if (!(distance < 0.0)) return;
  QString const text = Messages::tr("The distance from %1 to %2 is negative");
  throw DataException(text.arg(quoted(from), quoted(to)).toStdString());
}

}  // namespace kvn::detail
