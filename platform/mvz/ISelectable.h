// mvz::ISelectable: a feature with one look for the normal and one for the selected state.
#pragma once

#include <utils/Export.h>

#include <osg/Referenced>
#include <osg/ref_ptr>

namespace mvz {
namespace detail {
struct Attached;
}

class KELVANE_EXPORT ISelectable {
 public:
  ISelectable();
  ISelectable(ISelectable const&) = delete;
  ISelectable& operator=(ISelectable const&) = delete;
  virtual ~ISelectable();

  bool isSelected() const { return isOn; }
  void setSelected(bool value);  ///< changes the look when the state changes

 protected:
  virtual void showSelected(bool value) = 0;

 private:
  friend struct detail::Attached;

  bool isOn = false;
  osg::ref_ptr<osg::Referenced> info;
  osg::ref_ptr<osg::Referenced> ends;
};

}  // namespace mvz
