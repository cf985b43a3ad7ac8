// FieldFinding: something in a job that a surveyor should know.
#pragma once

#include <QString>
#include <cstddef>
#include <string>
#include <vector>

namespace kvn {

struct FieldFinding {
  enum Severity {
    Note,     ///< nothing is wrong
    Warning,  ///< the result may be worse than it looks
    Error,    ///< the job cannot be computed as it stands
  };
  static constexpr std::size_t kNoRow = static_cast<std::size_t>(-1);

  Severity severity = Warning;
  std::string station;
  std::vector<std::string> targets;
  QString text;              ///< what is the matter, without the names
  std::size_t row = kNoRow;  ///< index of the row concerned
  int line = 0;              ///< line of the file, from 1; 0 when it is not known
  /// What it may cost: metres by which a coordinate may be wrong, as far as that can be told; 0 where it cannot.
  double cost = 0.0;
  bool isOfDistance = false;      ///< about a distance between station and target, not a direction
  bool isOfHeights = false;       ///< about adjusted heights, not about the plane
  std::size_t traverse = kNoRow;  ///< place in `Job::traverses` of the one that it is about as a whole
  /// What stands there was not taken, or not as a whole: a file that is saved over the one that was read would lose it.
  bool isNotTaken = false;
};

}  // namespace kvn
