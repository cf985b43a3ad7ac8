// The places in which the versions 3.2 to 3.8 of osgEarth differ.
#pragma once

#include <osgEarth/Style>
#include <osgEarth/Units>
#include <osgEarth/optional>
#include <string>

namespace mvz::detail {

inline void setPixels(osgEarth::optional<float>& width, float pixels) { width = pixels; }

template <typename Expression>
void setPixels(osgEarth::optional<Expression>& width, float pixels) {
  width = Expression(osgEarth::Distance(pixels, osgEarth::Units::PIXELS));
}

inline float pixels(osgEarth::optional<float> const& width) { return width.get(); }

template <typename Expression>
float pixels(osgEarth::optional<Expression> const& width) {
  return static_cast<float>(width.get().literal().getValue());
}

template <typename Expression>
auto literalText(Expression const& url, int) -> decltype(std::string(url.literal().base())) {
  return url.literal().base();
}

template <typename Expression>
std::string literalText(Expression const& url, long) {
  return url.eval();
}

/// The url of an icon as it was set, back slashes included; empty when none is set.
inline std::string iconUrl(osgEarth::Style const& style) {
  auto const* const icon = style.get<osgEarth::IconSymbol>();
  return icon == nullptr || !icon->url().isSet() ? std::string() : literalText(icon->url().get(), 0);
}

}  // namespace mvz::detail
