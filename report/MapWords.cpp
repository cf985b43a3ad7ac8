#include "records/detail/Messages.h"
#include "report/SiteSvg.h"

#include <QtGlobal>
#include <cstring>

namespace kvn {
namespace {

// What pictures and drawings say; these themselves know no translator.
constexpr char const* kMapWords[] = {
    QT_TRANSLATE_NOOP("kvn::System", "known point"),
    QT_TRANSLATE_NOOP("kvn::System", "new point"),
    QT_TRANSLATE_NOOP("kvn::System", "side point"),
    QT_TRANSLATE_NOOP("kvn::System", "nothing checks it"),
    QT_TRANSLATE_NOOP("kvn::System", "fails its test"),
    QT_TRANSLATE_NOOP("kvn::System", "does not fit"),
    QT_TRANSLATE_NOOP("kvn::System", "direction and distance"),
    QT_TRANSLATE_NOOP("kvn::System", "direction"),
    QT_TRANSLATE_NOOP("kvn::System", "distance"),
    QT_TRANSLATE_NOOP("kvn::System", "observed both ways"),
    QT_TRANSLATE_NOOP("kvn::System", "suspect"),
    QT_TRANSLATE_NOOP("kvn::System", "confidence ellipses"),
    QT_TRANSLATE_NOOP("kvn::System", "standard ellipses"),
    QT_TRANSLATE_NOOP("kvn::System", "Confidence ellipses"),
    QT_TRANSLATE_NOOP("kvn::System", "Standard error ellipses"),
    QT_TRANSLATE_NOOP("kvn::System", "Not adjusted"),
    QT_TRANSLATE_NOOP("kvn::System", "Adjusted by least squares"),
    QT_TRANSLATE_NOOP("kvn::System", "Adjusted"),
    QT_TRANSLATE_NOOP("kvn::System", "Traverse"),
    QT_TRANSLATE_NOOP("kvn::System", "Planned"),
    QT_TRANSLATE_NOOP("kvn::System", "points"),
    QT_TRANSLATE_NOOP("kvn::System", "lines"),
};

}  // namespace

std::string translatedMapWord(char const* english) {
  for (char const* word : kMapWords) {
    if (std::strcmp(word, english) == 0) return Messages::tr(word).toStdString();
  }
  return english;
}

}  // namespace kvn
