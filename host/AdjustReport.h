// What a least-squares `adjust` has to tell, as text and as JSON.
#pragma once

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
  QString text() const;
  /// All but the messages.
  Json::Value json() const;

 private:
  bool isKnown(std::string const& pointName) const { return knownNames.count(pointName) != 0; }

  QString headText() const;
  QString pointsText() const;
  QString ellipsesText() const;
  QString directionsText() const;
  QString distancesText() const;

  Json::Value countsJson() const;
  Json::Value approximateJson() const;
  Json::Value pointsJson() const;
  Json::Value ellipsesJson() const;
  Json::Value directionsJson() const;
  Json::Value distancesJson() const;

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
