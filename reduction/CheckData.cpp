#include "reduction/CheckData.h"

#include "core/Project.h"
#include "records/detail/Messages.h"

#include <algorithm>

namespace kvn {
namespace {

constexpr double kBelowZero = -1e-08;
constexpr double kUpperBound = 360.0;  // of values in radians

bool isAngle(double value) { return value >= kBelowZero && value <= kUpperBound; }
bool isDistance(double value) { return value >= kBelowZero; }

bool isGood(TraverseDataInfo const& row) {
  return isAngle(row.horizontal_angle) && isAngle(row.vertical_angle) && isDistance(row.slant_distance);
}
bool isGood(NetworkDataInfo const& line) {
  return isAngle(line.horizontal_angle) && isDistance(line.horizontal_distance);
}

template <typename Record>
bool checkAll(std::vector<Record> const& records) {
  bool const good = std::all_of(records.begin(), records.end(), [](Record const& record) { return isGood(record); });
  if (!good) Messages::send(CheckData::tr("The data is error"), Error);
  return good;
}

}  // namespace

bool CheckData::checkInitData(Project* project) { return checkTraverseData(project) && checkNetworkData(project); }

bool CheckData::checkTraverseData(Project* project) {
  return project != nullptr && checkAll(std::as_const(*project).getTraverseDataList());
}

bool CheckData::checkNetworkData(Project* project) { return checkAll(std::as_const(*project).getNetwork().lines); }

}  // namespace kvn
