// Job: a file of field data opened with a surveyor's care, from its bytes to adjusted coordinates.
#pragma once

#include "adjust/AdjustProgress.h"
#include "job/HeightOptions.h"
#include "job/PlaneOptions.h"
#include "job/TraverseOptions.h"
#include "records/CoordinatePointInfo.h"
#include "records/FieldFinding.h"
#include "records/Network.h"

#include <utils/Export.h>
#include <utils/IProcessCancel.h>

#include <QString>
#include <QStringList>
#include <memory>
#include <string>
#include <vector>

namespace kvn {

class Project;
class HeightAdjustment;
class TriangleHeightDataConvert;
struct TraverseResult;
namespace detail {
struct JobState;
}

/// The steps of the program `kelvane`, for any host: `open`, look at `findings`, `adjust`, `takeResults`, `save`.
///
///     kvn::Job job(system.createProject());
///     job.open("job.lqf");
///     for (kvn::FieldFinding const& finding : job.findings()) show(kvn::worded(finding));
///     job.adjust();       // results: job.planeAdjustment()->result()
///     job.takeResults();  // coordinates and heights: job.project()->getCoordinatePointList()
///     job.save("job.kvn");
///
/// The data is that of a project, which the host may show and edit between two steps. What does not stop a step is sent
/// as a `Warning` through `System::sendMessage`. A step that fails throws a JobException, or std::bad_alloc, and leaves
/// project and files as they were. A run that the cancel query ends fails like that as well. Used from one thread at a
/// time.
class KELVANE_EXPORT Job : public utils::IProcessCancel {
 public:
  enum class Reading {
    /// Directions by names and faces, whatever the order of the sights; what readers take in silence is told with its
    /// line. By least squares every observation counts by itself, and every set-up has its own orientation.
    Careful,
    /// To the letter of the formats, as `Project` reads them: faces paired by their places or through the station map,
    /// a distance alone is a direction of 0 as well, distances between known points do not count. No findings of the
    /// text and of the reduction.
    AsRead,
    /// As Careful, for `plan`: lines of a network file may name observations without values (see
    /// `CarefulCosaCollection::setTakePlanned`).
    Plan,
  };

  /// What looks at a job. Values are added up.
  enum FindingSource : unsigned {
    FileText = 1,          ///< what the reader took in silence
    FieldReduced = 2,      ///< rows that make no good directions and distances
    RowChecks = 4,         ///< marks of the row checks; a `Note` for each pair of faces
    NetworkChecks = 8,     ///< ends of a line that differ; points that hang loose
    AdjustmentStart = 16,  ///< what a least-squares adjustment would run into; costs as much as one
    AdjustmentRun = 32,    ///< what the last careful run or plan found out; costs nothing
    HeightRun = 64,        ///< the same of heights
    FileTold = 128,        ///< what `open` has told of the lines of a network file
    HeightChecks = 256  ///< height differences and heights of the instrument that do not agree, before a run of heights
  };

  Job();  ///< on a new project of the System, or one of its own where there is no System
  /// @param project  of `System::createProject`, not null.
  explicit Job(std::shared_ptr<Project> project);
  Job(Job const&) = delete;
  Job& operator=(Job const&) = delete;
  ~Job() override;

  /// Suffixes, in small letters, of the files that can be opened: COSA network, traverse file, instrument job,
  /// coordinate file, project.
  static QStringList readableKinds();
  static QStringList writableKinds();  ///< suffixes of the files that `save` can write
  /// To be asked before a long run. @throws JobException for a suffix that is not among `kinds`.
  static void requireWritableKind(QString const& path, QStringList const& kinds = writableKinds());

  /// Reads a file once, as a whole, and replaces the data of the project by it: rows, network with its known points,
  /// coordinates, names of the source files; results go. The settings of the project stay where the file says nothing:
  /// a project file has all of them, a network file the a-priori errors in its first line. Stations of an instrument
  /// job that have coordinates are known.
  ///
  /// A coordinate file is in the local 8-bit encoding. Networks, traverse files and instrument jobs are UTF-8 or, read
  /// with care, in the local 8-bit encoding; their records are UTF-8 then.
  /// @throws JobException for a file that cannot be read, with its line where there is one: JobEncodingException for a
  ///         coordinate file whose names are no text in the local 8-bit encoding.
  void open(QString const& path, Reading reading = Reading::Careful);
  /// The same for a file whose bytes the caller has read already, so that what was looked at is what is opened.
  void openContents(QString const& path, std::string bytes, Reading reading = Reading::Careful);

