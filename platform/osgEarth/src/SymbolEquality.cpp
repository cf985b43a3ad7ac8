#include "SymbolEquality.h"

#include <osgEarth/AltitudeSymbol>
#include <osgEarth/IconSymbol>
#include <osgEarth/LineSymbol>
#include <osgEarth/RenderSymbol>
#include <osgEarth/TextSymbol>

#include <typeinfo>

namespace osgEarth {
inline namespace kelvane {
namespace {

template <typename T>
bool same(T const& a, T const& b) {
  return a == b;
}

bool same(Stroke const& a, Stroke const& b);
bool same(Fill const& a, Fill const& b) { return a.color() == b.color(); }

template <typename T>
bool same(optional<T> const& a, optional<T> const& b) {
  return a.isSet() == b.isSet() && same(a.get(), b.get()) && same(a.defaultValue(), b.defaultValue());
}

bool same(Stroke const& a, Stroke const& b) {
  return a.color() == b.color() && same(a.width(), b.width()) && same(a.minPixels(), b.minPixels()) &&
         same(a.stipplePattern(), b.stipplePattern()) && same(a.stippleFactor(), b.stippleFactor()) &&
         same(a.lineCap(), b.lineCap()) && same(a.lineJoin(), b.lineJoin()) && same(a.smooth(), b.smooth());
}

bool same(LineSymbol const& a, LineSymbol const& b) {
  return same(a.stroke(), b.stroke()) && same(a.tessellation(), b.tessellation()) &&
         same(a.tessellationSize(), b.tessellationSize()) && same(a.useGLLines(), b.useGLLines());
}

bool same(IconSymbol const& a, IconSymbol const& b) {
  return same(a.url(), b.url()) && same(a.scale(), b.scale()) && same(a.alignment(), b.alignment()) &&
         same(a.heading(), b.heading()) && same(a.declutter(), b.declutter()) &&
         same(a.occlusionCull(), b.occlusionCull()) && a.hasSameImage(b);
}

bool same(TextSymbol const& a, TextSymbol const& b) {
  return same(a.fill(), b.fill()) && same(a.halo(), b.halo()) && same(a.size(), b.size()) && same(a.font(), b.font()) &&
         same(a.content(), b.content()) && same(a.encoding(), b.encoding()) && same(a.alignment(), b.alignment()) &&
         same(a.declutter(), b.declutter()) && same(a.pixelOffset(), b.pixelOffset());
}

bool same(AltitudeSymbol const& a, AltitudeSymbol const& b) {
  return same(a.clamping(), b.clamping()) && same(a.technique(), b.technique());
}

bool same(RenderSymbol const& a, RenderSymbol const& b) {
  return same(a.depthTest(), b.depthTest()) && same(a.lighting(), b.lighting()) && same(a.order(), b.order());
}

/// A class that is derived from T may have more than T can compare.
template <typename T>
bool areSame(Symbol const& a, Symbol const& b) {
  return typeid(a) == typeid(T) && typeid(b) == typeid(T) && same(static_cast<T const&>(a), static_cast<T const&>(b));
}

}  // namespace

bool canBeCompared(Symbol const& symbol) {
  if (!symbol.getName().empty() || symbol.getUserDataContainer() != nullptr) return false;
  if (symbol.getDataVariance() != osg::Object::UNSPECIFIED) return false;
  auto const& type = typeid(symbol);
  return type == typeid(LineSymbol) || type == typeid(IconSymbol) || type == typeid(TextSymbol) ||
         type == typeid(AltitudeSymbol) || type == typeid(RenderSymbol);
}

bool isEqual(Symbol const& a, Symbol const& b) {
  return areSame<LineSymbol>(a, b) || areSame<IconSymbol>(a, b) || areSame<TextSymbol>(a, b) ||
         areSame<AltitudeSymbol>(a, b) || areSame<RenderSymbol>(a, b);
}

}  // namespace kelvane
}  // namespace osgEarth
