#include "Saving.h"

#include "Failures.h"
#include "Output.h"

#include <new>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace kvn::host {
namespace {

void tellNotWritten(QString const& path, QString const& reason) {
  System::Instance()->sendMessage(System::tr("%1 was not written: %2").arg(path, reason), Error);
}

/// What a file lacks is told whatever `-q` says: the file stays when the messages are gone.
class AllTold {
 public:
  explicit AllTold(Messages& receiver) : messages(receiver), wasErrorsOnly(receiver.errorsOnly()) {
    messages.setErrorsOnly(false);
  }
  AllTold(AllTold const&) = delete;
  AllTold& operator=(AllTold const&) = delete;
  ~AllTold() { messages.setErrorsOnly(wasErrorsOnly); }

 private:
  Messages& messages;
  bool wasErrorsOnly;
};

/// Other programs take the points of one name for one, or the last of them for the others.
void tellGivenTwice(Project const& project) {
  std::unordered_map<std::string, CoordinatePointInfo const*> first;
  QStringList names;
  for (CoordinatePointInfo const& point : project.getCoordinatePointList()) {
    CoordinatePointInfo const& known = *first.emplace(point.name, &point).first->second;
    bool const isSame = known.N == point.N && known.E == point.E && known.Z == point.Z;
    if (!isSame) names << printable(recordText(point.name));
  }
  names.removeDuplicates();
  if (names.isEmpty()) return;
  System::Instance()->sendMessage(System::tr("Given more than once, in different places: %1").arg(listedNames(names)),
                                  Warning);
}

}  // namespace

QStringList savableKinds() { return Job::writableKinds() + exchangeKinds(); }

bool isExchange(QString const& path) { return exchangeKinds().contains(path.section('.', -1).toLower()); }

void tellWithoutPlace(SiteDrawing const& drawing, bool isTable) {
  std::unordered_set<std::string> told;
  if (isTable) {
    for (SitePoint const& point : drawing.heightsAlone) told.insert(point.name);
  }
  QStringList names;
  for (std::string const& name : drawing.withoutPlace) {
    if (told.count(name) == 0) names << printable(QString::fromStdString(name));
  }
  if (names.isEmpty()) return;
  System::Instance()->sendMessage(System::tr("Left out, since they have no coordinates: %1").arg(listedNames(names)),
                                  Warning);
}

void saveJob(Session& session, QString const& path, ExchangeChoice const& choice) {
  AllTold const all(session.messages());
  if (!isExchange(path)) return session.job().save(path);
  session.job().requireNoError(Job::FileText);
  SiteDrawing const drawing = siteDrawingOf(session.job());
  tellGivenTwice(session.project());
  tellWithoutPlace(drawing, path.endsWith(".csv", Qt::CaseInsensitive));
  ExchangeOptions options;
  options.hasByteOrderMark = choice.hasByteOrderMark;
  options.epsg = choice.epsg;
  options.svg.words = translatedMapWord;
  writeExchange(path, drawing, options);
}

bool save(Session& session, QString const& path, std::function<void(Session&, QString const&)> const& write) {
  int const errorsBefore = session.messages().errorCount();
  try {
    write(session, path);
    session.pass(path);
  } catch (std::bad_alloc const&) {
    throw;  // there may be no memory for a message
  } catch (JobException const& failure) {
    tellNotWritten(session.shown(path), refusalText(failure));
  } catch (std::exception const& failure) {
    tellNotWritten(session.shown(path), QString::fromUtf8(failure.what()));
  }
  return session.messages().errorCount() == errorsBefore;
}

int finishSaving(Session& session, QString const& path, bool saved, bool asJson) {
  if (asJson) {
    Json::Value json;
    json["version"] = kJsonVersion;
    json["file"] = session.shown(path).toStdString();
    json["ok"] = saved;
    json["messages"] = session.messages().take();
    printJson(json);
  }
  return saved ? Done : Refused;
}

}  // namespace kvn::host
