// The steps of a job, one source each. Those that take a JobState are called by Job alone.
#pragma once

#include "adjust/PlaneNetwork.h"
#include "adjust/plane/Quantiles.h"
#include "core/AlgorithmException.h"
#include "core/Configure.h"
#include "job/detail/JobState.h"
#include "records/MessType.h"

#include <utils/IProcessCancel.h>

#include <QString>
#include <QStringList>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kvn {
class AlgorithmAdjust;
}

namespace kvn::detail {

class ObservedRounds;

/// Suffix of a path in small letters.
QString suffixOf(QString const& path);
void send(QString const& text, MessType type);
void sendWarning(QString const& text);
void sendInfo(QString const& text);
/// The exception that is being handled, as a JobException that has it nested; a JobException and std::bad_alloc pass.
[[noreturn]] void throwNaming(QString const& file, Network const& network);
/// @throws JobException for the first `Error` among the findings.
void requireNoError(QString const& file, std::vector<FieldFinding> const& findings);

/// All bytes of a file. @throws JobException for one that is not there or cannot be read.
std::string bytesOf(QString const& path);
/// Takes the bytes of a file into an empty project.
/// @throws JobException for a file of an unknown kind; what the readers throw.
OpenedFile takeIn(Project& project, QString const& path, std::string bytes, bool asRead, bool isPlan = false);
/// A look at the text of a project file, for what its reader takes in silence.
///
/// `Error`: a number, a truth value or a kind of row that cannot be read, for which the reader takes the default.
/// `Warning`: a version or a kind of data that is not known. The lines are those of the rows.
/// @throws JobException for a file that is not well-formed, with the line, or that holds nothing of a project.
FieldTextCheck inspectProjectFile(QString const& path, std::string const& bytes);

/// The rows of a project. Those of an instrument job that a command has opened have no known stations: the ones with
/// coordinates are known then, as when a job opens the file.
std::vector<TraverseDataInfo> rowsWithKnownStations(Project const& project);
/// The network of the rows as they are now, into the project.
void reduce(JobState& state);

/// What is doubtful in the network of the job before it is adjusted.
std::vector<FieldFinding> findingsOnNetwork(JobState const& state);
/// What two distances differ by costs nothing where the last run has held both ends, or has left one of them out, and
/// nothing more where it suspects one: that has told its cost.
void dropCostsOfHeld(JobState const& state, std::vector<FieldFinding>& findings);

/// What a least-squares adjustment of the job would run into: input that it refuses, points that cannot be placed or
/// that nothing holds, gross errors.
std::vector<FieldFinding> findingsOnStart(JobState const& state);

/// Why a-priori errors cannot be used; empty when they can.
QString faultOfErrors(Configure const& configure, Network const& network);
/// Every observation of the job with its error, and the points that are observed.
/// @throws AlgorithmException with the number of a line of the project's network that holds no observation.
PlaneNetwork observationsWithErrors(JobState const& state);
/// The same, for an adjustment. @throws AlgorithmException KnownPointNotEnough as well, JobException without any.
PlaneNetwork weighedObservations(JobState const& state);
QString textOfSuspect(SuspectObservation const& suspect);
/// What a finished adjustment has found out and told itself: suspects, known points that do not fit, unchecked points.
std::vector<FieldFinding> findingsToldBy(PlaneAdjustment const& run);
/// What its result says beside: points that may be one, points far from the coordinates given for them.
std::vector<FieldFinding> findingsOnResult(JobState const& state, PlaneAdjustment const& run);
/// Where the observations fit the known points badly, or not at all, but well with north and east exchanged.
///
/// @param run          finished or failed; another one is made only where it has failed or fits badly.
/// @param isCancelled  may be empty; ends that one as it ends an adjustment.
std::optional<FieldFinding> findingOnExchange(PlaneAdjustment const& run, PlaneSettings settings,
                                              std::function<bool()> const& isCancelled);
/// The same of a free network, by the shifts of its known points.
std::optional<FieldFinding> findingOnExchangeOfFree(PlaneAdjustment const& run);
/// The points of a coordinate file. @throws JobException for what is no coordinate file, and as `requireUsable`.
std::vector<CoordinatePointInfo> approximateOf(QString const& path);
/// @throws JobException for coordinates that are no numbers and for a name in two places.
void requireUsable(QString const& file, std::vector<CoordinatePointInfo> const& points);
/// Gives the unknown points the approximate coordinates of the job.
void giveApproximate(JobState const& state, PlaneNetwork& network);
/// Warns of known points that they put in another place. @return the same as findings.
std::vector<FieldFinding> tellContradictions(JobState const& state, PlaneNetwork const& network);
/// Says how many of them have names that are not in the network, if any.
void tellUnusedApproximate(JobState const& state, PlaneNetwork const& network);
/// Whether the lines of the project's network are those of the file that was opened, edited or not.
bool hasObservationsOfFile(JobState const& state);
/// The observations of the job as they are now, without errors of a meaning. Known points are those of the project. A
/// line that is as it was read has all of its observations; one that is edited or new has one direction, in the set-up
/// that it was read in, else in the first one of its station, and one distance; the other of the two stays where it
/// alone is edited. Where the lines are not those of the file, they are the observations.
/// @param findings  edited directions of stations that have several set-ups; may be null.
/// @throws AlgorithmException with the number of an edited line that holds no observation.
/// @return `opened.observations` itself where nothing is edited.
std::shared_ptr<PlaneNetwork const> observationsNow(JobState const& state,
                                                    std::vector<FieldFinding>* findings = nullptr);
std::vector<FieldFinding> findingsOnEdits(JobState const& state);

/// The lines of the project with one circle a station.
struct OneCircle {
  Network network;                     ///< what is given more than once is a mean
  std::vector<std::string> stations;   ///< with several set-ups, turned onto the first one by their common targets
  std::vector<FieldFinding> findings;  ///< directions that do not agree with those of the set-ups before
  std::vector<FieldFinding> lost;      ///< set-ups that no common target leads to
};
OneCircle oneCircle(JobState const& state);
/// @throws JobException for set-ups of a station without a common target.
void requireOneCircle(QString const& file, OneCircle const& circle);
/// Its network. @throws JobException as `requireOneCircle`.
Network networkOnOneCircle(JobState const& state);
/// Lines of a station that follow each other are one set-up when a network is read from a project.
void groupByStation(Network& network);
/// The observations of the job, without errors, and the points that are observed.
PlaneNetwork observedNetwork(JobState const& state);
/// By the settings and options of the job.
ObservationErrors observationErrors(JobState const& state);
void requireControl(PlaneNetwork const& network, PlaneOptions const& options);
/// The points that a refusal is about.
QStringList namesIn(PlaneAdjustment const& adjustment);
void tellUnchecked(PlaneAdjustment const& adjustment);
/// What stands against the errors, the findings or the kind of the job. @throws JobException.
void requireObservations(JobState const& state);
/// Plans the network of the job. @throws JobException; what the plan throws.
void planNetwork(JobState& state, utils::IProcessCancel const& cancel);
/// The options of the job that are not the default ones, in words: a project has none of them.
QStringList optionsBesideProject(JobState const& state);
/// How the options adjust and judge.
PlaneSettings settingsOf(PlaneOptions const& options);
/// Adjusts the observations by themselves. @throws JobException; what the adjustment throws.
void adjustPlane(JobState& state, utils::IProcessCancel const& cancel);
/// The adjusted points, without heights.
std::vector<CoordinatePointInfo> coordinatesOf(PlaneAdjustment const& adjustment);
/// The points of all chains and those beside them, each once.
std::vector<CoordinatePointInfo> coordinatesOf(std::vector<TraverseResult> const& traverses);
/// What a network of one direction and distance a line lacks of the observations of the job, with the lines of the
/// file; empty where it has all.
QString textOfRepeated(JobState const& state);
/// @throws JobException for a round that the network of the rows lacks.
void requireWholeRounds(QString const& file, OpenedFile const& opened, FieldReduction const& reduction);

/// What makes the result of the project's calculator doubtful: a unit weight error far above 1; stations outside a
/// single traverse, its legs without a distance, angles of no polygon.
/// @param refused  stations of traverses that are told to be refused.
std::vector<FieldFinding> findingsOnCalculated(JobState const& state, std::vector<std::string> const& refused);
TraverseErrors traverseErrors(JobState const& state, std::vector<TraverseInfo> const& stations,
                              ObservedRounds const& observed);
/// Judges the misclosures where there are some and the a-priori errors can be used.
void judge(TraverseResult& result, JobState const& state, ObservedRounds const& observed);
/// Side shots to known points that miss them by more than their errors allow.
std::vector<FieldFinding> findingsOnSidePoints(TraverseResult const& result);
/// Sights to known points, and distances to marks, that miss them by more than their errors allow.
std::vector<FieldFinding> findingsOnChecks(TraverseResult const& result);
/// Stations whose leg has no distance.
std::vector<TraverseInfo const*> legsWithoutDistance(TraverseResult const& result);
/// Legs that count as 0. @param traverse  as below.
std::vector<FieldFinding> findingsOnLegs(TraverseResult const& result, std::size_t traverse);
/// What is far beyond what the a-priori errors allow, and why; empty where nothing is, or where the host wants it
/// anyway.
/// @param ofNetwork  of `findingsOnNetwork`: what two distances of a leg differ by is told first.
QString farBeyond(TraverseResult const& result, JobState const& state, std::vector<FieldFinding> const& ofNetwork);
/// The last known point of a traverse that closes, else its last station.
std::string const& lastPointOf(TraverseResult const& result);
/// Of several traverses, which may have both ends in common: names the point behind the first station as well, in
/// findings on a traverse as a whole.
void nameWays(std::vector<FieldFinding>& findings, TraverseResult const& result);
/// Names of the stations that a traverse has.
std::vector<std::string> namesOfStations(TraverseResult const& result);
/// @param traverse  place of the result in `Job::traverses`, FieldFinding::kNoRow for none of them.
std::vector<FieldFinding> findingsOnMisclosures(JobState const& state, TraverseResult const& result,
                                                std::size_t traverse);
/// The same of the traverses that a network holds, whatever method it is adjusted by; none where it holds no traverse.
std::vector<FieldFinding> misclosuresBeside(JobState const& state);
/// Adjusts the project's network by its settings, into the project. @throws JobException; what the calculators throw.
void adjust(JobState& state, utils::IProcessCancel const& cancel);
/// Why the method of `Configure::AdjustMethod` refuses a network, with the station or point and what it should have.
QString explained(AlgorithmException const& failure, int method);

/// Adjusts the heights of the rows. What gives no height, and what does not fit, is told as a `Warning`.
/// @throws JobException without a known height, and with the names of points that no line connects to one.
void adjustHeights(JobState& state, utils::IProcessCancel const& cancel);
/// A run of heights that has not been taken into the job yet.
struct FinishedHeights {
  std::unique_ptr<HeightAdjustment> run;  ///< null where there are none
  std::vector<FieldFinding> findings;
  std::vector<std::pair<QString, MessType>> messages;  ///< that are still to be sent
};
/// The heights beside the plane, where the rows give some; else one message says why not. Asked for before the plane is
/// taken into the job, so that a run that is cancelled leaves all that was there before.
FinishedHeights heightsBeside(JobState const& state, utils::IProcessCancel const& cancel);
/// In the place of those of the run before.
void keepHeights(JobState& state, FinishedHeights&& done);
void forgetHeights(JobState& state);
/// Height differences with their errors, by the settings and options of the job, and with the lines of the file.
void reduceSightsOf(JobState const& state, HeightNetwork& network);
/// Sights of one line that differ from the first one by more than their errors allow.
/// @param isTold  set-ups of which something else tells that all their sights differ from those of another set-up;
/// empty
///                for none.
std::vector<FieldFinding> differencesOfLines(HeightNetwork const& network, std::vector<bool> const& isTold);
/// What the sights of the rows say before heights are adjusted: differences of one line, and heights of the instrument,
/// that do not agree.
std::vector<FieldFinding> findingsBeforeHeights(JobState const& state);
std::vector<FieldFinding> findingsOnHeights(HeightAdjustment const& run);
double refractionOf(JobState const& state);

/// Writes the job in the format of the suffix. The project stays as it is. @throws JobException; what the library's
/// writers throw.
void write(JobState const& state, QString const& path);

}  // namespace kvn::detail
