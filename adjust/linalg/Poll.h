// The call by which long work asks whether to go on.
#pragma once

#include <functional>

namespace kvn::detail {

/// Called again and again in long work; may throw to end it.
using Poll = std::function<void()>;

/// Counts work and calls the poll whenever some milliseconds of it are done. The poll must outlive the object.
class Effort {
 public:
  explicit Effort(Poll const& function) : poll(function) {}

  void spend(double multiplications) {
    spent += multiplications;
    if (spent >= kPollEvery) ask();
  }
  /// One round of a loop through an observation, a point or the like.
  void step() { spend(kStep); }

 private:
  static constexpr double kPollEvery = 5e7;
  static constexpr double kStep = 2000.0;  // memory is waited for

  void ask() {
    spent = 0.0;
    if (poll) poll();
  }

  Poll const& poll;
  double spent = 0.0;
};

}  // namespace kvn::detail
