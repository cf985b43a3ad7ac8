// SiteDrawing: what a picture or an exchange file shows of a job.
#pragma once

#include <utils/Export.h>

#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace kvn {

class Job;
class PlaneAdjustment;
struct PlaneSettings;
struct ReportContent;

/// A standard error ellipse. The confidence ellipse is `SiteDrawing::confidenceFactor` times as large.
struct SiteEllipse {
  double semiMajor = 0.0;  ///< metres
  double semiMinor = 0.0;
  double bearing = 0.0;  ///< azimuth of the major axis, radians, 0 to π
};

/// Where a known point that is not held has come to lie, from its given coordinates, metres.
struct SiteShift {
  double north = 0.0;
  double east = 0.0;
};

/// A point with finite coordinates. What was not computed is empty, never 0.
struct SitePoint {
  std::string name;  ///< UTF-8; may hold any sign, line ends too
  double x = 0.0;    ///< north, metres
  double y = 0.0;    ///< east, metres
  std::optional<double> height;
  bool isKnown = false;   ///< its coordinates were given
  bool isHeld = false;    ///< known, and without an error of its own
  bool isChecked = true;  ///< false where an error of some observation moves it and shows nowhere
  bool isStation = false;
  bool isSidePoint = false;  ///< new, never a station, and seen from one station alone
  bool isSuspect = false;    ///< a known point that does not fit; a station whose angle would explain a misclosure
  std::optional<double> mx;  ///< standard errors, metres
  std::optional<double> my;
  std::optional<double> mp;  ///< root of mx² + my²
  std::optional<double> heightError;
  std::optional<SiteEllipse> ellipse;
  std::optional<SiteShift> shift;
  bool isApproximate = false;  ///< placed, not adjusted: good for a picture alone
};

/// All that was observed between two points, in whichever way.
struct SiteLine {
  std::size_t from = 0;  ///< places in `SiteDrawing::points`; the line was first observed from here
  std::size_t to = 0;
  bool hasDirection = false;
  bool hasDistance = false;
  bool hasZenith = false;        ///< a height difference was computed along it
  bool bothWays = false;         ///< observed from both ends
  bool isTraverseLeg = false;    ///< between two stations of a chain
  bool isSuspect = false;        ///< an observation of it is a suspect, or out as one
  std::size_t observations = 0;  ///< directions and distances, in both ways
  /// Largest test of its observations, above 1 is marked (see `PlaneObservation::test`); NaN where nothing is tested.
  double test = std::numeric_limits<double>::quiet_NaN();
};

struct SiteDrawing {
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  enum class Source {
    Coordinates,   ///< nothing was adjusted: known and given coordinates, and what was observed between them
    LeastSquares,  ///< every observation by itself
    Literal,       ///< the library's own road, to the letter of the formats
    Traverses,     ///< single traverses
    Plan,          ///< coordinates as told, errors as they will be
  };

  Source source = Source::Coordinates;
  /// After least squares and of a plan the points of the `PlaneNetwork`, with their numbers. A list without
  /// observations has a point for each of its rows, those of one name too.
  std::vector<SitePoint> points;
  std::vector<SiteLine> lines;  ///< each pair of points once
  /// Points that are observed or listed and have no coordinates, or none on earth; UTF-8, each once.
  std::vector<std::string> withoutPlace;

  /// Adjusted and known heights of points without a place, whose x and y are NaN: for tables alone. `withoutPlace` has
  /// them too.
  std::vector<SitePoint> heightsAlone;

  double confidence = 0.0;        ///< of the confidence ellipses, as 0.95; 0 where there are none
  double confidenceFactor = 0.0;  ///< confidence ellipses are the standard ones times this; 0 where there are none
  bool isFree = false;            ///< no known point is held
  std::string title;              ///< name of the file that was read, without its folder, UTF-8; may be empty

  // Where the observations of the adjustments are drawn: places in `lines`, parallel to the lists of the networks;
  // kNone for what has no place. Empty without the adjustment.
  std::vector<std::size_t> lineOfDirection;
  std::vector<std::size_t> lineOfDistance;
  std::vector<std::size_t> lineOfSight;    ///< of the `HeightNetwork`
  std::vector<std::size_t> pointOfHeight;  ///< place in `points` of each point of the `HeightNetwork`
};

/// Of the last run of a job; of a job without one, the coordinates that it was given. A run of heights adds them to the
/// points that have coordinates, whichever way. Linear in the size of the job.
KELVANE_EXPORT SiteDrawing siteDrawingOf(Job const& job);
/// Of an adjustment that came to an end, for a host that has no Job.
/// @param settings  those that it was made with.
KELVANE_EXPORT SiteDrawing siteDrawingOf(PlaneAdjustment const& adjustment, PlaneSettings const& settings);
/// Of runs that a host has made itself.
KELVANE_EXPORT SiteDrawing siteDrawingOf(ReportContent const& content);

}  // namespace kvn
