// From occupations and from rows to the lines of a network.
#include "support/FieldRows.h"
#include "support/Support.h"

#include <gtest/gtest.h>
#include <utils/QLogicError.h>

namespace {

using namespace test;
using kvn::INetworkDataCollection;

std::string jobLines(Rows rows) {
  return shortText(INetworkDataCollection::TraverseMapToNetWork(kvn::DataManager().buildStationMap(rows)));
}

TEST(JobNetwork, AddsTheSharesOfTheOccupations) {
  struct Case {
    char const* what;
    Rows rows;
    char const* lines;
  };
  Case const cases[] = {
      {"no rows", {}, ""},
      {"lines come by angle, not by name",
       {station("S"), sight("A", 10, 90, 5), sight("B", 70, 90, 7), sight("C", 40, 90)},
       "S>A 0.0000 5.0000\nS>C 30.0000 0.0000\nS>B 60.0000 7.0000\n"},
      {"two occupations",
       {station("S"), sight("A", 10, 90, 5), sight("B", 40, 90, 7), station("S"), sight("A", 50, 90, 7),
        sight("B", 82, 90, 9)},
       "S>A 0.0000 6.0000\nS>B 31.0000 8.0000\n"},
      {"a target that one of two occupations lacks gets half",
       {station("S"), sight("A", 10, 90), sight("B", 40, 90, 8), station("S"), sight("A", 50, 90)},
       "S>A 0.0000 0.0000\nS>B 15.0000 4.0000\n"},
      {"an occupation without a target counts",
       {station("S"), sight("A", 10, 90), sight("B", 40, 90), station("S")},
       "S>A 0.0000 0.0000\nS>B 15.0000 0.0000\n"},
      {"equal directions: one is lost",
       {station("S"), sight("A", 10, 90), sight("C", 40, 90), sight("B", 40, 90)},
       "S>A 0.0000 0.0000\nS>B 30.0000 0.0000\n"},
      {"a sum does not move a line: C was inserted behind B",
       {station("S"), sight("A", 0, 90), sight("B", 10, 90), sight("C", 20, 90), station("S"), sight("A", 0, 90),
        sight("B", 200, 90), sight("C", 20, 90)},
       "S>A 0.0000 0.0000\nS>B 105.0000 0.0000\nS>C 20.0000 0.0000\n"},
      {"all counted from the first line",
       {station("S"), sight("A", 10, 90), sight("A", 10 - 0.002, 90), sight("B", 40, 90)},
       "S>A 0.0000 0.0000\nS>B 30.0010 0.0000\n"},
      {"stations by name",
       {station("T"), sight("A", 1, 90), station("S"), sight("T", 1, 90)},
       "S>T 0.0000 0.0000\nT>A 0.0000 0.0000\n"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(jobLines(c.rows), c.lines);
  }
}

TEST(JobNetwork, IsTheWorkedFieldBookOfTwoFullRounds) {
  // A question bank's worked book of two rounds, A to D and A again, on both faces; readings and results as printed.
  struct Reading {
    char const* target;
    double left, right;  // DD.MMSS
  };
  Reading const rounds[2][5] = {{{"A", 0.0230, 180.0236},
                                 {"B", 60.2336, 240.2342},
                                 {"C", 225.1906, 45.1918},
                                 {"D", 290.1454, 110.1448},
                                 {"A", 0.0236, 180.0242}},
                                {{"A", 90.0330, 270.0324},
                                 {"B", 150.2348, 330.2330},
                                 {"C", 315.1942, 135.1930},
                                 {"D", 20.1506, 200.1500},
                                 {"A", 90.0324, 270.0318}}};
  auto const degrees = [](double dms) { return kvn::CommonFunction::dmsToRad(dms) / kDegree; };
  Rows rows;
  for (auto const& round : rounds) {
    rows.push_back(station("O"));
    for (Reading const& r : round) rows.push_back(sight(r.target, degrees(r.left), 90));
    for (int i = 4; i >= 0; --i) rows.push_back(sight(round[i].target, degrees(round[i].right), 270));
  }
  std::vector<std::pair<char const*, double>> const printed{
      {"A", 0.0}, {"B", 60.2039}, {"C", 225.1624}, {"D", 290.1157}};
  Rows reduced = rows;
  kvn::StationMap const map = kvn::DataManager().buildStationMap(reduced);
  // Both roads, the literal and the careful one; 0.01" is what reading DD.MMSS costs, the printed seconds are exact.
  for (auto const& lines : {INetworkDataCollection::TraverseMapToNetWork(map), kvn::reduceField(rows).network.lines}) {
    ASSERT_EQ(lines.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i) {
      EXPECT_EQ(lines[i].end_name, printed[i].first);
      EXPECT_NEAR(lines[i].horizontal_angle - lines[0].horizontal_angle,
                  kvn::CommonFunction::dmsToRad(printed[i].second), 0.01 * kSecond);
    }
  }
}

TEST(RowNetwork, HasOneLineForEachStationAndTarget) {
  Rows const rows = Rows{known("K1", 0, 0)} + twoFaces({sight("K2", 5, 90, 100), sight("P", 50, 90, 60)}) +
                    Rows{station("P")} + twoFaces({sight("K1", 7, 90, 60.02), sight("Q", 90, 90)});
  kvn::Network const network = INetworkDataCollection::TraverseDataListToNetwork(rows);
  EXPECT_EQ(shortText(network.lines),
            "K1>K2 5.0000 0.0000\n"   // to the first target: the distance goes
            "K1>P 50.0000 60.0100\n"  // mean of both ends
            "P>K1 7.0000 0.0000\nP>Q 90.0000 0.0000\n");
  ASSERT_EQ(network.knownPoints.size(), 1U);  // too few to calculate with, but enough to look at
  EXPECT_FALSE(network.knownPoints[0].id.empty());
}

TEST(RowNetwork, KeepsEveryKnownRowAndEveryFailure) {
  EXPECT_EQ(algorithmFailureOf([] { INetworkDataCollection::TraverseDataListToNetwork({}); }),
            "Station point is not enough||-1");
  Rows const rows = Rows{known("K1", 0, 0), known("K1", 0, 0), station("S")} + twoFaces({sight("A", 5, 90)});
  EXPECT_EQ(algorithmFailureOf([&] { INetworkDataCollection::TraverseDataListToNetwork(rows); }),
            "Know point name repeat|K1|-1");
}

TEST(RowNetwork, ADirectionOfZeroTakesThatOfARepeat) {
  kvn::NetworkDataCollection collection;
  for (double const angle : {0.0, 1e-8, 0.5, 0.7}) {
    collection.getNetworkDataList().emplace_back();
    collection.getNetworkDataList().back().start_name = "S";
    collection.getNetworkDataList().back().end_name = "A";
    collection.getNetworkDataList().back().horizontal_angle = angle * kDegree;
  }
  collection.readVRD(Rows{station("S")} + twoFaces({sight("B", 5, 90), sight("A", 50, 90, 60)}));
  // What was there comes first; directions are degrees here, and the list held radians.
  EXPECT_EQ(shortText(collection.getNetworkDataList(), 2), "S>A 0.50 60.00\nS>B 286.48 0.00\n");
  EXPECT_EQ(failureOf<QLogicError>([&] {
              collection.readVRD({station("S"), sight("A", 1, 90)});
            }),
            "Station point name S error");
  EXPECT_EQ(collection.getNetworkDataList().size(), 2U);
}

TEST(RowNetwork, FillsTheListsOfACollection) {
  kvn::CosaCollection collection;
  collection.setKnownPointList(std::vector<kvn::KnownPoint>(3));
  static_cast<INetworkDataCollection&>(collection).read(Rows{known("S", 1, 2)} + twoFaces({sight("A", 5, 90)}));
  EXPECT_EQ(collection.getKnownPointList().size(), 1U);
  EXPECT_EQ(shortText(collection.getNetworkDataList()), "S>A 5.0000 0.0000\n");
}

}  // namespace
