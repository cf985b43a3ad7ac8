// HeightNetwork: the sights of a trigonometric height network, each for itself.
#pragma once

#include "adjust/PlaneNetwork.h"
#include "records/TraverseDataInfo.h"

#include <utils/Export.h>

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace kvn {

/// Zenith angles and slope distances between numbered points. Nothing is merged: a line that was sighted from both
/// ends, or in two set-ups, stands here twice. Angles are radians, lengths metres.
struct HeightNetwork {
  using Origin = PlaneNetwork::Origin;

  struct Point {
    std::string name;
    double height = std::numeric_limits<double>::quiet_NaN();  ///< of a known point; else NaN
    bool isKnown = false;
    Origin origin = {};
  };

  /// The instrument over a point at one height.
  struct SetUp {
    int station = 0;  ///< point number
    double instrumentHeight = 0.0;
    Origin origin = {};
  };

  /// A target at one height, the mean of all rounds of the set-up.
  struct Sight {
    int setUp = 0;
    int target = 0;  ///< point number
    double zenith = 0.0;
    double slope = 0.0;
    double targetHeight = 0.0;
    int readings = 2;  ///< of the zenith angle; 2 of a round on both faces
    int rounds = 1;    ///< of the distance, both faces being one
    Origin origin = {};
    double distance = std::numeric_limits<double>::quiet_NaN();    ///< horizontal
    double difference = std::numeric_limits<double>::quiet_NaN();  ///< of height, from mark to mark
    double error = 0.0;                                            ///< standard error of the difference
  };

  std::vector<Point> points;
  std::vector<SetUp> setUps;
  std::vector<Sight> sights;
};

/// A-priori standard errors of what makes a height difference.
struct HeightErrors {
  double zenithSeconds = 2.0;          ///< of the mean of both faces of one round, seconds of arc, above 0
  double distanceFixed = 0.003;        ///< of a slope distance S: a, metres, 0 or more
  double distanceProportional = 3e-6;  ///< b, plain ratio, 0 or more
  ObservationErrors::Form form = ObservationErrors::Form::Sum;  ///< a + b S, or the root of a² + (b S)²
  double height = 0.001;                                        ///< of each height of instrument or target, metres
  double refraction = 0.16;                                     ///< coefficient K
  double refractionError = 0.05;                                ///< of K
};

/// Gives every sight its horizontal distance D = S sin z, its height difference S cos z + i - t + (1 - K) D² / 2 R with
/// R = 6371393 m, and the standard error of that, by error propagation:
///
///     σ² = (D σz)² 2 / readings + (σS cos z)² / rounds + 2 σ(height)² + (D² σK / 2 R)².
///
/// Zenith angle, distance, heights and refraction of one sight are taken as independent of those of the others.
KELVANE_EXPORT void reduceSights(HeightNetwork& network, HeightErrors const& errors);

/// A sight that gives no height difference.
struct LeftOutSight {
  enum Reason {
    NoStation,      ///< no station row stands before it
    SightsItself,   ///< the target is the station
    NoAngle,        ///< no vertical reading, or one outside the circle
    NoDistance,     ///< neither the sight nor another one of the same occupation to the same target has a distance
    AlongVertical,  ///< straight up or down, as a sight whose vertical reading was left at 0
  };
  std::string station;
  std::string target;
  std::size_t row;  ///< place in the list of rows
  Reason reason;
};

struct HeightReduction {
  HeightNetwork network;              ///< without distances, differences and errors yet
  std::vector<LeftOutSight> leftOut;  ///< in row order
  /// Known stations to which later rows give another height, by name, each once.
  std::vector<std::string> contradicted;
  /// Stations of unknown height that no usable sight leaves or reaches, which are left out of the network; by name.
  std::vector<std::string> withoutSights = {};
};

/// The sights of a field book. A vertical reading V is the zenith angle V on the first face (V below π) and 2π - V on
/// the second, by the row's own type; the index error that the targets on both faces of an occupation tell is taken off
/// first. Sights of one occupation to one target at one height are averaged, and so are their distances; a sight
/// without a distance takes the horizontal one of the others to that target. Every station row opens a set-up. Known
/// are the stations with `isKnown`, by their first row.
KELVANE_EXPORT HeightReduction heightNetworkOf(std::vector<TraverseDataInfo> const& rows);

}  // namespace kvn
