// What the careful reader and writer do beside the plain ones.
#include <gtest/gtest.h>
#include <limits>
#include <sstream>

#include "support/Support.h"

namespace {

using kvn::CarefulCosaCollection;

CarefulCosaCollection readText(std::string const& text) {
  std::istringstream stream(text);
  CarefulCosaCollection collection;
  collection.read(stream);
  return collection;
}

std::string written(CarefulCosaCollection& collection) {
  std::ostringstream stream;
  collection.write(stream);
  return stream.str();
}

TEST(CarefulCosaReader, TellsWhatThePlainOneTakesInSilence) {
  struct Case {
    char const* lines;    ///< behind the head and the station A
    char const* written;  ///< what was taken
    char const* warning;  ///< the only one; empty for none
  };
  Case const cases[] = {
      {"P,L,-45.3000\nP,S,7\n", "P,L,314.300000\nP,S,7.0000\n", ""},
      {"P,L,725.0\n", "P,L,5.000000\n", "Line 3: the angle is larger than 360 degrees: 725.0"},
      {"P,L,360.0\n", "P,L,0.000000\n", ""},
      {"P,S,7\n", "P,S,7.0000\n", ""},
      {"P,S,7\nP,L,0.0\n", "P,L,0.000000\nP,S,7.0000\n", ""},
      {"P,L,0.0\nP,L,0.0005\n", "P,L,0.000000\n",
       "The direction from A to P is given more than once; the first one counts"},
      {"P,L,5.0\nP,L,5.0\nP,S,7\nP,S,7.0\n", "P,L,5.000000\nP,S,7.0000\n", ""},
      {"P,S,7\nP,S,8\n", "P,S,7.0000\n", "The distance from A to P is given more than once; the first one counts"},
      {"P,S,7m\n", "", "Line 3 is passed over: P,S,7m"},
      {"P,L,45,0000\n", "", "Line 3 is passed over: P,L,45,0000"},
      {"P,S,1.2.3\n", "P,S,1.2000\n", "Line 3 has something behind a number: P,S,1.2.3"},
      {"K,1.5,-2x\n", "", "Line 3 has something behind a number: K,1.5,-2x"},
      {"P,L,1.2.3\n", "", "Line 3: the direction from A to P is no angle: 1.2.3"},
      {"P,S,0\n", "", "Line 3 is passed over: P,S,0"},
      {"P,L,45.0075\n", "P,L,45.011500\n", "Line 3: minutes or seconds of 60 and above in 45.0075"},
      {"P,L,45.6\n", "P,L,46.000000\n", "Line 3: minutes or seconds of 60 and above in 45.6"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.lines);
    test::Host host;
    CarefulCosaCollection collection = readText(std::string("2,3,3\nA\n") + c.lines);
    collection.setKnownPointList({});
    std::string expected = collection.getNetworkDataList().empty() ? "2,3,3\n" : "2,3,3\nA\n";
    EXPECT_EQ(written(collection), expected.append(c.written));
    ASSERT_EQ(host.messages.size(), *c.warning == '\0' ? 0U : 1U);
    EXPECT_EQ(host.messages.empty() ? "" : host.messages[0].first, c.warning);
  }
}

TEST(CarefulCosaReader, WarnsOfAnEmptyFirstLineAndOfAHeadWithMore) {
  test::Host host;
  readText("\n2,3,3\n");
  readText("2,3,3 ; comment\n");
  ASSERT_EQ(host.messages.size(), 2U);
  EXPECT_EQ(host.messages[0].first, "Line 1 is empty: the a-priori errors that stand there are not read");
  EXPECT_EQ(host.messages[1].first, "Line 1 has something behind a number: 2,3,3 ; comment");
}

TEST(CarefulCosaReader, NamesTheLineOfAFailure) {
  EXPECT_EQ(test::failureOf<kvn::DataException>([] { readText("2,3\n"); }), "line 1 The Format of Data is wrong");
  EXPECT_EQ(test::failureOf<kvn::DataException>([] { readText("2,3,3\n\nK1,,5\n"); }), "line 3 invalid stod argument");
}

TEST(CarefulCosaWriter, RefusesWhatWouldNotReadBack) {
  CarefulCosaCollection collection = readText("2,3,3\nA\nP,S,7\n");
  auto const refusal = [&collection](std::function<void(kvn::NetworkDataInfo&)> const& spoil) {
    std::vector<kvn::NetworkDataInfo> lines = collection.getNetworkDataList();
    spoil(lines[0]);
    CarefulCosaCollection spoilt;
    spoilt.setNetworkDataList(lines);
    return test::failureOf<kvn::DataException>([&spoilt] { written(spoilt); });
  };
  for (char const* name : {"", "x,y", "A\nB,L,5", " A", "A  B"}) {
    EXPECT_EQ(refusal([name](auto& line) { line.end_name = name; }),
              std::string("The name cannot stand in a network file: ") + name);
  }
  double const infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(refusal([=](auto& line) { line.horizontal_angle = infinity; }), "A number of A is not finite");
  EXPECT_EQ(refusal([](auto& line) { line.horizontal_distance = -7.0; }), "The distance from A to P is negative");
}

}  // namespace
