// What `heights --as-read` has to tell, as text and as JSON.
#pragma once

#include <Kelvane.h>
#include <json/value.h>
#include <QString>

namespace kvn::host {

/// A finished run with its observations; holds references.
class LiteralHeightsReport {
 public:
  /// @param refractionCoefficient the K of the run.
  LiteralHeightsReport(QString path, double refractionCoefficient, TriangleHeightDataConvert const& observations,
                       TriangleHeightAdjust const& adjustment);

  /// Head, points, lines.
  QString text() const;
  /// All but the messages.
  Json::Value json() const;

 private:
  QString headText() const;
  QString pointsText() const;
  QString linesText() const;

  QString file;
  double refraction;
  TriangleHeightDataConvert const& input;
  TriangleHeightAdjust const& result;
};

}  // namespace kvn::host
