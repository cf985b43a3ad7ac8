// SketchDataTool: draws what stands for no record: a grid, error ellipses, words of a picture.
#pragma once

#include "map/GeometryDataTool.h"

#include <utils/Export.h>

#include <coord/xyh.h>
#include <QString>
#include <vector>

namespace kvn {

/// Features without id and without a record, in the layer of `FeatureDataType::Default`. A layer that is made before
/// the others lies below them. To be used under the viewers' lock.
class KELVANE_EXPORT SketchDataTool : public GeometryDataTool {
 public:
  struct Look {
    unsigned colour = 0x404040FF;  ///< red, green, blue, alpha
    float width = 1.0F;            ///< of a line, height of a text, pixels
  };
  /// Whether the font of the map has the signs of a text: false for Chinese ones where the machine has no font for them
  /// that is known here. Of a font that the environment names everything is believed.
  static bool canShow(QString const& text);

  explicit SketchDataTool(MapScene* scene);
  SketchDataTool(SketchDataTool const&);
  SketchDataTool& operator=(SketchDataTool const&);
  ~SketchDataTool() override;

  /// A line through places at height 0, metres; nothing for fewer than two.
  void drawPath(std::vector<coord::xyh> const& places, Look const& look);
  /// An ellipse, semi-axes in metres.
  /// @param bearing  azimuth of the major axis, radians.
  void drawEllipse(coord::xyh const& centre, double semiMajor, double semiMinor, double bearing, Look const& look);
  /// A text that begins at its place, level with it, and gives way to nothing, while names give way to it.
  void drawText(coord::xyh const& place, QString const& text, Look const& look);
};

}  // namespace kvn
