#include "commands/Command.h"
#include "commands/detail/DataSteps.h"
#include "core/Project.h"
#include "core/System.h"

#include <utils/HTextCodec.h>

#include <QSet>

namespace kvn {
namespace {

/// The first point of each id goes, as if `Project::removeCoordinatePoint` had been called for one id after the other:
/// an id is wanted until it is met.
void removeFirstOfEach(std::vector<CoordinatePointInfo>& points, std::set<std::string> const& ids) {
  QSet<QString> wanted;
  for (std::string const& id : ids) wanted.insert(QString::fromStdString(id));
  detail::takeOut(points, [&wanted](CoordinatePointInfo const& point) {
    return wanted.remove(HTextCodec::FromLocal8Bit(point.id));
  });
}

/// Removes points of the coordinate list, the first one of each id: {"data": {"ids"}}. The coordinate layer is drawn
/// again and the project is modified, also when there was no such point.
class RemoveCoordinateDataCMD : public Command {
 public:
  bool execute(Json::Value const& in) override {
    auto const ids = detail::idsOf(in["data"]["ids"]);
    Project* const project = getProject();
    getSystem();  // the removal needs one, although it has nothing to tell
    removeFirstOfEach(project->getCoordinatePointList(), ids);
    detail::redrawCoordinates(*project);
    project->setModify(true);
    return true;
  }

  char const* className() const override { return "RemoveCoordinateDataCMD"; }
};

CommandRegistration<RemoveCoordinateDataCMD> const registerRemoveCoordinateData("RemoveCoordinateDataCMD");

}  // namespace
}  // namespace kvn
