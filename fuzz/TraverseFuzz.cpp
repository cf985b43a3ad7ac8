// Any bytes as a traverse file, read by all readers; what is read, is written and read again as it was.
#include "Support.h"

#include <utils/QLogicError.h>

namespace {

/// Heights have six digits.
bool isSameHeight(double a, double b) { return fuzz::isSame(a, b) || std::abs(a - b) <= 1e-5 * std::abs(a); }

void requireSame(kvn::TraverseDataInfo const& a, kvn::TraverseDataInfo const& b) {
  fuzz::require(a.name == b.name && a.pointType == b.pointType, "names and kinds survive");
  fuzz::require(isSameHeight(a.instrument, b.instrument), "heights survive");
  fuzz::require(fuzz::isNearOnCircle(a.horizontal_angle, b.horizontal_angle, 0.01 * fuzz::kSecond) &&
                    fuzz::isNearOnCircle(a.vertical_angle, b.vertical_angle, 0.01 * fuzz::kSecond),
                "angles survive");
  fuzz::require(fuzz::isNear(a.slant_distance, b.slant_distance, 1e-4), "distances survive");
  fuzz::require(fuzz::isNear(a.N, b.N, 1e-4) && fuzz::isNear(a.E, b.E, 1e-4) && fuzz::isNear(a.Z, b.Z, 1e-4),
                "coordinates survive");
}

void roundTrip(std::string const& text) {
  kvn::VRDTraverseDataCollcetion first;
  if (!fuzz::ends<kvn::DataException, std::invalid_argument, std::out_of_range>([&] { fuzz::readText(first, text); })) {
    return;
  }
  kvn::VRDTraverseDataCollcetion second;
  fuzz::readAgain(second, fuzz::written(first));
  auto const& rows = first.getTraverseDataList();
  fuzz::require(rows.size() == second.getTraverseDataList().size(), "rows survive");
  for (std::size_t i = 0; i < rows.size(); ++i) requireSame(rows[i], second.getTraverseDataList()[i]);

  std::istringstream stream(text);
  fuzz::require(kvn::inspectTraverseText(stream).rowLines.size() == rows.size(), "every row has its line");
}

/// A project keeps what it has where a file cannot be read.
void import(fuzz::File const& file) {
  kvn::Project project;
  project.getNetwork().knownPoints.emplace_back("K", 1.0, 2.0, 3.0);
  bool const isRead = fuzz::ends<QLogicError, kvn::DataException, kvn::AlgorithmException, std::logic_error>(
      [&] { project.importVRDFile(file.path); });
  bool const hasRows = !project.getTraverseDataList().empty();
  fuzz::require(!isRead || hasRows, "a file that is read has rows");
  fuzz::require(hasRows || project.getNetwork().knownPoints.size() == 1, "a failed import leaves the project");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
  static fuzz::File const file("traverse.txt");
  std::string const text(reinterpret_cast<char const*>(bytes), size);
  roundTrip(text);
  file.write(text);
  fuzz::ends<kvn::DataException>([&] { kvn::FileData("").readVRDFileData(file.local()); });
  fuzz::ends<kvn::DataException>([&] {
    kvn::VRDTraverseDataCollcetion rows;
    kvn::readNamingTheLine(rows, file.local());
  });
  import(file);
  return 0;
}
