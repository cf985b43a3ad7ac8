#include "OpenJobCMD.h"

#include <utility>

namespace {

// By this name the command manager of every project finds it.
kvn::CommandRegistration<OpenJobCMD> const registration("OpenJobCMD");

std::unique_ptr<kvn::Job> opened;

}  // namespace

bool OpenJobCMD::execute(Json::Value const& in) {
  opened.reset();
  kvn::Project* const project = getProject();
  auto job = std::make_unique<kvn::Job>(getSystem()->findProject(project));
  job->open(QString::fromStdString(in["file"].asString()));  // what it throws becomes "message" of `out`
  result["rows"] = Json::UInt64(project->getTraverseDataList().size());
  result["lines"] = Json::UInt64(project->getNetwork().lines.size());
  result["coordinates"] = Json::UInt64(project->getCoordinatePointList().size());
  opened = std::move(job);
  return true;
}

std::unique_ptr<kvn::Job> OpenJobCMD::takeJob() { return std::move(opened); }
