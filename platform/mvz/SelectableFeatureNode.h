// mvz::SelectableFeatureNode: a line or an area on the map that can be selected.
#pragma once

#include <mvz/ISelectable.h>
#include <mvz/MapLibrary.h>
#include <utils/Export.h>

#include <memory>
#include <osgEarth/FeatureNode>

namespace mvz {

/// Shows the first style normally and the second when it is selected.
class KELVANE_EXPORT SelectableFeatureNode : public osgEarth::FeatureNode, public ISelectable {
 public:
  SelectableFeatureNode(osgEarth::Feature* feature, osgEarth::Style normal, osgEarth::Style selected);

  osgEarth::Style const& getNormalStyle() const;
  osgEarth::Style const& getSelectedStyle() const;

 protected:
  ~SelectableFeatureNode() override;
  void showSelected(bool value) override;

 private:
  struct Data;
  std::unique_ptr<Data> own;
};

}  // namespace mvz
