#include "adjust/input/IndexError.h"

#include <utils/Circle.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <string>
#include <utility>

namespace kvn::detail {
namespace {

// Far above what an instrument out of adjustment has, far below what two different targets differ by.
constexpr double kLargest = 0.1 * utils::kPi / 180.0;

bool hasReading(TraverseDataInfo const& row) {
  return row.pointType == TraversePointType::PrismPoint && row.verticalAngleType == FullCircleZenith &&
         row.angleMark != 0.0 && row.vertical_angle > 0.0 && row.vertical_angle < utils::kFullCircle;
}

struct Faces {
  double sums[2] = {0.0, 0.0};
  int counts[2] = {0, 0};
};

double median(std::vector<double> values) {
  if (values.empty()) return 0.0;
  auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// Index error of the rows from `begin` up to `end`, one occupation.
double indexErrorOf(std::vector<TraverseDataInfo> const& rows, std::size_t begin, std::size_t end) {
  std::map<std::pair<std::string, double>, Faces> facesOf;
  for (std::size_t i = begin; i < end; ++i) {
    if (!hasReading(rows[i])) continue;
    Faces& faces = facesOf[{rows[i].name, rows[i].instrument}];
    int const face = rows[i].vertical_angle > utils::kPi ? 1 : 0;
    faces.sums[face] += rows[i].vertical_angle;
    ++faces.counts[face];
  }
  std::vector<double> errors;
  for (auto const& [target, faces] : facesOf) {
    if (faces.counts[0] == 0 || faces.counts[1] == 0) continue;
    double const error = (faces.sums[0] / faces.counts[0] + faces.sums[1] / faces.counts[1] - utils::kFullCircle) / 2;
    if (std::abs(error) <= kLargest) errors.push_back(error);
  }
  return median(std::move(errors));
}

}  // namespace

std::vector<double> indexErrors(std::vector<TraverseDataInfo> const& rows) {
  std::vector<double> result(rows.size(), 0.0);
  for (std::size_t begin = 0, end = 0; begin < rows.size(); begin = end) {
    for (end = begin + 1; end < rows.size() && rows[end].pointType != TraversePointType::StationPoint;) ++end;
    double const error = indexErrorOf(rows, begin, end);
    for (std::size_t i = begin; i < end; ++i) {
      if (hasReading(rows[i])) result[i] = error;
    }
  }
  return result;
}

}  // namespace kvn::detail
