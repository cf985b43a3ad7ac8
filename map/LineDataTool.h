// LineDataTool: draws the lines of a network or of the observations.
#pragma once

#include "map/GeometryDataTool.h"
#include "records/DrawRecords.h"

#include <utils/Export.h>
#include <utils/IProcessCancel.h>

#include <QString>

namespace kvn {

/// Lines lie at height 0, show no text and have no id. A line whose ends have names keeps them, by which
/// `MapScene::findNetworkRecords` finds the line of the network.
class KELVANE_EXPORT LineDataTool : public GeometryDataTool, public utils::IProcessCancel {
 public:
  LineDataTool(MapScene* scene);
  LineDataTool(LineDataTool const&);
  LineDataTool& operator=(LineDataTool const&);
  ~LineDataTool() override;

  osgEarth::Style getStyle() const override;
  osgEarth::Style getSelectedStyle() const override;

  /// Draws under the viewers' lock; nothing happens without a project. @throws QLogicError "User Cancel".
  void build(DrawLine const& line);

  unsigned int getColor() const { return color; }
  void setColor(unsigned int value) { color = value; }  ///< kept for the host; drawing does not read it

  void checkCancelAndThrow() const;  ///< @throws QLogicError "User Cancel" when the cancel query says so

  static QString GetDataTypeName();

 protected:
  using GeometryDataTool::drawLine;
  void drawLine(DrawLine const& line);

 private:
  unsigned int color = 0xB1A8D6FF;
};

}  // namespace kvn
