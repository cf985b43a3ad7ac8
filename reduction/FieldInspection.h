// FieldInspection: what a surveyor should know about a job before it is computed.
#pragma once

#include "core/Configure.h"
#include "records/FieldFinding.h"
#include "records/Network.h"
#include "records/TraverseDataInfo.h"
#include "reduction/FieldReduction.h"

#include <utils/Export.h>

#include <vector>

namespace kvn {

/// Findings on the rows of a field job, in the order of the rows: the cleared validity flags with the reason in words,
/// sights that a program which pairs the faces by their place would pair with another target, distances to first
/// targets that such a program would drop at both ends, and, as a `Note`, the double collimation error and the index
/// error of each pair of faces.
///
/// @param rows  with the flags as the row checks left them.
KELVANE_EXPORT std::vector<FieldFinding> inspectRows(std::vector<TraverseDataInfo> const& rows,
                                                     FieldReduction const& reduction);
/// Those from a severity on. A field book of millions of rows has a `Note` for nearly each pair of faces, which take as
/// much memory as half of its rows.
KELVANE_EXPORT std::vector<FieldFinding> inspectRows(std::vector<TraverseDataInfo> const& rows,
                                                     FieldReduction const& reduction, FieldFinding::Severity least);

/// A `Warning` for each line of which the distances from one end differ by more than their a-priori errors a + b S
/// allow: two by 3 standard errors of their difference, of which one good line in 370 is beyond. The more distances,
/// the more the largest and the smallest may differ, by the same share of good lines.
///
/// @param centring  standard error of each coordinate of instrument and target about their marks, metres; counts
/// between
///                  set-ups.
KELVANE_EXPORT std::vector<FieldFinding> inspectDistances(FieldReduction const& reduction,
                                                          ObservationErrors const& errors, double centring);

/// Findings on a network: distances from the two ends of a line that differ by more than the a-priori error a + b S,
/// known points that nothing observes, points that no observation connects to a known point, and points that a single
/// observation holds.
KELVANE_EXPORT std::vector<FieldFinding> inspectNetwork(Network const& network, Configure const& configure);

/// The same where every observation counts: the means of the distances from either end are compared with 3 standard
/// errors of their difference, of which one good line in 370 is beyond.
///
/// @param observations  those of the network, with their a-priori errors.
/// @param centring      standard error of each coordinate of instrument and target about their marks, metres.
/// @param isFree        no known point holds the network: points that nothing connects to the largest part of it.
KELVANE_EXPORT std::vector<FieldFinding> inspectNetwork(Network const& network, PlaneNetwork const& observations,
                                                        double centring, bool isFree);

}  // namespace kvn
