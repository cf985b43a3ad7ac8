#include "adjust/TriangleHeightDataConvert.h"

#include "adjust/NameIndex.h"
#include "adjust/linalg/Index.h"
#include "records/NetworkFindings.h"
#include "records/detail/Messages.h"

#include <utils/detail/PrivateData.h>

#include <QStringList>
#include <algorithm>
#include <utility>

namespace kvn {
namespace {

/// Stations that come again with another value than at first, each once.
QStringList namesWithSeveral(std::vector<TriangleStationData> const& stations, double TriangleStationData::*value) {
  NameIndex names;
  std::vector<double> first;
  NameIndex several;
  for (TriangleStationData const& station : stations) {
    std::size_t const number = detail::index(names.numberOf(station.name));
    if (number == first.size()) first.push_back(station.*value);
    if (station.*value != first[number]) several.numberOf(station.name);
  }
  QStringList list;
  for (std::string const& name : several.names()) list.append(QString::fromStdString(name));
  return list;
}

void warn(QString const& text, QStringList const& names) {
  if (!names.isEmpty()) Messages::send(text.arg(listedNames(names)), Warning);
}

}  // namespace

struct KELVANE_PRIVATE TriangleHeightDataConvert::Data {
  KELVANE_LATER_MEMBER
  std::vector<TriangleStationData> triangleStationData;
  std::vector<TriangleViewData> triangleViewData;
};

TriangleHeightDataConvert::TriangleHeightDataConvert() : own(std::make_unique<Data>()) {}
TriangleHeightDataConvert::TriangleHeightDataConvert(TriangleHeightDataConvert const& other)
    : own(std::make_unique<Data>(*other.own)) {}
TriangleHeightDataConvert& TriangleHeightDataConvert::operator=(TriangleHeightDataConvert const& other) {
  *own = *other.own;
  return *this;
}
TriangleHeightDataConvert::~TriangleHeightDataConvert() = default;

void TriangleHeightDataConvert::setTriangleHeightDataRead(TriangleHeightDataRead const& read) {
  own->triangleViewData = read.getTriangleViewData();
  std::vector<TriangleStationData> stations = read.getTriangleStationData();
  warn(Messages::tr("Stations that were set up with different instrument heights, of which the first counts: %1"),
       namesWithSeveral(stations, &TriangleStationData::instrumentHeight));
  stations.erase(std::remove_if(stations.begin(), stations.end(),
                                [](TriangleStationData const& station) { return station.state == 1; }),
                 stations.end());
  warn(Messages::tr("Known stations with different heights, of which the first counts: %1"),
       namesWithSeveral(stations, &TriangleStationData::height));
  own->triangleStationData.clear();
  NameIndex known;
  for (TriangleStationData& station : stations) {
    if (known.contains(station.name)) continue;
    known.numberOf(station.name);
    own->triangleStationData.push_back(std::move(station));
  }
}

std::vector<TriangleStationData> TriangleHeightDataConvert::getTriangleStationData() const {
  return own->triangleStationData;
}
std::vector<TriangleViewData> TriangleHeightDataConvert::getTraingleViewData() const { return own->triangleViewData; }

int TriangleHeightDataConvert::getKnPnumber() const { return static_cast<int>(own->triangleStationData.size()); }
int TriangleHeightDataConvert::getLnumber() const { return static_cast<int>(own->triangleViewData.size()); }

int TriangleHeightDataConvert::getPnumber() const {
  NameIndex names;
  for (TriangleStationData const& station : own->triangleStationData) names.numberOf(station.name);
  for (TriangleViewData const& view : own->triangleViewData) {
    names.numberOf(view.start_name);
    names.numberOf(view.end_name);
  }
  return names.size();
}

}  // namespace kvn
