// ReportPage: what a job came to, as one page to look at, to print and to hand over.
#pragma once

#include <utils/Export.h>

#include <QString>
#include <cstddef>
#include <iosfwd>

namespace kvn {

class Job;
struct ReportContent;

/// What a page says beside what the job tells.
struct ReportOptions {
  QString title;    ///< heading; empty: the name of the file without its folder
  QString date;     ///< of the page, as it is to be printed; empty: today, as 2026-05-31
  QString program;  ///< what made the page, as "kelvane 0.1.0", for its foot; may be empty
  /// Said at the top as something that is wrong, as why there are heights alone; may be empty.
  QString refusal;
  /// Rows of a table at most, 1 or more. Of a longer table those stay that matter most: observations that are marked,
  /// left out or unchecked and those with the largest tests, points that are unchecked and those with the largest
  /// errors. The page says how many it leaves out. The map has as many points and lines with ways to
  /// their rows, and all others without.
  std::size_t rowsAtMost = 10000;
};

/// Writes a page in HTML that needs no other file and no script: the judgement of the whole in a sentence, what to look
/// at first, a map, tables of points, observations, set-ups, traverses and heights, as far as the last runs of the job
/// made them (`adjust`, `adjustHeights`). Of a job without a run it has the coordinates that were given. Scripts in the
/// page add zooming, sorting and ways between table and map. It prints on A4, and is well-formed XML as well.
///
/// The language is that of the installed translator (see `System::init`). Names and all else that comes from files are
/// escaped; a byte that is no text stands as a replacement character.
///
/// @param stream  takes the page piece by piece, UTF-8; whoever gave it looks whether it could be written.
/// @throws std::bad_alloc; what the stream throws.
KELVANE_EXPORT void writeReport(std::ostream& stream, Job const& job, ReportOptions const& options = {});

/// The same of runs that a host has made itself.
KELVANE_EXPORT void writeReport(std::ostream& stream, ReportContent const& content, ReportOptions const& options = {});

/// The same into a file, which replaces an old one only when it is complete; its folder is made where it is not there.
/// @throws JobException with the reason where it cannot be written. An old file stays whole then.
KELVANE_EXPORT void saveReport(Job const& job, QString const& path, ReportOptions const& options = {});

}  // namespace kvn
