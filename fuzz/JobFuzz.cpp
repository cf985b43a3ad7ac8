// Any bytes as an instrument job file; what is read, is written and read again as it was.
#include "Support.h"

#include <algorithm>

namespace {

/// One carriage return at the end of a line is part of the line's end.
std::string withoutReturns(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  return text;
}

void requireSame(kvn::TraverseDataInfo const& a, kvn::TraverseDataInfo const& b) {
  fuzz::require(a.name == b.name && a.pointType == b.pointType && withoutReturns(a.code) == withoutReturns(b.code),
                "names, kinds and codes survive");
  fuzz::require(fuzz::isNear(a.instrument, b.instrument, 1e-4), "heights survive");
  fuzz::require(fuzz::isNear(a.N, b.N, 1e-4) && fuzz::isNear(a.E, b.E, 1e-4) && fuzz::isNear(a.Z, b.Z, 1e-4),
                "coordinates survive");
  if (a.pointType != kvn::TraversePointType::PrismPoint) return;  // readings of a station are not written
  fuzz::require(fuzz::isNear(a.horizontal_angle, b.horizontal_angle, 0.1 * fuzz::kSecond) &&
                    fuzz::isNear(a.vertical_angle, b.vertical_angle, 0.1 * fuzz::kSecond),
                "angles survive");
  fuzz::require(a.isSlantDistanceHave == b.isSlantDistanceHave, "what was measured survives");
  fuzz::require(!a.isSlantDistanceHave || fuzz::isNear(a.slant_distance, b.slant_distance, 1e-4), "distances survive");
}

/// A sight without readings is written with empty fields, which no reader takes. A back sight that stands ahead of a
/// fore sight of its point, as two of them can, is one with it for a reader.
bool isReadAsWritten(std::vector<kvn::TraverseDataInfo> const& rows) {
  std::string backSight;
  for (kvn::TraverseDataInfo const& row : rows) {
    if (row.angleMark == 0.0) return false;
    if (row.pointType != kvn::TraversePointType::PrismPoint) continue;
    bool const isFore = row.sightType == kvn::ForeSight;
    if (isFore && (row.name == backSight || backSight.find('_') != std::string::npos)) return false;
    if (isFore && row.name.find_first_of("^$\\.*+?()[]{}|") != std::string::npos) return false;  // a pattern
    backSight = isFore ? std::string() : row.name;
  }
  return true;
}

void read(kvn::LQFTraverseDataCollection& collection, std::string const& text) { fuzz::readText(collection, text); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
  std::string const text(reinterpret_cast<char const*>(bytes), size);
  kvn::LQFTraverseDataCollection first;
  if (!fuzz::ends<kvn::DataException, std::invalid_argument, std::out_of_range, std::regex_error>(
          [&] { read(first, text); })) {
    return 0;
  }
  auto const& rows = first.getTraverseDataList();
  std::istringstream stream(text);
  fuzz::require(kvn::inspectJobText(stream, rows).rowLines.size() == rows.size(), "every row has its line");

  if (!isReadAsWritten(rows)) return 0;
  kvn::LQFTraverseDataCollection second;
  fuzz::readAgain(second, fuzz::written(first));
  fuzz::require(rows.size() == second.getTraverseDataList().size(), "rows survive");
  for (std::size_t i = 0; i < rows.size(); ++i) requireSame(rows[i], second.getTraverseDataList()[i]);
  return 0;
}
