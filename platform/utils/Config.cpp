#include <utils/Config.h>
#include <utils/FileText.h>
#include <utils/HTextCodec.h>

#include <json/reader.h>
#include <json/writer.h>
#include <QFile>
#include <QFileInfo>
#include <memory>

namespace utils {
namespace {

Config::ReadResult readTree(QString const& path, Json::Value& tree) {
  if (path.isEmpty() || !QFileInfo::exists(path)) return Config::ReadResult::Missing;
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return Config::ReadResult::Invalid;
  QByteArray const bytes = file.readAll();
  Json::CharReaderBuilder builder;
  builder["failIfExtra"] = true;  // what follows the tree would be lost when the file is written
  std::unique_ptr<Json::CharReader> const reader(builder.newCharReader());
  std::string errors;
  try {
    bool const good = reader->parse(bytes.constData(), bytes.constData() + bytes.size(), &tree, &errors);
    return good ? Config::ReadResult::Good : Config::ReadResult::Invalid;
  } catch (Json::Exception const&) {  // nesting beyond the reader's limit
    return Config::ReadResult::Invalid;
  }
}

/// Moves a file aside under a name that is not in use; empty when that failed.
QString moveAside(QString const& path) {
  for (int i = 1; i < 1000; ++i) {
    QString const name = QStringLiteral("%1.invalid-%2").arg(path).arg(i);
    if (!QFileInfo::exists(name)) return QFile::rename(path, name) ? name : QString();
  }
  return {};
}

}  // namespace

Config::ReadResult Config::read(std::string const& path) {
  Json::Value fresh;
  ReadResult const result = readTree(HTextCodec::FromLocal8Bit(path), fresh);
  if (result != ReadResult::Good) return result;
  tree.swap(fresh);
  readFrom = path;
  return result;
}

Config::WriteResult Config::write(std::string const& localPath) const {
  WriteResult result;
  QString const path = HTextCodec::FromLocal8Bit(localPath);
  if (path.isEmpty()) return result;
  Json::Value old;
  ReadResult const state = readTree(path, old);
  if (state == ReadResult::Good && readFrom != localPath && tree.empty()) return result;
  if (state == ReadResult::Invalid) {
    result.keptAs = moveAside(path);
    if (result.keptAs.isEmpty()) {
      result.error = QStringLiteral("%1: not valid JSON, and it cannot be renamed").arg(path);
      return result;
    }
  }
  createFolderOf(path);
  Json::StreamWriterBuilder builder;
  builder["indentation"] = "  ";
  builder["emitUTF8"] = true;
  result.error = replaceFile(path, Json::writeString(builder, tree.isNull() ? Json::Value(Json::objectValue) : tree));
  return result;
}

Json::Value Config::value(std::string const& dottedPath, Json::Value const& defaultValue) const {
  return Json::Path(dottedPath).resolve(tree, defaultValue);
}

Json::Value& Config::root() { return tree; }
Json::Value const& Config::root() const { return tree; }

}  // namespace utils
