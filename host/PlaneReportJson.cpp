#include "Format.h"
#include "PlaneReport.h"

#include <cmath>
#include <limits>

namespace kvn::host {
namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

char const* datumName(PlaneOptions const& options) {
  if (options.datum == PlaneSettings::Datum::Free) return "free";
  return options.controlError > 0.0 ? "weighted" : "fixed";
}

void writeLine(JsonStream& json, int line) { json.member("line").place(line); }

void writeUncheckedLine(JsonStream& json, char const* kind, std::string const& from, std::string const& to, int line) {
  json.beginObject();
  json.member("from").text(from);
  json.member("kind").text(kind);
  writeLine(json, line);
  json.member("to").text(to);
  json.endObject();
}

}  // namespace

// Members in the order of their names, as every other JSON of the program has them.
void PlaneReport::writeJson(Json::Value const& findings, Json::Value const& messages, TextSink const& sink) const {
  JsonStream json(sink);
  json.beginObject();
  writeApproximate(json);
  json.member("byKind").value(byKindJson());
  json.member("confidence").number(options.confidence);
  Json::Value settings;
  configure.write(settings);
  json.member("configure").value(settings);
  json.member("counts").value(countsJson());
  json.member("datum").text(datumName(options));
  writeDirections(json);
  writeDistances(json);
  writeEllipses(json);
  json.member("file").value(file.toStdString());
  json.member("findings").value(findings);
  json.member("globalTest").value(globalTestJson());
  writeHeights(json);
  json.member("iterations");
  if (isPlan()) {
    json.number(kNoNumber);
  } else {
    json.number(result.iterations);
  }
  writeLeftOut(json);
  json.member("messages").value(messages);
  json.member("method").text(isPlan() ? "plan" : "least-squares");
  writePoints(json);
  json.member("redundancy").number(result.redundancy);
  writeSetUps(json);
  writeSuspects(json);
  writeUnchecked(json);
  json.member("unitError").number(result.unitError);
  json.member("version").number(kJsonVersion);
  json.endObject();
}

Json::Value PlaneReport::countsJson() const {
  Json::Value json;
  json["points"] = static_cast<int>(network.points.size());
  json["knownPoints"] = static_cast<int>(countKnown());
  json["stations"] = static_cast<int>(countStations());
  json["setUps"] = static_cast<int>(circles.size());
  json["directions"] = static_cast<int>(network.directions.size());
  json["distances"] = static_cast<int>(network.distances.size());
  return json;
}

Json::Value PlaneReport::globalTestJson() const {
  Json::Value json;
  json["lower"] = number(result.lowerBound);
  json["upper"] = number(result.upperBound);
  json["value"] = number(result.unitError);
  json["passed"] = result.hasRedundancy && !isPlan() ? Json::Value(result.isPassed) : Json::Value();
  return json;
}

/// In the units of the options and of `configure`.
Json::Value PlaneReport::byKindJson() const {
  Json::Value json;
  json["directions"]["unitError"] = number(result.directionUnitError);
  json["directions"]["AngleError"] = number(result.directionUnitError * double(configure.AngleError));
  json["distances"]["unitError"] = number(result.distanceUnitError);
  json["distances"]["LineFixedError"] = number(result.distanceUnitError * double(configure.LineFixedError));
  json["distances"]["LineProportionError"] = number(result.distanceUnitError * double(configure.LineProportionError));
  return json;
}

/// Those in which something is repeated.
void PlaneReport::writeSetUps(JsonStream& json) const {
  json.member("setUps").beginArray();
  for (Circle const& circle : circles) {
    PlaneNetwork::SetUp const& setUp = network.setUps[circle.setUp];
    if (setUp.directions.redundancy + setUp.distances.redundancy == 0) continue;
    json.beginObject();
    json.member("directionRedundancy").number(setUp.directions.redundancy);
    json.member("directionScatter").number(secondsOfRadians(setUp.directions.error));
    json.member("distanceRedundancy").number(setUp.distances.redundancy);
    json.member("distanceScatter").number(setUp.distances.error);
    writeLine(json, setUp.origin.line);
    json.member("setUp").number(circle.number);
    json.member("station").text(nameOf(stationOf(circle)));
    json.endObject();
  }
  json.endArray();
}

