#include "formats/ITraverseDataCollcetion.h"

#include "formats/detail/FileAccess.h"

#include <algorithm>
#include <utility>

namespace kvn {

ITraverseDataCollcetion::ITraverseDataCollcetion() : version("V1.0") {}
ITraverseDataCollcetion::ITraverseDataCollcetion(ITraverseDataCollcetion const&) = default;
ITraverseDataCollcetion::ITraverseDataCollcetion(ITraverseDataCollcetion&&) noexcept = default;
ITraverseDataCollcetion& ITraverseDataCollcetion::operator=(ITraverseDataCollcetion const&) = default;
ITraverseDataCollcetion& ITraverseDataCollcetion::operator=(ITraverseDataCollcetion&&) noexcept = default;
ITraverseDataCollcetion::~ITraverseDataCollcetion() = default;

bool ITraverseDataCollcetion::read(std::string const& path) {
  detail::readFile(path, [this](std::istream& stream) { read(stream); });
  return true;
}

bool ITraverseDataCollcetion::write(std::string const& path) {
  detail::replaceFile(path, [this](std::ostream& stream) { write(stream); });
  return true;
}

std::vector<TraverseDataInfo>& ITraverseDataCollcetion::getTraverseDataList() { return traverseDataList; }
std::vector<TraverseDataInfo> const& ITraverseDataCollcetion::getTraverseDataList() const { return traverseDataList; }
void ITraverseDataCollcetion::setTraverseDataList(std::vector<TraverseDataInfo> const& rows) {
  traverseDataList = rows;
}

std::string const& ITraverseDataCollcetion::getJobName() const { return jobName; }
void ITraverseDataCollcetion::setJobName(std::string value) { jobName = std::move(value); }
std::string const& ITraverseDataCollcetion::getInstrumentName() const { return instrumentName; }
void ITraverseDataCollcetion::setInstrumentName(std::string value) { instrumentName = std::move(value); }
std::string const& ITraverseDataCollcetion::getVersion() const { return version; }
void ITraverseDataCollcetion::setVersion(std::string value) { version = std::move(value); }

TraverseDataInfo const* ITraverseDataCollcetion::findData(std::string const& id) const {
  auto const found = std::find(traverseDataList.begin(), traverseDataList.end(), id);
  return found == traverseDataList.end() ? nullptr : &*found;
}

TraverseDataInfo* ITraverseDataCollcetion::findData(std::string const& id) {
  return const_cast<TraverseDataInfo*>(std::as_const(*this).findData(id));
}

bool ITraverseDataCollcetion::isTraverseNameExist(std::string const& name) const {
  return std::any_of(traverseDataList.begin(), traverseDataList.end(),
                     [&name](TraverseDataInfo const& row) { return row.name == name; });
}

}  // namespace kvn
