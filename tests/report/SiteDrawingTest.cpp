// What a picture shows of a job, by each way to its coordinates.
#include "job/Folder.h"

#include <gmock/gmock.h>
#include <cmath>

namespace {

using namespace kvn;
using Source = SiteDrawing::Source;
using test::JobInFolder;

SitePoint pointOf(SiteDrawing const& drawing, std::string const& name) {
  for (SitePoint const& point : drawing.points) {
    if (point.name == name) return point;
  }
  ADD_FAILURE() << "no point " << name;
  return {};
}

SiteLine lineOf(SiteDrawing const& drawing, std::string const& from, std::string const& to) {
  for (SiteLine const& line : drawing.lines) {
    if (drawing.points[line.from].name == from && drawing.points[line.to].name == to) return line;
  }
  ADD_FAILURE() << "no line " << from << " - " << to;
  return {};
}

TEST_F(JobInFolder, ShowsWhatLeastSquaresGivesWithTheNumbersOfItsNetwork) {
  // From A and B a polar point with one gross error: the distance A to P is 0.3 m too long.
  job.open(written(
      "net.in2",
      "2,3,2\nA,1000,1000\nB,1000,1200\nC,1200,1100\nU,0,0\nA\nB,L,0.0000\nP,L,315.0000\nP,S,141.721\nB\nP,L,0.0000\n"
      "P,S,141.421\nA,L,315.0000\nP\nA,L,0.0000\nB,L,270.0000\nB,S,141.421\nA\nD,S,50\nB,L,0.0000\n"
      "D,L,90.0000\nC\nA,L,0.0000\nP,L,333.260582\nP,S,100\nB,L,306.521163\n"));
  job.adjust();
  SiteDrawing const drawing = siteDrawingOf(job);
  PlaneAdjustment const& run = *job.planeAdjustment();
  EXPECT_EQ(drawing.source, Source::LeastSquares);
  EXPECT_EQ(drawing.title, "net.in2");
  EXPECT_EQ(drawing.confidenceFactor, run.result().confidenceFactor);
  // U is in the list of known points, and nothing is observed to it.
  ASSERT_EQ(drawing.points.size(), 5U);
  for (std::size_t p = 0; p < drawing.points.size(); ++p)
    EXPECT_EQ(drawing.points[p].name, run.network().points[p].name);
  EXPECT_EQ(pointOf(drawing, "B").y, 1200.0) << "a held coordinate is the given one to its last digit";
  EXPECT_FALSE(pointOf(drawing, "B").mx || pointOf(drawing, "B").ellipse);
  EXPECT_TRUE(pointOf(drawing, "P").ellipse && pointOf(drawing, "P").isChecked && !pointOf(drawing, "P").isSidePoint);
  EXPECT_TRUE(pointOf(drawing, "D").isSidePoint && !pointOf(drawing, "D").isChecked);
  ASSERT_EQ(drawing.lines.size(), 7U);
  EXPECT_TRUE(lineOf(drawing, "A", "P").isSuspect && lineOf(drawing, "A", "P").test > 1.0);
  EXPECT_FALSE(lineOf(drawing, "B", "P").isSuspect);
  EXPECT_TRUE(lineOf(drawing, "A", "B").bothWays && !lineOf(drawing, "A", "B").hasDistance);
  EXPECT_FALSE(lineOf(drawing, "A", "D").bothWays);
  for (std::size_t d = 0; d < run.network().distances.size(); ++d) {
    SiteLine const& line = drawing.lines[drawing.lineOfDistance[d]];
    auto const ends = std::minmax(run.network().distances[d].from, run.network().distances[d].to);
    auto const drawn = std::minmax(line.from, line.to);
    EXPECT_EQ(drawn.first, static_cast<std::size_t>(ends.first));
    EXPECT_EQ(drawn.second, static_cast<std::size_t>(ends.second));
  }
}

TEST_F(JobInFolder, ShowsHowFarKnownPointsOfAFreeNetworkHaveMoved) {
  PlaneOptions options;
  options.datum = PlaneSettings::Datum::Free;
  job.setPlaneOptions(options);
  job.open(test::samplePath("net_charamza1990_p238.in2"));
  job.adjust();
  SiteDrawing const drawing = siteDrawingOf(job);
  double north = 0.0;
  double greatest = 0.0;
  for (SitePoint const& point : drawing.points) {
    EXPECT_FALSE(point.isHeld);
    EXPECT_EQ(point.isKnown, point.shift.has_value()) << point.name;
    if (point.shift) north += point.shift->north;
    if (point.shift) greatest = std::max(greatest, std::abs(point.shift->north));
  }
  // The shifts of a free network have no translation, but for the rounding of coordinates of 1e5 m.
  EXPECT_NEAR(north, 0.0, 1e-8);
  EXPECT_GT(greatest, 1e-5);
}

TEST_F(JobInFolder, ShowsTheChainOfATraverseAndWhatWouldExplainItsMisclosure) {
  job.project()->getConfigure().AdjustMethod = 3;
  job.open(test::samplePath("trav_closed_5sides.in2"));
  job.project()->getConfigure().AdjustMethod = 3;
  job.adjust();
  SiteDrawing const drawing = siteDrawingOf(job);
  EXPECT_EQ(drawing.source, Source::Traverses);
  EXPECT_EQ(drawing.points.size(), 6U);
  EXPECT_TRUE(pointOf(drawing, "Q").isHeld && !pointOf(drawing, "3").isKnown && pointOf(drawing, "3").isChecked);
  int legs = 0;
  for (SiteLine const& line : drawing.lines) legs += line.isTraverseLeg ? 1 : 0;
  EXPECT_EQ(legs, 5);
  // The closing error is 165 mm along the leg from A to 2, where 63 mm are allowed.
  EXPECT_TRUE(lineOf(drawing, "A", "2").isSuspect);
  EXPECT_FALSE(lineOf(drawing, "2", "3").isSuspect);

  job.open(test::samplePath("trav_open_2legs.in2"));
  job.project()->getConfigure().AdjustMethod = 1;
  job.adjust();
  SiteDrawing const open = siteDrawingOf(job);
  for (SitePoint const& point : open.points) EXPECT_EQ(point.isChecked, point.isKnown) << point.name;
}

/// As the shared field book, but with all distances: the literal road of heights wants them.
constexpr char const* kBook =
    "STA,A,1.5,,1000,1000,50\nSC,B,1.6,,0.0000,90.0000,100,0,0,0\nSC,P,1.6,,60.0000,87.0000,100,0,0,0\n"
    "SC,P,1.6,,240.0000,273.0000,100,0,0,0\nSC,B,1.6,,180.0000,270.0000,100,0,0,0\nSTA,B,1.5,,1000,1100,50\n";

TEST_F(JobInFolder, ShowsTheLiteralRoadAndHeights) {
  job.open(test::samplePath("net_niemeier2008.in2"), Job::Reading::AsRead);
  job.adjust();
  SiteDrawing const literal = siteDrawingOf(job);
  EXPECT_EQ(literal.source, Source::Literal);
  EXPECT_EQ(literal.points.size(), 6U);
  EXPECT_EQ(literal.lines.size(), 7U);
  EXPECT_TRUE(pointOf(literal, "Z108").ellipse && pointOf(literal, "Z108").mp);
  EXPECT_TRUE(pointOf(literal, "104").isHeld && !pointOf(literal, "104").ellipse);

  for (auto const reading : {Job::Reading::Careful, Job::Reading::AsRead}) {
    job.open(written("book.txt", kBook), reading);
    job.adjustHeights();
    SiteDrawing const known = siteDrawingOf(job);
    EXPECT_THAT(known.withoutPlace, testing::ElementsAre("P")) << "a run of heights alone places no point";
    job.adjust();
    job.adjustHeights();
    SiteDrawing const drawing = siteDrawingOf(job);
    // 100 sin 3° + 1.5 - 1.6, and less than a millimetre of curvature. The literal road takes the readings of a full
    // circle for its index term, so that nothing of the 3° is left.
    bool const isCareful = reading == Job::Reading::Careful;
    double const rise = isCareful ? 100.0 * std::sin(3.0 / 57.29577951308232) : 0.0;
    EXPECT_NEAR(pointOf(drawing, "P").height.value_or(0.0), 50.0 + rise - 0.1, 1e-3);
    EXPECT_EQ(pointOf(drawing, "P").heightError.has_value(), isCareful);
    EXPECT_FALSE(pointOf(drawing, "A").heightError) << "a known height";
    EXPECT_EQ(drawing.lineOfSight.size(), isCareful ? 2U : 0U);
  }
}

TEST_F(JobInFolder, ShowsGivenCoordinatesAndTellsWhatHasNone) {
  job.open(written("net.in2", test::kNetworkFile));
  SiteDrawing const drawing = siteDrawingOf(job);
  EXPECT_EQ(drawing.source, Source::Coordinates);
  EXPECT_EQ(drawing.points.size(), 2U);
  EXPECT_EQ(drawing.lines.size(), 1U);
  EXPECT_THAT(drawing.withoutPlace, testing::ElementsAre("P"));
  EXPECT_FALSE(pointOf(drawing, "A").height) << "a network file has no heights: 0 stands in their place";
  // A list with heights may have one at 0, and one without a finite number has none. 1e30 is the marker of a missing
  // coordinate.
  job.open(written("list.dat", "A,,1,2,0\nB,,3,4,5\nC,,1e30,0,0\nD,,5,6,nan"));
  SiteDrawing const list = siteDrawingOf(job);
  ASSERT_EQ(list.points.size(), 3U);
  EXPECT_EQ(pointOf(list, "A").height, 0.0);
  EXPECT_EQ(pointOf(list, "D").height, std::nullopt);
  // Without any run and any point.
  job.open(written("empty.in2", "2,3,2\nA\nB,S,5\n"));
  EXPECT_TRUE(siteDrawingOf(job).points.empty());
}

}  // namespace
