// IProcessCancel: the cancel query of a long operation.
#pragma once

#include <utils/Export.h>

#include <functional>

namespace utils {

/// Holds the host's cancel query. Long operations ask `isCancel()` between two steps and end by exception.
class KELVANE_EXPORT IProcessCancel {
 public:
  IProcessCancel();
  IProcessCancel(IProcessCancel const&);
  IProcessCancel(IProcessCancel&&) noexcept;
  IProcessCancel& operator=(IProcessCancel const&);
  IProcessCancel& operator=(IProcessCancel&&) noexcept;

  /// Answer of the stored query; false when none is stored.
  virtual bool isCancel() const;
  virtual ~IProcessCancel();

  void setCancelCall(std::function<bool()> call);
  std::function<bool()> const& getCancelCall() const;

 private:
  std::function<bool()> cancelCall;
};

}  // namespace utils
