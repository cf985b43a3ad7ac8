#include <osgEarth/GeoData>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <map>
#include <mutex>
#include <utility>

namespace osgEarth {
inline namespace kelvane {
namespace {

std::string lowerAndTrimmed(std::string const& text) {
  std::string const blanks = " \t\r\n";
  auto const first = text.find_first_not_of(blanks);
  if (first == std::string::npos) return {};
  std::string result = text.substr(first, text.find_last_not_of(blanks) - first + 1);
  std::transform(result.begin(), result.end(), result.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return result;
}

bool beginsWith(std::string const& text, std::string const& head) { return text.rfind(head, 0) == 0; }

/// The number of "epsg:4326", or 0.
int epsgOf(std::string const& key) {
  std::string const head = "epsg:";
  int code = 0;
  if (beginsWith(key, head)) std::from_chars(key.data() + head.size(), key.data() + key.size(), code);
  return code;
}

bool hasProjection(std::string const& key, std::string const& name) {
  return key.find("+proj=" + name) != std::string::npos;
}

bool isGeocentricKey(std::string const& key) {
  return key == "geocentric" || epsgOf(key) == 4978 || hasProjection(key, "geocent") || beginsWith(key, "geoccs");
}

bool isGeographicKey(std::string const& key) {
  // Projected systems stand between them in the registry, so that there is no range to test.
  constexpr std::array<int, 10> kGeographicCodes{4214, 4258, 4267, 4269, 4326, 4480, 4490, 4555, 4610, 4979};
  bool const code = std::find(kGeographicCodes.begin(), kGeographicCodes.end(), epsgOf(key)) != kGeographicCodes.end();
  return key == "wgs84" || key == "global-geodetic" || key == "plate-carree" || key == "plate-carre" || code ||
         hasProjection(key, "longlat") || hasProjection(key, "latlong") || beginsWith(key, "geogcs") ||
         beginsWith(key, "geogcrs");
}

}  // namespace

SpatialReference::SpatialReference(std::string const& horizontal, std::string const& vertical)
    : horizontal_(horizontal),
      vertical_(vertical),
      horizontalKey_(lowerAndTrimmed(horizontal)),
      verticalKey_(lowerAndTrimmed(vertical)),
      kind_(kindOf(horizontalKey_)) {}

SpatialReference::~SpatialReference() = default;

SpatialReference::Kind SpatialReference::kindOf(std::string const& key) {
  if (isGeocentricKey(key)) return Kind::Geocentric;
  return isGeographicKey(key) ? Kind::Geographic : Kind::Projected;
}

SpatialReference* SpatialReference::create(std::string const& horizontal, std::string const& vertical) {
  if (lowerAndTrimmed(horizontal).empty()) return nullptr;
  // Never destroyed: a host may hold a system in a global that outlives the statics of this library.
  static auto* const mutex = new std::mutex;
  static auto* const cache = new std::map<std::pair<std::string, std::string>, osg::ref_ptr<SpatialReference>>;
  std::lock_guard<std::mutex> const hold(*mutex);
  auto& entry = (*cache)[{horizontal, vertical}];
  if (!entry) entry = new SpatialReference(horizontal, vertical);
  return entry.get();
}

SpatialReference* SpatialReference::get(std::string const& horizontal, std::string const& vertical) {
  return create(horizontal, vertical);
}

bool SpatialReference::isHorizEquivalentTo(SpatialReference const* other) const {
  return other != nullptr && horizontalKey_ == other->horizontalKey_;
}

bool SpatialReference::isEquivalentTo(SpatialReference const* other) const {
  return isHorizEquivalentTo(other) && verticalKey_ == other->verticalKey_;
}

bool SpatialReference::transform(osg::Vec3d const& in, SpatialReference const* to, osg::Vec3d& out) const {
  if (!isEquivalentTo(to)) return false;
  out = in;
  return true;
}

SpatialReference const* SpatialReference::getGeographicSRS() const { return isGeographic() ? this : create("wgs84"); }

GeoPoint::GeoPoint(SpatialReference const* srs, GeoPoint const& other) { other.transform(srs, *this); }
GeoPoint::~GeoPoint() = default;

void GeoPoint::set(SpatialReference const* srs, osg::Vec3d const& xyz, AltitudeMode mode) {
  srs_ = srs;
  xyz_ = xyz;
  mode_ = mode;
}

void GeoPoint::set(SpatialReference const* srs, double x, double y, double z, AltitudeMode mode) {
  set(srs, osg::Vec3d(x, y, z), mode);
}

GeoPoint GeoPoint::transform(SpatialReference const* srs) const { return {srs, *this}; }

bool GeoPoint::transform(SpatialReference const* srs, GeoPoint& out) const {
  osg::Vec3d moved;
  if (!isValid() || !srs_->transform(xyz_, srs, moved)) return false;
  out.set(srs, moved, mode_);
  return true;
}

bool GeoPoint::toWorld(osg::Vec3d& world) const {
  if (!isValid() || mode_ == ALTMODE_RELATIVE) return false;
  world = xyz_;
  return true;
}

bool GeoPoint::operator==(GeoPoint const& other) const {
  bool const sameSystem = srs_ == other.srs_ || (isValid() && srs_->isEquivalentTo(other.srs_.get()));
  return sameSystem && xyz_ == other.xyz_ && mode_ == other.mode_;
}

}  // namespace kelvane
}  // namespace osgEarth
