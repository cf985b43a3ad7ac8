#include "support/Support.h"

#include <json/reader.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <sstream>

namespace test {

Host::Host() {
  system.setSendMessageFunc([this](QString const& text, kvn::MessType type) { messages.emplace_back(text, type); });
}

Json::Value json(std::string const& document) {
  Json::Value value;
  std::istringstream(document) >> value;
  return value;
}

std::string algorithmFailureOf(std::function<void()> const& call) {
  try {
    call();
  } catch (kvn::AlgorithmException const& failure) {
    return std::string(failure.what()) + "|" + failure.name + "|" + std::to_string(failure.index);
  }
  return "no failure";
}

std::string xmlAttributes(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += " a" + std::to_string(i) + "=''";
  return text;
}

QString samplePath(QString const& name) { return QStringLiteral(KELVANE_SOURCE_DIR "/samples/") + name; }

std::string fileBytes(QString const& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

void writeFile(QString const& path, std::string const& bytes) {
  QDir().mkpath(QFileInfo(path).path());
  QFile file(path);
  if (file.open(QIODevice::WriteOnly)) file.write(bytes.data(), static_cast<qint64>(bytes.size()));
}

}  // namespace test
