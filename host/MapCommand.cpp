// map: a picture of the project's map.
#include "Commands.h"
#include "Failures.h"
#include "MapSketch.h"
#include "Options.h"
#include "Output.h"
#include "Saving.h"
#include "Session.h"

#include "map/LineDataTool.h"
#include "map/PointDataTool.h"

#include <QSet>
#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_map>
#include <utility>

namespace kvn::host {
namespace {

constexpr int kNamedPoints = 10;

using Rows = std::vector<TraverseDataInfo>;

void tellLeftOut(QStringList names) {
  names.removeDuplicates();
  if (names.isEmpty()) return;
  QString told = QStringList(names.mid(0, kNamedPoints)).join(", ");
  if (names.size() > kNamedPoints) told += System::tr(" and %1 more").arg(names.size() - kNamedPoints);
  System::Instance()->sendMessage(System::tr("Not drawn, since they have no usable coordinates: %1").arg(told),
                                  Warning);
}

/// @param tell  whether points that cannot be placed are told.
std::unordered_map<std::string, DrawPoint> placesOf(Network const& network, bool tell) {
  MapShowData input;
  input.setTellFindings(tell);
  input.setNetwrok(network);
  input.calculateApproximate();
  std::unordered_map<std::string, DrawPoint> places;
  for (DrawPoint const& point : input.getPoint()) places.emplace(point.name, point);
  return places;
}

/// Gives the rows of a field book approximate coordinates. Rows that have none would all be drawn at 0, 0: they are
/// left out, and told.
void placeRows(Project& project) {
  auto const places = placesOf(project.getNetwork(), true);
  Rows placed;
  QStringList missing;
  for (TraverseDataInfo row : project.getTraverseDataList()) {
    auto const place = places.find(row.name);
    if (place == places.end()) {
      missing << textOf(row.name);
      continue;
    }
    row.N = place->second.x;
    row.E = place->second.y;
    placed.push_back(std::move(row));
  }
  project.setTraverseDataList(std::move(placed));
  tellLeftOut(missing);
}

/// A network file may hold known points alone, of which the project draws nothing.
void showKnownPoints(Project& project) {
  for (KnownPoint const& known : project.getNetwork().knownPoints) {
    CoordinatePointInfo point;
    point.name = known.name;
    point.N = known.x;
    point.E = known.y;
    point.Z = known.z;
    project.getCoordinatePointList().push_back(std::move(point));
  }
}

/// A marker or a slip would shrink the rest of the map to one spot.
void dropFarPoints(Project& project) {
  auto& points = project.getCoordinatePointList();
  auto const isFar = [](CoordinatePointInfo const& point) {
    return !(std::abs(point.N) < mvz::View::kFarthest && std::abs(point.E) < mvz::View::kFarthest);
  };
  QStringList names;
  for (CoordinatePointInfo const& point : points) {
    if (isFar(point)) names << textOf(point.name);
  }
  points.erase(std::remove_if(points.begin(), points.end(), isFar), points.end());
  tellLeftOut(names);
}

void tellMissingFont() {
  if (SketchDataTool::canShow(System::tr("known point"))) return;
  System::Instance()->sendMessage(System::tr("No font with Chinese signs was found (package fonts-wqy-microhei, or a "
                                             "file that KELVANE_FONT names): the words of the picture are English"),
                                  Warning);
}

/// In the local 8-bit encoding; a name that it cannot hold stays as it is, since two of them could become one.
std::string localName(std::string const& name) {
  QString const text = textOf(name);
  std::string const local = HTextCodec::ToLocal8Bit(text);
  return HTextCodec::FromLocal8Bit(local) == text ? local : name;
}

/// The labels of rows and networks are read in the local 8-bit encoding and those of coordinates as UTF-8, whatever
/// their file was.
void encodeLabels(Project& project) {
  for (TraverseDataInfo& row : project.getTraverseDataList()) row.name = localName(row.name);
  for (CoordinatePointInfo& point : project.getCoordinatePointList()) {
    point.name = printable(textOf(point.name)).toStdString();
  }
  Network& network = project.getNetwork();
  for (KnownPoint& point : network.knownPoints) point.name = localName(point.name);
  for (NetworkDataInfo& line : network.lines) {
    line.start_name = localName(line.start_name);
    line.end_name = localName(line.end_name);
  }
}

/// Features of a layer; 0 when the scene has no such layer.
unsigned countOf(MapScene& scene, FeatureDataType type) {
  auto const* const layer = dynamic_cast<osgEarth::AnnotationLayer const*>(scene.getLayer(type));
  return layer == nullptr ? 0 : layer->getGroup()->getNumChildren();
}

struct Drawn {
  unsigned points;
  unsigned lines;
};

/// What the map shows beside the features: by least squares where that comes to an end. Its findings are those of
/// `adjust`, which says them better.
SiteDrawing adjustedDrawing(Session& session, MapOptions const& options) {
  Job& job = session.job();
  if (session.project().getNetwork().lines.empty()) return siteDrawingOf(job);
  PlaneOptions plane = job.planeOptions();
  plane.confidence = options.confidence.value_or(plane.confidence);
  job.setPlaneOptions(plane);
  session.project().getConfigure().AdjustMethod = 0;
  QString reason;
  session.messages().setQuiet(true);
  try {
    job.adjust();
  } catch (JobException const& failure) {
    reason = failure.text;
  }
  session.messages().setQuiet(false);
  if (!reason.isEmpty()) {
    System::Instance()->sendMessage(System::tr("Not adjusted, so that there are no error ellipses: %1").arg(reason),
                                    Warning);
  }
  return siteDrawingOf(job);
}

/// A project places its points by a search of its own, which may take a mirror image: what is adjusted has its places.
void drawAdjusted(Project& project, SiteDrawing const& drawing) {
  MapScene* const scene = project.getOrCreateMapScene();
  auto const shown = [](SitePoint const& point) {
    DrawPoint place(point.x, point.y, 0.0, localName(point.name));
    place.pointType =
        point.isStation || point.isKnown ? TraversePointType::StationPoint : TraversePointType::PrismPoint;
    return place;
  };
  LineDataTool lines(scene);
  for (SiteLine const& line : drawing.lines) {
    lines.build(DrawLine(shown(drawing.points[line.from]), shown(drawing.points[line.to])));
  }
  PointDataTool points(scene);
  QSet<QString> placed;
  for (SitePoint const& point : drawing.points) {
    points.build(shown(point));
    placed.insert(QString::fromStdString(point.name));
  }
  QStringList missing;
  for (TraverseDataInfo const& row : project.getTraverseDataList()) {
    if (!placed.contains(textOf(row.name))) missing << textOf(row.name);
  }
  tellLeftOut(missing);
  project.buildCoordData();
}

Drawn draw(Session& session, SiteDrawing const& drawing) {
  Project& project = session.project();
  bool const isAdjusted = drawing.source == SiteDrawing::Source::LeastSquares;
  if (isAdjusted) {
    // nothing is to be placed
  } else if (!project.getTraverseDataList().empty()) {
    placeRows(project);
  } else if (project.getNetwork().lines.empty()) {
    showKnownPoints(project);
  }
  dropFarPoints(project);
  encodeLabels(project);
  MapScene& scene = *project.getOrCreateMapScene();
  scene.getOrCreateLayer(FeatureDataType::Default);  // below the others
  isAdjusted ? drawAdjusted(project, drawing) : project.build();
  if (session.messages().hasError()) throw JobException(session.file(), System::tr("the map was not drawn"));
  Drawn const drawn{
      countOf(scene, FeatureDataType::ViewPointData) + countOf(scene, FeatureDataType::CoordData),
      countOf(scene, FeatureDataType::NetworkData),
  };
  if (drawn.points == 0) throw JobException(session.file(), System::tr("there is no point with coordinates to draw"));
  System::Instance()->fullMapSystem();
  return drawn;
}

/// Whether something of the scene shows. A picture as small as this one has neither scale bar nor north arrow.
bool showsFeatures(mvz::OffscreenView& view, MapOptions const& options) {
  constexpr int kSmall = 96;
  view.setSize(kSmall, kSmall);
  System::Instance()->fullMapSystem();
  osg::ref_ptr<osg::Image> const picture = view.render();
  unsigned char const* const bytes = picture->data();
  bool const isBlank =
      std::all_of(bytes, bytes + picture->getTotalSizeInBytes(), [](unsigned char byte) { return byte == 0xFF; });
  view.setSize(options.width, options.height);
  System::Instance()->fullMapSystem();
  return !isBlank;
}

/// The scene of the project, by OpenGL.
bool drawPicture(Session& session, MapOptions const& options, Drawn& drawn) {
  osg::ref_ptr<mvz::ViewerManager> const viewers = new mvz::ViewerManager;
  osg::ref_ptr<mvz::OffscreenView> const view = new mvz::OffscreenView(options.width, options.height);
  view->setMagnification(options.magnification);
  viewers->addView(view);
  System::Instance()->setMvzViewerManager(viewers);
  tellMissingFont();
  session.open(options.file);
  session.job().requireNoError(Job::FileText | Job::FieldReduced);
  SiteDrawing const drawing = adjustedDrawing(session, options);
  drawn = draw(session, drawing);
  if (!showsFeatures(*view, options)) {
    throw JobException(session.file(), System::tr("the map was not drawn: no point and no line shows on the picture"));
  }
  MapScene& scene = *session.project().getOrCreateMapScene();
  makeRoomForWords(*view, drawing);
  sketch(scene, *view, drawing, options);
  arrangeNames(scene, *view, options.magnification);
  return save(session, options.outFile, [&view](Session&, QString const& path) {
    utils::createFolderOf(path);
    view->writeImage(path);
  });
}

/// Gives what has no place the approximate coordinates of the network.
void placeApproximately(SiteDrawing& drawing, Session& session) {
  if (drawing.withoutPlace.empty() || drawing.source != SiteDrawing::Source::Coordinates) return;
  Project& project = session.project();
  std::vector<CoordinatePointInfo> points = project.getCoordinatePointList();
  std::size_t const given = drawing.points.size();
  try {
    for (auto const& [name, place] : placesOf(project.getNetwork(), false)) {
      points.emplace_back();
      points.back().name = name;
      points.back().N = place.x;
      points.back().E = place.y;
    }
  } catch (AlgorithmException const&) {
    return;  // `adjust` has said why
  }
  project.setCoordinatePointList(std::move(points));
  drawing = siteDrawingOf(session.job());
  for (std::size_t p = given; p < drawing.points.size(); ++p) drawing.points[p].isApproximate = true;
}

bool drawVectors(Session& session, MapOptions const& options, Drawn& drawn) {
  session.open(options.file);
  session.job().requireNoError(Job::FileText | Job::FieldReduced);
  SiteDrawing drawing = adjustedDrawing(session, options);
  placeApproximately(drawing, session);
  tellWithoutPlace(drawing);
  drawn = {static_cast<unsigned>(drawing.points.size()), static_cast<unsigned>(drawing.lines.size())};
  ExchangeOptions exchange;
  exchange.svg.width = options.width;
  exchange.svg.height = options.height;
  exchange.svg.title = options.title.toStdString();
  exchange.svg.words = translatedMapWord;
  exchange.svg.ellipseScale = options.ellipseScale.value_or(0.0);
  if (!options.hasEllipses) exchange.svg.ellipses = SvgOptions::Ellipses::None;
  return save(session, options.outFile, [&](Session&, QString const& path) { writeExchange(path, drawing, exchange); });
}

}  // namespace

int runMap(QStringList const& arguments) {
  auto const options = parseMap(arguments);
  if (!options) return Done;
  return runInSession(*options, [&options](Session& session) {
    MapOptions resolved = *options;
    resolved.outFile = session.outputFor(options->outFile);
    Job::requireWritableKind(resolved.outFile, {"png", "svg"});
    Drawn drawn{};
    bool const isVector = resolved.outFile.endsWith(".svg", Qt::CaseInsensitive);
    bool const saved = isVector ? drawVectors(session, resolved, drawn) : drawPicture(session, resolved, drawn);
    if (!options->json && !options->quiet && options->outFile != kStream && saved) {
      printText(System::tr("%1: %2 points, %3 lines")
                    .arg(session.shown(options->outFile), QString::number(drawn.points), QString::number(drawn.lines)) +
                '\n');
    }
    if (options->json) {
      Json::Value json;
      json["version"] = kJsonVersion;
      json["file"] = session.shown(options->outFile).toStdString();
      json["ok"] = saved;
      json["points"] = drawn.points;
      json["lines"] = drawn.lines;
      json["messages"] = session.messages().take();
      printJson(json);
    }
    return saved ? Done : Refused;
  });
}

}  // namespace kvn::host
