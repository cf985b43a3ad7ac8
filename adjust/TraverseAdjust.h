// TraverseAdjust: least-squares adjustment of a plane network of directions and distances.
#pragma once

#include "adjust/AdjustProgress.h"
#include "adjust/AlgorithmData.h"
#include "adjust/Matrix.h"
#include "records/CalculationRecords.h"
#include "records/MessType.h"
#include "records/NetworkFindings.h"
#include "records/PrecisionResults.h"

#include <utils/Export.h>
#include <utils/IProcessCancel.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kvn {

/// Indirect (parametric) adjustment. Unknowns are x and y of every point and one orientation of every station;
/// minimised is the weighted sum of the squared residuals of directions and distances. x is north, y is east;
/// directions run clockwise. Known points are unknowns too and are held by a weight of 1e20, so that the numbering of
/// the unknowns does not depend on which points are known:
///
///     2 n, 2 n + 1               corrections to x and y of point n, metres
///     2 pointsCount + i          correction to the orientation of station i, seconds of arc
///
/// The system is singular when a point hangs on a single observation, when two points lie at one place, or when a part
/// of the network has no connection to the known points.
///
/// Call `readAlgorithmData`, then `calculateAdjust` once, then the result operations.
class KELVANE_EXPORT TraverseAdjust : public Matrix, public utils::IProcessCancel {
 public:
  /// As `TraverseAdjust(2.0, 0.003, 3e-6, true)`.
  TraverseAdjust();
  /// @param angleError              standard error of one direction, seconds of arc, above 0.
  /// @param lineFixedError          fixed part a of the standard error of a distance, metres.
  /// @param lineProportionError     part b that grows with the distance S, a plain ratio: 3e-6 for 3 ppm.
  /// @param lineCalculateExpression how the parts are joined where residuals are summed: true a + b S, false the root
  /// of
  ///                                a² + (b S)². Weights always take a + b S.
  TraverseAdjust(double angleError, double lineFixedError, double lineProportionError, bool lineCalculateExpression);
  TraverseAdjust(TraverseAdjust const&);  ///< a value of its own, the normal equations included
  TraverseAdjust& operator=(TraverseAdjust const&);
  ~TraverseAdjust() override;

  /// Fills the arrays. Known points that no observation mentions are left out, with one `Warning` that lists them.
  ///
  /// @throws AlgorithmException DataError for azimuth observations or inconsistent counts; AllStationKnown when every
  ///         observed point is known; StationNotEnough for a station without a direction.
  /// @throws QLogicError "User Cancel", in a large network.
  void readAlgorithmData(AlgorithmData const& input);

  /// Approximate coordinates by a walk over the network: polar from known stations where there are distances, else by
  /// intersection in triangles with all three angles. Where the walk ends before all points are placed, the search
  /// goes on with everything that observations can give: polar points, intersections, resections, free stations, points
  /// by two distances whose side a direction decides, and groups of stations that are built in a frame of their own and
  /// brought in by what they share with the placed points. What the walk has placed stays.
  ///
  /// @throws AlgorithmException KnownPointNotEnough (with distances) or DataError (without), name "No enough data",
  ///         when points are left. Before that one `Error` message lists them with the reasons, and
  ///         `getUnplacedPoints` has them.
  /// @throws QLogicError "User Cancel", where the walk does not place all points; the walk itself does not ask.
  void calculateApproximate();

  /// Looks for observations that do not fit the others, about the approximate coordinates, and lists them in one
  /// `Warning`. `calculateAdjust` does it where its iteration does not settle or a residual asks for it. Needs
  /// `calculateApproximate`.
  ///
  /// @throws QLogicError "User Cancel".
  void checkObservations();

  /// Looks for points that can move without any observation feeling it, and for observations between points at one
  /// place, about the approximate coordinates; each is told in one `Error` message. `calculateAdjust` does it when its
  /// system has no solution. Needs `calculateApproximate`.
  ///
  /// @throws QLogicError "User Cancel".
  void checkDetermination();

  /// The full run: approximation, iteration until no coordinate moves by more than 0.01 m, precision results. Two
  /// iterations for good approximate coordinates.
  ///
  /// Where the iteration would not settle from the coordinates of the walk, and would from others, it starts from
  /// these: one gross error can lead a walk astray, and in a network of 300 points and more its errors add up.
  /// `getPointX0Y0` still gives those of the walk.
  ///
  /// @throws AlgorithmException as `calculateApproximate`; DataError, name "Calculate failed", for a singular system, a
  ///         correction that is not finite, or fewer observations than unknowns. Before that one `Error` message tells
  ///         which points can still move, and how; `getLooseMotions` has them.
  /// @throws QLogicError "User Cancel". @throws std::exception when the iteration does not settle within its limit.
  void calculateAdjust();

