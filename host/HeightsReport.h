// What `heights` has to tell, as text and as JSON.
#pragma once

#include "JsonStream.h"
#include "Output.h"

#include <Kelvane.h>
#include <json/value.h>
#include <QString>
#include <string>
#include <vector>

namespace kvn::host {

/// A finished careful run; holds references.
class HeightsReport {
 public:
  HeightsReport(QString path, Job const& finishedJob, std::vector<FieldFinding> const& runFindings);

  /// Head, findings, points, sights, marked heights of instruments and targets, loops.
  void writeText(TextSink const& sink) const;
  void writeJson(Json::Value const& messages, TextSink const& sink) const;

 private:
  QString headText() const;
  QString unitErrorText() const;
  void writePointTable(TextSink const& sink) const;
  void writeSightTable(TextSink const& sink) const;
  void writeSharedTable(TextSink const& sink) const;
  QString loopsText() const;
  QString loopName(HeightLoop const& loop) const;
  void writeFindings(JsonStream& json) const;
  Json::Value globalTestJson() const;
  void writeLines(JsonStream& json) const;
  Json::Value loopsJson() const;
  void writePoints(JsonStream& json) const;
  void writeShared(JsonStream& json) const;
  std::string const& nameOf(std::size_t point) const { return network.points[point].name; }
  std::string const& stationOf(int setUp) const;

  QString file;
  Job const& job;
  std::vector<FieldFinding> const& findings;
  HeightNetwork const& network;
  HeightResult const& result;
};

}  // namespace kvn::host
