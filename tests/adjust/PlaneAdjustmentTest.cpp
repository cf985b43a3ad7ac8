// The adjustment in which every observation counts, against another program's results and closed forms.
#include "adjust/PlaneAdjustment.h"
#include "formats/CarefulCosaCollection.h"
#include "support/Support.h"

#include <gtest/gtest.h>
#include <json/json.h>
#include <cmath>
#include <fstream>

namespace {

constexpr double kSecondsPerRadian = 206264.80624709636;
constexpr double kDegreesPerRadian = 180.0 / 3.14159265358979323846;

kvn::PlaneNetwork networkOf(std::string const& path) {
  kvn::CarefulCosaCollection file;
  file.setKeepObservations(true);
  std::ifstream stream(path);
  file.read(stream);
  kvn::PlaneNetwork network = file.getObservations();
  kvn::ObservationErrors errors;
  errors.directionSeconds = double(file.getConfigure().AngleError);
  errors.distanceFixed = double(file.getConfigure().LineFixedError) / 1000.0;
  errors.distanceProportional = double(file.getConfigure().LineProportionError) / 1e6;
  kvn::setErrors(network, errors);
  return network;
}

struct Peer : testing::TestWithParam<char const*> {
  static std::string path(char const* ending) {
    return std::string(KELVANE_SOURCE_DIR "/tests/adjust/peer/") + GetParam() + ending;
  }
};

// The peer prints coordinates to 1e-14 m, ellipse axes and the unit weight error to eight digits, redundancy numbers in
// full, standardised residuals to three decimals. Both programs stop when the last round moves nothing by more than a
// hundredth of a millimetre; what that leaves is below 1e-9 m in coordinates, since convergence is quadratic.
TEST_P(Peer, GivesTheSameCoordinatesErrorsAndTests) {
  Json::Value expected;
  std::ifstream(path(".json")) >> expected;
  kvn::PlaneAdjustment adjustment(networkOf(path(".in2")));
  kvn::PlaneResult const& result = adjustment.adjust();
  kvn::PlaneNetwork const& network = adjustment.network();
  EXPECT_EQ(result.redundancy, expected["dof"].asInt());
  EXPECT_NEAR(result.unitError, expected["m0"].asDouble(), 1e-6 * expected["m0"].asDouble());
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    SCOPED_TRACE(network.points[p].name);
    Json::Value const& point = expected["points"][network.points[p].name];
    EXPECT_NEAR(result.points[p].x, point["N"].asDouble(), 1e-6);
    EXPECT_NEAR(result.points[p].y, point["E"].asDouble(), 1e-6);
    if (!point["adjusted"].asBool()) continue;
    double const size = point["a"].asDouble();
    EXPECT_NEAR(1000.0 * result.points[p].mx, point["sN"].asDouble(), 1e-4 * size);
    EXPECT_NEAR(1000.0 * result.points[p].my, point["sE"].asDouble(), 1e-4 * size);
    EXPECT_NEAR(1000.0 * result.points[p].semiMajor, size, 1e-4 * size);
    EXPECT_NEAR(1000.0 * result.points[p].semiMinor, point["b"].asDouble(), 1e-4 * size);
    double const turn =
        std::remainder(kDegreesPerRadian * result.points[p].bearing - point["bearing"].asDouble(), 180.0);
    if (size - point["b"].asDouble() > 0.01 * size) {
      EXPECT_NEAR(turn, 0.0, 0.05);
    }
  }
  std::size_t direction = 0;
  std::size_t distance = 0;
  for (Json::Value const& line : expected["observations"]) {
    bool const isDirection = line["kind"].asString() == "L";
    kvn::PlaneObservation const& o = isDirection ? result.directions[direction++] : result.distances[distance++];
    SCOPED_TRACE(line.toStyledString());
    double const unit = isDirection ? kSecondsPerRadian : 1000.0;
    EXPECT_NEAR(unit * o.residual, line["v"].asDouble(), 1e-3);
    EXPECT_NEAR(unit * o.adjustedError, line["s_adj"].asDouble(), 1e-4 * (1.0 + line["s_adj"].asDouble()));
    EXPECT_NEAR(o.redundancy, line["r"].asDouble(), 1e-5);
    if (o.redundancy > 1e-3) {
      EXPECT_NEAR(std::abs(o.standardised), line["std_residual"].asDouble(), 2e-3);
    }
  }
  EXPECT_EQ(direction, result.directions.size());
  EXPECT_EQ(distance, result.distances.size());
  std::size_t setUp = 0;
  for (Json::Value const& orientation : expected["orientations"]) {
    while (std::isnan(result.orientations[setUp])) ++setUp;
    EXPECT_EQ(network.points[static_cast<std::size_t>(network.setUps[setUp].station)].name, orientation[0].asString());
    double const turn = kDegreesPerRadian * result.orientations[setUp++] - orientation[1].asDouble();
    EXPECT_NEAR(std::remainder(turn, 360.0), 0.0, 1e-6);
  }
}

INSTANTIATE_TEST_SUITE_P(OfNineNetworks, Peer,
                         testing::Values("start_gama-local", "start_traverse-01-en-left", "synth_chain50",
                                         "synth_free50", "synth_grid100", "textbook_Benning88_Distance_fix",
                                         "textbook_Grossmann_Direction_fix", "textbook_LotherStrehle_Direction1",
                                         "textbook_StrangBorre_Distance_fix"));

}  // namespace
