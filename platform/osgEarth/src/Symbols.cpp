#include <utils/detail/InstalledCode.h>
#include <osgEarth/AltitudeSymbol>
#include <osgEarth/IconSymbol>
#include <osgEarth/LineSymbol>
#include <osgEarth/RenderSymbol>
#include <osgEarth/TextSymbol>

#include <algorithm>
#include <filesystem>
#include <map>
#include <mutex>
#include <osgDB/FileUtils>
#include <osgDB/ReadFile>

namespace osgEarth {
inline namespace kelvane {
namespace {

/// The image of a file, read once in the process. What cannot be read is looked for again the next time.
osg::ref_ptr<osg::Image> readImage(URI const& uri) {
  // Never destroyed: a host may draw after the statics of this library are gone.
  static auto* const mutex = new std::mutex;
  static auto* const cache = new std::map<std::string, osg::ref_ptr<osg::Image>>;
  std::string const path = uri.full();
  std::lock_guard<std::mutex> const hold(*mutex);
  auto const found = cache->find(path);
  if (found != cache->end()) return found->second;
  if (!osgDB::fileExists(path)) return nullptr;
  utils::InstalledCode const guard;
  osg::ref_ptr<osg::Image> image = osgDB::readRefImageFile(std::filesystem::absolute(path).string());
  if (image.valid()) cache->emplace(path, image);
  return image;
}

}  // namespace

std::string URI::full() const {
  // The icon files of a project are named as on Windows.
  std::string turned = base_;
  std::replace(turned.begin(), turned.end(), '\\', '/');
  std::string const found = osgDB::findDataFile(turned);
  return found.empty() ? turned : found;
}

Symbol::~Symbol() = default;

LineSymbol::LineSymbol(LineSymbol const& other, osg::CopyOp const& how)
    : Symbol(other, how),
      stroke_(other.stroke_),
      tessellation_(other.tessellation_),
      tessellationSize_(other.tessellationSize_),
      useGLLines_(other.useGLLines_) {}
LineSymbol::~LineSymbol() = default;

InstanceSymbol::InstanceSymbol(InstanceSymbol const& other, osg::CopyOp const& how)
    : Symbol(other, how), url_(other.url_), scale_(other.scale_) {}
InstanceSymbol::~InstanceSymbol() = default;

IconSymbol::IconSymbol(IconSymbol const& other, osg::CopyOp const& how)
    : InstanceSymbol(other, how),
      alignment_(other.alignment_),
      heading_(other.heading_),
      declutter_(other.declutter_),
      occlusionCull_(other.occlusionCull_),
      given_(other.given_),
      read_(other.read_),
      readFrom_(other.readFrom_) {}
IconSymbol::~IconSymbol() = default;

TextSymbol::TextSymbol(TextSymbol const& other, osg::CopyOp const& how)
    : Symbol(other, how),
      fill_(other.fill_),
      halo_(other.halo_),
      size_(other.size_),
      font_(other.font_),
      content_(other.content_),
      encoding_(other.encoding_),
      alignment_(other.alignment_),
      declutter_(other.declutter_),
      pixelOffset_(other.pixelOffset_) {}
TextSymbol::~TextSymbol() = default;

AltitudeSymbol::AltitudeSymbol(AltitudeSymbol const& other, osg::CopyOp const& how)
    : Symbol(other, how), clamping_(other.clamping_), technique_(other.technique_) {}
AltitudeSymbol::~AltitudeSymbol() = default;

RenderSymbol::RenderSymbol(RenderSymbol const& other, osg::CopyOp const& how)
    : Symbol(other, how), depthTest_(other.depthTest_), lighting_(other.lighting_), order_(other.order_) {}
RenderSymbol::~RenderSymbol() = default;

void IconSymbol::setImage(osg::Image* image) { given_ = image; }

bool IconSymbol::hasSameImage(IconSymbol const& other) const { return given_ == other.given_; }

osg::Image* IconSymbol::getImage(unsigned) const {
  if (given_.valid()) return given_.get();
  // Styles of several maps may hold this symbol, and each of them may be built in a thread of its own.
  static auto* const mutex = new std::mutex;
  std::lock_guard<std::mutex> const hold(*mutex);
  URI const& uri = url().get().literal();
  if (!readFrom_.isSetTo(uri.base())) {
    readFrom_ = uri.base();
    read_ = uri.empty() ? nullptr : readImage(uri);
  }
  return read_.get();
}

}  // namespace kelvane
}  // namespace osgEarth