void PlaneReport::writeApproximate(JsonStream& json) const {
  json.member("approximate").beginArray();
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    json.beginObject();
    json.member("name").text(network.points[p].name);
    json.member("x").number(result.approximate[p].first);
    json.member("y").number(result.approximate[p].second);
    json.endObject();
  }
  json.endArray();
}

/// Of the heights as a whole; null where there are none.
void PlaneReport::writeHeights(JsonStream& json) const { json.member("heights").value(heights.json()); }

void PlaneReport::writePoints(JsonStream& json) const {
  json.member("points").beginArray();
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    PlanePoint const& point = result.points[p];
    json.beginObject();
    json.member("checked").truth(point.isChecked);
    HeightPoint const* const height = heights.of(network.points[p].name);
    json.member("height").number(height == nullptr ? kNoNumber : height->height);
    json.member("heightError").number(height == nullptr ? kNoNumber : height->error);
    json.member("known").truth(network.points[p].isKnown);
    writeMoved(json, p);
    json.member("mp").number(point.mp);
    json.member("mx").number(point.mx);
    json.member("my").number(point.my);
    json.member("name").text(network.points[p].name);
    json.member("x").number(point.x);
    json.member("y").number(point.y);
    json.endObject();
  }
  json.endArray();
}

/// Of given coordinates that are observations, and of those that a free network is laid on, by how much they are
/// adjusted; of those that do not fit, where the point would lie if it were free.
void PlaneReport::writeMoved(JsonStream& json, std::size_t p) const {
  PlaneNetwork::Point const& given = network.points[p];
  if (!given.isKnown) return;
  PlaneControl const* const tested = controlOf(p);
  bool const isSuspected = isSuspectedControl(p);
  bool const isShifted = isFree() && !isPlan();
  if (!isWeighted() && !isSuspected && !isShifted) return;
  json.member("moved").beginObject();
  json.member("east").number(isSuspected ? tested->east : result.points[p].y - given.y);
  json.member("north").number(isSuspected ? tested->north : result.points[p].x - given.x);
  if (isWeighted()) {
    json.member("residualEast").number(result.points[p].y - given.y);
    json.member("residualNorth").number(result.points[p].x - given.x);
  }
  json.member("test").number(tested != nullptr ? tested->test : kNoNumber);
  json.endObject();
}

void PlaneReport::writeLeftOut(JsonStream& json) const {
  json.member("leftOut").beginArray();
  for (PlaneLeftOut const& left : result.leftOut) {
    Named const observation = named(left.isDirection, left.observation);
    json.beginObject();
    json.member("alternatives").beginArray();
    for (PlaneAlternative const& other : left.alternatives) {
      Named const alternative = named(other.isDirection, other.observation);
      json.beginObject();
      json.member("apart").number(other.apart);
      json.member("from").text(alternative.from);
      json.member("kind").text(other.isDirection ? "direction" : "distance");
      writeLine(json, alternative.line);
      json.member("to").text(alternative.to);
      json.endObject();
    }
    json.endArray();
    json.member("from").text(observation.from);
    json.member("gross").number(left.isDirection ? secondsOfRadians(left.gross) : left.gross);
    json.member("kind").text(left.isDirection ? "direction" : "distance");
    json.member("largestMove").number(left.largestMove);
    writeLine(json, observation.line);
    json.member("to").text(observation.to);
    json.endObject();
  }
  json.endArray();
}

void PlaneReport::writeEllipses(JsonStream& json) const {
  json.member("ellipses").beginArray();
  for (std::size_t p = 0; hasErrors() && p < network.points.size(); ++p) {
    if (isFixed(p)) continue;
    PlanePoint const& point = result.points[p];
    json.beginObject();
    json.member("angle").number(point.bearing);
    json.member("confidenceMajor").number(point.semiMajor * result.confidenceFactor);
    json.member("confidenceMinor").number(point.semiMinor * result.confidenceFactor);
    json.member("name").text(network.points[p].name);
    json.member("semiMajor").number(point.semiMajor);
    json.member("semiMinor").number(point.semiMinor);
    json.endObject();
  }
  json.endArray();
}

void PlaneReport::writeDirections(JsonStream& json) const {
  json.member("directions").beginArray();
  for (Circle const& circle : circles) {
    json.beginObject();
    writeLine(json, network.setUps[circle.setUp].origin.line);
    json.member("orientation").number(result.orientations[circle.setUp]);
    json.member("orientationError").number(secondsOfRadians(result.orientationErrors[circle.setUp]));
    json.member("setUp").number(circle.number);
    json.member("station").text(nameOf(stationOf(circle)));
    json.member("targets").beginArray();
    for (std::size_t const direction : circle.directions) writeTarget(json, direction);
    json.endArray();
    json.endObject();
  }
  json.endArray();
}

