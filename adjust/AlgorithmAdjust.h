// AlgorithmAdjust: runs a plane calculation of a project and keeps its results.
#pragma once

#include "adjust/AdjustProgress.h"
#include "adjust/AlgorithmData.h"
#include "core/Configure.h"
#include "records/CalculationRecords.h"
#include "records/CoordinatePointInfo.h"
#include "records/Network.h"
#include "records/PrecisionResults.h"
#include "records/TraverseDataInfo.h"

#include <utils/Export.h>
#include <utils/IProcessCancel.h>

#include <memory>
#include <vector>

namespace kvn {

/// Call `setConfigure`, `setNetworkData` once, then `calculateAdjust`; then read the lists. Failures pass through, and
/// the lists stay as they were before the run.
class KELVANE_EXPORT AlgorithmAdjust : public utils::IProcessCancel {
 public:
  AlgorithmAdjust();
  AlgorithmAdjust(AlgorithmAdjust const&);
  AlgorithmAdjust& operator=(AlgorithmAdjust const&);
  ~AlgorithmAdjust() override;

  void setConfigure(Configure const& value);
  /// One network in the object's life: a second one appends and fails on the name checks.
  /// @throws AlgorithmException as `AlgorithmData::readNetworkData`.
  void setNetworkData(Network const& network, MissingDirection missing = MissingDirection::IsZero);

  /// Whether distances between two known points count in a least-squares run; off by default. See
  /// `TraverseAdjust::setCountControlDistances`.
  void setCountControlDistances(bool count);
  /// See `TraverseAdjust::setIterationLimit`.
  void setIterationLimit(int rounds);
  /// Told where a least-squares run stands.
  void setProgressCall(AdjustProgressCall call);
  /// Whether a closed traverse takes polygons walked clockwise too; off by default. See
  /// `CloseTraverse::setFoldToNearest`.
  void setFoldToNearest(bool fold);

  /// Runs the method that `Configure::AdjustMethod` names: 0 least squares, 1 `OpenTraverse`, 2 `ConnectTraverse`,
  /// 3 `CloseTraverse`; any other number does nothing.
  ///
  /// A single traverse fills the lists of stations, points, azimuths (`getDegreeInfoList`) and known points, and leaves
  /// those that it does not fill as they are. Its points and azimuths are appended: a second run has them twice. The
  /// a-priori errors play no part in it.
  ///
  /// @throws AlgorithmException, DataException, QLogicError, std::exception as the calculator of the method.
  void calculateAdjust();

  /// Gives the rows that are not known the adjusted coordinates of their names, after a least-squares run.
  void adjustTraverseList(std::vector<TraverseDataInfo>& rows) const;

  /// A new coordinate point, without height, for each adjusted point.
  std::vector<CoordinatePointInfo> getCoordinatePointXYList() const;

  std::vector<PointErrorInfo> const& getPointErrorInfoList() const;
  std::vector<DirectionResult> const& getDirectionResultList() const;
  ErrorEllipseManage const& getErrorEllipseList() const;
  std::vector<LineErrorInfo> const& getLineErrorInfoList() const;
  std::vector<TraverseInfo> const& getTraverseAdjustInfoList() const;
  std::vector<PointInfo> const& getPointX0Y0List() const;
  std::vector<PointInfo> const& getPointList() const;
  std::vector<Degree> const& getDegreeInfoList() const;
  std::vector<PointInfo> const& getKnPointInfoList() const;
  AdjustSummary const& getSummary() const;            ///< of the last least-squares run
  TraverseSummary const& getTraverseSummary() const;  ///< misclosure and azimuths of the last single traverse

 private:
  void adjustLeastSquares();
  template <typename Traverse>
  void adjustSingle();

  struct Data;
  std::unique_ptr<Data> own;
};

}  // namespace kvn
