// Frame: places of points and orientations of stations that follow from each other.
#pragma once

#include "adjust/linalg/Poll.h"
#include "adjust/plane/NumberedNetwork.h"
#include "adjust/start/Locus.h"

#include <optional>
#include <queue>
#include <unordered_map>
#include <vector>

namespace kvn::detail {

/// A part of a network in one system of coordinates: that of the known points, or one of its own, which then lies
/// anywhere, is turned anyhow and, as long as no distance lies in it, has any scale.
///
/// It grows by what its observations give: a placed station is oriented by its placed targets; a point is placed where
/// two or more loci meet, whatever mixture of rays, distances and angles at the point they are; a station is oriented
/// by one that it sees and that sees it, wherever the two are. Points that more observations hold come first. Of all
/// meets of two loci the one is taken with which most observations agree, so that a gross error finds no support.
class Frame {
 public:
  /// @param owner  of each station, the frame that may orient it: this one or nobody (-1), which it then becomes.
  Frame(NumberedNetwork const& network, std::vector<int>& owner, int id, bool hasScale);

  bool has(int point) const { return places.count(point) != 0; }
  bool isOriented(int station) const { return circles.count(station) != 0; }
  Place at(int point) const { return places.at(point); }
  double orientation(int station) const { return circles.at(station).azimuth; }  ///< azimuth of the circle's zero
  bool hasScale() const { return scaled; }
  std::vector<int> const& points() const { return placed; }      ///< in the order in which they were placed
  std::vector<int> const& stations() const { return oriented; }  ///< in the order in which they were oriented

  void place(int point, Place at);
  void orient(int station, double azimuth);
  /// About where a point lies, NaN where that is not known: it decides between two places that agree with all
  /// observations. One for each point of the network, and none to take them away; they stay with their owner.
  void setHints(std::vector<Place> const* list) { hints = list; }
  /// Points with two places of which the hint is not clearly nearer to one.
  std::vector<int> const& undecided() const { return undecidedPoints; }
  /// Places and orients what follows, until nothing moves. Whenever the frame has grown by half, all of it is refined:
  /// errors that each point hands on to the next would grow with the distance. The points placed before the first
  /// growth stay.
  void grow(Poll const& poll = {});
  /// z becomes factor z + shift; the orientations turn with it.
  void transform(Place factor, Place shift);
  /// What the frame says of a point that it does not have.
  std::vector<Locus> lociOf(int point) const;
  /// All stations that are oriented here may be oriented by another frame.
  void release();

 private:
  struct Circle {
    double azimuth;
    int targets;  ///< placed targets from which it follows
  };
  /// How sharply two loci have to cross.
  enum Rigour { Sharp, Fair, Weak, kRigours };
  using Waiting = std::pair<int, int>;  // observations, minus the point

  bool mayOrient(int station) const;
  double pointError() const;
  void tellOfPlace(int point);
  void tellOfCircle(int station);
  void addLocus(int point);
  void orientByTargets(int station);
  bool orientByPartner();
  bool takeScale();
  void addRays(int point, std::vector<Locus>& loci) const;
  void addArcs(int station, std::vector<Locus>& loci) const;
  bool tryNext(Rigour rigour);
  NumberedNetwork inside(std::vector<int>& stationsInside) const;
  void refine(Poll const& poll);

  NumberedNetwork const& net;
  std::vector<int>& ownerOf;
  int self;
  bool scaled;
  std::unordered_map<int, Place> places;
  std::unordered_map<int, Circle> circles;
  std::vector<int> placed;
  std::vector<int> oriented;
  std::vector<Place> const* hints = nullptr;
  std::vector<int> undecidedPoints;
  int anchors = -1;           // points at the front of the list that stay; -1 before the first growth
  int scaleLine = -1;         // a distance between placed points that waits to give the scale
  std::size_t refinedAt = 0;  // points at the last refinement
  std::unordered_map<int, int> lociCount;
  std::unordered_map<int, int> placedTargets;  // sights of each station to placed points
  std::priority_queue<Waiting> ready[kRigours];
  std::queue<std::pair<int, double>> partners;  // a station and the orientation that the other one gives it
};

struct Meeting {
  std::optional<Place> place;
  bool isAmbiguous = false;  ///< there is no place because several agree with all loci
};
/// The place with which most of the loci agree; nothing where fewer than two cross at a sine of `sharpness` or more, or
/// where two places agree with all of them.
///
/// @param hint  about where the place is, NaN where that is not known: of two places that agree it takes the one that
///              is clearly nearer.
Meeting meetingPlace(std::vector<Locus> const& loci, double sharpness, Place hint = kNoPlace);

}  // namespace kvn::detail
