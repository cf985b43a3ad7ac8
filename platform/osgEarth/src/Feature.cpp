#include <osgEarth/Feature>

#include <array>
#include <charconv>
#include <limits>
#include <type_traits>

namespace osgEarth {
inline namespace kelvane {
namespace {

template <typename Number>
std::string textOf(Number number) {
  std::array<char, 32> buffer{};  // the longest double has 24 characters
  auto const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
  return {buffer.data(), end};
}

double numberOf(std::string const& text, double defaultValue) {
  double number = defaultValue;
  bool const read = std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
  return read ? number : defaultValue;
}

}  // namespace

Feature::Feature(Geometry* geometry, SpatialReference const* srs, Style const& style, FeatureID fid)
    : geometry_(geometry), srs_(srs), style_(style), fid_(fid) {}

Feature::~Feature() = default;

Feature::Attribute& Feature::attribute(std::string const& name) {
  if (!attributes_) attributes_ = std::make_unique<Attributes>();
  return (*attributes_)[name];
}

Feature::Attribute const* Feature::find(std::string const& name) const {
  if (!attributes_) return nullptr;
  auto const found = attributes_->find(name);
  return found == attributes_->end() ? nullptr : &found->second;
}

std::string Feature::getString(std::string const& name) const {
  Attribute const* const found = find(name);
  if (found == nullptr) return {};
  return std::visit(
      [](auto const& value) -> std::string {
        using Type = std::decay_t<decltype(value)>;
        if constexpr (std::is_same_v<Type, std::string>) return value;
        if constexpr (std::is_same_v<Type, bool>) return value ? "true" : "false";
        if constexpr (std::is_same_v<Type, double> || std::is_same_v<Type, int>) return textOf(value);
      },
      *found);
}

double Feature::getDouble(std::string const& name, double defaultValue) const {
  Attribute const* const found = find(name);
  if (found == nullptr) return defaultValue;
  return std::visit(
      [&](auto const& value) -> double {
        if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::string>)
          return numberOf(value, defaultValue);
        else
          return static_cast<double>(value);
      },
      *found);
}

int Feature::getInt(std::string const& name, int defaultValue) const {
  double const value = getDouble(name, defaultValue);
  bool const fits = value > std::numeric_limits<int>::min() - 1.0 && value < std::numeric_limits<int>::max() + 1.0;
  return fits ? static_cast<int>(value) : defaultValue;
}

bool Feature::getBool(std::string const& name, bool defaultValue) const {
  Attribute const* const found = find(name);
  if (found == nullptr) return defaultValue;
  if (auto const* const text = std::get_if<std::string>(found)) return *text == "true";
  double const value = getDouble(name);
  return value < 0.0 || value > 0.0;
}

}  // namespace kelvane
}  // namespace osgEarth
