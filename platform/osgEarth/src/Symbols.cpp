#include <utils/detail/InstalledCode.h>
#include <osgEarth/Style>

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

bool sameClass(Symbol const& a, Symbol const& b) { return a.isSameKindAs(&b) && b.isSameKindAs(&a); }

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

osg::Image* IconSymbol::getImage(unsigned) const {
  if (given_.valid()) return given_.get();
  URI const& uri = url().get().literal();
  if (!readFrom_.isSetTo(uri.base())) {
    readFrom_ = uri.base();
    read_ = uri.empty() ? nullptr : readImage(uri);
  }
  return read_.get();
}

Style::Style(Style const& other, osg::CopyOp const& how) : name_(other.name_) {
  bool const isShared = how.getCopyFlags() == osg::CopyOp::SHALLOW_COPY;
  if (isShared) other.takeAllForChange();
  symbols_.reserve(other.symbols_.size());
  for (auto const& symbol : other.symbols_) {
    bool const isCommon = isShared || !other.isHandedOut(symbol);
    symbols_.emplace_back(isCommon ? symbol.get() : static_cast<Symbol*>(symbol->clone(how)));
    if (isShared) handedOut_.push_back(symbol);
  }
}

bool Style::isHandedOut(Symbol const* symbol) const {
  return isListHandedOut_ || std::find(handedOut_.begin(), handedOut_.end(), symbol) != handedOut_.end();
}

/// A symbol that other styles hold too is copied before it can be changed.
Symbol* Style::takenForChange(Symbol* symbol) const {
  if (isHandedOut(symbol)) return symbol;
  auto const own = std::find(symbols_.begin(), symbols_.end(), symbol);
  if (symbol->referenceCount() > 1) *own = static_cast<Symbol*>(symbol->clone(osg::CopyOp(osg::CopyOp::DEEP_COPY_ALL)));
  handedOut_.push_back(*own);
  return *own;
}

void Style::takeAllForChange() const {
  for (std::size_t i = 0; i < symbols_.size(); ++i) takenForChange(symbols_[i]);
}

SymbolList& Style::symbols() {
  takeAllForChange();
  isListHandedOut_ = true;
  return symbols_;
}

Style& Style::operator=(Style const& other) {
  if (this == &other) return *this;
  Style copy(other);
  name_.swap(copy.name_);
  symbols_.swap(copy.symbols_);
  handedOut_.swap(copy.handedOut_);
  isListHandedOut_ = false;
  return *this;
}

void Style::add(Symbol* symbol) {
  if (symbol == nullptr) return;
  handedOut_.push_back(symbol);
  for (auto& own : symbols_) {
    if (sameClass(*own, *symbol)) {
      own = symbol;
      return;
    }
  }
  symbols_.emplace_back(symbol);
}

Style Style::combineWith(Style const& other) const {
  Style result(*this);
  Style const laidOver(other);
  for (auto const& symbol : laidOver.symbols_) result.add(symbol.get());
  return result;
}

}  // namespace kelvane
}  // namespace osgEarth
