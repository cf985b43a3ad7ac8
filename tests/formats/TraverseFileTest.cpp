// Reading and writing traverse files.
#include <gtest/gtest.h>
#include <QTemporaryDir>

#include "formats/Rows.h"

namespace {

using kvn::DataException;
using kvn::TraversePointType;
using kvn::VRDTraverseDataCollcetion;
using test::described;
using test::Rows;

Rows readTraverse(std::string const& text) { return test::rowsOf<VRDTraverseDataCollcetion>(text); }
std::string written(Rows const& rows) { return test::textOf<VRDTraverseDataCollcetion>(rows); }

TEST(TraverseReader, TakesStationsAndSightings) {
  // 100 m at 30 degrees from the zenith are 50 m on the plane, at 330 degrees, the second face, as well.
  test::TextCase const cases[] = {
      {"an empty file", "", ""},
      {"empty lines alone", "\n\r\n\n", ""},
      {"a station", "STA,A1,1.5,,1000.0000,2000.0000,50.0000", "0 sta [A1] 1.5 (1000,2000,50) known\n"},
      {"a field that is ignored, a height with its unit", "STA,A1,1.5m,x,1,-2e3, 5 ",
       "0 sta [A1] 1.5 (1,-2000,5) known\n"},
      {"coordinates of nearly zero", "STA,A,1,,0.000001,-0.000001,0.000001", "0 sta [A] 1 (1e-06,-1e-06,1e-06)\n"},
      {"one of them is more", "STA,A,1,,0,0,0.00002\nSTA,B,1,,0,-0.00001,0\n",
       "0 sta [A] 1 (0,0,2e-05) known\n1 sta [B] 1 (0,-1e-05,0) known\n"},
      {"a sighting", "STA,A,1,,0,0,0\nSC,B,1.62,,123.453012,30.0,100,1,2,3\nSC,C,1,,0,330.0,100,0,0,0",
       "0 sta [A] 1 (0,0,0)\n0 fore [B] 1.62 445530.12 108000.00 100 50 (1,2,3)\n"
       "0 fore [C] 1 0.00 1188000.00 100 50 (0,0,0)\n"},
      {"a direction without a distance", "SC,B,1.62,,200.000000,91.000000,,0.0000,0.0000,0.0000",
       "0 fore [B] 1.62 720000.00 327600.00 - (0,0,0)\n"},
      {"sightings ahead of any station share a group", "SC,B,1,,0,0,,0,0,0\nSC,C,1,,0,0,,0,0,0\nSTA,A,1,,0,0,0",
       "0 fore [B] 1 0.00 0.00 - (0,0,0)\n0 fore [C] 1 0.00 0.00 - (0,0,0)\n2 sta [A] 1 (0,0,0)\n"},
      {"two occupations of one station", "STA,A,1,,0,0,0\nSC,B,1,,0,0,,0,0,0\nSTA,A,1,,0,0,0\nSC,B,1,,0,0,,0,0,0",
       "0 sta [A] 1 (0,0,0)\n0 fore [B] 1 0.00 0.00 - (0,0,0)\n2 sta [A] 1 (0,0,0)\n2 fore [B] 1 0.00 0.00 - "
       "(0,0,0)\n"},
      {"texts that are no angle", "SC,B,1,,x,,,0,0,0", "0 fore [B] 1 0.00 0.00 - (0,0,0)\n"},
      {"blanks in a name, a mark and a carriage return", "\xEF\xBB\xBF\t STA,A \t 1,1,,1,2,3 \r\n",
       "0 sta [A 1] 1 (1,2,3) known\n"},
      {"what a double may be", "STA,A,1,,inf,-inf,nan", "0 sta [A] 1 (inf,-inf,nan) known\n"},
  };
  for (test::TextCase const& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(described(readTraverse(c.text)), c.result);
  }
}

TEST(TraverseReader, NamesTheLineOrTheFieldThatIsWrong) {
  char const* const format = "The Format of Data is wrong";
  test::TextCase const cases[] = {
      {"station line one field short", "STA,A1,1.5,,1,2", "The line 1 is wrong"},
      {"station line one field long", "STA,A1,1.5,,1,2,3,4", "The line 1 is wrong"},
      {"blank lines count, as in an editor", "\n\nSTA,A1,1.5,,1,2", "The line 3 is wrong"},
      {"a line of blanks is not empty", "STA,A1,1.5,,1,2,3\n  \n", "The line 2 is wrong"},
      {"another case", "sta,A1,1.5,,1,2,3", "The line 1 is wrong"},
      {"a blank before a comma", "STA ,A1,1.5,,1,2,3", "The line 1 is wrong"},
      {"the last coordinates missing", "SC,B,1.5,,1.0,90.0,,,,", "The line 1 is wrong"},
      {"the last coordinate missing", "SC,B,1.5,,1.0,90.0,,0,0,", "The line 1 is wrong"},
      {"ten fields of a station", "STA,B,1.5,,1.0,90.0,,0,0,0", "The line 1 is wrong"},
      {"seven fields of a sighting", "SC,A1,1.5,,1,2,3", "The line 1 is wrong"},
      {"northing is a letter", "STA,A1,1.5,,x,0,0", format},
      {"easting is empty", "STA,A1,1.5,,0,,0", format},
      {"height of the station is hexadecimal", "STA,A1,1.5,,0,0,0x10", format},
      {"a decimal comma makes a field more", "STA,A1,1,5,,1,2,3", "The line 1 is wrong"},
      {"a unit behind the distance", "SC,B,1.5,,1.0,90.0,5m,0,0,0", format},
      {"a blank as a distance", "SC,B,1.5,,1.0,90.0, ,0,0,0", format},
      {"northing of a target", "SC,B,1.5,,1.0,90.0,,x,0,0", format},
      {"easting of a target", "SC,B,1.5,,1.0,90.0,,0,1e999,0", format},
      {"height of a target", "SC,B,1.5,,1.0,90.0,,0,0,-", format},
      {"no instrument height", "STA,A1,,,x,0,0", "invalid stod argument"},
      {"no target height", "SC,B,m,,1.0,90.0,x,0,0,0", "invalid stod argument"},
      {"height out of range", "SC,B,1e999,,1.0,90.0,,0,0,0", "stod argument out of range"},
  };
  for (test::TextCase const& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(test::failureOf<std::exception>([&] { readTraverse(c.text); }), c.result);
  }
}

TEST(TraverseReader, ReadsAnAwkwardName) {
  // Runs of what Unicode calls blank become one blank; bytes that are no UTF-8, the replacement character.
  std::string const longName(1 << 20, 'x');
  for (auto const& [name, read] : {std::pair<std::string, std::string>{longName, longName},
                                   {"a \v\f\t b", "a b"},
                                   {"a\u00A0\u00A0b", "a b"},
                                   {"\xB5\xE3", "\xEF\xBF\xBD\xEF\xBF\xBD"},
                                   {std::string("a\0b", 3), std::string("a\0b", 3)},
                                   {"\xEF\xBC\x91", "\xEF\xBC\x91"}}) {
    for (char const* numbers : {",1,,1,2,3", ",1,,+1.0,2e0,3.", ",1,, 1\v,\u00A02,3"}) {
      Rows const rows = readTraverse("STA," + name + numbers);
      ASSERT_EQ(rows.size(), 1U);
      EXPECT_EQ(rows[0].name, read) << numbers;
      EXPECT_TRUE(rows[0].N == 1 && rows[0].E == 2 && rows[0].Z == 3) << numbers;
    }
  }
}

TEST(TraverseReader, AppendsAndKeepsWhatItReadUpToAFailure) {
  VRDTraverseDataCollcetion collection;
  collection.setTraverseDataList(readTraverse("STA,Old,1,,0,0,0"));
  std::istringstream stream("STA,New,1,,0,0,0\nSTA,Bad,1,,x,0,0");
  EXPECT_THROW(collection.read(stream), DataException);
  EXPECT_EQ(described(collection.getTraverseDataList()), "0 sta [Old] 1 (0,0,0)\n1 sta [New] 1 (0,0,0)\n");
  std::string const id = collection.getTraverseDataList()[1].id;
  EXPECT_EQ(collection.findData(id)->name, "New");
  EXPECT_EQ(collection.findData("New"), nullptr);
  EXPECT_TRUE(collection.isTraverseNameExist("Old"));
  EXPECT_FALSE(collection.isTraverseNameExist(id));
}

// Room is made by the size of the text, which is looked through ahead.
TEST(TraverseReader, ReadsFromWhereTheStreamStandsAndMakesRoomOnce) {
  std::string text = "a title that the host has read\n";
  for (int i = 0; i < 1500; ++i) text += "STA,A,1,,0,0,0\n";
  std::istringstream stream(text);
  std::string title;
  std::getline(stream, title);
  VRDTraverseDataCollcetion collection;
  collection.read(stream);
  EXPECT_EQ(collection.getTraverseDataList().size(), 1500U);
  EXPECT_LT(collection.getTraverseDataList().capacity(), 1600U);  // 2048 by doubling
}

constexpr char const* kTraverse =
    "STA,A1,1.5,,1000.0000,2000.0000,50.0000\n"
    "SC,B2,1.62,,123.453012,89.302050,256.1234,0.0000,0.0000,0.0000\n"
    "SC,\xE7\x82\xB9,1.62,,359.595999,271.000000,0.0000,-1.5000,0.0000,0.0000";

TEST(TraverseWriter, WritesWhatReadsBackTheSame) {
  Rows rows = readTraverse(kTraverse);
  EXPECT_EQ(written(rows), kTraverse);
  EXPECT_NE(readTraverse(kTraverse)[1].id, rows[1].id);
  rows[0].instrument = 1.23456789;
  rows[1].isSlantDistanceHave = false;
  // 59.996" carries; the missing distance comes back as one of 256.1234 m.
  rows[2].horizontal_angle = -(12.0 + 59.0 / 60.0 + 59.996 / 3600.0) / 180.0 * std::acos(-1.0);
  EXPECT_EQ(written(rows),
            "STA,A1,1.23457,,1000.0000,2000.0000,50.0000\n"
            "SC,B2,1.62,,123.453012,89.302050,256.1234,0.0000,0.0000,0.0000\n"
            "SC,\xE7\x82\xB9,1.62,,-13.000000,271.000000,0.0000,-1.5000,0.0000,0.0000");
}

TEST(TraverseWriter, LeavesOutOtherRowsButNotTheLineEndBeforeThem) {
  Rows rows = readTraverse("STA,A,1,,0,0,0\nSTA,B,1,,0,0,0\nSTA,C,1,,0,0,0");
  rows[1].pointType = TraversePointType::CoordinatePoint;
  EXPECT_EQ(written(rows), "STA,A,1,,0.0000,0.0000,0.0000\nSTA,C,1,,0.0000,0.0000,0.0000");
  rows[2].pointType = TraversePointType::NetworkData;
  EXPECT_EQ(written(rows), "STA,A,1,,0.0000,0.0000,0.0000\n");
}

TEST(TraverseFile, GoesThroughPaths) {
  QTemporaryDir const folder;
  std::string const path = folder.filePath(QString::fromUtf8("\xE7\x82\xB9.txt")).toStdString();
  VRDTraverseDataCollcetion collection;
  EXPECT_TRUE(collection.read(path)) << "a file that is not there has no rows";
  EXPECT_TRUE(collection.read(folder.path().toStdString())) << "nor has a folder";
  EXPECT_TRUE(collection.getTraverseDataList().empty());
  collection.setTraverseDataList(readTraverse(kTraverse));
  EXPECT_TRUE(collection.write(path));
  EXPECT_EQ(test::fileBytes(QString::fromStdString(path)), kTraverse);
  test::Host host;
  EXPECT_TRUE(collection.write(folder.path().toStdString()));
  ASSERT_EQ(host.messages.size(), 1U);
  EXPECT_EQ(host.messages[0].second, kvn::Error);
}

}  // namespace
