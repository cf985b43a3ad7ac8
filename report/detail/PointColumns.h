// PointColumns: what exchange files tell of a point, under one name everywhere.
#pragma once

#include "report/SiteDrawing.h"

#include <optional>
#include <string>
#include <vector>

namespace kvn::detail {

/// A value that does not exist is an empty text or no number.
struct PointColumn {
  char const* head;
  std::string (*text)(SiteDrawing const& drawing, SitePoint const& point);              ///< null of a number
  std::optional<double> (*number)(SiteDrawing const& drawing, SitePoint const& point);  ///< null of a text
};

std::vector<PointColumn> const& pointColumns();

}  // namespace kvn::detail
