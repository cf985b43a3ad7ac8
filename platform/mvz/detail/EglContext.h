// An OpenGL context without a display.
#pragma once

#include <QString>
#include <memory>

namespace mvz::detail {

/// The library that off-screen contexts come from, for all that are made from now on: "EGL" where nothing else was
/// said.
void useEglLibrary(QString const& name);

/// A context of desktop OpenGL with its compatibility profile, which needs neither a display nor a window system.
///
/// EGL is loaded when the first context is made, so that machines that draw no pictures need not have it.
class EglContext {
 public:
  /// @throws QLogicError when the machine has no EGL or no OpenGL behind it; says what to install.
  EglContext();
  EglContext(EglContext const&) = delete;
  EglContext& operator=(EglContext const&) = delete;
  ~EglContext();

  /// Holds the context current on this thread; at its end the one that was current before is so again.
  class Current {
   public:
    /// @throws QLogicError when the context cannot be made current, say on a thread that draws through GLX.
    explicit Current(EglContext const& context);
    Current(Current const&) = delete;
    Current& operator=(Current const&) = delete;
    ~Current();

   private:
    struct Before;
    std::unique_ptr<Before> before;
  };

 private:
  struct Handles;
  std::unique_ptr<Handles> handles;
};

}  // namespace mvz::detail
