// A 32-bit value with a name for each of its enumerators, as stored in files and shown in results.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace utils {

/// Value class over a table `Table` that declares
///
///     enum Value : std::int32_t { First, Second };                 // numbered from 0 without gaps
///     static constexpr std::array<char const*, 2> names{...};      // the names, by value
///
/// The enumerators are members of the class, so `PointType::First` reads as with a plain enumeration.
template <typename Table>
class NamedValue : public Table {
 public:
  using Value = typename Table::Value;

  constexpr NamedValue() = default;
  constexpr NamedValue(Value value) : value_(value) {}

  constexpr operator Value() const { return value_; }

  /// Name of the value; empty for a number outside the table.
  std::string toString() const {
    auto const index = static_cast<std::size_t>(value_);
    return index < Table::names.size() ? Table::names[index] : "";
  }

  /// Value of a name, compared byte by byte with case; empty for an unknown name.
  static std::optional<NamedValue> fromString(std::string_view name) {
    for (std::size_t i = 0; i < Table::names.size(); ++i) {
      if (name == Table::names[i]) return NamedValue(static_cast<Value>(i));
    }
    return std::nullopt;
  }

 private:
  Value value_{};
};

}  // namespace utils
