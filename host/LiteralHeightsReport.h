// What `heights --as-read` has to tell, as text and as JSON.
#pragma once

#include "JsonStream.h"
#include "Output.h"

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
  void writeText(TextSink const& sink) const;
  void writeJson(Json::Value const& messages, TextSink const& sink) const;

 private:
  QString headText() const;
  void writePointTable(TextSink const& sink) const;
  void writeLineTable(TextSink const& sink) const;
  void writeLines(JsonStream& json) const;
  void writePoints(JsonStream& json) const;

  QString file;
  double refraction;
  TriangleHeightDataConvert const& input;
  TriangleHeightAdjust const& result;
};

}  // namespace kvn::host
