// Judgement: what the tests say of the results of a job, in plain sentences.
#pragma once

#include <utils/Export.h>

#include <QString>
#include <vector>

namespace kvn {

class Job;
struct ReportContent;

struct Judgement {
  enum Level {
    Good,
    Look,  ///< nothing contradicts the results, and something asks for a look: nothing is redundant, a marked
           ///< observation
    Bad    ///< a test as a whole fails
  };
  Level level = Good;
  QString sentence;  ///< in the language of the translator
};

/// Of the last runs of a job, one each for the plane or the traverses, and the heights; of a job without a run that
/// nothing was adjusted. Least squares to the letter have no test as a whole, which is said.
KELVANE_EXPORT std::vector<Judgement> judgementsOf(Job const& job);
/// The same of runs that a host has made itself.
KELVANE_EXPORT std::vector<Judgement> judgementsOf(ReportContent const& content);

}  // namespace kvn
