#include "adjust/AlgorithmAdjust.h"

#include "adjust/CloseTraverse.h"
#include "adjust/ConnectTraverse.h"
#include "adjust/OpenTraverse.h"
#include "adjust/engine/TraverseAdjustData.h"

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

AlgorithmAdjust::AlgorithmAdjust() = default;
AlgorithmAdjust::AlgorithmAdjust(AlgorithmAdjust const&) = default;
AlgorithmAdjust& AlgorithmAdjust::operator=(AlgorithmAdjust const&) = default;
AlgorithmAdjust::~AlgorithmAdjust() = default;

void AlgorithmAdjust::setConfigure(Configure const& value) { configure = value; }

void AlgorithmAdjust::setNetworkData(Network const& network, MissingDirection missing) {
  algorithmData.readNetworkData(network, missing);
}

void AlgorithmAdjust::setCountControlDistances(bool count) { countControlDistances = count; }
void AlgorithmAdjust::setIterationLimit(int rounds) { iterationLimit = rounds; }
void AlgorithmAdjust::setProgressCall(AdjustProgressCall call) { progressCall = std::move(call); }
void AlgorithmAdjust::setFoldToNearest(bool fold) { foldToNearest = fold; }

void AlgorithmAdjust::calculateAdjust() {
  switch (configure.AdjustMethod) {
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
  TraverseAdjust adjustment(double(configure.AngleError), double(configure.LineFixedError) / 1000.0,
                            double(configure.LineProportionError) / 1e6, configure.LineCalculateExpression);
  adjustment.setCancelCall(getCancelCall());
  adjustment.readAlgorithmData(algorithmData);
  adjustment.setCountControlDistances(countControlDistances);
  adjustment.setIterationLimit(iterationLimit);
  adjustment.setProgressCall(progressCall);
  adjustment.calculateAdjust();
  traverseAdjustInfoList = adjustment.getStationInfo();
  pointX0Y0List = adjustment.getPointX0Y0();
  directionResultList = std::move(adjustment.own->directionResults);
  errorEllipseList = std::move(adjustment.own->errorEllipses);
  lineErrorInfoList = std::move(adjustment.own->lineErrorInfos);
  pointList = adjustment.getPoints();
  pointErrorInfoList = adjustment.getPointErrorInfo();
  summary = adjustment.getSummary();
}

template <typename Traverse>
void AlgorithmAdjust::adjustSingle() {
  Traverse traverse;
  if constexpr (std::is_same_v<Traverse, CloseTraverse>) traverse.setFoldToNearest(foldToNearest);
  traverse.readAlgorithmData(algorithmData);
  traverse.setCancelCall(getCancelCall());
  traverse.calculateAdjust();
  takeStations(traverse, traverseAdjustInfoList);
  traverse.getAzimuth(degreeInfoList);
  traverse.getKnPoints(knPointInfoList);
  traverse.getPoints(pointList);
  traverseSummary = traverse.getSummary();
}

void AlgorithmAdjust::adjustTraverseList(std::vector<TraverseDataInfo>& rows) const {
  std::unordered_map<std::string, PointErrorInfo const*> pointOf;
  for (PointErrorInfo const& point : pointErrorInfoList) pointOf[point.name] = &point;
  for (TraverseDataInfo& row : rows) {
    auto const found = row.isKnown ? pointOf.end() : pointOf.find(row.name);
    if (found == pointOf.end()) continue;
    row.N = found->second->x;
    row.E = found->second->y;
  }
}

std::vector<CoordinatePointInfo> AlgorithmAdjust::getCoordinatePointXYList() const {
  std::vector<CoordinatePointInfo> points;
  for (PointInfo const& point : pointList) {
    CoordinatePointInfo coordinate;
    coordinate.name = point.name;
    coordinate.N = point.x;
    coordinate.E = point.y;
    points.push_back(std::move(coordinate));
  }
  return points;
}

std::vector<PointErrorInfo> const& AlgorithmAdjust::getPointErrorInfoList() const { return pointErrorInfoList; }
std::vector<DirectionResult> const& AlgorithmAdjust::getDirectionResultList() const { return directionResultList; }
ErrorEllipseManage const& AlgorithmAdjust::getErrorEllipseList() const { return errorEllipseList; }
std::vector<LineErrorInfo> const& AlgorithmAdjust::getLineErrorInfoList() const { return lineErrorInfoList; }
std::vector<TraverseInfo> const& AlgorithmAdjust::getTraverseAdjustInfoList() const { return traverseAdjustInfoList; }
std::vector<PointInfo> const& AlgorithmAdjust::getPointX0Y0List() const { return pointX0Y0List; }
std::vector<PointInfo> const& AlgorithmAdjust::getPointList() const { return pointList; }
std::vector<Degree> const& AlgorithmAdjust::getDegreeInfoList() const { return degreeInfoList; }
std::vector<PointInfo> const& AlgorithmAdjust::getKnPointInfoList() const { return knPointInfoList; }
AdjustSummary const& AlgorithmAdjust::getSummary() const { return summary; }
TraverseSummary const& AlgorithmAdjust::getTraverseSummary() const { return traverseSummary; }

}  // namespace kvn
