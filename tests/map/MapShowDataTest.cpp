// The draw lists, and coordinates for the rows of a traverse file.
#include "support/FieldRows.h"
#include "support/Support.h"

#include <gtest/gtest.h>
#include <cmath>

namespace {

using namespace test;

Rows triangleJob() {
  Rows rows{known("K1", 0, 0)};
  auto const add = [&rows](Rows const& more) { rows.insert(rows.end(), more.begin(), more.end()); };
  add(twoFaces({sight("K2", 0.1, 90), sight("P", 45.1, 90, 100)}));
  add({known("K2", 100, 0)});
  add(twoFaces({sight("K1", 0.1, 90)}));
  return grouped(rows);
}

TEST(MapShowData, DrawsEveryRowAndALineFromTheTargetToItsStation) {
  kvn::MapShowData data;
  Rows rows{sight("B", 1, 90), station("A"), sight("B", 1, 90), sight("B", 1, 90)};
  rows[1].E = 7;
  rows[2].N = 5;
  rows[2].Z = 3;
  data.setTraverseDataList(rows);
  data.convertTraverseData();
  ASSERT_EQ(data.getPoint().size(), 4U);
  EXPECT_EQ(data.getPoint()[2].id, rows[2].id);
  EXPECT_EQ(data.getPoint()[1].pointType, kvn::TraversePointType::StationPoint);
  ASSERT_EQ(data.getLine().size(), 2U);
  EXPECT_EQ(data.getLine()[0].start.x, 5);
  EXPECT_EQ(data.getLine()[0].start.z, 3);
  EXPECT_EQ(data.getLine()[0].end.y, 7);
  EXPECT_TRUE(data.getLine()[0].start.name.empty());
}

TEST(MapShowData, PlacesTheNetworkByItsApproximateCoordinates) {
  kvn::Network network = kvn::INetworkDataCollection::TraverseDataListToNetwork(triangleJob());
  kvn::MapShowData data;
  data.setNetwrok(network);
  data.calculateApproximate();
  data.handle();
  std::string names;
  for (kvn::DrawPoint const& point : data.getPoint()) names += point.name + ' ';
  EXPECT_EQ(names, "K1 K2 P ");
  ASSERT_EQ(data.getLine().size(), network.lines.size());
  kvn::DrawLine const& line = data.getLine()[1];  // K1 to P, at 45° and 100 m
  EXPECT_EQ(line.end.name, "P");
  EXPECT_NEAR(line.end.x, 100 * std::sqrt(0.5), 1e-9);
  EXPECT_EQ(line.end.z, 0);
}

}  // namespace