  QString const& file() const;  ///< as given to `open`; empty before
  Reading reading() const;      ///< as given to `open`
  /// Rows, network with known points, coordinates, settings (`getConfigure`, with the method of `adjust`), results.
  std::shared_ptr<Project> const& project() const;

  /// To be called when the host has edited rows: marks them by the row checks and makes the network of them anew.
  /// Without rows nothing happens.
  /// @throws JobException, with Reading::AsRead, for rows that make no network. An `Error` of the others is a finding.
  void reduce();

  /// All that there is to say about the job as it is now, by line of the file, then by severity.
  std::vector<FieldFinding> findings() const;
  /// Those of some sources (FileText | RowChecks), one source after the other.
  std::vector<FieldFinding> findingsOf(unsigned sources) const;
  /// The same from a severity on: `RowChecks` of a field book of millions of rows have as many notes.
  std::vector<FieldFinding> findingsOf(unsigned sources, FieldFinding::Severity least) const;

  /// @throws JobException for the first `Error` of some sources.
  void requireNoError(unsigned sources) const;

  /// Told where a least-squares run stands; an empty call tells nobody. For the cancel query see `setCancelCall`.
  void setProgressCall(AdjustProgressCall call);
  /// How careful runs by least squares weigh and judge; stays when another file is opened.
  /// @throws JobException for a value out of range.
  void setPlaneOptions(PlaneOptions const& options);
  PlaneOptions const& planeOptions() const;
  /// How single traverses are judged; stays when another file is opened.
  /// @throws JobException for a value out of range.
  void setTraverseOptions(TraverseOptions const& options);
  TraverseOptions const& traverseOptions() const;

  /// Coordinates that points of the network have about, for careful runs by least squares; those of another file that
  /// is opened are others. They decide between places that agree with all observations, as two mirror images of a
  /// network of distances alone, serve where no search places a point, and without any known point a free network is
  /// laid on them. Known points keep their own. Points that the network does not have are ignored; `adjust` tells how
  /// many these are. An empty list takes them back.
  /// @throws JobException for a coordinate that is no number, and for a name that is given twice in different places.
  void setApproximate(std::vector<CoordinatePointInfo> points);
  /// The same with the points of a coordinate file (.dat). Its heights do not count.
  /// @throws JobException, as `open`, for a file that cannot be read; as above.
  void openApproximate(QString const& path);

  /// Adjusts the job by the settings of its project: `Configure::AdjustMethod` 0 by least squares, 1 to 3 as an open,
  /// connecting or closed traverse and, read with care, 4 as whatever traverses the file holds. The result of 1 to 4 is
  /// `traverses` as well; `setTraverseOptions` says how their misclosures are judged.
  ///
  /// By least squares, read with care, each observation of the file counts by itself: each line of a network file, with
  /// a set-up for each of its station lines; of a field book the means of each set-up's rounds. An edit of the
  /// project's network keeps what it leaves alone: known points are those of the project at each run, and lines that
  /// are as they were read, known by their `id`, keep all of their observations. An edited or new line gives one
  /// direction, in the set-up that it was read in, else the first one of its station, and one distance in the place of
  /// those that it had; `findingsOf(NetworkChecks)` tells of such a direction where the station has several set-ups. Of
  /// a field book edited directions are on the circle of the station's first set-up, as its lines are. Lines that a
  /// host has put in the place of all others are the observations; after edited rows call `reduce` first. The result is
  /// `planeAdjustment`. A `Warning` names the points that nothing checks, one each what may be one point under two
  /// names, new points that lie a kilometre and more from coordinates that the network or the coordinate list of the
  /// project gives for them, and known points that fit with north and east exchanged. `findingsOf(AdjustmentRun)` has
  /// all that was found out, with what it may cost. Where the rows of a field book give heights, these are adjusted as
  /// well: `heightAdjustment`. Where they do not, or where every known height is 0, one message says so.
  ///
  /// A result that is doubtful is told as a `Warning` at the end: a unit weight error above 20, of a single traverse
  /// stations that it leaves out, legs without a distance that count as 0, and angles of a polygon that are off by more
  /// than half a circle. A misclosure beyond what the a-priori errors allow, or beyond a limit, is told with both
  /// figures, and with the angle or leg that would explain it; so are a side shot and any other sight to a known point
  /// that misses it. Of several traverses one that cannot be computed, or misses by far, is told as an `Error` and a
  /// finding of `AdjustmentRun`, and the others are computed.
  ///
  /// Single traverses have one circle a station: further set-ups of a network file are turned onto the first one by the
  /// mean difference of their common targets, as those of a field book are, and what is given more than once is a mean.
  ///
  /// The single traverses and Reading::AsRead work on the network of the project, and their result is the project's
  /// `getAlgorithmAdjust`: of several traverses the first that the library's calculators compute, null where they
  /// compute none, as of a loop on one known point, which only `traverses` has. It is null after a careful run by least
  /// squares, too, and `planeAdjustment` after all others. Nothing else in the library reads them: maps and files show
  /// the coordinate list, for which see `takeResults`.
  /// @throws JobException for an `Error` of text or reduction, a-priori errors out of range, a network that the
  ///         observations do not determine, a single traverse over set-ups of a station without a common target, and
  ///         when the host cancels; JobMisclosureException where every traverse misses by more than ten times what the
  ///         a-priori errors allow. Plane and heights are one run: an earlier result stays as a whole then, its heights
  ///         too, even where the plane was finished when the host cancelled.
  void adjust();
  /// The last run, where it was a careful one by least squares; else null. Good until the next one.
  PlaneAdjustment const* planeAdjustment() const;
  /// What the last run computed, where it was one of single traverses; else empty.
  std::vector<TraverseResult> const& traverses() const;
  /// The network that the last run worked on, empty where that is the one of `planeAdjustment`. That of a single
  /// traverse has turned circles and its distances forward.
  Network const& adjustedNetwork() const;

