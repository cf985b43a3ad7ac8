// LabelText: the text of a PlaceNode, in pixels.
#pragma once

#include "Declutter.h"
#include "LeanDrawable.h"

#include <osgEarth/TextSymbol>

#include <osg/BoundingBox>
#include <osgText/Text>
#include <string>

namespace osgEarth {
inline namespace kelvane {

/// Has the box and the state of its text, and the letters only once it is drawn. On a map of thousands of points most
/// names give way to others, and the letters of one take more memory than all else of a point.
class LabelText : public LeanDrawable, public Ranked {
 public:
  /// @param symbol     null for its defaults; nobody else may change it.
  /// @param icon       box of the icon about the position, invalid without one: the text stands beside it.
  LabelText(std::string const& text, TextSymbol const* symbol, osg::BoundingBox const& icon);
  LabelText(LabelText const&) = delete;
  LabelText& operator=(LabelText const&) = delete;

  osg::Object* cloneType() const override { return nullptr; }
  osg::Object* clone(osg::CopyOp const&) const override { return nullptr; }
  char const* libraryName() const override { return "kelvane"; }
  char const* className() const override { return "LabelText"; }

  void setContent(std::string const& text);

  using osg::Drawable::accept;
  using osg::Drawable::supports;
  bool supports(osg::PrimitiveFunctor const&) const override { return true; }
  void accept(osg::PrimitiveFunctor& functor) const override;
  void drawImplementation(osg::RenderInfo& info) const override;
  osg::BoundingBox computeBoundingBox() const override { return {}; }  // beside the initial one
  void resizeGLObjectBuffers(unsigned maxSize) override;
  void releaseGLObjects(osg::State* state = nullptr) const override;

 protected:
  ~LabelText() override;

 private:
  osg::ref_ptr<osgText::Text> letters() const;
  osg::ref_ptr<osgText::Text> lettersSoFar() const;  ///< null before it is drawn

  std::string text_;
  osg::ref_ptr<TextSymbol const> symbol_;
  osg::Vec3 position_;
  mutable osg::ref_ptr<osgText::Text> drawn_;
};

}  // namespace kelvane
}  // namespace osgEarth
