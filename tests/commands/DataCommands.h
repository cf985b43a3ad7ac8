// A project with a map, and commands that are run on it.
#pragma once

#include <gmock/gmock.h>
#include <json/writer.h>
#include <QTemporaryDir>
#include <string>
#include <vector>

#include "map/MapFixture.h"

namespace test {

struct DataCommands : MapProject {
  QTemporaryDir folder;
  osg::ref_ptr<FramingRecorder> const recorder = new FramingRecorder;

  DataCommands() { system.setMvzViewerManager(recorder); }
  ~DataCommands() override { EXPECT_TRUE(project->getCommandManager()->getUndoQueue().empty()); }

  /// Runs a command, which is to succeed or to fail with a text that holds the given one.
  void expect(std::string const& command, std::string const& in, std::string const& failure = "") {
    SCOPED_TRACE(command + in);
    host.messages.clear();
    recorder->framed.clear();
    Json::Value out;
    EXPECT_EQ(project->getCommandManager()->execute(command.c_str(), json(in), out, {}), failure.empty()) << out;
    EXPECT_EQ(out["code"].isNull(), failure.empty()) << "the result of a success is null";
    EXPECT_THAT(out["message"].asString(), testing::HasSubstr(failure));
  }

  /// The messages of the latest run, the types by their first letter.
  std::string told() const {
    std::string texts;
    for (auto const& [text, type] : host.messages) {
      texts += (type == kvn::Info ? "I " : type == kvn::Warning ? "W " : "E ") + text.toStdString() + "\n";
    }
    return texts;
  }

  /// Lines/view points/coordinate points on the map.
  std::string drawn() const {
    auto const count = [this](kvn::FeatureDataType type) {
      return std::to_string(featuresOf(*project->getOrCreateMapScene(), type).size());
    };
    return count(kvn::FeatureDataType::NetworkData) + "/" + count(kvn::FeatureDataType::ViewPointData) + "/" +
           count(kvn::FeatureDataType::CoordData);
  }

  std::string file(QString const& name, std::string const& bytes) const {
    writeFile(folder.filePath(name), bytes);
    return R"({"file": ")" + folder.filePath(name).toStdString() + "\"}";
  }
};

template <typename Record>
std::string idsIn(std::vector<Record> const& list) {
  std::string text;
  for (Record const& record : list) text += record.id;
  return text;
}

}  // namespace test
