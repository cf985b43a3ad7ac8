// JobState: what a Job keeps between its steps.
#pragma once

#include "adjust/AdjustProgress.h"
#include "adjust/TriangleHeightDataConvert.h"
#include "core/Project.h"
#include "formats/FieldTextCheck.h"
#include "records/Network.h"
#include "reduction/FieldReduction.h"

#include <QString>
#include <memory>
#include <vector>

namespace kvn::detail {

/// What was found out about a file beside what went into the project; empty but for field jobs and project files.
struct OpenedFile {
  FieldTextCheck text;
  FieldReduction reduction;

  /// Of the text and of the reduction, in this order.
  std::vector<FieldFinding> findings() const;
  /// Findings on rows with the lines of the file, where they are known.
  std::vector<FieldFinding> placed(std::vector<FieldFinding> list) const;
};

struct JobState {
  std::shared_ptr<Project> project;
  QString file;
  bool asRead = false;
  OpenedFile opened;
  AdjustProgressCall progress;
  Network adjusted;                       ///< as the last adjustment had it
  TriangleHeightDataConvert heightLines;  ///< of the last adjustment of heights
};

}  // namespace kvn::detail
