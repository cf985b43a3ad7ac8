#include "report/SiteDrawing.h"

#include "adjust/AlgorithmAdjust.h"
#include "adjust/HeightAdjustment.h"
#include "adjust/PlaneAdjustment.h"
#include "adjust/TraverseResult.h"
#include "adjust/TriangleHeightAdjust.h"
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/Job.h"
#include "records/detail/Recorded.h"
#include "report/ReportContent.h"

#include <utils/FileName.h>

#include <QFileInfo>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace kvn {
namespace {

constexpr std::size_t kNone = SiteDrawing::kNone;

std::size_t indexOf(int number) { return static_cast<std::size_t>(number); }

std::optional<double> finite(double value) {
  return std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

// From here on a coordinate is the marker of a missing one, as 1e30, and no place on the earth.
constexpr double kFarthestPlace = 1e9;

bool isPlace(double x, double y) { return std::abs(x) < kFarthestPlace && std::abs(y) < kFarthestPlace; }

std::string utf8(std::string const& bytes) { return recordText(bytes).toStdString(); }
std::string nameOfFile(QString const& path) { return utils::readablePath(QFileInfo(path).fileName()).toStdString(); }

/// A drawing that grows by names as the records have them, and by lines in the order in which they were observed.
class DrawingMaker {
 public:
  SiteDrawing drawing;

  /// Place of a point; kNone where there is no place to draw it.
  std::size_t find(std::string const& name) const {
    auto const found = pointOfName.find(name);
    return found == pointOfName.end() ? kNone : found->second;
  }

  /// The first coordinates of a name stay.
  SitePoint& place(std::string const& name, double x, double y) {
    std::size_t const there = find(name);
    return there == kNone ? append(name, x, y) : drawing.points[there];
  }

  /// One more point, whatever its name.
  SitePoint& append(std::string const& name, double x, double y) {
    pointOfName.emplace(name, drawing.points.size());
    drawing.points.emplace_back();
    SitePoint& point = drawing.points.back();
    point.name = utf8(name);
    point.x = x;
    point.y = y;
    return point;
  }

  std::unordered_map<std::string, std::size_t> const& places() const { return pointOfName; }

  void miss(std::string const& name) {
    if (missed.insert(name).second) drawing.withoutPlace.push_back(utf8(name));
  }

  std::size_t findOrMiss(std::string const& name) {
    std::size_t const point = find(name);
    if (point == kNone) miss(name);
    return point;
  }

  /// The line between two points, a new one where there is none; null where one of them has no place.
  SiteLine* line(std::size_t from, std::size_t to) {
    std::size_t const number = lineNumber(from, to);
    return number == kNone ? nullptr : &drawing.lines[number];
  }

  std::size_t lineNumber(std::size_t from, std::size_t to) {
    if (from == kNone || to == kNone || from == to) return kNone;
    auto const [least, largest] = std::minmax(from, to);
    auto const [entry, isNew] = lineOfPair.emplace(std::uint64_t{least} << 32U | largest, drawing.lines.size());
    if (isNew) {
      drawing.lines.emplace_back();
      drawing.lines.back().from = from;
      drawing.lines.back().to = to;
    }
    SiteLine& found = drawing.lines[entry->second];
    if (found.from != from) found.bothWays = true;
    return entry->second;
  }

  /// @return  the number of the line; kNone where one of the points has no place.
  std::size_t observe(std::size_t from, std::size_t to, bool hasDirection, bool hasDistance) {
    if (from != kNone) drawing.points[from].isStation = true;
    std::size_t const number = lineNumber(from, to);
    if (number == kNone) return kNone;
    SiteLine& found = drawing.lines[number];
    found.hasDirection = found.hasDirection || hasDirection;
    found.hasDistance = found.hasDistance || hasDistance;
    found.observations += (hasDirection ? 1U : 0U) + (hasDistance ? 1U : 0U);
    return number;
  }

  void observe(Network const& network) {
    for (NetworkDataInfo const& one : network.lines) {
      std::size_t const from = findOrMiss(one.start_name);
      observe(from, findOrMiss(one.end_name), one.horizontalAngleFlag, one.horizontal_distance > detail::kNotMeasured);
    }
  }

  /// New points that one station alone sees. Traverses know theirs.
  void findSidePoints() {
    if (drawing.source == SiteDrawing::Source::Traverses) return;
    std::vector<std::size_t> neighbours(drawing.points.size(), 0);
    for (SiteLine const& one : drawing.lines) {
      ++neighbours[one.from];
      ++neighbours[one.to];
    }
    for (std::size_t p = 0; p < drawing.points.size(); ++p) {
      SitePoint& point = drawing.points[p];
      point.isSidePoint = point.isSidePoint || (!point.isKnown && !point.isStation && neighbours[p] == 1);
    }
  }

 private:
  std::unordered_map<std::string, std::size_t> pointOfName;
  std::unordered_map<std::uint64_t, std::size_t> lineOfPair;
  std::unordered_set<std::string> missed;
};

SiteShift shiftOf(PlanePoint const& found, PlaneNetwork::Point const& given) {
  return {found.x - given.x, found.y - given.y};
}

void addPlanePoint(DrawingMaker& maker, PlaneNetwork::Point const& given, PlanePoint const& found, bool isFree) {
  // Held coordinates are the given ones to the last digit: those of the result are off by the rounding of a solution.
  bool const isHeld = given.isKnown && given.error == 0.0 && !isFree;
  SitePoint& point = isHeld ? maker.append(given.name, given.x, given.y) : maker.append(given.name, found.x, found.y);
  point.isKnown = given.isKnown;
  point.isHeld = isHeld;
  point.isChecked = point.isHeld || found.isChecked;
  if (point.isHeld) return;
  if (given.isKnown) point.shift = shiftOf(found, given);
  point.mx = finite(found.mx);
  point.my = finite(found.my);
  point.mp = finite(found.mp);
  if (std::isfinite(found.semiMajor + found.semiMinor + found.bearing)) {
    point.ellipse = SiteEllipse{found.semiMajor, found.semiMinor, found.bearing};
  }
}

void takeTest(SiteLine& line, PlaneObservation const& observation) {
  if (!(line.test >= observation.test)) line.test = observation.test;  // the first one: NaN
  if (observation.weight == 0.0) line.isSuspect = true;
}

void addPlaneObservations(DrawingMaker& maker, PlaneNetwork const& network, PlaneResult const& result) {
  SiteDrawing& drawing = maker.drawing;
  for (std::size_t d = 0; d < network.directions.size(); ++d) {
    PlaneNetwork::Direction const& one = network.directions[d];
    std::size_t const from = indexOf(network.setUps[indexOf(one.setUp)].station);
    drawing.lineOfDirection.push_back(maker.observe(from, indexOf(one.target), true, false));
    if (drawing.lineOfDirection.back() == kNone) continue;
    takeTest(drawing.lines[drawing.lineOfDirection.back()], result.directions[d]);
  }
  for (std::size_t d = 0; d < network.distances.size(); ++d) {
    PlaneNetwork::Distance const& one = network.distances[d];
    drawing.lineOfDistance.push_back(maker.observe(indexOf(one.from), indexOf(one.to), false, true));
    if (drawing.lineOfDistance.back() == kNone) continue;
    takeTest(drawing.lines[drawing.lineOfDistance.back()], result.distances[d]);
  }
}

void markSuspects(DrawingMaker& maker, PlaneAdjustment const& run) {
  SiteDrawing& drawing = maker.drawing;
  auto const mark = [&drawing](bool isDirection, std::size_t observation) {
    std::vector<std::size_t> const& lines = isDirection ? drawing.lineOfDirection : drawing.lineOfDistance;
    if (observation < lines.size() && lines[observation] != kNone) drawing.lines[lines[observation]].isSuspect = true;
  };
  for (SuspectObservation const& suspect : run.suspects()) {
    if (suspect.number >= 0) mark(suspect.isDirection, indexOf(suspect.number));
  }
  for (PlaneLeftOut const& out : run.result().leftOut) mark(out.isDirection, out.observation);
  for (std::size_t const point : run.result().suspectedControl) drawing.points[point].isSuspect = true;
}

void addPlane(DrawingMaker& maker, PlaneAdjustment const& run, PlaneSettings const& settings) {
  SiteDrawing& drawing = maker.drawing;
  PlaneNetwork const& network = run.network();
  PlaneResult const& result = run.result();
  drawing.source = SiteDrawing::Source::LeastSquares;
  drawing.isFree = settings.datum == PlaneSettings::Datum::Free;
  if (std::isfinite(result.confidenceFactor) && result.confidenceFactor > 0.0) {
    drawing.confidence = settings.confidence;
    drawing.confidenceFactor = result.confidenceFactor;
  }
  drawing.points.reserve(network.points.size());
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    addPlanePoint(maker, network.points[p], result.points[p], drawing.isFree);
  }
  addPlaneObservations(maker, network, result);
  markSuspects(maker, run);
}

void addKnown(DrawingMaker& maker, std::vector<KnownPoint> const& known) {
  for (KnownPoint const& one : known) {
    if (!isPlace(one.x, one.y)) {
      maker.findOrMiss(one.name);
      continue;
    }
    SitePoint& point = maker.place(one.name, one.x, one.y);
    point.isKnown = point.isHeld = true;
  }
}

/// The known points that the lines of a network lead to. Of a list for a whole town only these belong to a job.
std::vector<KnownPoint> observedKnown(Network const& network) {
  std::unordered_set<std::string> observed;
  for (NetworkDataInfo const& line : network.lines) {
    observed.insert(line.start_name);
    observed.insert(line.end_name);
  }
  std::vector<KnownPoint> known;
  for (KnownPoint const& point : network.knownPoints) {
    if (observed.count(point.name) != 0) known.push_back(point);
  }
  return known;
}

/// Points of a chain and beside it. Known are those of the network.
void addTraversePoints(DrawingMaker& maker, TraverseResult const& traverse) {
  auto const add = [&](PointInfo const& point) -> SitePoint* {
    return isPlace(point.x, point.y) && !point.name.empty() ? &maker.place(point.name, point.x, point.y) : nullptr;
  };
  auto const addNew = [&](PointInfo const& info) {
    bool const isThere = maker.find(info.name) != kNone;
    SitePoint* const point = add(info);
    if (point != nullptr && !isThere) point->isChecked = traverse.summary.hasMisclosure;
    return !isThere;
  };
  std::vector<bool> isNew;
  for (PointInfo const& point : traverse.points) isNew.push_back(addNew(point));
  for (TraverseInfo const& station : traverse.stations) addNew(station.stationPoint);
  for (std::size_t i = 0; i < traverse.pointErrors.size() && i < traverse.points.size(); ++i) {
    std::size_t const place = maker.find(traverse.points[i].name);
    if (place == kNone || maker.drawing.points[place].isHeld || !isNew[i]) continue;
    TraversePointError const& error = traverse.pointErrors[i];
    maker.drawing.points[place].mx = finite(error.mx);
    maker.drawing.points[place].my = finite(error.my);
    maker.drawing.points[place].mp = finite(error.mp);
  }
}

void addTraverseLegs(DrawingMaker& maker, TraverseResult const& traverse) {
  std::vector<TraverseInfo> const& chain = traverse.stations;
  for (std::size_t s = 0; s < chain.size(); ++s) {
    std::size_t const station = maker.find(chain[s].stationPoint.name);
    bool const hasFore = chain[s].distance > 0.0 && !chain[s].forePoints.empty();
    if (station == kNone || !hasFore) continue;
    SiteLine* const leg = maker.line(station, maker.find(chain[s].forePoints.front().name));
    if (leg != nullptr) leg->isTraverseLeg = true;
  }
  bool const isBeyond = traverse.judgement && traverse.judgement->excess() > 1.0;
  if (!isBeyond) return;
  for (TraverseSuspect const& suspect : traverse.judgement->suspects) {
    if (suspect.station >= chain.size()) continue;
    TraverseInfo const& station = chain[suspect.station];
    std::size_t const place = maker.find(station.stationPoint.name);
    if (place == kNone) continue;
    if (suspect.kind == TraverseSuspect::Angle) {
      maker.drawing.points[place].isSuspect = true;
    } else if (!station.forePoints.empty()) {
      SiteLine* const leg = maker.line(place, maker.find(station.forePoints.front().name));
      if (leg != nullptr) leg->isSuspect = true;
    }
  }
}

void addTraverses(DrawingMaker& maker, std::vector<TraverseResult> const& traverses, Network const& network) {
  maker.drawing.source = SiteDrawing::Source::Traverses;
  addKnown(maker, observedKnown(network));
  for (TraverseResult const& traverse : traverses) addTraversePoints(maker, traverse);
  // A point of a chain stays what it is there.
  for (TraverseResult const& traverse : traverses) {
    for (TraverseSidePoint const& side : traverse.sidePoints) {
      if (maker.find(side.point.name) != kNone || !isPlace(side.point.x, side.point.y)) continue;
      SitePoint& point = maker.place(side.point.name, side.point.x, side.point.y);
      point.isChecked = false;
      point.isSidePoint = true;
      point.mx = finite(side.mx);
      point.my = finite(side.my);
      point.mp = finite(side.mp);
    }
  }
  maker.observe(network);
  for (TraverseResult const& traverse : traverses) addTraverseLegs(maker, traverse);
}

void addLiteralEllipse(DrawingMaker& maker, ErrorEllipse const& ellipse) {
  std::size_t const point = maker.find(ellipse.name);
  if (point == kNone || !ellipse.semiMajorValid || !ellipse.semiMinorValid || !ellipse.angleValid) return;
  if (maker.drawing.points[point].isHeld) return;
  maker.drawing.points[point].ellipse = SiteEllipse{ellipse.semiMajor, ellipse.semiMinor, ellipse.angle};
}

void addLiteral(DrawingMaker& maker, Job const& job) {
  AlgorithmAdjust const& result = *job.project()->getAlgorithmAdjust();
  maker.drawing.source = SiteDrawing::Source::Literal;
  // A command has adjusted the network of the project, and not the job.
  bool const isOfCommand = job.adjustedNetwork().lines.empty();
  Network const& network = isOfCommand ? job.project()->getNetwork() : job.adjustedNetwork();
  std::unordered_set<std::string> known;
  for (KnownPoint const& point : network.knownPoints) known.insert(point.name);
  addKnown(maker, observedKnown(network));
  for (PointErrorInfo const& found : result.getPointErrorInfoList()) {
    if (!isPlace(found.x, found.y)) continue;
    SitePoint& point = maker.place(found.name, found.x, found.y);
    point.isKnown = point.isHeld = known.count(found.name) != 0;
    if (point.isHeld || !result.getSummary().hasRedundancy) continue;
    if (found.mxValid) point.mx = finite(found.mx);
    if (found.myValid) point.my = finite(found.my);
    if (found.mpValid) point.mp = finite(found.mp);
  }
  for (ErrorEllipse const& ellipse : result.getErrorEllipseList().ellipseList) addLiteralEllipse(maker, ellipse);
  if (result.getPointErrorInfoList().empty()) {  // a single traverse
    for (PointInfo const& found : result.getPointList()) {
      if (!isPlace(found.x, found.y)) continue;
      SitePoint& point = maker.place(found.name, found.x, found.y);
      point.isKnown = point.isHeld = known.count(found.name) != 0;
    }
  }
  maker.observe(network);
}

/// Without observations, in which a name means one point.
bool isListAlone(Project const& project) {
  return project.getNetwork().lines.empty() && project.getTraverseDataList().empty();
}

/// In files without heights they are 0.
bool hasAnyHeight(std::vector<CoordinatePointInfo> const& list) {
  return std::any_of(list.begin(), list.end(), [](CoordinatePointInfo const& point) { return point.Z != 0.0; });
}

void addGiven(DrawingMaker& maker, Project const& project) {
  addKnown(maker, project.getNetwork().knownPoints);
  bool const keepsEach = isListAlone(project);
  bool const hasHeights = hasAnyHeight(project.getCoordinatePointList());
  std::unordered_set<std::string> listed;
  for (CoordinatePointInfo const& given : project.getCoordinatePointList()) {
    bool const isFirst = listed.insert(given.name).second;
    if (isPlace(given.N, given.E) && keepsEach && !isFirst) {
      SitePoint& again = maker.append(given.name, given.N, given.E);
      if (std::isfinite(given.Z) && hasHeights) again.height = given.Z;
    } else if (isPlace(given.N, given.E)) {
      maker.place(given.name, given.N, given.E);
    } else {
      maker.findOrMiss(given.name);
    }
  }
  for (TraverseDataInfo const& row : project.getTraverseDataList()) {
    bool const isKnown = row.isKnown && row.pointType == TraversePointType::StationPoint && isPlace(row.N, row.E);
    if (!isKnown) continue;
    SitePoint& point = maker.place(row.name, row.N, row.E);
    point.isKnown = point.isHeld = true;
  }
  maker.observe(project.getNetwork());
}

/// Heights that the job was given. In files without heights they are 0.
void addGivenHeights(DrawingMaker& maker, Project const& project) {
  auto const give = [&maker](std::string const& name, double height) {
    std::size_t const place = maker.find(name);
    if (place != kNone && std::isfinite(height)) maker.drawing.points[place].height = height;
  };
  for (KnownPoint const& known : project.getNetwork().knownPoints) {
    if (known.z != 0.0) give(known.name, known.z);
  }
  auto const& list = project.getCoordinatePointList();
  // Beside observations a 0 is a height that nobody has measured.
  bool const countsZero = hasAnyHeight(list) && isListAlone(project);
  std::unordered_set<std::string> listed;  // of a point that is given twice the first row is drawn by its name
  for (CoordinatePointInfo const& point : list) {
    if (!listed.insert(point.name).second) continue;
    if (point.Z != 0.0 || countsZero) give(point.name, point.Z);
  }
}

/// Of the library's own road.
void addLiteralHeights(DrawingMaker& maker, TriangleHeightAdjust const& run) {
  std::vector<CoordinatePointInfo> points;
  for (auto const& [name, place] : maker.places()) {
    points.emplace_back();
    points.back().name = name;
    points.back().Z = std::numeric_limits<double>::quiet_NaN();
  }
  run.convertCoordZ(points);
  for (CoordinatePointInfo const& point : points) {
    if (std::isfinite(point.Z)) maker.drawing.points[maker.find(point.name)].height = point.Z;
  }
}

void addHeights(DrawingMaker& maker, HeightAdjustment const& run) {
  HeightNetwork const& network = run.network();
  SiteDrawing& drawing = maker.drawing;
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    std::size_t const place = maker.findOrMiss(network.points[p].name);
    drawing.pointOfHeight.push_back(place);
    SitePoint& point = place == kNone ? drawing.heightsAlone.emplace_back() : drawing.points[place];
    HeightPoint const& found = run.result().points[p];
    point.height = finite(found.height);
    if (!network.points[p].isKnown) point.heightError = finite(found.error);
    if (place != kNone) continue;
    point.name = utf8(network.points[p].name);
    point.x = point.y = std::numeric_limits<double>::quiet_NaN();
    point.isKnown = point.isHeld = network.points[p].isKnown;
    point.isChecked = found.isChecked;
  }
  for (HeightNetwork::Sight const& sight : network.sights) {
    std::size_t const from = drawing.pointOfHeight[indexOf(network.setUps[indexOf(sight.setUp)].station)];
    std::size_t const line = maker.lineNumber(from, drawing.pointOfHeight[indexOf(sight.target)]);
    if (line != kNone) drawing.lines[line].hasZenith = true;
    drawing.lineOfSight.push_back(line);
  }
}

