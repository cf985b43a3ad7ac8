// Any bytes as a project file; what is read, is saved and read again exactly as it was.
#include "Support.h"

#include <utils/QLogicError.h>

namespace {

void requireSame(kvn::Project const& a, kvn::Project const& b) {
  fuzz::require(a.getVersion() == b.getVersion(), "the version survives");
  auto const& rows = a.getTraverseDataList();
  fuzz::require(rows.size() == b.getTraverseDataList().size(), "rows survive");
  for (std::size_t i = 0; i < rows.size(); ++i) {
    kvn::TraverseDataInfo const& again = b.getTraverseDataList()[i];
    fuzz::require(rows[i].id == again.id && rows[i].groupId == again.groupId && rows[i].name == again.name,
                  "texts of rows survive");
    fuzz::require(fuzz::isSame(rows[i].N, again.N) && fuzz::isSame(rows[i].vertical_angle, again.vertical_angle),
                  "numbers of rows survive");
  }
  fuzz::require(a.getCoordinatePointList().size() == b.getCoordinatePointList().size(), "coordinates survive");
  if (a.isUsingViewData()) return;  // the network is made of the rows
  auto const& lines = a.getNetwork().lines;
  fuzz::require(lines.size() == b.getNetwork().lines.size(), "lines survive");
  for (std::size_t i = 0; i < lines.size(); ++i) {
    fuzz::require(lines[i].start_name == b.getNetwork().lines[i].start_name &&
                      fuzz::isSame(lines[i].horizontal_angle, b.getNetwork().lines[i].horizontal_angle),
                  "lines survive as they were");
  }
  fuzz::require(a.getNetwork().knownPoints.size() == b.getNetwork().knownPoints.size(), "known points survive");
}

/// Whether the data of the file are in the project: a network that cannot be generated leaves the rows.
bool read(kvn::Project& project, QString const& path) {
  bool const isRead =
      fuzz::ends<QLogicError, kvn::AlgorithmException, kvn::DataException>([&] { project.importKVNFile(path); });
  return isRead || !project.getTraverseDataList().empty();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
  static fuzz::File const file("project.kvn");
  file.write(std::string(reinterpret_cast<char const*>(bytes), size));
  kvn::Project first;
  first.getNetwork().lines.emplace_back().start_name = "old";
  QString const version = first.getVersion();
  if (!read(first, file.path)) {
    // What is refused before it is parsed changes nothing.
    auto const& lines = first.getNetwork().lines;
    bool const isUntouched = lines.size() == 1 && lines[0].start_name == "old" && first.getVersion() == version;
    fuzz::require(isUntouched || first.isEmpty(), "a project is reset, or as it was, where its file cannot be read");
    return 0;
  }
  first.saveAs(file.path);
  std::string const once = file.bytes();
  kvn::Project second;
  read(second, file.path);
  requireSame(first, second);
  // The kind of data in a file of another version is told by what stands in it, and an empty list stands in it too.
  if (first.getVersion() != "1.0.1") return 0;
  second.saveAs(file.path);
  fuzz::require(file.bytes() == once, "a project is saved again as it was");
  return 0;
}
