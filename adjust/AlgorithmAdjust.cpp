#include "adjust/AlgorithmAdjust.h"

#include "adjust/CloseTraverse.h"
#include "adjust/ConnectTraverse.h"
#include "adjust/OpenTraverse.h"
#include "adjust/engine/TraverseAdjustData.h"

#include <utils/detail/PrivateData.h>

#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>

namespace kvn {
namespace {

enum Method { LeastSquares, Open, Connect, Close };

void takeStations(OpenTraverse const& traverse, std::vector<TraverseInfo>& list) { traverse.getStationInfo(list); }
void takeStations(ClosingTraverse const& traverse, std::vector<TraverseInfo>& list) { traverse.getStationsInfo(list); }

}  // namespace

struct KELVANE_PRIVATE AlgorithmAdjust::Data {
  KELVANE_LATER_MEMBER

  std::vector<PointErrorInfo> pointErrorInfoList;
  std::vector<DirectionResult> directionResultList;
  ErrorEllipseManage errorEllipseList;
  std::vector<LineErrorInfo> lineErrorInfoList;
  std::vector<TraverseInfo> traverseAdjustInfoList;
  std::vector<PointInfo> pointX0Y0List;
  std::vector<PointInfo> pointList;
  std::vector<Degree> degreeInfoList;
  std::vector<PointInfo> knPointInfoList;
  Configure configure;
  AlgorithmData algorithmData;
  AdjustSummary summary;
  TraverseSummary traverseSummary;
  bool countControlDistances = false;
  int iterationLimit = 10000;
  AdjustProgressCall progressCall;
  bool foldToNearest = false;
};

AlgorithmAdjust::AlgorithmAdjust() : own(std::make_unique<Data>()) {}
AlgorithmAdjust::AlgorithmAdjust(AlgorithmAdjust const& other)
    : utils::IProcessCancel(other), own(std::make_unique<Data>(*other.own)) {}
AlgorithmAdjust& AlgorithmAdjust::operator=(AlgorithmAdjust const& other) {
  utils::IProcessCancel::operator=(other);
  *own = *other.own;
  return *this;
}
AlgorithmAdjust::~AlgorithmAdjust() = default;

void AlgorithmAdjust::setConfigure(Configure const& value) { own->configure = value; }

void AlgorithmAdjust::setNetworkData(Network const& network, MissingDirection missing) {
  own->algorithmData.readNetworkData(network, missing);
}

void AlgorithmAdjust::setCountControlDistances(bool count) { own->countControlDistances = count; }
void AlgorithmAdjust::setIterationLimit(int rounds) { own->iterationLimit = rounds; }
void AlgorithmAdjust::setProgressCall(AdjustProgressCall call) { own->progressCall = std::move(call); }
void AlgorithmAdjust::setFoldToNearest(bool fold) { own->foldToNearest = fold; }

void AlgorithmAdjust::calculateAdjust() {
  switch (own->configure.AdjustMethod) {
    case LeastSquares:
      adjustLeastSquares();
      break;
    case Open:
      adjustSingle<OpenTraverse>();
      break;
    case Connect:
      adjustSingle<ConnectTraverse>();
      break;
    case Close:
      adjustSingle<CloseTraverse>();
      break;
    default:
      break;
  }
}

void AlgorithmAdjust::adjustLeastSquares() {
  // Seconds, millimetres and parts per million to seconds, metres and a ratio.
  TraverseAdjust adjustment(double(own->configure.AngleError), double(own->configure.LineFixedError) / 1000.0,
                            double(own->configure.LineProportionError) / 1e6, own->configure.LineCalculateExpression);
  adjustment.setCancelCall(getCancelCall());
  adjustment.readAlgorithmData(own->algorithmData);
  adjustment.setCountControlDistances(own->countControlDistances);
  adjustment.setIterationLimit(own->iterationLimit);
  adjustment.setProgressCall(own->progressCall);
  adjustment.calculateAdjust();
  own->traverseAdjustInfoList = adjustment.getStationInfo();
  own->pointX0Y0List = adjustment.getPointX0Y0();
  own->directionResultList = std::move(adjustment.own->directionResults);
  own->errorEllipseList = std::move(adjustment.own->errorEllipses);
  own->lineErrorInfoList = std::move(adjustment.own->lineErrorInfos);
  own->pointList = adjustment.getPoints();
  own->pointErrorInfoList = adjustment.getPointErrorInfo();
  own->summary = adjustment.getSummary();
}

template <typename Traverse>
void AlgorithmAdjust::adjustSingle() {
  Traverse traverse;
  if constexpr (std::is_same_v<Traverse, CloseTraverse>) traverse.setFoldToNearest(own->foldToNearest);
  traverse.readAlgorithmData(own->algorithmData);
  traverse.setCancelCall(getCancelCall());
  traverse.calculateAdjust();
  takeStations(traverse, own->traverseAdjustInfoList);
  traverse.getAzimuth(own->degreeInfoList);
  traverse.getKnPoints(own->knPointInfoList);
  traverse.getPoints(own->pointList);
  own->traverseSummary = traverse.getSummary();
}

void AlgorithmAdjust::adjustTraverseList(std::vector<TraverseDataInfo>& rows) const {
  std::unordered_map<std::string, PointErrorInfo const*> pointOf;
  for (PointErrorInfo const& point : own->pointErrorInfoList) pointOf[point.name] = &point;
  for (TraverseDataInfo& row : rows) {
    auto const found = row.isKnown ? pointOf.end() : pointOf.find(row.name);
    if (found == pointOf.end()) continue;
    row.N = found->second->x;
    row.E = found->second->y;
  }
}

std::vector<CoordinatePointInfo> AlgorithmAdjust::getCoordinatePointXYList() const {
  std::vector<CoordinatePointInfo> points;
  for (PointInfo const& point : own->pointList) {
    CoordinatePointInfo coordinate;
    coordinate.name = point.name;
    coordinate.N = point.x;
    coordinate.E = point.y;
    points.push_back(std::move(coordinate));
  }
  return points;
}

std::vector<PointErrorInfo> const& AlgorithmAdjust::getPointErrorInfoList() const { return own->pointErrorInfoList; }
std::vector<DirectionResult> const& AlgorithmAdjust::getDirectionResultList() const { return own->directionResultList; }
ErrorEllipseManage const& AlgorithmAdjust::getErrorEllipseList() const { return own->errorEllipseList; }
std::vector<LineErrorInfo> const& AlgorithmAdjust::getLineErrorInfoList() const { return own->lineErrorInfoList; }
std::vector<TraverseInfo> const& AlgorithmAdjust::getTraverseAdjustInfoList() const {
  return own->traverseAdjustInfoList;
}
std::vector<PointInfo> const& AlgorithmAdjust::getPointX0Y0List() const { return own->pointX0Y0List; }
std::vector<PointInfo> const& AlgorithmAdjust::getPointList() const { return own->pointList; }
std::vector<Degree> const& AlgorithmAdjust::getDegreeInfoList() const { return own->degreeInfoList; }
std::vector<PointInfo> const& AlgorithmAdjust::getKnPointInfoList() const { return own->knPointInfoList; }
AdjustSummary const& AlgorithmAdjust::getSummary() const { return own->summary; }
TraverseSummary const& AlgorithmAdjust::getTraverseSummary() const { return own->traverseSummary; }

}  // namespace kvn
