// Records as JSON objects: every field by its name, `pointType` by the value's name, other enumerations as numbers.
#pragma once

#include "JsonStream.h"

#include <Kelvane.h>
#include <json/value.h>
#include <vector>

namespace kvn::host {

Json::Value toJson(KnownPoint const& point);
Json::Value toJson(NetworkDataInfo const& line);
Json::Value toJson(TraverseDataInfo const& row);
Json::Value toJson(CoordinatePointInfo const& point);
Json::Value toJson(FieldFinding const& finding);
void write(FieldFinding const& finding, JsonStream& json);  ///< the same object

char const* severityName(FieldFinding::Severity severity);
/// "Warning: %1", in the user's language.
QString severityText(FieldFinding::Severity severity);

template <typename Record>
Json::Value toJson(std::vector<Record> const& records) {
  Json::Value list(Json::arrayValue);
  for (Record const& record : records) list.append(toJson(record));
  return list;
}

}  // namespace kvn::host
