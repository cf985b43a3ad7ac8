#include "adjust/TriangleHeightDataConvert.h"

#include "adjust/linalg/Index.h"
#include "records/NetworkFindings.h"
#include "records/detail/Messages.h"

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

TriangleHeightDataConvert::TriangleHeightDataConvert() = default;
TriangleHeightDataConvert::TriangleHeightDataConvert(TriangleHeightDataConvert const&) = default;
TriangleHeightDataConvert& TriangleHeightDataConvert::operator=(TriangleHeightDataConvert const&) = default;
TriangleHeightDataConvert::~TriangleHeightDataConvert() = default;

void TriangleHeightDataConvert::setTriangleHeightDataRead(TriangleHeightDataRead const& read) {
  triangleViewData = read.getTriangleViewData();
  std::vector<TriangleStationData> stations = read.getTriangleStationData();
  warn(Messages::tr("Stations that were set up with different instrument heights, of which the first counts: %1"),
       namesWithSeveral(stations, &TriangleStationData::instrumentHeight));
  stations.erase(std::remove_if(stations.begin(), stations.end(),
                                [](TriangleStationData const& station) { return station.state == 1; }),
                 stations.end());
  warn(Messages::tr("Known stations with different heights, of which the first counts: %1"),
       namesWithSeveral(stations, &TriangleStationData::height));
  triangleStationData.clear();
  NameIndex known;
  for (TriangleStationData& station : stations) {
    if (known.contains(station.name)) continue;
    known.numberOf(station.name);
    triangleStationData.push_back(std::move(station));
  }
}

std::vector<TriangleStationData> TriangleHeightDataConvert::getTriangleStationData() const {
  return triangleStationData;
}
std::vector<TriangleViewData> TriangleHeightDataConvert::getTraingleViewData() const { return triangleViewData; }

int TriangleHeightDataConvert::getKnPnumber() const { return static_cast<int>(triangleStationData.size()); }
int TriangleHeightDataConvert::getLnumber() const { return static_cast<int>(triangleViewData.size()); }

int TriangleHeightDataConvert::getPnumber() const {
  NameIndex names;
  for (TriangleStationData const& station : triangleStationData) names.numberOf(station.name);
  for (TriangleViewData const& view : triangleViewData) {
    names.numberOf(view.start_name);
    names.numberOf(view.end_name);
  }
  return names.size();
}

}  // namespace kvn