PlaneSettings shownSettings(PlaneOptions const& options) {
  PlaneSettings settings;
  settings.confidence = options.confidence;
  settings.datum = options.datum;
  return settings;
}

}  // namespace

SiteDrawing siteDrawingOf(Job const& job) {
  DrawingMaker maker;
  Project const& project = *job.project();
  if (job.planeAdjustment() != nullptr) {
    addPlane(maker, *job.planeAdjustment(), shownSettings(job.planeOptions()));
  } else if (!job.traverses().empty()) {
    addTraverses(maker, job.traverses(), job.adjustedNetwork());
  } else if (project.getAlgorithmAdjust() != nullptr) {
    addLiteral(maker, job);
  } else {
    addGiven(maker, project);
  }
  addGivenHeights(maker, project);
  if (project.getTriangleHeightAdjust() != nullptr) addLiteralHeights(maker, *project.getTriangleHeightAdjust());
  if (job.heightAdjustment() != nullptr) addHeights(maker, *job.heightAdjustment());
  maker.findSidePoints();
  maker.drawing.title = nameOfFile(job.file());
  return std::move(maker.drawing);
}

SiteDrawing siteDrawingOf(ReportContent const& content) {
  DrawingMaker maker;
  if (content.plane != nullptr) {
    addPlane(maker, *content.plane, shownSettings(content.planeOptions));
  } else if (!content.traverses.empty()) {
    addTraverses(maker, content.traverses, content.network);
  }
  if (content.heights != nullptr) addHeights(maker, *content.heights);
  maker.findSidePoints();
  maker.drawing.title = nameOfFile(content.file);
  return std::move(maker.drawing);
}

SiteDrawing siteDrawingOf(PlaneAdjustment const& adjustment, PlaneSettings const& settings) {
  DrawingMaker maker;
  addPlane(maker, adjustment, settings);
  maker.findSidePoints();
  return std::move(maker.drawing);
}

}  // namespace kvn
