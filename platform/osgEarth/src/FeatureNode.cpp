#include "FeatureLines.h"

#include <osgEarth/FeatureNode>

namespace osgEarth {
inline namespace kelvane {
namespace {

Stroke strokeOf(Feature const& feature, Style const& nodeStyle) {
  Style const* const style = nodeStyle.empty() ? feature.style() : &nodeStyle;
  auto const* const line = style != nullptr ? style->get<LineSymbol>() : nullptr;
  return line != nullptr ? line->stroke().get() : Stroke();
}

}  // namespace

FeatureNode::FeatureNode(Feature* feature, Style const& style, GeometryCompilerOptions const&, StyleSheet*) {
  if (feature != nullptr) features_.emplace_back(feature);
  FeatureNode::setStyle(style);
}

FeatureNode::FeatureNode(FeatureList const& features, Style const& style, GeometryCompilerOptions const&, StyleSheet*)
    : features_(features) {
  FeatureNode::setStyle(style);
}

FeatureNode::~FeatureNode() = default;

void FeatureNode::setFeature(Feature* feature) {
  features_.clear();
  if (feature != nullptr) features_.emplace_back(feature);
  dirty();
}

void FeatureNode::setStyle(Style const& value) {
  AnnotationNode::setStyle(value);
  dirty();
}

void FeatureNode::dirty() {
  removeChildren(0, getNumChildren());
  for (auto const& feature : features_) {
    Geometry const* const geometry = feature->getGeometry();
    if (geometry == nullptr || !geometry->isValid()) continue;
    addChild(new FeatureLines(*geometry, strokeOf(*feature, getStyle())));
  }
}

}  // namespace kelvane
}  // namespace osgEarth
