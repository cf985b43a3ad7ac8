// utils::Pieces: a text cut at a character, without copies.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace utils {

/// The pieces of the text that was cut last; they lead into it. An object that cuts many lines keeps its memory.
class Pieces {
 public:
  /// A delimiter at the very end yields no further empty piece, an empty text none at all.
  void cut(std::string_view text, char delimiter, bool skipEmpty) {
    list.clear();
    char const* const end = text.data() + text.size();
    for (char const* start = text.data(); start < end;) {
      char const* stop = start;
      while (stop != end && *stop != delimiter) ++stop;
      if (stop > start || !skipEmpty) list.emplace_back(start, static_cast<std::size_t>(stop - start));
      start = stop + 1;
    }
  }

  std::size_t size() const { return list.size(); }
  bool empty() const { return list.empty(); }
  std::string_view operator[](std::size_t i) const { return list[i]; }
  std::vector<std::string_view>::const_iterator begin() const { return list.begin(); }
  std::vector<std::string_view>::const_iterator end() const { return list.end(); }

 private:
  std::vector<std::string_view> list;
};

}  // namespace utils
