#include "formats/INetworkDataCollection.h"

#include "core/System.h"

#include <utils/FileText.h>
#include <utils/HTextCodec.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <utility>

namespace kvn {

INetworkDataCollection::~INetworkDataCollection() = default;

bool INetworkDataCollection::read(std::string const& path) {
  std::ifstream stream(utils::nativePath(path));
  read(stream);
  return true;
}

bool INetworkDataCollection::write(std::string path) {
  std::ostringstream text;
  write(text);
  QString const error = utils::replaceFile(HTextCodec::FromLocal8Bit(path), text.str());
  System const* const system = System::Instance();
  if (!error.isEmpty() && system != nullptr) {
    system->sendMessage(System::tr("The file was not written: %1").arg(error), Error);
  }
  return true;
}

std::vector<KnownPoint> const& INetworkDataCollection::getKnownPointList() const { return knownPointList; }
void INetworkDataCollection::setKnownPointList(std::vector<KnownPoint> points) { knownPointList = std::move(points); }
std::vector<NetworkDataInfo> const& INetworkDataCollection::getNetworkDataList() const { return networkDataList; }

void INetworkDataCollection::setNetworkDataList(std::vector<NetworkDataInfo> lines) {
  networkDataList = std::move(lines);
}

NetworkDataInfo const* INetworkDataCollection::findData(std::string const& id) const {
  auto const found = std::find(networkDataList.begin(), networkDataList.end(), id);
  return found == networkDataList.end() ? nullptr : &*found;
}

NetworkDataInfo* INetworkDataCollection::findData(std::string const& id) {
  return const_cast<NetworkDataInfo*>(std::as_const(*this).findData(id));
}

}  // namespace kvn
