// Rounds of a field book, told from the order of its sights.
#pragma once

#include <utils/Circle.h>
#include "records/TraverseDataInfo.h"

#include <vector>

namespace kvn::detail {

/// Readings of one target on one position of the circle that differ by more are not readings of one target: 6', far
/// above what an instrument out of adjustment shows between its faces, and far below the turn of a circle between
/// rounds.
constexpr double kSameReading = 0.1 * utils::kPi / 180.0;

/// Where a reading of the horizontal circle belongs.
struct RoundPlace {
  int face = 0;              ///< 0 for the first one, 1 for the second
  bool fits = true;          ///< within `kSameReading` of the target's first reading on this position of the circle
  bool beginsRound = false;  ///< and is not the first reading of its station record
  bool isTurned = false;     ///< begins a round on another position of the circle
};

/// One place for each row; those of rows without a horizontal reading, and ahead of any station, say nothing.
///
/// A round on another position of the circle begins where the first target of the round before reads another value.
/// Without a turn the order tells: a round begins with a target that is sighted again, others having been sighted
/// meanwhile, on a face on which it was read already. Readings of one target in direct succession are one visit.
///
/// Not so where what begins there has a single target, or would part the two faces of more targets than it finds
/// complete: the sight closes a sweep then, or repeats a reading, and stays in its round. Of a visit to the first
/// target between two rounds as many sights as the first visit has begin the new one; the others close the old one.
/// Where a sweep runs back from the target that the last one ended with, its repeated readings are shared likewise.
/// What is read again in front of a round that begins with the first target and reads it in its turn stays in the old
/// one.
///
/// Linear in the number of rows.
std::vector<RoundPlace> roundPlaces(std::vector<TraverseDataInfo> const& rows);

}  // namespace kvn::detail
