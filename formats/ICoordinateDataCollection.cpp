#include "formats/ICoordinateDataCollection.h"

#include "formats/detail/FileAccess.h"

namespace kvn {

ICoordinateDataCollection::~ICoordinateDataCollection() = default;

bool ICoordinateDataCollection::read(std::string path) {
  detail::readFile(path, [this](std::istream& stream) { read(stream); });
  return true;
}

bool ICoordinateDataCollection::write(std::string path) {
  detail::replaceFile(path, [this](std::ostream& stream) { write(stream); });
  return true;
}

}  // namespace kvn
