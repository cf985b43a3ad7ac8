// ReportContent: results without a Job, for a page about them.
#pragma once

#include "adjust/TraverseResult.h"
#include "core/Configure.h"
#include "job/HeightOptions.h"
#include "job/PlaneOptions.h"
#include "job/TraverseOptions.h"
#include "records/FieldFinding.h"
#include "records/Network.h"

#include <QString>
#include <string>
#include <vector>

namespace kvn {

class HeightAdjustment;
class PlaneAdjustment;

/// Finished runs that a host has made itself, and how: a plane or traverses, and heights; any of them may be missing.
///
///     kvn::ReportContent content;
///     content.plane = &adjustment;             // after adjust()
///     content.configure.AngleError = 2.0F;     // the a-priori errors that it was made with, for the head of the page
///     kvn::writeReport(stream, content);
struct ReportContent {
  QString file;                               ///< heading where the options of the page have none; may be empty
  std::string instrument;                     ///< in the encoding of records; may be empty
  PlaneAdjustment const* plane = nullptr;     ///< is there as long as the page is written
  HeightAdjustment const* heights = nullptr;  ///< the same
  std::vector<TraverseResult> traverses;
  Network network;                     ///< from which the traverses were computed; its observed known points are drawn
  std::vector<FieldFinding> findings;  ///< what to look at first, in this order
  Configure configure;                 ///< a-priori errors
  PlaneOptions planeOptions;           ///< weights, datum and confidence of the plane
  HeightOptions heightOptions;
  TraverseOptions traverseOptions;  ///< limits of misclosures, which the page tells beside these
};

}  // namespace kvn
