// What to look for when a single traverse cannot be computed.
#include "adjust/ConnectTraverse.h"
#include "core/AlgorithmException.h"
#include "job/FindingTexts.h"
#include "job/detail/JobSteps.h"
#include "records/detail/Messages.h"

namespace kvn {
namespace {

enum Method { Open = 1, Connect, Closed };
enum Name { None, Fixed, Point };  // of the failure: none, a text of the library's own, a station or a point

struct Hint {
  AlgorithmException::ErrorType type;
  Name name;
  int method;  // 0 for all
  char const* text;
};

constexpr Hint kHints[] = {
    {AlgorithmException::StationNotEnough, Point, Closed,
     QT_TRANSLATE_NOOP("kvn::System", "a station has two different directions, back and forward")},
    {AlgorithmException::StationNotEnough, Point, 0,
     QT_TRANSLATE_NOOP("kvn::System", "a station has just two different directions, back and forward")},
    {AlgorithmException::StationNameRepeat, Point, 0,
     QT_TRANSLATE_NOOP("kvn::System", "a station has just two directions, back and forward")},
    {AlgorithmException::StationNotEnough, None, 0,
     QT_TRANSLATE_NOOP("kvn::System", "no known station has a known back point, its smaller reading")},
    {AlgorithmException::KnownPointNotEnough, Fixed, Closed, QT_TRANSLATE_NOOP("kvn::System", "no station is known")},
    {AlgorithmException::KnownPointNotEnough, Fixed, 0,
     QT_TRANSLATE_NOOP("kvn::System", "no known station has a known back point, its smaller reading")},
    {AlgorithmException::KnownPointNotEnough, None, Closed,
     QT_TRANSLATE_NOOP("kvn::System",
                       "exactly one known station of the polygon has a known back point, its smaller reading")},
    {AlgorithmException::KnownPointNotEnough, Point, Closed,
     QT_TRANSLATE_NOOP("kvn::System", "the last station is known, and looks forward to the first")},
    {AlgorithmException::DataError, Fixed, Open,
     QT_TRANSLATE_NOOP(
         "kvn::System",
         "the stations make no single chain from back to fore points, the smaller and the larger readings")},
    {AlgorithmException::DataError, Fixed, Connect,
     QT_TRANSLATE_NOOP("kvn::System", "the chain comes to a station a second time")},
    {AlgorithmException::DataError, Point, 0,
     QT_TRANSLATE_NOOP("kvn::System", "not an angle, or two known points at one place")},
};

Name nameKindOf(AlgorithmException const& failure) {
  if (failure.name.empty()) return None;
  return failure.name == "No start data" || failure.name == "Data error" ? Fixed : Point;
}

}  // namespace

QString detail::explained(AlgorithmException const& failure, int method) {
  QString text = worded(failure, Network());
  if (auto const* const end = dynamic_cast<TraverseEndException const*>(&failure)) {
    return Messages::tr("%1: the traverse ends at %2 and looks forward to %3, which both have to be known")
        .arg(text, recordText(end->lastStation), recordText(end->forePoint));
  }
  Name const name = nameKindOf(failure);
  for (Hint const& hint : kHints) {
    bool const fits = hint.type == failure.errorType && hint.name == name;
    if (fits && (hint.method == method || hint.method == 0))
      return QString("%1 (%2)").arg(text, Messages::tr(hint.text));
  }
  return text;
}

}  // namespace kvn
