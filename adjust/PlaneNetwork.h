// PlaneNetwork: the observations of a plane network, each for itself.
#pragma once

#include "records/Network.h"

#include <utils/Export.h>

#include <limits>
#include <string>
#include <vector>

namespace kvn {

/// Directions and horizontal distances between numbered points. Nothing is merged: what was measured twice stands here
/// twice, each with its standard error. x is north, y is east; directions run clockwise; angles are radians, lengths
/// metres. Numbers of points and set-ups are those of their places in the lists, from 0 on.
struct PlaneNetwork {
  /// Where something was read: a line of a file, from 1 on, or a row of a field book, from 0 on; 0 and -1 where it was
  /// not.
  struct Origin {
    int line = 0;
    int row = -1;
  };

  struct Point {
    std::string name;
    /// North; of an unknown point approximate, or NaN. Approximate coordinates decide between two places that agree
    /// with the observations, as two distances leave, and serve where no search places the point.
    double x = std::numeric_limits<double>::quiet_NaN();
    double y = std::numeric_limits<double>::quiet_NaN();
    bool isKnown = false;
    double error = 0.0;  ///< of each given coordinate of a known point, metres; 0 where it is fixed
    Origin origin = {};
  };

  /// The instrument on a point with one position of its circle: one unknown orientation.
  struct SetUp {
    /// How well repeated measurements agree, whatever the a-priori errors say.
    struct Scatter {
      double error =
          std::numeric_limits<double>::quiet_NaN();  ///< standard deviation of one of them, radians or metres
      int redundancy = 0;                            ///< of that number; 0 where nothing is repeated
    };

    int station = 0;  ///< point number
    Origin origin = {};
    Scatter directions = {};  ///< of a direction in one round, the rounds being turned onto their mean
    Scatter distances = {};   ///< of a distance in one round, over all targets; in the first set-up of a station record
  };

  struct Direction {
    int setUp = 0;
    int target = 0;      ///< point number
    double value = 0.0;  ///< radians; NaN where it is still to be measured
    double error = 0.0;  ///< standard error, radians, above 0
    /// Face readings of which the value is the mean, 2 of a round on both faces: as many as have a mean of its error,
    /// where the faces were read unequally often.
    double readings = 2.0;
    Origin origin = {};
  };

  struct Distance {
    int from = 0;  ///< point numbers
    int to = 0;
    double value = 0.0;  ///< metres; NaN where it is still to be measured
    double error = 0.0;  ///< standard error, metres, above 0
    int rounds = 1;      ///< of which the value is the mean, both faces being one
    Origin origin = {};
  };

  std::vector<Point> points;
  std::vector<SetUp> setUps;
  std::vector<Direction> directions;
  std::vector<Distance> distances;
};

/// A-priori standard errors of observations by their kind.
struct ObservationErrors {
  /// How the two parts of a distance's error are joined: a + b S, or the root of a² + (b S)².
  enum class Form { Sum, Root };

  double directionSeconds = 2.0;       ///< of a direction in one round on both faces, seconds of arc, above 0
  double distanceFixed = 0.003;        ///< a, metres, 0 or more
  double distanceProportional = 3e-6;  ///< b, plain ratio, 0 or more, but not 0 together with a
  Form form = Form::Sum;
  double control = 0.0;  ///< of each given coordinate of a known point, metres; 0 where they are fixed
};

/// Gives every observation and every known point its error: directions √(2 / readings) times that of a round,
/// distances that of one measurement over √rounds.
KELVANE_EXPORT void setErrors(PlaneNetwork& network, ObservationErrors const& errors);

/// Gives every observation the value that it has between the coordinates of its points: a direction the azimuth of its
/// line, 0 to 2π, as on a circle whose zero lies north. For a network that is planned, before `setErrors`.
/// @throws std::exception with the names of observed points that have no coordinates.
KELVANE_EXPORT void setPlannedValues(PlaneNetwork& network);

/// The observations of a network's lines, without errors yet. Lines of one station that follow each other are one
/// set-up; a line whose `horizontalAngleFlag` is false has no direction, and one of at most 1e-8 m no distance.
///
/// @throws AlgorithmException KnownPointNameRepeat for a known point that comes twice, DataError for a distance that is
///         negative or no number.
KELVANE_EXPORT PlaneNetwork planeNetworkOf(Network const& network);

}  // namespace kvn
