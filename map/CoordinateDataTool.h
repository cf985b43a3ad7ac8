// CoordinateDataTool: draws the points of a coordinate list.
#pragma once

#include "map/GeometryDataTool.h"
#include "records/CoordinatePointInfo.h"

#include <utils/Export.h>

#include <QString>
#include <vector>

namespace kvn {

/// Draws points and finds them in the list of the scene's project. The list is not owned and may be null.
class KELVANE_EXPORT CoordinateDataTool : public GeometryDataTool {
 public:
  CoordinateDataTool(MapScene* scene);
  CoordinateDataTool(CoordinateDataTool const&);
  CoordinateDataTool& operator=(CoordinateDataTool const&);
  ~CoordinateDataTool() override;

  /// Takes every point of that id out of the list. The feature stays on the map.
  /// @return false, also after a removal.
  bool remove(QString id) override;
  bool remove(CoordinatePointInfo const& point);
  bool updateMap(QString id) override;                                               ///< false, does nothing
  bool updateMap(CoordinatePointInfo const& point, osgEarth::AnnotationNode* node);  ///< false, does nothing
  bool modify(CoordinatePointInfo const& point);                                     ///< false, does nothing
  bool modify(QString id, CoordinatePointInfo const& point);                         ///< false, does nothing
  osgEarth::Style getStyle() const override;
  osgEarth::Style getSelectedStyle() const override;

  std::vector<CoordinatePointInfo>* getCoordinateDataList() const { return list; }
  void setCoordinateDataList(std::vector<CoordinatePointInfo>* value) { list = value; }

  void build(
      CoordinatePointInfo const& point);  ///< takes no lock: the caller holds the viewers' lock for the whole list
  QString getDataID(CoordinatePointInfo const& point);
  /// The first point of that id, or null; nothing for blanks alone. `ok` is left alone.
  CoordinatePointInfo* findData(QString id, bool* ok) const;
  /// The point behind a feature, or null; `ok`, if given, tells whether there is one.
  CoordinatePointInfo* findData(osgEarth::AnnotationNode* node, bool* ok) const;
  CoordinatePointInfo* findName(
      QString name) const;  ///< the first point of that name without blanks around it, or null

  static QString getTableName();

 protected:
  /// The name, and behind a comma the point mark when descriptions are shown and there is one.
  QString getDisplayText(CoordinatePointInfo const& point) const;

 private:
  std::vector<CoordinatePointInfo>* list = nullptr;
};

}  // namespace kvn
