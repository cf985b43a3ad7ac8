#include <utils/XmlText.h>

#include <algorithm>
#include <string_view>

namespace utils {
namespace {

/// Markup other than elements, which can hold what looks like a tag, and where each ends; the first that fits counts.
struct Markup {
  std::string_view begin;
  std::string_view end;
};
constexpr Markup kMarkups[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}, {"<!", ">"}};

/// Goes through a text once, and no further than the first crowded element.
class Scan {
 public:
  explicit Scan(std::string_view whole) : text(whole) {}

  int run() {
    while (goTo("<")) {
      std::size_t const tag = at;
      if (!passMarkup() && passTag() > kMostXmlAttributes) return lineAt(tag);
    }
    return 0;
  }

 private:
  bool goTo(std::string_view what) {
    at = std::min(text.find(what, at), text.size());
    return at < text.size();
  }

  bool passMarkup() {
    for (Markup const& markup : kMarkups) {
      if (text.compare(at, markup.begin.size(), markup.begin) != 0) continue;
      at += markup.begin.size();
      if (goTo(markup.end)) at += markup.end.size();
      return true;
    }
    return false;
  }

  /// The number of values in quotes.
  int passTag() {
    int count = 0;
    for (++at; at < text.size() && text[at] != '>'; ++at) {
      if (text[at] != '"' && text[at] != '\'') continue;
      ++count;
      at = text.find(text[at], at + 1);
      if (at == std::string_view::npos) at = text.size() - 1;
    }
    return count;
  }

  int lineAt(std::size_t place) const {
    return 1 + static_cast<int>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(place), '\n'));
  }

  std::string_view text;
  std::size_t at = 0;
};

}  // namespace

int lineOfCrowdedElement(std::string const& text) { return Scan(text).run(); }

}  // namespace utils
