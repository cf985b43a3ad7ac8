// From where on a number is an observation and not the place of a missing one.
#pragma once

namespace kvn::detail {

/// Files, rows and network lines: a value at or below this, radians or metres, was not observed.
constexpr double kNotRecorded = 1e-8;
/// Calculators, and what prepares their input: a distance up to this, metres, was not measured. Also the joining of
/// lines of network files, for angles too. A distance between the two is kept in files and lines, and not adjusted.
constexpr double kNotMeasured = 1e-6;

}  // namespace kvn::detail
