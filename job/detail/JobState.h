// JobState: what a Job keeps between its steps.
#pragma once

#include "adjust/AdjustProgress.h"
#include "adjust/HeightAdjustment.h"
#include "adjust/PlaneAdjustment.h"
#include "adjust/TraverseResult.h"
#include "adjust/TriangleHeightDataConvert.h"
#include "core/Project.h"
#include "formats/FieldTextCheck.h"
#include "job/HeightOptions.h"
#include "job/PlaneOptions.h"
#include "job/TraverseOptions.h"
#include "records/CoordinatePointInfo.h"
#include "records/Network.h"
#include "reduction/FieldReduction.h"

#include <utils/detail/PrivateData.h>

#include <QString>
#include <cstdint>
#include <memory>
#include <vector>

namespace kvn::detail {

/// Hashes that tell whether a line of the project is still what it was.
struct LineMark {
  std::uint64_t id = 0;
  std::uint64_t ends = 0;       ///< both names
  std::uint64_t direction = 0;  ///< with the ends
  std::uint64_t distance = 0;   ///< with the ends
};

/// What was found out about a file beside what went into the project.
struct OpenedFile {
  bool isLocalText = false;                ///< the file is in the local 8-bit encoding; its records are UTF-8
  FieldTextCheck text;                     ///< of field jobs and project files
  std::vector<FieldFinding> toldFindings;  ///< on the text of a network file, which `open` has told as messages
  FieldReduction reduction;                ///< of rows; its observations are below
  /// Every observation by itself, with its line, of rows and of a network file read with care. A host may have edited
  /// the lines of the project since; see `observationsNow`.
  /// A run shares them where they are adjusted as they are: their errors are those of the last one.
  std::shared_ptr<PlaneNetwork> observations = std::make_shared<PlaneNetwork>();
  std::vector<LineMark> lineMarks;  ///< of the lines that the project had of them
  std::uint64_t knownMark = 0;      ///< of its known points
  bool areLinesJoined = false;  ///< the lines of a station are on the circle of its first set-up, as those of rows are

  /// Takes the reduction of the rows and leaves its network in the project.
  void takeReduction(FieldReduction&& made, Project& project);
  void takeObservations(PlaneNetwork&& made, Network const& network);

  /// The line of the file of what comes from a row.
  void placeLine(PlaneNetwork::Origin& origin) const;

  /// Of the text and of the reduction, in this order.
  std::vector<FieldFinding> findings() const;
  /// Findings on rows with the lines of the file, where they are known.
  std::vector<FieldFinding> placed(std::vector<FieldFinding> list) const;
};

struct KELVANE_PRIVATE JobState {
  KELVANE_LATER_MEMBER

  std::shared_ptr<Project> project;
  QString file;
  bool asRead = false;
  bool isPlan = false;  ///< observations may lack their values
  OpenedFile opened;
  AdjustProgressCall progress;
  PlaneOptions plane;
  std::vector<CoordinatePointInfo> approximate;  ///< as the host has told them, good numbers, each name in one place
  std::unique_ptr<PlaneAdjustment> planeRun;     ///< the last run, where it was a careful one by least squares
  std::vector<FieldFinding> runFindings;         ///< of that run
  std::unique_ptr<PlaneAdjustment> planned;      ///< the last plan
  Network adjusted;  ///< as the last adjustment had it; empty after a run of the plane adjustment
  TraverseOptions traverseOptions;
  std::vector<TraverseResult> traverses;  ///< of the last run, where it was one of single traverses
  HeightOptions heights;
  bool hasTriedHeights = false;                 ///< by the options and rows as they are, whether there were any or not
  std::unique_ptr<HeightAdjustment> heightRun;  ///< the last run of heights, where it was a careful one
  std::vector<FieldFinding> heightFindings;     ///< of that run
  TriangleHeightDataConvert heightLines;        ///< of the last run that was not
};

}  // namespace kvn::detail
