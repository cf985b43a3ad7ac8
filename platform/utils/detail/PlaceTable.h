// utils::PlaceTable: finds by hash the place of a thing in a list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace utils {

/// An open table of eight bytes a cell: half of the hash, and the place. What stands at the place is compared by the
/// caller, so that no key is copied; nothing can be erased. Holds up to 2^32 - 2 places.
class PlaceTable {
 public:
  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

  /// The place of the thing with this hash, `kNowhere` when there is none.
  /// @param isAt  tells of a place whether the thing stands there.
  template <typename IsAt>
  std::size_t find(std::size_t hash, IsAt const& isAt) const {
    if (cells.empty()) return kNowhere;
    Cell const& cell = cells[cellOf(mixed(hash), isAt)];
    return cell.place == kFree ? kNowhere : cell.place;
  }

  /// The same, but a thing that is not there gets the place `fresh`, which is returned then.
  template <typename IsAt>
  std::size_t findOrAdd(std::size_t hash, std::size_t fresh, IsAt const& isAt) {
    if (2 * (count + 1) > cells.size()) grow();
    std::uint32_t const key = mixed(hash);
    Cell& cell = cells[cellOf(key, isAt)];
    if (cell.place != kFree) return cell.place;
    cell = {key, static_cast<std::uint32_t>(fresh)};
    ++count;
    return fresh;
  }

 private:
  static constexpr std::uint32_t kFree = 0xFFFFFFFFU;
  struct Cell {
    std::uint32_t key = 0;
    std::uint32_t place = kFree;
  };

  /// Multiplied by 2^64 over the golden ratio, so that all bits of the hash reach the upper half.
  static std::uint32_t mixed(std::size_t hash) {
    return static_cast<std::uint32_t>((std::uint64_t{hash} * 0x9E3779B97F4A7C15U) >> 32U);
  }

  /// The cell of the thing, or the free one where it would stand.
  template <typename IsAt>
  std::size_t cellOf(std::uint32_t key, IsAt const& isAt) const {
    std::size_t const mask = cells.size() - 1;
    std::size_t at = key & mask;
    while (cells[at].place != kFree && !(cells[at].key == key && isAt(std::size_t{cells[at].place}))) {
      at = (at + 1) & mask;
    }
    return at;
  }

  void grow() {
    std::vector<Cell> old = std::exchange(cells, std::vector<Cell>(cells.empty() ? kLeastCells : 2 * cells.size()));
    std::size_t const mask = cells.size() - 1;
    for (Cell const& cell : old) {
      if (cell.place == kFree) continue;
      std::size_t at = cell.key & mask;
      while (cells[at].place != kFree) at = (at + 1) & mask;
      cells[at] = cell;
    }
  }

  static constexpr std::size_t kLeastCells = 16;

  std::vector<Cell> cells;
  std::size_t count = 0;
};

}  // namespace utils
