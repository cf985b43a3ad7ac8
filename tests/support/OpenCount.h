// OpenCount: how often a file is opened.
#pragma once

#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>
#include <QString>
#include <cstring>

namespace test {

/// How often a file has been opened since the construction, by any program.
class OpenCount {
 public:
  explicit OpenCount(QString const& path) : events(inotify_init1(IN_NONBLOCK)) {
    // With what closes it: equal events that follow each other would be told as one.
    EXPECT_GE(inotify_add_watch(events, path.toUtf8().constData(), IN_OPEN | IN_CLOSE), 0);
  }
  OpenCount(OpenCount const&) = delete;
  OpenCount& operator=(OpenCount const&) = delete;
  ~OpenCount() { ::close(events); }

  int take() const {
    char bytes[4096];
    ssize_t const size = ::read(events, bytes, sizeof bytes);
    int opened = 0;
    for (ssize_t at = 0; at < size; at += static_cast<ssize_t>(sizeof(inotify_event))) {
      inotify_event event{};
      std::memcpy(&event, bytes + at, sizeof event);
      if ((event.mask & IN_OPEN) != 0) ++opened;
    }
    return opened;
  }

 private:
  int events;
};

}  // namespace test
