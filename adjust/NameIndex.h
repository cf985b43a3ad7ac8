// NameIndex: numbers of names in the order of their first use.
#pragma once

#include <utils/Export.h>
#include <utils/PlaceTable.h>

#include <string>
#include <string_view>
#include <vector>

namespace kvn {

/// The number table of the calculators. Every name has a number, an empty one too; there is no limit to run out of.
class KELVANE_EXPORT NameIndex {
 public:
  /// Number of the name; a new one gets the next number.
  int numberOf(std::string_view name);
  /// Number of the name, -1 when it has none.
  int find(std::string_view name) const;
  bool contains(std::string_view name) const { return find(name) >= 0; }
  int size() const { return static_cast<int>(list.size()); }
  std::vector<std::string> const& names() const { return list; }

 private:
  utils::PlaceTable numbers;
  std::vector<std::string> list;
};

}  // namespace kvn
