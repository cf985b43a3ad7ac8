// NameIndex: numbers of names in the order of their first use.
#pragma once

#include <utils/Export.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kvn {

/// The number table of the calculators. Every name has a number, an empty one too; there is no limit to run out of.
class KELVANE_EXPORT NameIndex {
 public:
  NameIndex();
  NameIndex(NameIndex const&);
  NameIndex(NameIndex&&) noexcept;  ///< leaves an object that can only be assigned to or destroyed
  NameIndex& operator=(NameIndex const&);
  NameIndex& operator=(NameIndex&&) noexcept;
  ~NameIndex();

  /// Number of the name; a new one gets the next number.
  int numberOf(std::string_view name);
  /// Number of the name, -1 when it has none.
  int find(std::string_view name) const;
  bool contains(std::string_view name) const;
  int size() const;
  std::vector<std::string> const& names() const;

 private:
  struct Data;
  std::unique_ptr<Data> own;
};

}  // namespace kvn
