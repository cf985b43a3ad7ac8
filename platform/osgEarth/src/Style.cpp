#include "SymbolEquality.h"

#include <utils/detail/PrivateData.h>
#include <osgEarth/Style>

#include <algorithm>
#include <array>
#include <cstddef>
#include <mutex>

namespace osgEarth {
inline namespace kelvane {

/// What styles have in common that are equal, as long as nobody may change a symbol of it.
struct KELVANE_PRIVATE Style::Content : osg::Referenced {
  Content(std::string const& styleName, SymbolList const& list) : name(styleName), symbols(list) {}

  bool isHandedOut(Symbol const* symbol) const {
    return isListHandedOut || std::find(handedOut.begin(), handedOut.end(), symbol) != handedOut.end();
  }
  bool isFixed() const { return handedOut.empty() && !isListHandedOut; }

  std::string name;
  SymbolList symbols;
  std::vector<Symbol const*> handedOut;  ///< to which somebody may hold a pointer, and change them
  bool isListHandedOut = false;

 protected:
  ~Content() override = default;
};

namespace {

bool sameClass(Symbol const& a, Symbol const& b) { return a.isSameKindAs(&b) && b.isSameKindAs(&a); }

/// The last few objects that were asked for. A map has few looks: most names stand on one of eight sides of an icon.
template <typename Object>
class Recent {
 public:
  /// The one that `is` equal, or what `make` makes.
  template <typename Is, typename Make>
  osg::ref_ptr<Object> get(Is const& is, Make const& make) {
    std::lock_guard<std::mutex> const hold(mutex);
    for (auto const& object : objects) {
      if (object.valid() && is(*object)) return object;
    }
    osg::ref_ptr<Object>& oldest = objects[next++ % objects.size()];
    oldest = make();
    return oldest;
  }

 private:
  static constexpr std::size_t kKept = 32;

  std::mutex mutex;
  std::array<osg::ref_ptr<Object>, kKept> objects;
  std::size_t next = 0;
};

/// A symbol that nobody else can change.
osg::ref_ptr<Symbol> fixedSymbol(Symbol const& symbol, osg::CopyOp const& how) {
  // Never destroyed: a host may make styles after the statics of this library are gone.
  static auto* const recent = new Recent<Symbol>;
  auto const clone = [&] { return osg::ref_ptr<Symbol>(static_cast<Symbol*>(symbol.clone(how))); };
  if (!canBeCompared(symbol)) return clone();
  return recent->get([&symbol](Symbol const& other) { return isEqual(other, symbol); }, clone);
}

}  // namespace

Style::Style(std::string const& name) {
  if (!name.empty()) content_ = new Content(name, {});
}

Style::Style(Style const& other, osg::CopyOp const& how) {
  if (!other.content_.valid()) return;
  if (how.getCopyFlags() == osg::CopyOp::SHALLOW_COPY) {
    other.takeAllForChange();
    content_ = new Content(other.getName(), other.content_->symbols);
    content_->handedOut.assign(content_->symbols.begin(), content_->symbols.end());
    return;
  }
  if (other.content_->isFixed()) {
    content_ = other.content_;
    return;
  }
  SymbolList symbols;
  for (auto const& symbol : other.content_->symbols) {
    symbols.push_back(other.content_->isHandedOut(symbol) ? fixedSymbol(*symbol, how) : symbol);
  }
  static auto* const recent = new Recent<Content>;
  content_ =
      recent->get([&](Content const& known) { return known.symbols == symbols && known.name == other.getName(); },
                  [&] { return osg::ref_ptr<Content>(new Content(other.getName(), symbols)); });
}

Style::Style(Style&& other) noexcept { content_.swap(other.content_); }

Style& Style::operator=(Style const& other) {
  if (this == &other) return *this;
  Style copy(other);
  content_.swap(copy.content_);
  return *this;
}

Style& Style::operator=(Style&& other) noexcept {
  content_.swap(other.content_);
  return *this;
}

Style::~Style() = default;

std::string const& Style::getName() const {
  static auto const* const none = new std::string;
  return content_.valid() ? content_->name : *none;
}

void Style::setName(std::string const& name) { ownContent().name = name; }

SymbolList const& Style::symbols() const {
  static auto const* const none = new SymbolList;
  return content_.valid() ? content_->symbols : *none;
}

/// Content that no other style holds.
Style::Content& Style::ownContent() const {
  if (!content_.valid()) {
    content_ = new Content({}, {});
  } else if (content_->referenceCount() > 1) {
    content_ = new Content(content_->name, content_->symbols);
  }
  return *content_;
}

/// A symbol that other styles hold too is copied before it can be changed.
Symbol* Style::takenForChange(Symbol* symbol) const {
  if (content_->isHandedOut(symbol)) return symbol;
  Content& content = ownContent();
  auto const own = std::find(content.symbols.begin(), content.symbols.end(), symbol);
  if (symbol->referenceCount() > 1) *own = static_cast<Symbol*>(symbol->clone(osg::CopyOp(osg::CopyOp::DEEP_COPY_ALL)));
  content.handedOut.push_back(*own);
  return *own;
}

void Style::takeAllForChange() const {
  for (std::size_t i = 0; i < symbols().size(); ++i) takenForChange(symbols()[i]);
}

SymbolList& Style::symbols() {
  takeAllForChange();
  Content& content = ownContent();
  content.isListHandedOut = true;
  return content.symbols;
}

void Style::add(Symbol* symbol) {
  if (symbol == nullptr) return;
  put(symbol);
  content_->handedOut.push_back(symbol);
}

void Style::put(Symbol* symbol) {
  SymbolList& symbols = ownContent().symbols;
  auto const isOfClass = [symbol](auto const& own) { return sameClass(*own, *symbol); };
  auto const found = std::find_if(symbols.begin(), symbols.end(), isOfClass);
  if (found == symbols.end()) {
    symbols.emplace_back(symbol);
  } else {
    *found = symbol;
  }
}

bool Style::remove(Symbol* symbol) {
  if (symbol == nullptr) return false;
  SymbolList& symbols = ownContent().symbols;
  symbols.erase(std::find(symbols.begin(), symbols.end(), symbol));
  return true;
}

Style Style::combineWith(Style const& other) const {
  Style result(*this);
  Style const laidOver(other);
  for (auto const& symbol : laidOver.symbols()) result.put(symbol.get());
  return result;
}

}  // namespace kelvane
}  // namespace osgEarth
