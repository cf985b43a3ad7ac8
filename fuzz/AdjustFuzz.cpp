// Any bytes as a field job or a network: what a reader takes is reduced and adjusted by every method. There is a finite
// result or a documented failure.
#include "Support.h"

#include <utils/QLogicError.h>

#include <typeinfo>

namespace {

constexpr std::size_t kMostLines = 60;
constexpr int kIterations = 12;
constexpr int kPolls = 400;

/// "The iteration does not settle" and the failures of the heights are plain exceptions of their own kind; those of the
/// standard library come of mistakes.
template <typename Call>
bool calculates(Call const& call) {
  try {
    call();
    return true;
  } catch (kvn::AlgorithmException const&) {
  } catch (kvn::DataException const&) {
  } catch (QLogicError const&) {
  } catch (std::logic_error const& failure) {
    std::fprintf(stderr, "undocumented failure: %s\n", failure.what());
    throw;
  } catch (std::bad_alloc const&) {
    throw;
  } catch (std::exception const&) {
  }
  return false;
}

template <typename... Numbers>
void requireFinite(char const* promise, Numbers... numbers) {
  fuzz::require((std::isfinite(numbers) && ...), promise);
}

void requireFinite(std::vector<double> const& numbers, char const* promise) {
  for (double const number : numbers) fuzz::require(std::isfinite(number), promise);
}

void requireFinitePoints(std::vector<kvn::PointInfo> const& points) {
  for (kvn::PointInfo const& point : points) requireFinite("coordinates are finite", point.x, point.y);
}

void checkLeastSquares(kvn::AlgorithmAdjust const& result) {
  for (auto const& point : result.getPointErrorInfoList()) {
    requireFinite("coordinates are finite", point.x, point.y);
    fuzz::require(!point.mpValid || (std::isfinite(point.mp) && point.mp >= 0.0), "point errors are finite");
  }
  for (auto const& ellipse : result.getErrorEllipseList().ellipseList) {
    requireFinite("ellipses are finite", ellipse.semiMajor, ellipse.semiMinor, ellipse.angle);
    fuzz::require(ellipse.semiMajor >= ellipse.semiMinor, "the major axis is the longer one");
  }
  for (auto const& line : result.getLineErrorInfoList()) {
    if (line.start_name == line.end_name) continue;  // a point seen from itself has no azimuth, and errors of none
    requireFinite("distances are finite", line.residual, line.azimuth, line.adjustedDistance);
    fuzz::require(!line.distanceErrorValid || std::isfinite(line.distanceError), "errors of distances are finite");
  }
  for (auto const& station : result.getDirectionResultList()) {
    requireFinite(station.residuals, "residuals are finite");
    requireFinite(station.adjustedAzimuths, "azimuths are finite");
    requireFinite(station.azimuthErrors, "errors of azimuths are finite");
  }
  kvn::AdjustSummary const& summary = result.getSummary();
  fuzz::require(summary.hasRedundancy == std::isfinite(summary.unitError), "a unit weight error where there is one");
}

void adjust(kvn::Network const& network, int method, kvn::MissingDirection missing) {
  kvn::AlgorithmAdjust driver;
  kvn::Configure configure;
  configure.AdjustMethod = method;
  driver.setConfigure(configure);
  driver.setIterationLimit(kIterations);
  driver.setCountControlDistances(missing == kvn::MissingDirection::IsLeftOut);
  int polls = 0;
  driver.setCancelCall([&polls] { return ++polls > kPolls; });
  bool const isDone = calculates([&] {
    driver.setNetworkData(network, missing);
    driver.calculateAdjust();
  });
  if (!isDone) return;
  requireFinitePoints(driver.getPointList());
  requireFinitePoints(driver.getPointX0Y0List());
  requireFinite(driver.getTraverseSummary().azimuths, "azimuths of a traverse are finite");
  kvn::TraverseSummary const& summary = driver.getTraverseSummary();
  requireFinite("a misclosure is finite", summary.fx, summary.fy, summary.fs, summary.relativeError,
                summary.angleCorrection);
  if (method == 0) checkLeastSquares(driver);
}

void adjustAll(kvn::Network const& network) {
  if (network.lines.size() > kMostLines || network.knownPoints.size() > kMostLines) return;
  for (int method = 0; method < 4; ++method) {
    adjust(network, method, kvn::MissingDirection::IsZero);
    adjust(network, method, kvn::MissingDirection::IsLeftOut);
  }
  kvn::inspectNetwork(network, kvn::Configure());
}

void adjustHeights(std::vector<kvn::TraverseDataInfo> const& rows, kvn::VerticalAngleType type) {
  kvn::TriangleHeightAdjust heights;
  bool const isDone = calculates([&] {
    kvn::TriangleHeightDataRead reader(type);
    reader.setTraverseDataList(rows, 0.16);
    kvn::TriangleHeightDataConvert convert;
    convert.setTriangleHeightDataRead(reader);
    heights.setTriangleHeightDataConvert(convert);
    heights.heightLSAdjust();
  });
  if (!isDone) return;
  for (auto const& point : heights.getTriangleHeightPointInfo()) requireFinite("heights are finite", point.height);
  requireFinite(heights.getResiduals(), "residuals of heights are finite");
}

void reduce(std::vector<kvn::TraverseDataInfo> rows) {
  if (rows.empty() || rows.size() > 2 * kMostLines) return;
  kvn::markKnownStations(rows);
  kvn::FieldReduction const reduction = kvn::reduceField(rows);
  kvn::inspectRows(rows, reduction);
  adjustAll(reduction.network);
  calculates([&] { adjustAll(kvn::INetworkDataCollection::TraverseDataListToNetwork(rows)); });
  calculates([&] {
    adjustAll({{}, kvn::INetworkDataCollection::TraverseMapToNetWork(kvn::DataManager().buildStationMap(rows))});
  });
  adjustHeights(rows, kvn::FullCircleZenith);
  adjustHeights(kvn::elevationRows(rows).rows, kvn::ElevationAngle);
}

template <typename Collection>
bool isRead(Collection& collection, std::string const& text) {
  return fuzz::ends<std::exception>(
      [&] { fuzz::readText(collection, text); });  // the readers have targets of their own
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
  std::string const text(reinterpret_cast<char const*>(bytes), size);
  kvn::CarefulCosaCollection network;
  if (isRead(network, text)) adjustAll(network.takeNetwork());
  kvn::VRDTraverseDataCollcetion traverse;
  if (isRead(traverse, text)) reduce(traverse.getTraverseDataList());
  kvn::LQFTraverseDataCollection job;
  if (isRead(job, text)) reduce(job.getTraverseDataList());
  return 0;
}
