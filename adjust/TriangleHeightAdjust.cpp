#include "adjust/TriangleHeightAdjust.h"

#include "adjust/Matrix.h"
#include "adjust/input/CalculationFailure.h"
#include "adjust/input/Missing.h"
#include "adjust/linalg/Index.h"
#include "adjust/linalg/NormalEquations.h"
#include "adjust/linalg/PackedInverse.h"
#include "adjust/start/SweepQueue.h"
#include "records/detail/Messages.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kvn {
namespace {

using detail::index;
using detail::isPresent;

constexpr double kUnset = -9999.9;     // height that is not known yet, metres
constexpr double kSetAbove = -9999.0;  // a height above this is set
constexpr double kKnownWeight = 1e30;  // a standard error of 1e-15 m for a line weight of 1
// Points from which on the matrix is sparse. Either one solves a levelling grid of 100 points in 0.15 ms; at 50 points
// the full one takes half the time of the sparse one, at 1,000 twenty times as long.
constexpr int kSparseFrom = 100;

bool isSet(double height) { return height > kSetAbove && isPresent(height); }

struct PackedIndex : Matrix {
  using Matrix::ij;
};

}  // namespace

TriangleHeightAdjust::TriangleHeightAdjust() : sparseFrom(kSparseFrom) {}
TriangleHeightAdjust::TriangleHeightAdjust(TriangleHeightAdjust const&) = default;
TriangleHeightAdjust& TriangleHeightAdjust::operator=(TriangleHeightAdjust const&) = default;
TriangleHeightAdjust::~TriangleHeightAdjust() = default;

std::size_t TriangleHeightAdjust::ij(int i, int j) { return PackedIndex::ij(i, j); }

bool TriangleHeightAdjust::inverse(std::vector<double>& packed, int n) const {
  return detail::invertPacked(packed.data(), index(n), detail::PivotRule::ChangesOne);
}

int TriangleHeightAdjust::getStationNumber(std::string const& name) { return pointNames.numberOf(name); }

// Whoever asks for heights after a failure shall not get the approximate ones.
void TriangleHeightAdjust::fail() {
  H.clear();
  H0.clear();
  throw detail::CalculationFailure(Messages::tr("Calculate Height Failed, The Height Of Data Is Error"));
}

void TriangleHeightAdjust::clearCalData() {
  for (auto* list : {&H0, &H, &P, &cofactors, &dX, &V}) list->clear();
}

// ---- Input.

/// All names in the order in which an empty table would number them.
NameIndex TriangleHeightAdjust::namesOf(std::vector<TriangleStationData> const& stations,
                                        std::vector<TriangleViewData> const& views) {
  NameIndex names;
  for (TriangleStationData const& station : stations) names.numberOf(station.name);
  for (TriangleViewData const& view : views) {
    names.numberOf(view.start_name);
    names.numberOf(view.end_name);
  }
  return names;
}

/// The same names as in the last run, and the known ones among the first numbers, on which the solve relies.
bool TriangleHeightAdjust::keepsNumbers(NameIndex const& names) const {
  if (names.size() != pointNames.size()) return false;
  for (int n = 0; n < names.size(); ++n) {
    int const before = pointNames.find(names.names()[index(n)]);
    if (before < 0 || (n < knPointsCount && before >= knPointsCount)) return false;
  }
  return true;
}

void TriangleHeightAdjust::sizeArrays() {
  auto const points = index(pointsCount);
  auto const lines = index(linesCount);
  for (auto* list : {&H, &dX, &cofactors}) list->assign(points, 0.0);
  for (auto* list : {&lineHeight, &V, &P}) list->assign(lines, 0.0);
  lineStart.assign(lines, -1);
  lineEnd.assign(lines, -1);
  H0.clear();
}

void TriangleHeightAdjust::setTriangleHeightDataConvert(TriangleHeightDataConvert const& convert) {
  knPointsCount = convert.getKnPnumber();
  linesCount = convert.getLnumber();
  pointsCount = convert.getPnumber();
  sizeArrays();
  std::vector<TriangleStationData> const stations = convert.getTriangleStationData();
  std::vector<TriangleViewData> const views = convert.getTraingleViewData();
  if (!keepsNumbers(namesOf(stations, views))) pointNames = NameIndex();
  for (TriangleStationData const& station : stations) {
    H[index(getStationNumber(station.name))] = station.height;
  }
  std::size_t l = 0;
  for (TriangleViewData const& view : views) {
    lineStart[l] = getStationNumber(view.start_name);
    lineEnd[l] = getStationNumber(view.end_name);
    lineHeight[l] = view.heightDifference;
    P[l] = 1.0 / view.horizontalDistance;
    ++l;
  }
}

void TriangleHeightAdjust::requireUsableInput() {
  bool const isFilled = H.size() == index(pointsCount) && P.size() == index(linesCount);
  if (!isFilled || !std::all_of(H.begin(), H.begin() + knPointsCount, isSet) ||
      !std::all_of(lineHeight.begin(), lineHeight.end(), isPresent)) {
    fail();
  }
}

// ---- Approximate heights.

/// Repeated passes over the lines: one that has the height of one end alone gives that of the other. Passes over all
/// lines would give each height from the same line, since the queue visits the lines that can give one in their order.
class TriangleHeightAdjust::HeightWalk {
 public:
  explicit HeightWalk(TriangleHeightAdjust& adjustment)
      : net(adjustment), queue(index(net.linesCount)), linesAt(index(net.pointsCount)) {
    for (int l = 0; l < net.linesCount; ++l) {
      linesAt[index(net.lineStart[index(l)])].push_back(l);
      linesAt[index(net.lineEnd[index(l)])].push_back(l);
    }
  }

