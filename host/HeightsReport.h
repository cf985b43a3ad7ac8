// What `heights` has to tell, as text and as JSON.
#pragma once

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
  QString text() const;
  /// All but the messages.
  Json::Value json() const;

 private:
  QString headText() const;
  QString unitErrorText() const;
  QString pointsText() const;
  QString sightsText() const;
  QString sharedText() const;
  QString loopsText() const;
  QString loopName(HeightLoop const& loop) const;
  Json::Value globalTestJson() const;
  Json::Value pointsJson() const;
  Json::Value linesJson() const;
  Json::Value sharedJson() const;
  Json::Value loopsJson() const;
  std::string const& nameOf(std::size_t point) const { return network.points[point].name; }
  std::string const& stationOf(int setUp) const;

  QString file;
  Job const& job;
  std::vector<FieldFinding> const& findings;
  HeightNetwork const& network;
  HeightResult const& result;
};

}  // namespace kvn::host
