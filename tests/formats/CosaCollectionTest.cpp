// Reading and writing COSA network files.
#include "support/Support.h"

#include <gtest/gtest.h>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <sstream>

namespace {

using kvn::CosaCollection;
using kvn::NetworkDataInfo;

using utils::kPi;
// Half an ulp of a second in 360 degrees, in radians.
constexpr double kAngleTolerance = 1e-15;

double radians(double degrees, double minutes, double seconds) {
  return (degrees + minutes / 60.0 + seconds / 3600.0) / 180.0 * kPi;
}

CosaCollection readCosa(std::string const& text) {
  std::istringstream stream(text);
  CosaCollection collection;
  collection.read(stream);
  return collection;
}

std::string written(CosaCollection& collection) {
  std::ostringstream stream;
  collection.write(stream);
  return stream.str();
}

/// "from>to angle distance" a line, the angle in seconds.
std::string described(CosaCollection const& collection) {
  std::string text;
  for (auto const& point : collection.getKnownPointList()) {
    text += point.name + "=" + QString::number(point.x, 'g', 12).toStdString() + "," +
            QString::number(point.y, 'g', 12).toStdString() + "\n";
  }
  for (auto const& line : collection.getNetworkDataList()) {
    double const seconds = line.horizontal_angle / kPi * 648000.0;
    text += line.start_name + ">" + line.end_name + " " + QString::number(seconds, 'f', 3).toStdString() + " " +
            QString::number(line.horizontal_distance, 'g', 12).toStdString() + "\n";
  }
  return text;
}

TEST(CosaReader, TakesEachKindOfLine) {
  test::TextCase const cases[] = {
      {"the head alone", "2,3,3", ""},
      {"everything", "2,3,3\nK1,1000.5,-2\nK1\nP,L,123.453012\nP,S,256.1234\n",
       "K1=1000.5,-2\nK1>P 445530.120 256.1234\n"},
      {"distance before direction", "2,3,3\nA\nP,S,100.0\nP,L,0.0\n", "A>P 0.000 100\n"},
      {"blank first line: no head", "\nK1,1,2\nK1,3,4\n", "K1=1,2\nK1=3,4\n"},
      {"a direction ahead of any station", "2,3,3\nP,L,1.0\n", ">P 3600.000 0\n"},
      {"two blocks of one station", "2,3,3\nA\nP,L,1.0\nB\nP,L,2.0\nA\nP,L,3.0\nP,S,5\n",
       "A>P 3600.000 5\nB>P 7200.000 0\n"},
      {"a zero direction gives way to the repeat", "2,3,3\nA\nP,L,0.0\nP,L,3.0\nP,L,4.0\n", "A>P 10800.000 0\n"},
      {"just above zero stays", "2,3,3\nA\nP,L,0.0001\nP,L,3.0\n", "A>P 1.000 0\n"},
      {"unknown kinds and counts", "2,3,3\nA\nP,X,5\nP,L,5,6\nP,L\nP,l,5\nQ,S,1e3\nQ,S,+1\n", ""},
      {"a point named with a minus", "2,3,3\nB\n-A,L,10.0\n", "B>-A 36000.000 0\n"},
      {"blanks at the ends and runs of them", "2,3,3\n  Point   one\t\n P  two,L,1.0 \n",
       "Point one>P two 3600.000 0\n"},
      {"blanks beside commas stay in the fields", "2,3,3\nA\nP ,L,1.0\nP, L,1.0\n", "A>P  3600.000 0\n"},
      {"carriage returns", "2,3,3\r\nA\r\n\r\nP,L,1.0\r\n", "A>P 3600.000 0\n"},
      {"a byte order mark and no last line end",
       "\xEF\xBB\xBF"
       "2,3,3\nA\nP,S,7",
       "A>P 0.000 7\n"},
      {"Chinese names", "2,3,3\n\xE7\x82\xB9\nP,S,7\n", "\xE7\x82\xB9>P 0.000 7\n"},
      {"an angle that is no angle", "2,3,3\nA\nP,L,1.2.3\nQ,L,-x\n", "A>P 0.000 0\nA>Q 0.000 0\n"},
      {"a distance behind a second point", "2,3,3\nA\nP,S,1.2.3\n", "A>P 0.000 1.2\n"},
      {"sixty minutes count as they stand", "2,3,3\nA\nP,L,10.6\n", "A>P 39600.000 0\n"},
  };
  for (test::TextCase const& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(described(readCosa(c.text)), c.result);
  }
}

TEST(CosaReader, TellsALineWithoutADirection) {
  auto const lines =
      readCosa("2,3,3\nA\nP,S,7\nQ,L,0.0\nQ,S,8\nR,S,9\nR,L,0.0\nT,S,1\nA\nT,L,3.0\n").getNetworkDataList();
  ASSERT_EQ(lines.size(), 4U);
  bool const expected[] = {false, true, true, true};
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(lines[i].horizontalAngleFlag, expected[i]) << lines[i].end_name;
}

TEST(CosaReader, SaysWhatIsWrong) {
  test::TextCase const cases[] = {
      {"head of two fields", "2,3\nK1,1,2\n", "The Format of Data is wrong"},
      {"head of four fields", "2,3,3,3\n", "The Format of Data is wrong"},
      {"head of blanks", "   \n2,3,3\n", "The Format of Data is wrong"},
      {"head without a number", "a,3,3\n", "invalid stod argument"},
      {"head with an empty field", ",3,3\n", "invalid stod argument"},
      {"head out of range", "1e999,3,3\n", "stod argument out of range"},
      {"empty northing", "2,3,3\nK1,,5\n", "invalid stod argument"},
      {"a letter behind a minus", "2,3,3\nP,-L,10\n", "invalid stod argument"},
      {"a lone point", "2,3,3\nK1,.,5\n", "invalid stod argument"},
      {"a distance behind a minus", "2,3,3\nP,S,-x\n", "invalid stod argument"},
  };
  for (test::TextCase const& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(test::failureOf<std::exception>([&] { readCosa(c.text); }), c.result);
  }
}

TEST(CosaReader, KeepsWhatItReadUpToAFailureAndStartsAnew) {
  CosaCollection collection = readCosa("2,3,3\nOld,1,2\n");
  std::istringstream bad("5,6,7\nK1,1,2\nK2,,3\n");
  EXPECT_THROW(collection.read(bad), std::invalid_argument);
  EXPECT_EQ(described(collection), "K1=1,2\n");
  EXPECT_EQ(collection.getConfigure().AngleError, 5.0F);
  EXPECT_EQ(collection.getConfigure().LineProportionError, 7.0F);
}

TEST(CosaReader, TakesAnglesToTheLastDigitOfTheirText) {
  auto const lines = readCosa("2,3,3\nA\nP,L,303.3806576\nQ,L,0.2957\nR,L,359.59599\n").getNetworkDataList();
  // 0.29 and 0.57 are stored a little too small: cut from binary fractions they would lose a minute and a second.
  EXPECT_NEAR(lines[0].horizontal_angle, radians(303, 38, 6.576), kAngleTolerance);
  EXPECT_NEAR(lines[1].horizontal_angle, radians(0, 29, 57.0), kAngleTolerance);
  EXPECT_NEAR(lines[2].horizontal_angle, radians(359, 59, 59.9), kAngleTolerance);
}

TEST(CosaReader, ReadsAwkwardBytes) {
  std::string const longName(1 << 20, 'x');
  EXPECT_EQ(readCosa("2,3,3\n" + longName + "\nP,S,1\n").getNetworkDataList().at(0).start_name, longName);
  std::string const nul("2,3,3\nA\0B\nP,S,1\n", 16);
  EXPECT_EQ(readCosa(nul).getNetworkDataList().at(0).start_name, std::string("A\0B", 3));
  // Bytes that are no UTF-8 become the replacement character.
  EXPECT_EQ(readCosa("2,3,3\n\xB5\xE3\nP,S,1\n").getNetworkDataList().at(0).start_name, "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(CosaWriter, PrintsBlocksInTheFormOfTheFormat) {
  CosaCollection collection = readCosa(
      "2.5,3,0\nK1,1000,2000\nK2,1500.00004,2500\nK1\nK2,L,0.0\nP1,L,123.453012\nP1,S,256.1234\nP1\nK1,S,256.1\nK1\nP2,"
      "S,3\n");
  EXPECT_EQ(written(collection),
            "2.5,3,0\nK1,1000.0000,2000.0000\nK2,1500.0000,2500.0000\n"
            "K1\nK2,L,0.000000\nP1,L,123.453012\nP1,S,256.1234\n"
            "P1\nK1,L,0.000000\nK1,S,256.1000\n"
            "K1\nP2,L,0.000000\nP2,S,3.0000\n");
}

TEST(CosaWriter, RoundsAnglesWithACarry) {
  CosaCollection collection;
  std::vector<NetworkDataInfo> lines(3);
  double const angles[] = {radians(12, 59, 59.996), radians(359, 59, 59.999), -radians(0, 0, 0.001)};
  for (std::size_t i = 0; i < 3; ++i) lines[i].horizontal_angle = angles[i];
  collection.setNetworkDataList(lines);
  EXPECT_EQ(written(collection), "2,3,3\n\n,L,13.000000\n,L,360.000000\n,L,0.000000\n");
}

/// Place of a virtual operation in the table of its class, as the C++ ABI of this platform counts.
template <typename Operation>
std::ptrdiff_t placeOf(Operation operation) {
  std::ptrdiff_t offset = 0;
  static_assert(sizeof(operation) >= sizeof(offset));
  std::memcpy(&offset, &operation, sizeof(offset));
  return (offset - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

// A host that was built against the operations finds them by their places, and passes a path as it was declared.
TEST(CollectionInterfaces, KeepTheOrderOfTheirOperations) {
#if defined(__GNUC__) && defined(__x86_64__)
  using Base = kvn::INetworkDataCollection;
  void (Base::*const ofRows)(std::vector<kvn::TraverseDataInfo> const&) = &Base::read;
  void (Base::*const ofStream)(std::istream&) = &Base::read;
  bool (Base::*const ofPath)(std::string const&) = &Base::read;
  void (Base::*const toStream)(std::ostream&) = &Base::write;
  bool (Base::*const toPath)(std::string) = &Base::write;
  EXPECT_EQ(placeOf(ofRows), 0);
  EXPECT_EQ(placeOf(ofStream), 1);
  EXPECT_EQ(placeOf(ofPath), 2);
  EXPECT_EQ(placeOf(toStream), 3);
  EXPECT_EQ(placeOf(toPath), 4);
  using Coordinates = kvn::ICoordinateDataCollection;
  bool (Coordinates::*const read)(std::string) = &Coordinates::read;
  bool (Coordinates::*const write)(std::string) = &Coordinates::write;
  EXPECT_EQ(placeOf(read), 1);
  EXPECT_EQ(placeOf(write), 3);
#endif
}

TEST(CosaCollection, FindsALineByItsIdentity) {
  CosaCollection collection = readCosa("2,3,3\nA\nP,S,7\nQ,S,8\n");
  std::string const id = collection.getNetworkDataList()[1].id;
  ASSERT_NE(collection.findData(id), nullptr);
  EXPECT_EQ(collection.findData(id)->end_name, "Q");
  EXPECT_EQ(collection.findData("none"), nullptr);
}

}  // namespace
