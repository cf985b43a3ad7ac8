// mvz::CommonAnnotationLayer: a layer of features.
#pragma once

#include <mvz/ILayer.h>
#include <utils/Export.h>

#include <osgEarth/AnnotationLayer>

namespace mvz {

class KELVANE_EXPORT CommonAnnotationLayer : public osgEarth::AnnotationLayer, public ILayer {
 public:
  CommonAnnotationLayer();

  void clearFeatures() override;

 protected:
  ~CommonAnnotationLayer() override;
};

}  // namespace mvz