  /// `readAlgorithmData` and the full run in one call.
  void Adjust(AlgorithmData const& input);

  /// Whether distances between two known points count, which is off by default. They move no coordinate; counted, they
  /// check the known points and join the unit weight error and the redundancy, and `getLineErrorInfo` lists them last.
  /// To be set before `calculateAdjust`.
  void setCountControlDistances(bool count);

  /// Rounds after which an iteration that has not settled is given up, 10000 by default. What has not settled after
  /// some tens of rounds hardly ever does, and each of them costs an inversion.
  void setIterationLimit(int rounds);

  /// Number of unknowns from which on the normal equations are kept sparse and the inverse only where results read it;
  /// below it the matrix is full. The results are the same but for rounding. 200 by default.
  void setSparseFrom(int unknowns);

  /// Told where a run stands.
  void setProgressCall(AdjustProgressCall call);

  /// Whether the findings below are told as messages when they come up; on by default.
  void setTellFindings(bool tell);

  /// @throws QLogicError "User Cancel" when the cancel query says so.
  void checkCancelAndThrow() const;

  std::vector<UnplacedPoint> const& getUnplacedPoints() const;  ///< of the last `calculateApproximate`, if it failed
  std::vector<SuspectObservation> const& getSuspects() const;   ///< of the last `checkObservations`
  std::vector<LooseMotion> const& getLooseMotions() const;      ///< of the last `checkDetermination`
  std::vector<std::pair<std::string, std::string>> const& getCoincidentPoints() const;  ///< the same

  std::vector<PointInfo> getPointX0Y0() const;            ///< approximate coordinates in number order
  std::vector<PointInfo> getPoints() const;               ///< adjusted coordinates in number order
  std::vector<PointErrorInfo> getPointErrorInfo() const;  ///< the same with errors
  std::vector<LineErrorInfo> getLineErrorInfo() const;    ///< one for each distinct distance
  ErrorEllipseManage getErrorEllipsoid() const;
  std::vector<DirectionResult> getDirrectionInfo() const;  ///< in station order
  std::vector<TraverseInfo> getStationInfo() const;        ///< in station order: station, back point, fore points
  AdjustSummary getSummary() const;

 protected:
  /// Number of a name; a new name gets the next number, as long as there are fewer names than points, else -1.
  int getPointNumber(std::string const& name);
  /// Both ends match in either orientation.
  bool lineEqual(LineInfo const& a, LineInfo const& b) const;
  double calculateAzimuth(int i, int j) const;  ///< from current coordinates, radians, 0 to 2π
  double getAzimuth(int i, int j) const;        ///< observed azimuth; 1e30 when there is none
  double getLine(int i, int j) const;           ///< observed distance in either orientation; 1e30 when there is none
  double getAngle(int station, int i, int j) const;  ///< from i to j at a point, 0 to 2π; -1.0 when not observed
  void calculateX0Y0();
  void calculateX0Y0OnlyAngle();
  void calculateX0Y00910();

  // The steps of a run, for a derived class that drives them itself. The first of them after `readAlgorithmData` makes
  // normal equations of zeros. `calculateQQ` and `calculateMxMy` read the inverse that `calculateDx` leaves.
  // `calculateBTPBi` and `calculateQQ` throw AlgorithmException DataError, name "Calculate failed", for the number of
  // an unknown that is not there; before `readAlgorithmData` there are none.
  void calculateBTPB();
  /// Adds the error equation v = a x + l with the weight p, of any n unknowns: of points, too, that no observation of
  /// the input joins.
  void calculateBTPBi(double const* a, int const* index, double p, double l, int n);
  double calculateAB(int i, int j, double* a, int* index) const;  ///< seconds per metre; returns the azimuth
  double calculateCD(int i, int j, double* a, int* index) const;  ///< returns the distance
  double calculateDx();                                           ///< returns the largest correction of a coordinate
  double calculateV();                                            ///< returns the weighted sum of squared residuals
  double calculateQQ(double const* a, int const* index) const;    ///< cofactor; 0.0 when below 1e-8 in size
  static std::size_t ij(int i, int j);

  void calculateUnitError();
  void calculateMxMy();
  void calculateDirectionResult();
  void calculateLineErrorInfo();
  void calculateErrorEllipse();
  static double rad_dms(double radians);  ///< DDDMMSS.ss

 private:
  friend class AlgorithmAdjust;  // takes the results out: copies of a million points take seconds
  struct Data;

  /// The state, with the cancel query of this object.
  Data& ready() const;
  void requirePlaces(bool arePlaced, int failure) const;
  [[noreturn]] void fail() const;
  void requireUnknowns(int const* index, int n) const;
  void iterate();
  void calculateResults();
  LineErrorInfo lineResult(int i, int j, double observed, double residual);

  std::unique_ptr<Data> own;
};

}  // namespace kvn
