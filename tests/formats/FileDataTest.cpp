// Whole files for the adjustment.
#include <gtest/gtest.h>
#include <QDir>
#include <QTemporaryDir>
#include <cmath>

#include "support/Support.h"

namespace {

using kvn::DataException;
using kvn::FileData;

using utils::kPi;
// The lift of DD.MMSS by 1e-10 is 1e-6"; a mean of two keeps it.
constexpr double kDmsLiftRad = 5e-12;

class WholeFile : public testing::Test {
 protected:
  std::string file(char const* suffix, std::string const& text) const {
    QString const path = folder.filePath(QStringLiteral("a.b.%1").arg(suffix));
    test::writeFile(path, text);
    return path.toStdString();
  }
  FileData traverse(std::string const& text) const {
    FileData data("");
    EXPECT_TRUE(data.readFileData(file("txt", text)));
    return data;
  }
  FileData cosa(std::string const& text) const { return FileData(file("IN2", text)); }

  /// The failure, its text first.
  template <typename Reader>
  static std::string failure(Reader const& reader) {
    try {
      reader();
    } catch (DataException const& failure) {
      return failure.message + "|" + failure.name + "|" + std::to_string(failure.line);
    }
    return "no failure";
  }

  struct Case {
    char const* fault;
    std::string text;
    char const* says;
  };
  QTemporaryDir folder;
};

std::string counts(FileData const& data) {
  std::string text;
  for (int count : {data.pointsNumber, data.stationsNumber, data.directionsNumber, data.knowPointsNumber,
                    data.linesNumber, data.azimuthNumber}) {
    text += std::to_string(count) + " ";
  }
  return text;
}

constexpr char const* kSt = "STA,K,1,,10,20,0\n";
constexpr char const* kSights =
    "SC,A,1,,0.0,90.0,,0,0,0\nSC,B,1,,50.0,90.0,,0,0,0\nSC,B,1,,230.0,270.0,,0,0,0\nSC,A,1,,180.0,270.0,,0,0,0\n";

TEST_F(WholeFile, OfATraverseGivesMeansOfTheFaces) {
  // 100 m at 30 degrees from the zenith and 102 m at 330 are 51 m and 50 m; seen from the other end 52 m.
  FileData const data = traverse(
      "STA,K 1,1.5,,1000,2000,0\n"
      "SC,K2,1,,359.5958,90.0,,x,,0\nSC,P,1,,50.0,30.0,100,0,0,0\n"
      "SC,P,1,,230.0,330.0,102,0,0,0\nSC,K2,1,,180.0002,270.0,,0,0,0\n"
      "STA,P,1.5,,0,0,0.0\n"
      "SC,Q,1,,0.0025,90.0,9,0,0,0\nSC,K1,1,,40.0,90.0,52,0,0,0\n"
      "SC,K1,1,,220.0,270.0,52,0,0,0\nSC,Q,1,,180.0,270.0,9,0,0,0\n"
      "STA,K2,1.5,,1,0,0\n");
  ASSERT_EQ(data.stations.size(), 2U) << "a station without sights is none";
  ASSERT_EQ(data.getKnowPoint().size(), 2U);
  EXPECT_EQ(data.knowPoints[0].name, "K1");
  EXPECT_EQ(data.knowPoints[0].y, 2000.0);
  kvn::StationInfo const station = data.getStation()[0];
  EXPECT_NEAR(station.directions[0].value, 0.0, kDmsLiftRad);
  EXPECT_NEAR(station.directions[1].value, 50.0 / 180.0 * kPi, kDmsLiftRad);
  ASSERT_EQ(station.lines.size(), 1U);
  // 51.25 m from the halves; the lift of the zenith angles moves less than 1e-9 m at 100 m.
  EXPECT_NEAR(station.lines[0].value, ((50.0 + 51.0) / 2 + 52.0) / 2, 1e-9);
  ASSERT_EQ(data.stations[1].lines.size(), 1U) << "the distance to the first target goes";
  EXPECT_EQ(data.stations[1].lines[0].end_name, "K1");
  EXPECT_EQ(counts(data), "3 2 4 2 2 0 ");
}

TEST_F(WholeFile, OfATraverseIsRefusedWithAnyFault) {
  std::string const st = kSt;
  std::string const sights = kSights;
  Case const cases[] = {
      {"good", st + sights, "no failure"},
      {"no line", "", "NO_KN_POINT||0"},
      {"a blank first line", "\n" + st, "SPACE||1"},
      {"a line of blanks", st + "  \r\n" + sights, "SPACE||2"},
      {"a sighting first", sights, "ERROR||1"},
      {"another keyword", st + "XX,A,1,,0.0,90.0,,0,0,0\n", "ERROR||2"},
      {"station line one field short", "STA,K,1,,10,20\n", "ERROR||1"},
      {"station without a name", "STA, ,1,,10,20,0\n", "ERROR||1"},
      {"northing", "STA,K,1,,x,20,0\n", "ERROR||1"},
      {"easting is empty", "STA,K,1,,10,,0\n", "ERROR||1"},
      {"height is not finite", "STA,K,1,,10,20,-inf\n", "ERROR||1"},
      {"height has an exponent", "STA,K,1,,10,20,1e3\n", "ERROR||1"},
      {"sight line one field short", st + "SC,A,1,,0.0,90.0,,0,0\n", "ERROR||2"},
      {"sight without a name", st + "SC,,1,,0.0,90.0,,0,0,0\n", "SPACE||2"},
      {"no horizontal angle", st + "SC,A,1,,,90.0,,0,0,0\n", "ERROR||2"},
      {"vertical angle", st + "SC,A,1,,0.0,9o.0,,0,0,0\n", "ERROR||2"},
      {"minutes out of range", st + "SC,A,1,,0.61,90.0,,0,0,0\n", "ERROR||2"},
      {"degrees out of range", st + "SC,A,1,,0.0,361.0,,0,0,0\n", "ERROR||2"},
      {"distance", st + "SC,A,1,,0.0,90.0,-x,0,0,0\n", "ERROR||2"},
      {"an odd number of sights", st + "SC,A,1,,0.0,90.0,,0,0,0\n", "ERROR|K|0"},
      {"25 seconds above zero pass", st + "SC,A,1,,0.0025,90.0,,0,0,0\nSC,A,1,,180.0,90.0,,0,0,0\n", "no failure"},
      {"26 do not", st + "SC,A,1,,0.0026,90.0,,0,0,0\nSC,A,1,,180.0,90.0,,0,0,0\n", "ERROR|K|0"},
      {"half a degree below passes", st + "SC,A,1,,359.30,90.0,,0,0,0\nSC,A,1,,180.0,90.0,,0,0,0\n", "no failure"},
      {"more does not", st + "SC,A,1,,359.2959,90.0,,0,0,0\nSC,A,1,,180.0,90.0,,0,0,0\n", "ERROR|K|0"},
      {"no known point", "STA,K,1,,0,0,0\n" + sights, "NO_KN_POINT||0"},
      {"no station with sights", st, "NO_STATION||0"},
      {"a known point twice", st + sights + st + sights, "ERROR|K|0"},
      {"a known height alone is known", "STA,K,1,,0,0,1\n" + sights, "no failure"},
      {"the station of the first of two repeated names",
       st + sights + "STA,P,1,,0,0,0\n" + sights + "STA,Q,1,,0,0,0\n" + sights + "STA,Q,1,,0,0,0\n" + sights +
           "STA,P,1,,0,0,0\n" + sights,
       "ERROR|P|0"},
      {"a target twice",
       st + "SC,A,1,,0.0,90.0,,0,0,0\nSC,A,1,,5.0,90.0,,0,0,0\nSC,A,1,,185.0,90.0,,0,0,0\nSC,A,1,,180.0,90.0,,0,0,0\n",
       "ERROR|A|0"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.fault);
    EXPECT_EQ(failure([&] { traverse(c.text); }), c.says);
  }
}

TEST_F(WholeFile, OfACosaNetworkGivesEachKindOfObservation) {
  FileData data = cosa(
      "2, 3,3\nK 1,1000.5,-2000\nK2,1,2\nK1\nP,l,10.0\nP,S,,100\nK2,t,90.0\nK2,L,0.0\nEmpty\nP\nK1,L,0.0\n"
      "Last\nP,S,5\n");
  EXPECT_FLOAT_EQ(data.getCosaConfig().AngleError, 2.0F);
  EXPECT_FLOAT_EQ(data.getCosaConfig().LineFixedError, 0.003F);
  EXPECT_FLOAT_EQ(data.getCosaConfig().LineProportionError, 0.000003F);
  EXPECT_EQ(data.knowPoints.at(0).y, -2000.0);
  ASSERT_EQ(data.stations.size(), 3U) << "the last station has no direction";
  kvn::StationInfo const& station = data.stations[0];
  ASSERT_EQ(station.directions.size(), 2U);
  EXPECT_EQ(station.directions[0].start_name + ">" + station.directions[0].end_name, ">P");
  EXPECT_NEAR(station.directions[0].value, kPi / 18.0, kDmsLiftRad);
  EXPECT_EQ(station.lines.at(0).start_name + ">" + station.lines[0].end_name, "K1>P");
  EXPECT_EQ(station.lines[0].value, 100.0);
  EXPECT_NEAR(station.azimuths.at(0).value, kPi / 2.0, kDmsLiftRad);
  EXPECT_EQ(counts(data), "4 3 3 2 1 1 ");
  EXPECT_TRUE(data.readCosaFileFirstLine(file("IN2", "1,1,1\nA,1,2\nA\nB,L,0\n"))) << "starts anew";
  EXPECT_EQ(counts(data), "1 1 1 1 0 0 ");
}

TEST_F(WholeFile, OfACosaNetworkIsRefusedWithAnyFault) {
  std::string const head = "2,3,3\n";
  std::string const known = "2,3,3\nK,1,2\n";
  Case const cases[] = {
      {"good", known + "K\nP,L,0.0\n", "no failure"},
      {"no line", "", "NO_KN_POINT||0"},
      {"an empty first line", "\n" + known, "SPACE||1"},
      {"head of two fields", "2,3\n", "ERROR||1"},
      {"head of commas", ",,\n", "ERROR||1"},
      {"head of letters", "2,3,x\n", "ERROR||1"},
      {"head beyond a float", "2," + std::string(39, '9') + ",3\n", "ERROR||1"},
      {"no angle error", "0,3,3\n", "ERROR||0"},
      {"no fixed error", "2,0.0,3\n", "ERROR||0"},
      {"no proportional error", "2,3,0\n", "ERROR||0"},
      {"a station on line 2", head + "K\n", "ERROR||2"},
      {"an empty line", known + "\nK\n", "SPACE||3"},
      {"two fields", head + "K,1\n", "ERROR||2"},
      {"northing", head + "K,L,5\n", "ERROR||2"},
      {"easting", head + "K,1,-x\n", "ERROR||2"},
      {"two fields at a station", known + "K\nP,L\n", "ERROR||4"},
      {"a known point at a station", known + "K\nP,1,2\n", "ERROR||4"},
      {"another type", known + "K\nP,X,2\n", "ERROR||4"},
      {"a longer type", known + "K\nP,LL,2\n", "ERROR||4"},
      {"angle", known + "K\nP,L,x\n", "ERROR||4"},
      {"angle out of range", known + "K\nP,L,400\n", "ERROR||4"},
      {"azimuth out of range", known + "K\nP,T,0.0099\n", "ERROR||4"},
      {"distance", known + "K\nP,S,1e3\n", "ERROR||4"},
      {"no station", known, "NO_STATION||0"},
      {"no known point", head, "NO_KN_POINT||0"},
      {"a known point twice", known + "K,1,2\nK\nP,L,0\n", "ERROR|K|0"},
      {"a station twice", known + "K\nP,L,0\nK\nP,L,0\n", "ERROR|K|0"},
      {"a target twice", known + "K\nP,L,0\nP,L,0\n", "ERROR|P|0"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.fault);
    EXPECT_EQ(failure([&] { cosa(c.text); }), c.says);
  }
}

TEST_F(WholeFile, IsChosenByTheExactSuffix) {
  for (char const* suffix : {"TXT", "in2", "txtx"}) {
    FileData data("");
    EXPECT_TRUE(data.readFileData(file(suffix, "no such format"))) << suffix;
    EXPECT_FALSE(data.readCosaFileFirstLine(file(suffix, "2,3,3\nK,1,2\nK\nP,L,0.0\n"))) << suffix;
  }
  FileData data("");
  EXPECT_TRUE(data.readFileData("txt"));
  ASSERT_TRUE(QDir(folder.path()).mkdir("folder.txt"));
  for (QString const& missing :
       {folder.filePath("none.txt"), folder.filePath("folder.txt"), folder.filePath("none.IN2")}) {
    EXPECT_FALSE(data.readFileData(missing.toStdString()));
  }
  EXPECT_FALSE(data.readCosaFileFirstLine(folder.filePath("none.IN2").toStdString()));
}

TEST_F(WholeFile, HelpersCutTexts) {
  FileData data("");
  EXPECT_EQ(data.split(" a b,, c,", ','), (std::vector<std::string>{"ab", "", "c"}));
  EXPECT_EQ(data.split("a;;xyb;xy;", "xy", ';'), (std::vector<std::string>{"a", "b"}));
  std::string text = "aabbabc";
  data.deleteStr(text, "ab");
  EXPECT_EQ(text, "c") << "what a removal forms goes too";
  data.deleteStr(text, "");
  EXPECT_EQ(text, "c");
  EXPECT_EQ(failure([&] { data.dmsToRad(361.0, 7); }), "ERROR||7");
  data.m_PI = 2 * kPi;
  EXPECT_NEAR(data.dmsToRad(90.0), kPi, 2 * kDmsLiftRad) << "the pi of the object";
  EXPECT_NEAR(data.dmsToRad(90.0, 7), kPi, 2 * kDmsLiftRad);
}

}  // namespace
