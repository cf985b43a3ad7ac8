// LabelText: the text of a PlaceNode, in pixels.
#pragma once

#include "Declutter.h"

#include <osgEarth/TextSymbol>

#include <osg/BoundingBox>
#include <osgText/Text>
#include <string>

namespace osgEarth {
inline namespace kelvane {

class LabelText : public osgText::Text, public Ranked {
 public:
  /// @param symbol     null for its defaults.
  /// @param icon       box of the icon about the position, invalid without one: the text stands beside it.
  LabelText(std::string const& text, TextSymbol const* symbol, osg::BoundingBox const& icon);

  void setContent(std::string const& text);
  void placeBeside(osg::BoundingBox const& icon);

 protected:
  ~LabelText() override;
  /// osgText shares one state among all texts of a kind; this limits the number of its owners (see SharedCache).
  osg::StateSet* createStateSet() override;

 private:
  void applySymbol(TextSymbol const& symbol);

  osgText::String::Encoding encoding_ = osgText::String::ENCODING_ASCII;
  osg::Vec3 pixelOffset_;
};

}  // namespace kelvane
}  // namespace osgEarth
