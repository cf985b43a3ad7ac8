#include "map/CoordinateDataTool.h"

#include "core/Project.h"
#include "map/FeatureLook.h"
#include "map/detail/Icons.h"
#include "map/detail/MapLog.h"

#include <utils/HTextCodec.h>

#include <QStringList>
#include <algorithm>

namespace kvn {
namespace {

template <typename Predicate>
CoordinatePointInfo* firstOf(std::vector<CoordinatePointInfo>* list, Predicate const& matches) {
  if (list == nullptr) return nullptr;
  auto const found = std::find_if(list->begin(), list->end(), matches);
  return found == list->end() ? nullptr : &*found;
}

}  // namespace

CoordinateDataTool::CoordinateDataTool(MapScene* scene) : GeometryDataTool(scene, FeatureDataType::CoordData) {
  if (Project* const owner = getProject()) list = &owner->getCoordinatePointList();
}

CoordinateDataTool::CoordinateDataTool(CoordinateDataTool const&) = default;
CoordinateDataTool& CoordinateDataTool::operator=(CoordinateDataTool const&) = default;
CoordinateDataTool::~CoordinateDataTool() = default;

bool CoordinateDataTool::remove(QString id) {
  qCInfo(detail::mapLog, "Kelvane:remove coordinate map");
  if (list != nullptr) {
    std::string const wanted = id.toStdString();
    list->erase(std::remove(list->begin(), list->end(), wanted), list->end());
  }
  return GeometryDataTool::remove(id);
}

bool CoordinateDataTool::remove(CoordinatePointInfo const& point) { return remove(QString::fromStdString(point.id)); }
bool CoordinateDataTool::updateMap(QString /*id*/) { return false; }
bool CoordinateDataTool::updateMap(CoordinatePointInfo const& /*point*/, osgEarth::AnnotationNode* /*node*/) {
  return false;
}
bool CoordinateDataTool::modify(CoordinatePointInfo const& /*point*/) { return false; }
bool CoordinateDataTool::modify(QString /*id*/, CoordinatePointInfo const& /*point*/) { return false; }

osgEarth::Style CoordinateDataTool::getStyle() const {
  return detail::withIcon(mvz::GeometryDataTool::getStyle(),
                          GetIcon(FeatureDataType::CoordData, TraversePointType::StationPoint));
}

osgEarth::Style CoordinateDataTool::getSelectedStyle() const {
  return detail::withIcon(mvz::GeometryDataTool::getSelectedStyle(),
                          GetSelectedIcon(FeatureDataType::CoordData, TraversePointType::StationPoint));
}

void CoordinateDataTool::build(CoordinatePointInfo const& point) {
  qCInfo(detail::mapLog, "Kelvane:build coordinate map");
  osgEarth::PlaceNode* const node = createPoint(getDisplayText(point), point.E, point.N, point.Z);
  setFeatureInfo(node, getDataID(point).toStdString(), point.name, std::string());
}

QString CoordinateDataTool::getDisplayText(CoordinatePointInfo const& point) const {
  QStringList texts{QString::fromStdString(point.name)};
  if (isDrawDescription() && !point.signal.empty()) texts << HTextCodec::FromLocal8Bit(point.signal);
  return texts.join(QLatin1Char(','));
}

QString CoordinateDataTool::getDataID(CoordinatePointInfo const& point) { return HTextCodec::FromLocal8Bit(point.id); }

CoordinatePointInfo* CoordinateDataTool::findData(QString id, bool* /*ok*/) const {
  if (id.trimmed().isEmpty()) return nullptr;
  return firstOf(list, [wanted = id.toStdString()](CoordinatePointInfo const& point) { return point.id == wanted; });
}

CoordinatePointInfo* CoordinateDataTool::findData(osgEarth::AnnotationNode* node, bool* ok) const {
  std::string id;
  mvz::ILayer::GetFeatureInfo(node, &id, nullptr, nullptr, nullptr, nullptr);
  CoordinatePointInfo* const point = findData(QString::fromStdString(id), ok);
  if (ok != nullptr) *ok = point != nullptr;
  return point;
}

CoordinatePointInfo* CoordinateDataTool::findName(QString name) const {
  return firstOf(list, [wanted = name.trimmed()](CoordinatePointInfo const& point) {
    return QString::fromStdString(point.name) == wanted;
  });
}

QString CoordinateDataTool::getTableName() { return QStringLiteral("KelvaneCoordinateData"); }

}  // namespace kvn