void PlaneReport::writeTarget(JsonStream& json, std::size_t d) const {
  PlaneNetwork::Direction const& direction = network.directions[d];
  PlaneObservation const& adjusted = result.directions[d];
  json.beginObject();
  json.member("azimuth").number(dmsOfRadians(adjusted.azimuth));
  json.member("azimuthError").number(secondsOfRadians(adjusted.azimuthError));
  json.member("detectable").number(secondsOfRadians(adjusted.detectable));
  json.member("distance").number(adjusted.length);
  json.member("distanceError").number(adjusted.lengthError);
  json.member("effect").number(adjusted.effect);
  json.member("error").number(secondsOfRadians(adjusted.error));
  json.member("gross").number(secondsOfRadians(adjusted.gross));
  writeLine(json, direction.origin.line);
  json.member("name").text(nameOf(direction.target));
  json.member("observed").number(isPlan() ? kNoNumber : dmsOfRadians(direction.value));
  json.member("redundancy").number(adjusted.redundancy);
  json.member("residual").number(secondsOfRadians(adjusted.residual));
  json.member("standardised").number(adjusted.standardised);
  json.member("test").number(adjusted.test);
  json.member("weight").number(adjusted.weight);
  json.endObject();
}

void PlaneReport::writeDistances(JsonStream& json) const {
  json.member("distances").beginArray();
  for (std::size_t d = 0; d < network.distances.size(); ++d) {
    PlaneNetwork::Distance const& distance = network.distances[d];
    PlaneObservation const& adjusted = result.distances[d];
    json.beginObject();
    json.member("adjusted").number(adjusted.adjusted);
    json.member("azimuth").number(adjusted.azimuth);
    json.member("azimuthError").number(secondsOfRadians(adjusted.azimuthError));
    json.member("detectable").number(adjusted.detectable);
    json.member("distanceError").number(adjusted.lengthError);
    json.member("effect").number(adjusted.effect);
    json.member("error").number(adjusted.error);
    json.member("from").text(nameOf(distance.from));
    json.member("gross").number(adjusted.gross);
    writeLine(json, distance.origin.line);
    json.member("observed").number(isPlan() ? kNoNumber : distance.value);
    json.member("redundancy").number(adjusted.redundancy);
    json.member("residual").number(adjusted.residual);
    json.member("standardised").number(adjusted.standardised);
    json.member("test").number(adjusted.test);
    json.member("to").text(nameOf(distance.to));
    json.member("weight").number(adjusted.weight);
    json.endObject();
  }
  json.endArray();
}

void PlaneReport::writeSuspects(JsonStream& json) const {
  json.member("suspects").beginArray();
  for (SuspectObservation const& suspect : run.suspects()) {
    json.beginObject();
    json.member("difference").number(suspect.difference);
    json.member("from").text(suspect.from);
    json.member("kind").text(suspect.isDirection ? "direction" : "distance");
    writeLine(json, lineOf(suspect));
    json.member("to").text(suspect.to);
    json.endObject();
  }
  json.endArray();
}

void PlaneReport::writeUnchecked(JsonStream& json) const {
  json.member("unchecked").beginArray();
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    if (result.points[p].isChecked) continue;
    json.beginObject();
    json.member("kind").text("point");
    json.member("name").text(network.points[p].name);
    json.endObject();
  }
  for (std::size_t d = 0; d < network.directions.size(); ++d) {
    if (!std::isnan(result.directions[d].detectable)) continue;
    PlaneNetwork::Direction const& direction = network.directions[d];
    int const station = network.setUps[static_cast<std::size_t>(direction.setUp)].station;
    writeUncheckedLine(json, "direction", nameOf(station), nameOf(direction.target), direction.origin.line);
  }
  for (std::size_t d = 0; d < network.distances.size(); ++d) {
    if (!std::isnan(result.distances[d].detectable)) continue;
    PlaneNetwork::Distance const& distance = network.distances[d];
    writeUncheckedLine(json, "distance", nameOf(distance.from), nameOf(distance.to), distance.origin.line);
  }
  json.endArray();
}

}  // namespace kvn::host
