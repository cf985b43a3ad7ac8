// Any bytes as a traverse file, a job file, a coordinate file and a whole file: only documented failures may come out
// of them, and what is written must be read back to the same text.
#include <Kelvane.h>
#include <QDir>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace {

template <typename Reader>
void withDocumentedFailures(Reader const& reader) {
  try {
    reader();
  } catch (kvn::DataException const&) {
  } catch (std::invalid_argument const&) {
  } catch (std::out_of_range const&) {
  } catch (std::regex_error const&) {
  }
}

template <typename Collection>
std::string written(Collection& collection) {
  std::ostringstream stream;
  collection.write(stream);
  return stream.str();
}

void traverse(std::string const& text) {
  kvn::VRDTraverseDataCollcetion collection;
  std::istringstream stream(text);
  collection.read(stream);
  std::string const once = written(collection);
  kvn::VRDTraverseDataCollcetion again;
  std::istringstream onceStream(once);
  again.read(onceStream);
  if (again.getTraverseDataList().size() != collection.getTraverseDataList().size()) std::abort();
}

void job(std::string const& text) {
  kvn::LQFTraverseDataCollection collection;
  std::istringstream stream(text);
  collection.read(stream);
  written(collection);
}

void coordinates(QString const& path) {
  kvn::CoordinateDataCollection collection;
  collection.read(path);
  std::string const once = written(collection);
  std::ofstream(path.toStdString(), std::ios::binary) << once;
  kvn::CoordinateDataCollection again;
  again.read(path);
  if (written(again) != once) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
  static QString const path = QDir::temp().filePath(QStringLiteral("kelvane-fuzz-field-file"));
  std::string const text(reinterpret_cast<char const*>(bytes), size);
  std::ofstream(path.toStdString(), std::ios::binary) << text;
  withDocumentedFailures([&] { traverse(text); });
  withDocumentedFailures([&] { job(text); });
  withDocumentedFailures([&] { kvn::FileData("").readVRDFileData(path.toStdString()); });
  withDocumentedFailures([&] { kvn::FileData("").readCosaFileData(path.toStdString()); });
  withDocumentedFailures([&] { kvn::DatFileData().openDatFileData(path); });
  withDocumentedFailures([&] { coordinates(path); });
  return 0;
}
