#include "Saving.h"

#include "Failures.h"
#include "Output.h"

#include <new>
#include <string>
#include <unordered_set>

namespace kvn::host {
namespace {

void tellNotWritten(QString const& path, QString const& reason) {
  System::Instance()->sendMessage(System::tr("%1 was not written: %2").arg(utils::readablePath(path), reason), Error);
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
  if (!isExchange(path)) return session.job().save(path);
  SiteDrawing const drawing = siteDrawingOf(session.job());
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
