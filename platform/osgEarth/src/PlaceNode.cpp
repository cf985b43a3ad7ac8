#include "Declutter.h"
#include "LabelText.h"
#include "PixelTransform.h"
#include "PlaceIcon.h"
#include "SharedCache.h"

#include <osgEarth/PlaceNode>

#include <utility>

namespace osgEarth {
inline namespace kelvane {
namespace {

osg::ref_ptr<osg::StateSet> labelState() {
  // Never destroyed: nodes of a host may outlive the statics of this library.
  static auto* const cache = new SharedCache<int, osg::StateSet>;
  return cache->get(kPlaceBin, [] {
    osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
    setDeclutterState(*state);
    return state;
  });
}

/// The drawable in the place of the old one, each of which may be null.
void replace(osg::Group& parent, osg::Node* old, osg::Node* fresh) {
  if (old != nullptr) parent.removeChild(old);
  if (fresh != nullptr) parent.addChild(fresh);
}

}  // namespace

PlaceNode::PlaceNode() : PlaceNode(GeoPoint()) {}

PlaceNode::PlaceNode(std::string const& text, Style const& style, osg::Image* image)
    : PlaceNode(GeoPoint(), text, style, image) {}

PlaceNode::PlaceNode(GeoPoint const& position, std::string const& text, Style const& style, osg::Image* image)
    : text_(text), given_(image), transform_(new PixelTransform) {
  transform_->setStateSet(labelState());
  addChild(transform_);
  AnnotationNode::setStyle(style);
  PlaceNode::setPosition(position);
  buildAll();
}

PlaceNode::~PlaceNode() = default;

std::string const& PlaceNode::shownText() const {
  auto const* const symbol = getStyle().get<TextSymbol>();
  return text_.empty() && symbol != nullptr ? symbol->content().get().eval() : text_;
}

void PlaceNode::buildAll() {
  buildIcon();
  buildLabel();
}

void PlaceNode::buildIcon() {
  auto const* const symbol = getStyle().get<IconSymbol>();
  shown_ = given_.valid() || symbol == nullptr ? given_.get() : symbol->getImage();
  osg::ref_ptr<osg::Geometry> const icon = shown_.valid() ? makeIcon(*shown_, symbol) : nullptr;
  if (auto* const rank = dynamic_cast<Ranked*>(icon.get())) rank->priority = getPriority();
  replace(*transform_, icon_.get(), icon.get());
  icon_ = icon;
  auto const* const text = getStyle().get<TextSymbol>();
  // Beside an icon the base line would be level with its middle.
  if (shown_.valid() && (text == nullptr || !text->alignment().isSet())) {
    style_.getOrCreate<TextSymbol>()->alignment() = TextSymbol::ALIGN_LEFT_CENTER;
    style_ = Style(std::as_const(style_));  // in common with its neighbours again
  }
}

void PlaceNode::buildLabel() {
  osg::BoundingBox const beside = icon_.valid() ? icon_->getBoundingBox() : osg::BoundingBox();
  osg::ref_ptr<LabelText> label;
  if (!shownText().empty()) {
    label = new LabelText(shownText(), getStyle().get<TextSymbol>(), beside);
    label->priority = getPriority();
    label->setDataVariance(getDataVariance());
  }
  replace(*transform_, label_.get(), label.get());
  label_ = label;
  transform_->updateReach();
}

void PlaceNode::setText(std::string const& value) {
  text_ = value;
  if (!label_.valid() || shownText().empty()) {
    buildLabel();
    return;
  }
  label_->setContent(shownText());
  transform_->updateReach();
}

void PlaceNode::setStyle(Style const& value) {
  AnnotationNode::setStyle(value);
  buildAll();
}

void PlaceNode::setPosition(GeoPoint const& value) {
  GeoPositionNode::setPosition(value);
  transform_->setPosition(value.vec3d());
}

void PlaceNode::setIconImage(osg::Image* value) {
  given_ = value;
  buildIcon();
  buildLabel();
}

void PlaceNode::setPriority(float value) {
  AnnotationNode::setPriority(value);
  if (label_.valid()) label_->priority = value;
  if (auto* const rank = dynamic_cast<Ranked*>(icon_.get())) rank->priority = value;
}

void PlaceNode::setDynamic(bool value) {
  AnnotationNode::setDynamic(value);
  if (label_.valid()) label_->setDataVariance(getDataVariance());
}

}  // namespace kelvane
}  // namespace osgEarth
