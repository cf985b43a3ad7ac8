#include "adjust/TriangleHeightDataConvert.h"

namespace kvn {

TriangleHeightDataConvert::TriangleHeightDataConvert() = default;
TriangleHeightDataConvert::TriangleHeightDataConvert(TriangleHeightDataConvert const&) = default;
TriangleHeightDataConvert& TriangleHeightDataConvert::operator=(TriangleHeightDataConvert const&) = default;
TriangleHeightDataConvert::~TriangleHeightDataConvert() = default;

void TriangleHeightDataConvert::setTriangleHeightDataRead(TriangleHeightDataRead const& read) {
  triangleViewData = read.getTriangleViewData();
  triangleStationData.clear();
  NameIndex known;
  for (TriangleStationData& station : read.getTriangleStationData()) {
    if (station.state == 1 || known.contains(station.name)) continue;
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
