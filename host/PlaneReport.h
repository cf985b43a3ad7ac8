// What `adjust` has to tell of an adjustment in which every observation counts, as text and as JSON.
#pragma once

#include "JsonStream.h"
#include "Output.h"
#include "PointHeights.h"

#include <Kelvane.h>
#include <json/value.h>
#include <QString>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace kvn::host {

/// A finished run with its settings; holds a reference to it.
class PlaneReport {
 public:
  /// A plan has nothing that comes of readings.
  enum class Kind { Adjusted, Planned };

  PlaneReport(QString path, Configure const& settings, PlaneOptions const& planeOptions,
              PlaneAdjustment const& adjustment, Kind reportKind = Kind::Adjusted);
  /// Heights of a run beside it, or null.
  void setHeights(HeightAdjustment const* adjustment);

  /// Head with the sentences that judge, and findings: what is looked at first.
  void writeSummary(QString const& judgement, std::vector<FieldFinding> const& findings, TextSink const& sink) const;
  /// What stands behind it: points, error ellipses, directions, distances.
  void writeTables(TextSink const& sink) const;
  /// The same of a plan.
  void writePlanText(std::vector<FieldFinding> const& findings, TextSink const& sink) const;
  /// The same values with all their digits, and what was found and told beside them.
  void writeJson(Json::Value const& findings, Json::Value const& messages, TextSink const& sink) const;

 private:
  /// The directions of one set-up. Set-ups without one are not told.
  struct Circle {
    std::size_t setUp = 0;
    int number = 1;  ///< among those of its station, in the order of the file
    std::vector<std::size_t> directions;
  };

  std::string const& nameOf(int point) const { return network.points[static_cast<std::size_t>(point)].name; }
  int stationOf(Circle const& circle) const { return network.setUps[circle.setUp].station; }
  bool hasWeights() const;  ///< of a robust run, that are not 1
  std::string markOf(PlaneObservation const& observation) const;
  bool isPlan() const { return kind == Kind::Planned; }
  bool isFree() const { return options.datum == PlaneSettings::Datum::Free; }
  /// Given coordinates that stay as they are.
  bool isFixed(std::size_t point) const;
  /// Whether there are standard errors of the results.
  bool hasErrors() const;
  bool isWeighted() const { return !isFree() && options.controlError > 0.0; }
  PlaneControl const* controlOf(std::size_t point) const;
  bool isSuspectedControl(std::size_t point) const;
  std::size_t countKnown() const;
  std::size_t countStations() const;
  int lineOf(SuspectObservation const& suspect) const;
  struct Named {
    std::string const& from;
    std::string const& to;
    int line;
  };
  Named named(bool isDirection, std::size_t observation) const;

  QString headText(QString const& judgement) const;
  QString planHeadText() const;
  QString robustText() const;
  QString datumText() const;   ///< of a free network
  QString errorsText() const;  ///< a-priori
  QString observationsText() const;
  std::string stationText(Circle const& circle) const;  ///< with the number of the set-up where there are several
  void writePlannedDirections(TextSink const& sink) const;
  void writePlannedDistances(TextSink const& sink) const;
  QString unitErrorText() const;
  void writePointTable(TextSink const& sink) const;
  void addHeight(std::size_t point, std::vector<std::string>& cells) const;
  void writeHeights(JsonStream& json) const;
  void writeEllipseTable(TextSink const& sink) const;
  void writeDirectionTable(TextSink const& sink) const;
  void writeDistanceTable(TextSink const& sink) const;
  void writeLeftOutTable(TextSink const& sink) const;
  void writeControlTable(TextSink const& sink) const;
  void writeScatterTable(TextSink const& sink) const;
  QString kindsText() const;

  Json::Value countsJson() const;
  Json::Value globalTestJson() const;
  Json::Value byKindJson() const;
  void writeSetUps(JsonStream& json) const;
  void writeApproximate(JsonStream& json) const;
  void writePoints(JsonStream& json) const;
  void writeMoved(JsonStream& json, std::size_t point) const;
  void writeEllipses(JsonStream& json) const;
  void writeDirections(JsonStream& json) const;
  void writeTarget(JsonStream& json, std::size_t direction) const;
  void writeDistances(JsonStream& json) const;
  void writeSuspects(JsonStream& json) const;
  void writeLeftOut(JsonStream& json) const;
  void writeUnchecked(JsonStream& json) const;

  QString file;
  Configure configure;
  PlaneOptions options;
  PlaneAdjustment const& run;
  Kind kind;
  PlaneNetwork const& network;
  PlaneResult const& result;
  std::vector<Circle> circles;
  PointHeights heights{nullptr};
  std::vector<int> circlesOfPoint;  ///< how many a point has
  std::vector<PlaneControl const*> controlOfPoint;
};

}  // namespace kvn::host
