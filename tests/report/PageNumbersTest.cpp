// Numbers of a page: rounded without a carry that is lost, signs and gaps as a surveyor reads them.
#include "report/detail/PageNumbers.h"

#include <gtest/gtest.h>
#include <cmath>

namespace {

using namespace kvn::detail;

double radians(double degrees, double minutes, double seconds) {
  return (degrees + minutes / 60.0 + seconds / 3600.0) * std::acos(-1.0) / 180.0;
}

TEST(PageNumbers, CarrySecondsAndKeepAzimuthsBelowTheFullCircle) {
  struct Case {
    std::string text;
    char const* expected;
  };
  Case const cases[] = {
      {angle(radians(12, 59, 59.96)), "13°00′00.0″"},
      {angle(radians(359, 59, 59.96)), "360°00′00.0″"},
      {angle(-radians(0, 0, 30.25)), "−0°00′30.3″"},
      {angle(-radians(0, 0, 0.01)), "0°00′00.0″"},
      {azimuth(radians(359, 59, 59.96)), "0°00′00.0″"},
      {azimuth(radians(-1, 0, 0.0)), "359°00′00.0″"},
      {axis(radians(179, 59, 45.0)), "0°00′"},
      {metres(-0.00004), "0.0000"},
      {metres(-12.34567), "−12.3457"},
      {metres(1054980.484), "1054980.4840"},
      {millimetres(0.00365), "3.6"},  // the double lies below
      {millimetres(std::nan("")), "–"},
      {seconds(radians(0, 0, -3.06)), "−3.1"},
      {oneTo(1.0 / 12345.0), "1 : 12345"},
      {oneTo(0.0), "–"},
      {decimals(1e300, 1), "1.0e+300"},
      {shortest(double(3.24F)), "3.24"},
  };
  for (Case const& c : cases) EXPECT_EQ(c.text, c.expected);
}

}  // namespace
