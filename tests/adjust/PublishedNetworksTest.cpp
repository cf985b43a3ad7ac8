// Published networks, read from their files, against the published results.
#include "comparison/Published.h"
#include "support/Support.h"

#include <gtest/gtest.h>
#include <cmath>

namespace {

using test::Published;
using test::PublishedPoint;

// Coordinates of the first are published to 1e-6 m, errors to 1e-6 m, its unit weight error to 1e-7; of the second to
// 1e-4 m and 1e-5 m. The bounds are a tenth of a millimetre, a hundredth, and 1e-4.
kvn::ErrorEllipse ellipseOf(kvn::AlgorithmAdjust const& result, std::string const& name) {
  for (auto const& ellipse : result.getErrorEllipseList().ellipseList) {
    if (ellipse.name == name) return ellipse;
  }
  return {};
}

void expectPoint(PublishedPoint const& expected, kvn::AlgorithmAdjust const& result) {
  SCOPED_TRACE(expected.name);
  auto const& points = result.getPointErrorInfoList();
  auto const found = std::find_if(points.begin(), points.end(), [&](auto const& p) { return p.name == expected.name; });
  ASSERT_NE(found, points.end());
  EXPECT_NEAR(found->x, expected.x, 1e-4);
  EXPECT_NEAR(found->y, expected.y, 1e-4);
  EXPECT_NEAR(found->mx, expected.mx, 1e-5);
  EXPECT_NEAR(found->my, expected.my, 1e-5);
  if (expected.semiMajor == 0.0) return;
  kvn::ErrorEllipse const ellipse = ellipseOf(result, expected.name);
  EXPECT_NEAR(ellipse.semiMajor, expected.semiMajor, 1e-5);
  EXPECT_NEAR(ellipse.semiMinor, expected.semiMinor, 1e-5);
  // Axes that differ by a hundredth turn by a degree for a ten-thousandth in the covariances: 0.01 degrees suffice
  // here.
  EXPECT_NEAR(ellipse.angle * 180.0 / std::acos(-1.0), expected.bearing, 0.01);
}

TEST(PublishedNetworks, AreReproducedFromTheirFiles) {
  test::Host host;
  for (Published const& published : test::publishedNetworks()) {
    SCOPED_TRACE(published.file);
    auto const project = host.system.createProject();
    project->read(test::samplePath(published.file));
    kvn::CosaCollection head;
    head.read(test::samplePath(published.file).toStdString());
    kvn::AlgorithmAdjust result;
    result.setConfigure(head.getConfigure());
    result.setCountControlDistances(true);  // the source counts the distance between its fixed points
    result.setNetworkData(project->getNetwork());
    result.calculateAdjust();
    EXPECT_EQ(result.getSummary().redundancy, published.redundancy);
    EXPECT_NEAR(result.getSummary().unitError, published.unitError, 1e-4);
    for (PublishedPoint const& point : published.points) expectPoint(point, result);
  }
}

}  // namespace
