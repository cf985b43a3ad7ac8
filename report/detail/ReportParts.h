// ReportParts: what the sections of a page are written from, gathered once; and the sections.
#pragma once

#include "records/FieldFinding.h"
#include "report/Judgement.h"
#include "report/ReportContent.h"
#include "report/ReportPage.h"
#include "report/SiteDrawing.h"
#include "report/detail/PageWriter.h"

#include <QString>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kvn {
class AlgorithmAdjust;
class Job;
struct PlaneObservation;
struct PlaneResult;
}  // namespace kvn

namespace kvn::detail {

constexpr std::size_t kNowhere = SiteDrawing::kNone;

/// A number of a point or set-up as a place in its list.
constexpr std::size_t at(int number) { return static_cast<std::size_t>(number); }

/// Which rows of a table the page has.
class RowChoice {
 public:
  /// All of them, or the `most` with the largest weights, in their order.
  RowChoice(std::size_t count, std::size_t most, std::function<double(std::size_t)> const& weightOf);
  RowChoice() = default;

  std::vector<std::size_t> const& rows() const { return list; }
  bool has(std::size_t row) const { return row < isIn.size() && isIn[row]; }
  std::size_t leftOut() const { return isIn.size() - list.size(); }

 private:
  std::vector<std::size_t> list;
  std::vector<bool> isIn;
};

/// Directions and distances that are too large by their own tests.
std::size_t markedBy(PlaneResult const& result);

/// The run of a job by least squares to the letter; null where the last one was another.
AlgorithmAdjust const* literalRunOf(Job const& job);

/// Holds references: to be used as long as job and options are there.
class ReportParts {
 public:
  ReportParts(Job const& job, ReportOptions const& pageOptions);
  ReportParts(ReportContent finished, ReportOptions const& pageOptions);
  ReportParts(ReportParts const&) = delete;
  ReportParts& operator=(ReportParts const&) = delete;

  ReportContent const content;
  ReportOptions const& options;
  SiteDrawing const drawing;
  PlaneAdjustment const* const plane;
  HeightAdjustment const* const heights;
  std::vector<TraverseResult> const& traverses;
  AlgorithmAdjust const* const literal;  ///< a run by least squares to the letter of the formats
  std::vector<Judgement> const judgements;

  RowChoice points;  ///< of the drawing
  RowChoice directions;
  RowChoice distances;
  RowChoice sights;
  RowChoice heightPoints;  ///< of the network of the heights
  struct LiteralDirection {
    std::size_t station;  ///< places in the result lists of the literal run
    std::size_t target;
  };
  std::vector<LiteralDirection> literalDirections;  ///< of which `directions` are chosen then
  std::vector<std::size_t> circleOfSetUp;  ///< of a set-up with directions: which one of its station, from 1; else 0
  std::vector<bool> hasSeveral;            ///< of each point of the plane: whether it has several of these

  bool hasMap() const { return drawing.points.size() > 1; }
  /// Points, and lines, of the map that are elements of their own, each at most so many.
  std::size_t mapElements() const;
  /// Every point is an element of the map: the id is p and its number.
  bool isEachOnMap() const { return hasMap() && drawing.points.size() <= mapElements(); }
  bool hasPlane() const { return plane != nullptr; }
  /// There are errors: redundancy, or those by the a-priori unit weight error.
  bool hasErrors() const;
  std::string const& pointName(int point) const;  ///< of the plane network, UTF-8
  /// "A", or "A (2)" of the second of several circles.
  std::string stationName(std::size_t setUp) const;
  std::size_t pointOf(std::string const& recordName) const;  ///< in the drawing; kNowhere where it is not
  // Ids of elements of the page; empty where it has none.
  /// Of a point, in the table of the heights where it is about these.
  std::string rowOfPoint(std::string const& recordName, bool isOfHeights) const;
  /// Of an observation between two points, by the line of the file where that is known, of a point, or of misclosures.
  std::string rowOf(FieldFinding const& finding) const;
  /// In the drawing, one of them or none: where a finding is about an observation, a leg, or a point alone.
  struct MapPlace {
    std::size_t line = kNowhere;
    std::size_t point = kNowhere;
  };
  MapPlace placeOf(FieldFinding const& finding) const;

 private:
  ReportParts(ReportContent finished, ReportOptions const& pageOptions, SiteDrawing drawn,
              std::vector<Judgement> judged, AlgorithmAdjust const* literalRun);
  void choosePoints();
  void chooseObservations();
  void countCircles();
  void nameObservations();
  void nameHeights();
  void findLines();
  using Ends = std::pair<std::size_t, std::size_t>;
  Ends endsOf(FieldFinding const& finding) const;  ///< of the line that it is about; kNowhere twice without one
  std::size_t pointOf(TraverseResult const& traverse) const;  ///< where its misclosures show, or come from

  struct Place {
    bool isDirection = false;
    bool isSight = false;  ///< of heights
    std::size_t number = 0;
    int fileLine = 0;
    bool isMarked = false;
  };
  static std::string keyOf(std::string const& from, std::string const& to);

  std::unordered_map<std::string, std::size_t> pointNumbers;
  std::unordered_map<std::string, std::size_t> heightNumbers;  ///< where a finding is about heights
  std::unordered_map<std::string, std::vector<Place>> places;  ///< of what findings are about
  std::map<Ends, std::size_t> lines;                           ///< the same; the smaller place first
};

/// A heading, with the link target of the contents, and a sentence below it; open until `endSection`.
void beginSection(PageWriter& page, char const* id, QString const& title, QString const& sentence = {});
void endSection(PageWriter& page);
/// Says how many rows a table leaves out, if any.
void tellLeftOut(PageWriter& page, RowChoice const& choice);

/// Digits that a name is as wide as, about.
std::size_t widthOf(std::string const& utf8);
/// The widest name of the drawing, so that a column holds it.
std::size_t nameWidth(ReportParts const& parts);

void writePage(PageWriter& page, ReportParts const& parts);

QString headingOf(ReportParts const& parts);
void writeHead(PageWriter& page, ReportParts const& parts);
void writeFindings(PageWriter& page, ReportParts const& parts);
void writeMap(PageWriter& page, ReportParts const& parts);
void writePoints(PageWriter& page, ReportParts const& parts);
void writeControl(PageWriter& page, ReportParts const& parts);
void writeSetUps(PageWriter& page, ReportParts const& parts);
void writeDirections(PageWriter& page, ReportParts const& parts);
void writeDistances(PageWriter& page, ReportParts const& parts);
void writeLines(PageWriter& page, ReportParts const& parts);
void writeHistogram(PageWriter& page, ReportParts const& parts);
void writeTraverses(PageWriter& page, ReportParts const& parts);
void writeLiteral(PageWriter& page, ReportParts const& parts);
void writeHeights(PageWriter& page, ReportParts const& parts);

}  // namespace kvn::detail
