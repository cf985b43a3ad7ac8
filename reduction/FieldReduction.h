// FieldReduction: from the rows of a field book to a network with a surveyor's care.
#pragma once

#include "adjust/PlaneNetwork.h"
#include "records/FieldFinding.h"
#include "records/Network.h"
#include "records/TraverseDataInfo.h"

#include <utils/Export.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kvn {

/// The two faces of one target in one round.
struct FacePair {
  std::string station;
  std::string target;
  std::size_t firstRow = 0;        ///< first face
  std::size_t secondRow = 0;       ///< second face
  double doubleCollimation = 0.0;  ///< first face less second face, turned by half a circle; radians, -π to π
  double indexError = 0.0;         ///< (V1 + V2 - 2π) / 2, radians; NaN when a vertical reading is missing
};

/// The distances of a station to one target, where there are several: of both faces, all rounds and all set-ups.
struct DistanceSpread {
  std::string station;
  std::string target;
  std::size_t row = 0;    ///< the later one of the two sights that differ most
  double least = 0.0;     ///< horizontal, metres
  double greatest = 0.0;  ///< the same
  int count = 0;
  bool isOfTwoSetUps = false;  ///< the two that differ most
};

/// What `reduceField` makes of the rows.
struct FieldReduction {
  Network network;                     ///< as far as it goes when there is an `Error`; one circle a station
  PlaneNetwork observations;           ///< every set-up by itself; without errors yet
  std::vector<FieldFinding> findings;  ///< in the order of the rows, by station
  std::vector<FacePair> pairs;
  /// The first finding of a round that `network` lacks, since nothing turns it onto the others of its station's one
  /// circle; `observations` has it.
  std::optional<std::size_t> lostRound;
  std::vector<DistanceSpread> spreads = {};  ///< by station and target; `inspectDistances` judges them
};

/// Directions and distances of all stations, independent of the order in which the targets of a round were sighted.
///
/// A target is known by its name and its face by the vertical reading; without one, by the horizontal reading against
/// the target's first one. A direction is the mean of the two faces, a circle reading of the first face from 0 to 2π;
/// sights on one face alone count as they are, with a `Warning`. A round begins where the first target of a round reads
/// another value, or where a target is sighted again on a face on which the round has it, unless that closes a sweep.
/// Rounds and further occupations of a station are turned onto the first one by the mean difference of their common
/// targets, and count in the mean by their readings. A distance is the mean of the sights that measured one. Known
/// points are the stations with `isKnown`, each once, without height.
///
/// `observations` keeps the set-ups apart: each station record has orientations of its own, one for all its rounds with
/// the same targets, which are averaged with the number of their readings, and one for each round with others.
///
/// `Error` findings: readings of one target on one position of the circle, or of the first target of a set-up, that
/// differ by more than 6';
/// a known point with two positions; a row without a name; a negative distance.
KELVANE_EXPORT FieldReduction reduceField(std::vector<TraverseDataInfo> const& rows);

/// Marks as known the station rows that carry coordinates: a job file has no other sign for it. Coordinates that are
/// all below 1e-5 m in size mean that there are none.
KELVANE_EXPORT void markKnownStations(std::vector<TraverseDataInfo>& rows);

}  // namespace kvn
