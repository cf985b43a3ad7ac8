#include "adjust/TriangleHeightDataRead.h"

#include "adjust/NameIndex.h"
#include "adjust/heights/MergeViews.h"
#include "adjust/input/CalculationFailure.h"
#include "adjust/input/EraseStepping.h"
#include "adjust/input/Missing.h"
#include "adjust/input/PairIndex.h"
#include "adjust/linalg/Index.h"
#include "records/detail/Messages.h"
#include "records/detail/Recorded.h"

#include <utils/Circle.h>

#include <utils/detail/PrivateData.h>

#include <cmath>
#include <cstddef>
#include <utility>

namespace kvn {
namespace {

using utils::kRightAngle;

constexpr double kThreeRightAngles = 3.0 * kRightAngle;
constexpr double kEarthRadius = 6371393.0;  // metres

/// The lines of the views by their numbers.
std::vector<std::size_t> linesOf(std::vector<TriangleViewData> const& views) {
  detail::PairIndex lines;
  std::vector<std::size_t> numbers;
  numbers.reserve(views.size());
  for (TriangleViewData const& view : views) numbers.push_back(lines.numberOf(view.start_name, view.end_name));
  return numbers;
}

/// Entries of each line; a line has no more numbers than there are views.
std::vector<std::size_t> countsOf(std::vector<std::size_t> const& lines) {
  std::vector<std::size_t> counts(lines.size(), 0);
  for (std::size_t const line : lines) ++counts[line];
  return counts;
}

[[noreturn]] void failWithoutDistance() {
  throw detail::CalculationFailure(Messages::tr("Triangulation Height Require The Information Of Distance"));
}

}  // namespace

struct KELVANE_PRIVATE TriangleHeightDataRead::Data {
  KELVANE_LATER_MEMBER
  std::vector<TraverseDataInfo> traverseDataList;
  std::vector<TriangleStationData> triangleStationData;
  std::vector<TriangleViewData> triangleViewData;
  double atmosphericIndex = 0.16;
  VerticalAngleType verticalAngleType = FullCircleZenith;
  NameIndex stationNames;
  std::vector<std::size_t> firstEntry;  // of each name, its first place in triangleStationData
};

TriangleHeightDataRead::TriangleHeightDataRead() : TriangleHeightDataRead(FullCircleZenith) {}
TriangleHeightDataRead::TriangleHeightDataRead(VerticalAngleType type) : own(std::make_unique<Data>()) {
  own->verticalAngleType = type;
}
TriangleHeightDataRead::TriangleHeightDataRead(TriangleHeightDataRead const& other)
    : own(std::make_unique<Data>(*other.own)) {}
TriangleHeightDataRead& TriangleHeightDataRead::operator=(TriangleHeightDataRead const& other) {
  *own = *other.own;
  return *this;
}
TriangleHeightDataRead::~TriangleHeightDataRead() = default;

void TriangleHeightDataRead::setVerticalAngleType(VerticalAngleType type) { own->verticalAngleType = type; }

void TriangleHeightDataRead::setTraverseDataList(std::vector<TraverseDataInfo> const& rows, double index) {
  setTraverseDataList(std::vector<TraverseDataInfo>(rows), index);
}

void TriangleHeightDataRead::setTraverseDataList(std::vector<TraverseDataInfo>&& rows, double index) {
  own->traverseDataList = std::move(rows);
  own->atmosphericIndex = index;
  dataConvert();
}

std::vector<TriangleStationData> TriangleHeightDataRead::getTriangleStationData() const {
  return own->triangleStationData;
}
std::vector<TriangleViewData> TriangleHeightDataRead::getTriangleViewData() const { return own->triangleViewData; }

void TriangleHeightDataRead::dataConvert() {
  getTriangleStationData(own->traverseDataList);
  getTriangleViewData(own->traverseDataList);
  dealVerticalAngleAndDistance();
  checkData();
  calAverage();
  calHeightValue();
  deleteKnLine();
  deleteBackFore();
}

void TriangleHeightDataRead::getTriangleStationData(std::vector<TraverseDataInfo> const& rows) {
  for (TraverseDataInfo const& row : rows) {
    if (row.pointType != TraversePointType::StationPoint) continue;
    if (detail::index(own->stationNames.numberOf(row.name)) == own->firstEntry.size()) {
      own->firstEntry.push_back(own->triangleStationData.size());
    }
    own->triangleStationData.push_back({row.name, row.instrument, row.Z, row.isKnown ? 0 : 1});
  }
}

void TriangleHeightDataRead::getTriangleViewData(std::vector<TraverseDataInfo> const& rows) {
  if (rows.empty()) return;
  std::string current = rows.front().name;
  for (TraverseDataInfo const& row : rows) {
    if (row.pointType == TraversePointType::StationPoint) current = row.name;
    if (row.pointType != TraversePointType::PrismPoint) continue;
    own->triangleViewData.push_back(
        {current, row.name, row.slant_distance, 0.0, row.vertical_angle, row.instrument, 0.0});
  }
}

double TriangleHeightDataRead::reducedAngle(double reading, bool secondFace) const {
  switch (own->verticalAngleType) {
    case ZenithAngle:
      return reading - kRightAngle;
    case FullCircleZenith:
      return reading - (secondFace ? kThreeRightAngles : kRightAngle);
    case ElevationAngle:
      break;
  }
  return reading;
}

// A view alone on its line stays as it was read, and without a distance.
void TriangleHeightDataRead::dealVerticalAngleAndDistance() {
  std::vector<std::size_t> const lines = linesOf(own->triangleViewData);
  std::vector<std::size_t> const counts = countsOf(lines);
  std::vector<bool> secondFace(lines.size(), false);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (counts[lines[i]] < 2) continue;
    TriangleViewData& view = own->triangleViewData[i];
    view.verticalAngle = reducedAngle(view.verticalAngle, secondFace[lines[i]]);
    view.horizontalDistance = std::abs(view.slantDistance * std::cos(view.verticalAngle));
    secondFace[lines[i]].flip();
  }
}

