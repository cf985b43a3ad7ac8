#include "reduction/ErrorInfo.h"

#include "records/detail/Messages.h"

namespace kvn {
namespace {

constexpr char const* kTexts[] = {
    QT_TRANSLATE_NOOP("kvn::System", "The Staion %1 of Back View is backward Fore View"),
    QT_TRANSLATE_NOOP("kvn::System", "The Staion %1 of Back View isn't existed"),
    QT_TRANSLATE_NOOP("kvn::System", "The Station %1 of Fore View isn't existed"),
    QT_TRANSLATE_NOOP("kvn::System", "The Station %1 of Prism Point %2 of Fore View are redundant observations"),
    QT_TRANSLATE_NOOP("kvn::System", "The Station %1 of Back View are multiple"),
    QT_TRANSLATE_NOOP("kvn::System",
                      "The Station %1 of Prism Point %2 of 2C value error of horizontal angle exist error"),
    QT_TRANSLATE_NOOP("kvn::System", "The Station %1 of Prism Point %2 of each loop different value error exist error"),
    QT_TRANSLATE_NOOP("kvn::System",
                      "The Station %1 of Prism Point %2 of zero differential of horizontal angle exist error"),
    QT_TRANSLATE_NOOP("kvn::System",
                      "The Staion %1 of Prism Point %2 of collimation error of vertical angle exist error"),
    QT_TRANSLATE_NOOP("kvn::System", "The Staion %1 of Prism Point %2 of each loop different value exist error"),
    QT_TRANSLATE_NOOP("kvn::System", "The Staion %1 of Prism Point %2 of the maximum of distance variance exist error"),
    QT_TRANSLATE_NOOP("kvn::System",
                      "The Staion %1 of Prism Point %2 of the each measurement of maximum of distance variance"),
    QT_TRANSLATE_NOOP("kvn::System", "The Station %1 of Prism Point %2 is different of Back View"),
};

bool namesTargets(std::int32_t code) { return code == 3 || code > 4; }

QString decoded(std::string const& name) { return QString::fromLocal8Bit(name.data(), static_cast<int>(name.size())); }

QString textOf(ErrorInfo const& finding) {
  QString const text = Messages::tr(kTexts[finding.errorCode]);
  if (!namesTargets(finding.errorCode)) return text.arg(decoded(finding.stationName));
  QStringList targets;
  for (std::string const& target : finding.prismPointList) targets << decoded(target);
  // Both at once, so that a name with %2 in it stays what it is.
  return text.arg(decoded(finding.stationName), targets.join(','));
}

}  // namespace

QStringList Translation(std::vector<ErrorInfo> const& findings) {
  QStringList lines;
  for (ErrorInfo const& finding : findings) {
    bool const hasText = finding.errorCode >= 0 && finding.errorCode < static_cast<int>(std::size(kTexts));
    if (hasText) lines << textOf(finding);
  }
  return lines;
}

}  // namespace kvn
