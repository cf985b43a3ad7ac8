// SharedCache: states and drawables that many nodes have in common.
#pragma once

#include <cstddef>
#include <iterator>
#include <map>
#include <mutex>
#include <osg/observer_ptr>
#include <osg/ref_ptr>
#include <utility>

namespace osgEarth {
inline namespace kelvane {

/// Keeps nothing alive: what no node uses any more is made anew when it is next asked for.
///
/// An object is handed out at most kShare times, then the next one is made. It lists its owners and searches that list
/// when one goes away, which would make the removal of n nodes take n² steps.
template <typename Key, typename Object>
class SharedCache {
 public:
  /// Makes the object with make() when there is none for the key.
  template <typename Make>
  osg::ref_ptr<Object> get(Key const& key, Make const& make) {
    std::lock_guard<std::mutex> const hold(mutex_);
    sweep();
    Entry& entry = entries_[key];
    osg::ref_ptr<Object> object;
    if (entry.uses++ < kShare && entry.object.lock(object)) return object;
    object = make();
    entry = {object.get(), 1};
    return object;
  }

 private:
  static constexpr std::size_t kShare = 1024;
  static constexpr std::size_t kFirstSweep = 64;

  struct Entry {
    osg::observer_ptr<Object> object;
    std::size_t uses = 0;
  };

  /// Drops the entries without an object, seldom enough for its cost to be shared by the entries added meanwhile.
  void sweep() {
    if (entries_.size() < sweepAt_) return;
    for (auto at = entries_.begin(); at != entries_.end();)
      at = at->second.object.valid() ? std::next(at) : entries_.erase(at);
    sweepAt_ = 2 * entries_.size() + kFirstSweep;
  }

  std::mutex mutex_;
  std::map<Key, Entry> entries_;
  std::size_t sweepAt_ = kFirstSweep;
};

}  // namespace kelvane
}  // namespace osgEarth
