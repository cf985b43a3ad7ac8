// Any bytes as a coordinate file, read by both readers; what is read, is written and read again to the same text.
#include "Support.h"

namespace {

void roundTrip(fuzz::File const& file) {
  kvn::CoordinateDataCollection first;
  if (!fuzz::ends<kvn::DataException>([&] { first.read(file.path); })) return;
  std::string const once = fuzz::written(first);
  file.write(once);
  kvn::CoordinateDataCollection second;
  second.read(file.path);
  fuzz::require(second.getCoordinateDataList().size() == first.getCoordinateDataList().size(), "points survive");
  fuzz::require(fuzz::written(second) == once, "points are written again as they were");
}

/// A project keeps what it has where a file cannot be read.
void import(fuzz::File const& file) {
  kvn::Project project;
  project.getCoordinatePointList().emplace_back().name = "held";
  bool const isRead = fuzz::ends<kvn::DataException>([&] { project.importCoordFile(file.path); });
  auto const& points = project.getCoordinatePointList();
  fuzz::require(isRead || (points.size() == 1 && points[0].name == "held"), "a failed import leaves the project");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
  static fuzz::File const file("coordinates.dat");
  file.write(std::string(reinterpret_cast<char const*>(bytes), size));
  fuzz::ends<kvn::DataException>([&] { kvn::DatFileData().openDatFileData(file.path); });
  import(file);
  roundTrip(file);
  return 0;
}
