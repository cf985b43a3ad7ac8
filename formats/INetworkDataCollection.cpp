#include "formats/INetworkDataCollection.h"

#include "formats/detail/FileAccess.h"

#include <algorithm>
#include <utility>

namespace kvn {

INetworkDataCollection::~INetworkDataCollection() = default;

bool INetworkDataCollection::read(std::string const& path) {
  detail::readFile(path, [this](std::istream& stream) { read(stream); });
  return true;
}

bool INetworkDataCollection::write(std::string path) {
  detail::replaceFile(path, [this](std::ostream& stream) { write(stream); });
  return true;
}

std::vector<KnownPoint> const& INetworkDataCollection::getKnownPointList() const { return knownPointList; }
void INetworkDataCollection::setKnownPointList(std::vector<KnownPoint> points) { knownPointList = std::move(points); }
std::vector<NetworkDataInfo> const& INetworkDataCollection::getNetworkDataList() const { return networkDataList; }

void INetworkDataCollection::setNetworkDataList(std::vector<NetworkDataInfo> lines) {
  networkDataList = std::move(lines);
}

Network INetworkDataCollection::takeNetwork() {
  return {std::exchange(knownPointList, {}), std::exchange(networkDataList, {})};
}

NetworkDataInfo const* INetworkDataCollection::findData(std::string const& id) const {
  auto const found = std::find(networkDataList.begin(), networkDataList.end(), id);
  return found == networkDataList.end() ? nullptr : &*found;
}

NetworkDataInfo* INetworkDataCollection::findData(std::string const& id) {
  return const_cast<NetworkDataInfo*>(std::as_const(*this).findData(id));
}

}  // namespace kvn
