#include <utils/IProcessCancel.h>

#include <utility>

namespace utils {

IProcessCancel::IProcessCancel() = default;
IProcessCancel::IProcessCancel(IProcessCancel const&) = default;
IProcessCancel::IProcessCancel(IProcessCancel&&) noexcept = default;
IProcessCancel& IProcessCancel::operator=(IProcessCancel const&) = default;
IProcessCancel& IProcessCancel::operator=(IProcessCancel&&) noexcept = default;
IProcessCancel::~IProcessCancel() = default;

bool IProcessCancel::isCancel() const {
  std::function<bool()> const query = cancelCall;  // it may replace itself
  return query && query();
}
void IProcessCancel::setCancelCall(std::function<bool()> call) { cancelCall = std::move(call); }
std::function<bool()> const& IProcessCancel::getCancelCall() const { return cancelCall; }

}  // namespace utils