  /// What the results of the job would be worth, before anything is measured: `PlaneAdjustment::plan` with the
  /// observations of the file, whatever their readings, at the coordinates of `setApproximate`; known points keep their
  /// own. The errors are those of the settings and of `planeOptions`. A `Warning` names the points that nothing checks;
  /// `findingsOf(AdjustmentRun)` has them too.
  /// @return good until the next call or the next file.
  /// @throws JobException as `adjust`, and with the names of points that have no coordinates.
  PlaneAdjustment const& plan();

  /// How careful heights are weighed; stays when another file is opened. The heights of a run before go.
  /// @throws JobException for a value out of range.
  void setHeightOptions(HeightOptions const& options);
  HeightOptions const& heightOptions() const;

  /// Adjusts the trigonometric heights of the rows. Read with care, every sight counts by itself, and the result is
  /// `heightAdjustment`; a `Warning` each tells what does not fit and what nothing checks, and `findingsOf(HeightRun)`
  /// has it all; a known station with two heights is a finding of `FieldReduced`. With Reading::AsRead the result is
  /// the project's `getTriangleHeightAdjust`, which is empty otherwise.
  /// @throws JobException without rows, without a known height, for points that no line connects to one.
  void adjustHeights();
  /// The last run of heights, where it was a careful one; else null. Good until the next one.
  HeightAdjustment const* heightAdjustment() const;
  TriangleHeightDataConvert const& heightLines() const;  ///< of the last run that was not; empty after a careful one

  /// Puts the adjusted points into the coordinate list of the project, with heights where `adjust` has found
  /// any. With Reading::AsRead heights are adjusted for that, and a `Warning` says why where they cannot be. Points of
  /// the list that the network lacks stay as they are; others keep their codes, and their heights where the run has
  /// none. A point without a height has 0.
  /// @throws JobException before `adjust`.
  void takeResults();

  /// Writes the job as a file of the kind that the suffix says: the project, the rows, the network, or the coordinate
  /// list, which are the known points where there is none. The folder is made where it is not there. A network
  /// has every observation by itself, as `adjust` has them after an edit. A project has one set-up a station, onto
  /// which the others are turned by their common targets. What the format has no place for is told as a `Warning`, or
  /// refused where the file would be read as something else, and where it would take the place of the file that was
  /// opened: what that one holds would be lost. Coordinates are written in the local 8-bit encoding, a job that was
  /// read in it too, everything else in UTF-8.
  /// @throws JobException for an unknown suffix, a kind that the job is not, a name or a number that the file cannot
  ///         hold, and with the reason where the file cannot be written. An old file stays whole then.
  void save(QString const& path);

 private:
  std::unique_ptr<detail::JobState> state;
};

}  // namespace kvn
