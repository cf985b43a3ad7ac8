#include "formats/ICoordinateDataCollection.h"

#include "formats/detail/FileAccess.h"

namespace kvn {

ICoordinateDataCollection::~ICoordinateDataCollection() = default;

bool ICoordinateDataCollection::read(std::string path) {
  std::ifstream stream = detail::openForReading(path);
  read(stream);
  return true;
}

bool ICoordinateDataCollection::write(std::string path) {
  detail::replaceFile(path, [this](std::ostream& stream) { write(stream); });
  return true;
}

}  // namespace kvn
