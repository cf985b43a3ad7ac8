#include "commands/Command.h"
#include "commands/detail/DataSteps.h"
#include "core/Project.h"
#include "map/CoordinateDataTool.h"
#include "records/detail/Messages.h"

#include <utils/HTextCodec.h>
#include <utils/QLogicError.h>

namespace kvn {
namespace {

CoordinatePointInfo& pointOf(CoordinateDataTool const& tool, QString const& id) {
  CoordinatePointInfo* const point = tool.findData(id, nullptr);
  if (point == nullptr) throw QLogicError(Messages::tr("Can not find the Coordinate Point"));
  return *point;
}

/// A point may keep its name.
void checkNameIsFree(CoordinateDataTool const& tool, QString const& id, QString const& name) {
  CoordinatePointInfo const* const holder = tool.findName(name);
  if (holder == nullptr || *holder == id.toStdString()) return;
  throw QLogicError(Messages::tr("The point name [%1] same, please reset it").arg(name));
}

void applyTo(CoordinatePointInfo& point, QString const& name, Json::Value const& data) {
  point.name = HTextCodec::ToLocal8Bit(name);
  Json::Value const& signal = data["Signal"];
  if (signal.isString()) point.signal = HTextCodec::ToLocal8Bit(QString::fromStdString(signal.asString()));
  detail::apply(data["N"], point.N);
  detail::apply(data["E"], point.E);
  detail::apply(data["Z"], point.Z);
}

/// Changes a point of the coordinate list: {"data": {"id", "Name", "Signal", "N", "E", "Z"}}, metres; id and name are
/// required texts, and no other point may have the name. The coordinate layer is drawn again, so a map is needed.
class ModifyCoordinateDataCMD : public Command {
 public:
  bool execute(Json::Value const& in) override {
    Json::Value const& data = in["data"];
    QString const id = QString::fromStdString(detail::requiredText(data["id"]));
    QString const name = QString::fromStdString(detail::requiredText(data["Name"]));
    Project* const project = getProject();
    CoordinateDataTool const tool(getMapScene());
    CoordinatePointInfo& point = pointOf(tool, id);
    checkNameIsFree(tool, id, name);
    applyTo(point, name, data);
    detail::redrawCoordinates(*project);
    project->setModify(true);
    return true;
  }

  char const* className() const override { return "ModifyCoordinateDataCMD"; }
};

CommandRegistration<ModifyCoordinateDataCMD> const registerModifyCoordinateData("ModifyCoordinateDataCMD");

}  // namespace
}  // namespace kvn
