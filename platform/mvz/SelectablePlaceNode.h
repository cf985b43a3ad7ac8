// mvz::SelectablePlaceNode: an icon with a text on the map that can be selected.
#pragma once

#include <mvz/ISelectable.h>
#include <mvz/MapLibrary.h>
#include <utils/Export.h>

#include <QString>
#include <functional>
#include <memory>
#include <osgEarth/PlaceNode>
#include <string>

namespace mvz {

/// Shows the first style normally and the second when it is selected. The icons that the styles name are looked for
/// with `utils::resourceFile`; a point whose icon is not there is shown by its text alone.
class KELVANE_EXPORT SelectablePlaceNode : public osgEarth::PlaceNode, public ISelectable {
 public:
  SelectablePlaceNode(osgEarth::GeoPoint const& position, std::string const& text, osgEarth::Style normal,
                      osgEarth::Style selected);

  /// Told of an icon that is not there or cannot be read, each once in the life of the process; an empty call tells
  /// nobody.
  static void setIconFailureCall(std::function<void(QString const& file)> call);

  osgEarth::Style const& getNormalStyle() const;
  osgEarth::Style const& getSelectedStyle() const;

 protected:
  ~SelectablePlaceNode() override;
  void showSelected(bool value) override;

 private:
  struct Data;
  std::unique_ptr<Data> own;
};

}  // namespace mvz
