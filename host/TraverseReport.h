// What a single traverse has to tell, as text and as JSON.
#pragma once

#include "PointHeights.h"
#include "TextTable.h"

#include <Kelvane.h>
#include <json/value.h>
#include <QString>
#include <QStringList>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace kvn::host {

/// A finished open, connecting or closed traverse with what belongs to it; holds references.
class TraverseReport {
 public:
  /// @param network       as the calculator had it.
  /// @param pointHeights  of a run beside it.
  TraverseReport(QString path, Configure const& settings, TraverseResult const& traverse, Network const& network,
                 PointHeights const& pointHeights);

  /// Of the misclosures, as the user has set them.
  void setLimits(TraverseOptions const& options) { limits = options; }

  QString headText() const;
  /// The table of the traverse, a line for each station, and the misclosures.
  QString tablesText() const;
  /// All but the messages.
  Json::Value json() const;

 private:
  /// Misclosures are distributed.
  bool closes() const { return summary.hasMisclosure && result.closing != TraverseClosing::AtForePoint; }
  bool isLeg(std::size_t station) const { return !closes() || station + 1 < stations.size(); }
  double angularMisclosure() const;
  double angleLimit() const;  ///< that the user has set, for these angles, radians
  double sumOfLegs() const;

  QString stationsText() const;
  QString misclosureText() const;
  QString sidePointsText() const;
  QString allowedText() const;
  QString checksText() const;
  QStringList errorCells(std::string const& name) const;
  /// By the a-priori errors; NaN where there are none.
  TraversePointError errorOf(std::string const& name) const;
  QStringList row(QString const& name, QStringList const& observed, QStringList const& leg, PointInfo const& at) const;
  void addHeightColumns(std::vector<TextTable::Column>& columns) const;
  QStringList observedCells(std::size_t station) const;
  QStringList legCells(std::size_t station) const;

  Json::Value countsJson() const;
  Json::Value stationsJson() const;
  Json::Value azimuthsJson() const;
  Json::Value misclosureJson() const;
  void addJudgement(Json::Value& json) const;
  Json::Value pointsJson() const;
  Json::Value sidePointsJson() const;
  Json::Value checksJson() const;

  QString file;
  Configure const& configure;
  TraverseResult const& result;
  TraverseOptions limits;
  TraverseSummary const& summary;
  std::vector<TraverseInfo> const& stations;
  std::vector<PointInfo> const& points;
  std::unordered_set<std::string> knownNames;
  std::unordered_map<std::string, TraversePointError> errors;
  PointHeights const& heights;
};

}  // namespace kvn::host
