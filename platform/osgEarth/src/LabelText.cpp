#include "LabelText.h"

#include "SharedCache.h"

#include <utils/detail/InstalledCode.h>

#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <osgText/Font>

namespace osgEarth {
inline namespace kelvane {
namespace {

constexpr float kGapPixels = 2.0f;  // between icon and text

/// The font of a file, read once in the process; null, which is the built-in font, for one that cannot be read.
osg::ref_ptr<osgText::Font> fontOf(std::string const& file) {
  if (file.empty()) return nullptr;
  // Never destroyed: a host may draw after the statics of this library are gone.
  static auto* const mutex = new std::mutex;
  static auto* const fonts = new std::map<std::string, osg::ref_ptr<osgText::Font>>;
  std::lock_guard<std::mutex> const hold(*mutex);
  auto const found = fonts->find(file);
  if (found != fonts->end()) return found->second;
  utils::InstalledCode const guard;
  return fonts->emplace(file, osgText::readRefFontFile(file)).first->second;
}

osgText::String::Encoding encodingOf(TextSymbol::Encoding encoding) {
  switch (encoding) {
    case TextSymbol::ENCODING_UTF8:
      return osgText::String::ENCODING_UTF8;
    case TextSymbol::ENCODING_UTF16:
      return osgText::String::ENCODING_UTF16;
    case TextSymbol::ENCODING_UTF32:
      return osgText::String::ENCODING_UTF32;
    default:
      return osgText::String::ENCODING_ASCII;
  }
}

using Text = osgText::Text;

osgText::Text::AlignmentType alignmentOf(TextSymbol::Alignment alignment) {
  // In the order of TextSymbol::Alignment.
  constexpr std::array kAlignments{Text::LEFT_TOP,
                                   Text::LEFT_CENTER,
                                   Text::LEFT_BOTTOM,
                                   Text::CENTER_TOP,
                                   Text::CENTER_CENTER,
                                   Text::CENTER_BOTTOM,
                                   Text::RIGHT_TOP,
                                   Text::RIGHT_CENTER,
                                   Text::RIGHT_BOTTOM,
                                   Text::LEFT_BASE_LINE,
                                   Text::CENTER_BASE_LINE,
                                   Text::RIGHT_BASE_LINE,
                                   Text::LEFT_BOTTOM_BASE_LINE,
                                   Text::CENTER_BOTTOM_BASE_LINE,
                                   Text::RIGHT_BOTTOM_BASE_LINE};
  return kAlignments.at(static_cast<std::size_t>(alignment));
}

/// Which side of the icon a text stands on: a text that is aligned by its left end stands right of it.
int sideOf(Text::AlignmentType alignment) {
  switch (alignment) {
    case Text::LEFT_TOP:
    case Text::LEFT_CENTER:
    case Text::LEFT_BOTTOM:
    case Text::LEFT_BASE_LINE:
    case Text::LEFT_BOTTOM_BASE_LINE:
      return 1;
    case Text::RIGHT_TOP:
    case Text::RIGHT_CENTER:
    case Text::RIGHT_BOTTOM:
    case Text::RIGHT_BASE_LINE:
    case Text::RIGHT_BOTTOM_BASE_LINE:
      return -1;
    default:
      return 0;
  }
}

/// Below, level with the middle or above: a text that is aligned by its top stands below.
int levelOf(Text::AlignmentType alignment) {
  switch (alignment) {
    case Text::LEFT_TOP:
    case Text::CENTER_TOP:
    case Text::RIGHT_TOP:
      return -1;
    case Text::LEFT_BOTTOM:
    case Text::CENTER_BOTTOM:
    case Text::RIGHT_BOTTOM:
      return 1;
    default:
      return 0;
  }
}

float along(int side, float low, float high) {
  if (side == 0) return (low + high) / 2;
  return side < 0 ? low - kGapPixels : high + kGapPixels;
}

osg::Vec3 placeBeside(osg::BoundingBox const& icon, TextSymbol const& symbol) {
  osg::Vec2s const& offset = symbol.pixelOffset().get();
  osg::Vec3 place(offset.x(), offset.y(), 0.0f);
  if (icon.valid()) {
    Text::AlignmentType const alignment = alignmentOf(symbol.alignment().get());
    place.x() += along(sideOf(alignment), icon.xMin(), icon.xMax());
    place.y() += along(levelOf(alignment), icon.yMin(), icon.yMax());
  }
  return place;
}

/// osgText shares one state among all texts of a kind; this limits the number of its owners (see SharedCache).
osg::ref_ptr<osg::StateSet> stateOf(osgText::Text& letters) {
  osg::StateSet* const common = letters.getStateSet();
  if (common == nullptr) return nullptr;
  // Never destroyed: nodes of a host may outlive the statics of this library.
  static auto* const copies = new SharedCache<osg::StateSet*, osg::StateSet>;
  return copies->get(common, [&] { return osg::ref_ptr<osg::StateSet>(new osg::StateSet(*common)); });
}

/// Several contexts may draw a label at once.
std::mutex& lettersMutex() {
  static auto* const mutex = new std::mutex;
  return *mutex;
}

}  // namespace

LabelText::LabelText(std::string const& text, TextSymbol const* symbol, osg::BoundingBox const& icon)
    : symbol_(symbol != nullptr ? symbol : new TextSymbol), position_(placeBeside(icon, *symbol_)) {
  setUseDisplayList(false);
  setUseVertexBufferObjects(true);
  _supportsVertexBufferObjects = true;
  givesWay = symbol_->declutter().get();
  setContent(text);
}

LabelText::~LabelText() = default;

void LabelText::setContent(std::string const& text) {
  text_ = text;
  osg::ref_ptr<osgText::Text> const written = letters();
  setStateSet(stateOf(*written));
  setInitialBound(written->getBoundingBox());
  std::lock_guard<std::mutex> const hold(lettersMutex());
  drawn_ = nullptr;
}

osg::ref_ptr<osgText::Text> LabelText::letters() const {
  utils::InstalledCode const guard;
  osg::ref_ptr<osgText::Text> written = new osgText::Text;
  float const size = std::max(symbol_->size().get().eval(), 1.0f);
  written->setFont(fontOf(symbol_->font().get()));
  written->setCharacterSize(size);
  written->setFontResolution(static_cast<unsigned>(size), static_cast<unsigned>(size));
  written->setColor(symbol_->fill().get().color());
  written->setAlignment(alignmentOf(symbol_->alignment().get()));
  if (symbol_->halo().isSet()) {
    written->setBackdropType(osgText::Text::OUTLINE);
    written->setBackdropColor(symbol_->halo().get().color());
  }
  written->setPosition(position_);
  written->setText(text_, encodingOf(symbol_->encoding().get()));
  return written;
}

void LabelText::accept(osg::PrimitiveFunctor& functor) const { letters()->accept(functor); }

void LabelText::drawImplementation(osg::RenderInfo& info) const {
  osg::ref_ptr<osgText::Text> written;
  {
    std::lock_guard<std::mutex> const hold(lettersMutex());
    if (!drawn_.valid()) {
      drawn_ = letters();
      // The label has it; many owners would make its removal slow.
      drawn_->setStateSet(nullptr);
    }
    written = drawn_;
  }
  written->drawImplementation(info);
}

osg::ref_ptr<osgText::Text> LabelText::lettersSoFar() const {
  std::lock_guard<std::mutex> const hold(lettersMutex());
  return drawn_;
}

void LabelText::resizeGLObjectBuffers(unsigned maxSize) {
  osg::Drawable::resizeGLObjectBuffers(maxSize);
  osg::resizeGLObjectBuffers(lettersSoFar(), maxSize);
}

void LabelText::releaseGLObjects(osg::State* state) const {
  osg::Drawable::releaseGLObjects(state);
  osg::releaseGLObjects(lettersSoFar(), state);
}

}  // namespace kelvane
}  // namespace osgEarth