// The comparisons are false for NaN. A marker is a number, and its cosine one that means nothing.
void TriangleHeightDataRead::checkData() const {
  for (TriangleViewData const& view : own->triangleViewData) {
    bool const isUsable = view.horizontalDistance >= detail::kNotMeasured && detail::isPresent(view.slantDistance) &&
                          detail::isPresent(view.verticalAngle);
    if (!isUsable) failWithoutDistance();
  }
}

void TriangleHeightDataRead::calAverage() {
  std::vector<std::size_t> const lines = linesOf(own->triangleViewData);
  std::vector<std::size_t> const counts = countsOf(lines);
  std::vector<TriangleViewData> means;  // numbers are given in order, so that line k has its mean at k
  for (std::size_t i = 0; i < lines.size(); ++i) {
    TriangleViewData const& view = own->triangleViewData[i];
    if (lines[i] == means.size()) {
      means.push_back(view);
      continue;
    }
    means[lines[i]].horizontalDistance += view.horizontalDistance;
    means[lines[i]].verticalAngle += view.verticalAngle;
  }
  for (std::size_t k = 0; k < means.size(); ++k) {
    means[k].horizontalDistance /= static_cast<double>(counts[k]);
    means[k].verticalAngle /= static_cast<double>(counts[k]);
  }
  own->triangleViewData = std::move(means);
}

void TriangleHeightDataRead::calHeightValue() {
  for (TriangleViewData& view : own->triangleViewData) {
    double const distance = view.horizontalDistance;
    view.heightDifference = distance * std::tan(view.verticalAngle) + getInstrumentHeight(view.start_name) -
                            view.targetHeight + calf(distance);
    if (!detail::isPresent(view.heightDifference)) failWithoutDistance();
  }
}

double TriangleHeightDataRead::calf(double const& distance) const {
  double const squared = distance * distance;
  return squared / (2 * kEarthRadius) - own->atmosphericIndex * squared / (2 * kEarthRadius);
}

double TriangleHeightDataRead::getInstrumentHeight(std::string const& station) const {
  int const number = own->stationNames.find(station);
  if (number < 0) throw detail::CalculationFailure(QStringLiteral("Fine Station Instrument Height"));
  return own->triangleStationData[own->firstEntry[detail::index(number)]].instrumentHeight;
}

void TriangleHeightDataRead::deleteKnLine() {
  NameIndex known;
  for (TriangleStationData const& station : own->triangleStationData) {
    if (station.state == 0) known.numberOf(station.name);
  }
  detail::eraseAndStepPast(own->triangleViewData, [&known](TriangleViewData const& view) {
    return known.contains(view.start_name) && known.contains(view.end_name);
  });
}

void TriangleHeightDataRead::deleteBackFore() { detail::mergeOppositeViews(own->triangleViewData); }

}  // namespace kvn
