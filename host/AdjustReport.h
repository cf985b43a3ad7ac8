// What a literal least-squares `adjust` has to tell, as text and as JSON.
#pragma once

#include "JsonStream.h"
#include "Output.h"

#include <Kelvane.h>
#include <json/value.h>
#include <QString>
#include <string>
#include <unordered_set>
#include <vector>

namespace kvn::host {

/// A finished least-squares run with what belongs to it; holds references.
class AdjustReport {
 public:
  AdjustReport(QString path, Configure const& settings, AlgorithmAdjust const& adjustment, Network const& network);

  /// Head, points, error ellipses, directions, distances: what is looked at first stands first.
  void writeText(TextSink const& sink) const;
  /// The same values with all their digits, and the messages of the run.
  void writeJson(Json::Value const& messages, TextSink const& sink) const;

 private:
  bool isKnown(std::string const& pointName) const { return knownNames.count(pointName) != 0; }

  QString headText() const;
  void writePoints(TextSink const& sink) const;
  void writeEllipses(TextSink const& sink) const;
  void writeDirections(TextSink const& sink) const;
  void writeDistances(TextSink const& sink) const;

  Json::Value countsJson() const;
  void writeApproximate(JsonStream& json) const;
  void writePoints(JsonStream& json) const;
  void writeEllipses(JsonStream& json) const;
  void writeDirections(JsonStream& json) const;
  void writeDistances(JsonStream& json) const;

  QString file;
  Configure const& configure;
  AlgorithmAdjust const& result;
  std::unordered_set<std::string> knownNames;
};

std::unordered_set<std::string> namesOf(std::vector<KnownPoint> const& points);

/// Standard error of the distance of entry `i` of the line list, metres; NaN without redundancy.
///
/// From the summary, since the lists of lines and directions show an error below 0.1 mm as 0.
double distanceErrorOf(AdjustSummary const& summary, std::size_t i);
/// The same for direction `target` of station `station`.
double distanceErrorOf(AdjustSummary const& summary, std::size_t station, std::size_t target);
/// Element of a list that is empty without redundancy; NaN then.
double existing(std::vector<double> const& values, std::size_t i);
/// Value behind a validity flag; NaN when the flag is down.
double existing(bool valid, double value);

}  // namespace kvn::host
