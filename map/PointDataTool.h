// PointDataTool: draws stations and targets.
#pragma once

#include "map/GeometryDataTool.h"
#include "records/DrawRecords.h"

#include <utils/Export.h>

#include <QString>

namespace kvn {

/// Icons by point type, with the point's name beside them.
class KELVANE_EXPORT PointDataTool : public GeometryDataTool {
 public:
  PointDataTool(MapScene* scene);
  PointDataTool(PointDataTool const&);
  PointDataTool& operator=(PointDataTool const&);
  ~PointDataTool() override;

  osgEarth::Style getStyle() const override;
  osgEarth::Style getSelectedStyle() const override;

  void build(DrawPoint const& drawPoint);  ///< draws under the viewers' lock; nothing happens without a project

  static QString GetTableName();

 protected:
  void drawPoint();

 private:
  DrawPoint current;
};

}  // namespace kvn