  void run() {
    for (int point = 0; point < net.knPointsCount; ++point) tellLines(point);
    int l = 0;
    while (queue.next(l)) {
      int const a = net.lineStart[index(l)];
      int const b = net.lineEnd[index(l)];
      double const difference = net.lineHeight[index(l)];
      if (!isSet(net.H[index(b)])) place(b, net.H[index(a)] + difference);
      if (!isSet(net.H[index(a)])) place(a, net.H[index(b)] - difference);
    }
  }

 private:
  void place(int point, double height) {
    if (!isSet(height)) net.fail();
    net.H[index(point)] = height;
    tellLines(point);
  }

  void tellLines(int point) {
    for (int const l : linesAt[index(point)]) queue.schedule(l);
  }

  TriangleHeightAdjust& net;
  detail::SweepQueue queue;
  std::vector<std::vector<int>> linesAt;  // of each point
};

// Each pass but the last sets a height, so that a limit on the passes would never end a walk that could go on.
void TriangleHeightAdjust::calculateH0() {
  std::fill(H.begin() + knPointsCount, H.end(), kUnset);
  HeightWalk(*this).run();
  if (!std::all_of(H.begin(), H.end(), isSet)) fail();
}

// ---- The solve.

void TriangleHeightAdjust::setSparseFrom(int points) { sparseFrom = points; }

/// Empty ones, with an unknown for each point.
void TriangleHeightAdjust::prepareNormals() {
  // How much of a pivot elimination takes away is no matter: the walk has found a way from every point to a known one.
  detail::NormalEquations::Soundness const soundness{detail::PivotRule::ChangesOne,
                                                     std::numeric_limits<double>::infinity()};
  if (pointsCount < sparseFrom) {
    normals = detail::fullNormals(pointsCount, soundness);
    return;
  }
  detail::NormalEquations::Pattern pattern;
  pattern.blockSizes.assign(index(pointsCount), 1);
  pattern.cliques.reserve(lineHeight.size());
  for (std::size_t l = 0; l < lineHeight.size(); ++l) pattern.cliques.push_back({lineStart[l], lineEnd[l], -1});
  normals = detail::sparseNormals(pattern, soundness);
}

void TriangleHeightAdjust::calculateATPA() {
  prepareNormals();
  for (std::size_t l = 0; l < lineHeight.size(); ++l) {
    int const a = lineStart[l];
    int const b = lineEnd[l];
    double const p = P[l];
    double const w = lineHeight[l] - (H[index(b)] - H[index(a)]);
    normals->addRight(a, -p * w);
    normals->addRight(b, p * w);
    normals->add(a, a, p);
    normals->add(b, b, p);
    normals->add(a, b, -p);
  }
}

// The weight stands in place of those of the point's lines, which the sum does not feel: doubles near 1e30 are 1.4e14
// apart, and a line weighs 1e6 at most, since the reduction takes none below 1e-6 m.
void TriangleHeightAdjust::holdKnownPoints() {
  for (int k = 0; k < knPointsCount; ++k) normals->add(k, k, kKnownWeight);
}

void TriangleHeightAdjust::calculatedX() {
  std::shared_ptr<detail::NormalEquations> const equations = std::exchange(normals, nullptr);
  if (!equations || !equations->factor({})) fail();
  dX = equations->solution();
  for (std::size_t i = 0; i < dX.size(); ++i) H[i] += dX[i];
  if (!std::all_of(H.begin(), H.end(), isPresent) || !equations->invert({})) fail();
  for (int i = 0; i < pointsCount; ++i) cofactors[index(i)] = equations->inverse(i, i);
}

double TriangleHeightAdjust::calculateV() {
  double pvv = 0.0;
  for (std::size_t l = 0; l < lineHeight.size(); ++l) {
    V[l] = (H[index(lineEnd[l])] - H[index(lineStart[l])]) - lineHeight[l];
    pvv += V[l] * V[l] * P[l];
  }
  return pvv;
}

void TriangleHeightAdjust::calculateHeightError() {
  for (int i = 0; i < pointsCount; ++i) {
    double const error = std::sqrt(cofactors[index(i)]) * unitError;
    pointInfoList.push_back({pointNames.names()[index(i)], H[index(i)], error});
  }
}

void TriangleHeightAdjust::heightLSAdjust() {
  requireUsableInput();
  calculateH0();
  H0 = H;
  calculateATPA();
  holdKnownPoints();
  calculatedX();
  double const pvv = calculateV();
  int const redundancy = getRedundancy();
  unitError = redundancy > 0 ? std::sqrt(pvv / redundancy) : std::numeric_limits<double>::quiet_NaN();
  calculateHeightError();
}

// ---- Results.

std::vector<TriangleHeightPointInfo> TriangleHeightAdjust::getTriangleHeightPointInfo() const { return pointInfoList; }

std::vector<TriangleHeightPointInfo> TriangleHeightAdjust::getTriangleHeightPointInfoH0() const {
  std::vector<TriangleHeightPointInfo> points(H0.size());
  for (std::size_t n = 0; n < H0.size(); ++n) {
    points[n].name = pointNames.names()[n];
    points[n].height = H0[n];
  }
  return points;
}

void TriangleHeightAdjust::convertCoordZ(std::vector<CoordinatePointInfo>& points) const {
  for (CoordinatePointInfo& point : points) {
    int const number = pointNames.find(point.name);
    if (number >= 0 && index(number) < H.size()) point.Z = H[index(number)];
  }
}

}  // namespace kvn
