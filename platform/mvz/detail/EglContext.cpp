#include <mvz/detail/EglContext.h>
#include <utils/QLogicError.h>

// Without the macros of X11 ("None", "Bool"), which Qt does not survive.
#define EGL_NO_X11
#define MESA_EGL_NO_X11_HEADERS
#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <QLibrary>
#include <cstring>

namespace mvz::detail {
namespace {

QString& libraryName() {
  static auto* const name = new QString(QStringLiteral("EGL"));
  return *name;
}

[[noreturn]] void refuse(QString const& why) {
  throw QLogicError(QStringLiteral("The map cannot be drawn without a display: %1. Install EGL and OpenGL (on Debian: "
                                   "libegl1 libegl-mesa0 libgl1-mesa-dri).")
                        .arg(why));
}

/// The functions of EGL that are used here. EGL is never unloaded and a display never terminated: others may use both.
struct Egl {
  explicit Egl(QString const& name);

  decltype(&::eglGetProcAddress) getProcAddress;
  decltype(&::eglQueryString) queryString;
  decltype(&::eglGetDisplay) getDisplay;
  decltype(&::eglInitialize) initialize;
  decltype(&::eglQueryAPI) queryApi;
  decltype(&::eglBindAPI) bindApi;
  decltype(&::eglChooseConfig) chooseConfig;
  decltype(&::eglCreateContext) createContext;
  decltype(&::eglDestroyContext) destroyContext;
  decltype(&::eglCreatePbufferSurface) createPbufferSurface;
  decltype(&::eglDestroySurface) destroySurface;
  decltype(&::eglMakeCurrent) makeCurrent;
  decltype(&::eglGetCurrentContext) getCurrentContext;
  decltype(&::eglGetCurrentDisplay) getCurrentDisplay;
  decltype(&::eglGetCurrentSurface) getCurrentSurface;

  /// A display of no window system where there is such a thing, else the default one.
  [[nodiscard]] EGLDisplay findDisplay() const;
};

template <typename Function>
void resolve(QLibrary& library, Function& function, char const* name) {
  function = reinterpret_cast<Function>(library.resolve(name));
  if (function == nullptr) refuse(QStringLiteral("%1 lacks %2").arg(library.fileName(), QLatin1String(name)));
}

Egl::Egl(QString const& name) {
  QLibrary library(name, 1);
  if (!library.load()) refuse(library.errorString());
  resolve(library, getProcAddress, "eglGetProcAddress");
  resolve(library, queryString, "eglQueryString");
  resolve(library, getDisplay, "eglGetDisplay");
  resolve(library, initialize, "eglInitialize");
  resolve(library, queryApi, "eglQueryAPI");
  resolve(library, bindApi, "eglBindAPI");
  resolve(library, chooseConfig, "eglChooseConfig");
  resolve(library, createContext, "eglCreateContext");
  resolve(library, destroyContext, "eglDestroyContext");
  resolve(library, createPbufferSurface, "eglCreatePbufferSurface");
  resolve(library, destroySurface, "eglDestroySurface");
  resolve(library, makeCurrent, "eglMakeCurrent");
  resolve(library, getCurrentContext, "eglGetCurrentContext");
  resolve(library, getCurrentDisplay, "eglGetCurrentDisplay");
  resolve(library, getCurrentSurface, "eglGetCurrentSurface");
}

EGLDisplay Egl::findDisplay() const {
  char const* const extensions = queryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
  if (extensions != nullptr && std::strstr(extensions, "EGL_MESA_platform_surfaceless") != nullptr) {
    auto const find = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(getProcAddress("eglGetPlatformDisplayEXT"));
    EGLDisplay const display = find == nullptr ? EGL_NO_DISPLAY : find(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr);
    if (display != EGL_NO_DISPLAY && initialize(display, nullptr, nullptr) == EGL_TRUE) return display;
  }
  EGLDisplay const display = getDisplay(EGL_DEFAULT_DISPLAY);
  bool const usable = display != EGL_NO_DISPLAY && initialize(display, nullptr, nullptr) == EGL_TRUE;
  if (!usable) refuse(QStringLiteral("EGL finds no device to draw with"));
  return display;
}

/// What eglBindAPI chose is of the thread, and the host may have chosen OpenGL ES.
class DesktopApi {
 public:
  explicit DesktopApi(Egl const& library) : egl(library), before(library.queryApi()) {
    if (egl.bindApi(EGL_OPENGL_API) != EGL_TRUE) refuse(QStringLiteral("EGL offers no desktop OpenGL"));
  }
  DesktopApi(DesktopApi const&) = delete;
  DesktopApi& operator=(DesktopApi const&) = delete;
  ~DesktopApi() { egl.bindApi(before); }

 private:
  Egl const& egl;
  EGLenum before;
};

}  // namespace

void useEglLibrary(QString const& name) { libraryName() = name; }

struct EglContext::Handles {
  Handles();
  Handles(Handles const&) = delete;
  Handles& operator=(Handles const&) = delete;
  ~Handles();

  Egl egl{libraryName()};
  EGLDisplay display = egl.findDisplay();
  EGLSurface surface = EGL_NO_SURFACE;
  EGLContext context = EGL_NO_CONTEXT;
};

EglContext::Handles::Handles() {
  DesktopApi const desktop(egl);
  EGLint const wanted[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
  EGLConfig config = nullptr;
  EGLint count = 0;
  bool const found = egl.chooseConfig(display, wanted, &config, 1, &count) == EGL_TRUE && count > 0;
  if (!found) refuse(QStringLiteral("EGL finds no desktop OpenGL"));
  // Nobody draws on the surface, but some drivers make no context current without one.
  EGLint const size[] = {EGL_WIDTH, 1, EGL_HEIGHT, 1, EGL_NONE};
  surface = egl.createPbufferSurface(display, config, size);
  if (surface != EGL_NO_SURFACE) context = egl.createContext(display, config, EGL_NO_CONTEXT, nullptr);
  if (context != EGL_NO_CONTEXT) return;
  if (surface != EGL_NO_SURFACE) egl.destroySurface(display, surface);
  refuse(QStringLiteral("OpenGL could not be started"));
}

EglContext::Handles::~Handles() {
  egl.destroyContext(display, context);
  egl.destroySurface(display, surface);
}

EglContext::EglContext() : handles(std::make_unique<Handles>()) {}

EglContext::~EglContext() = default;

struct EglContext::Current::Before {
  explicit Before(Handles const& own);
  Before(Before const&) = delete;
  Before& operator=(Before const&) = delete;
  ~Before();

  Handles const& handles;
  // The current context is asked for before another API is chosen: EGL keeps one of each.
  EGLDisplay display;
  EGLContext context;
  EGLSurface drawSurface;
  EGLSurface readSurface;
  DesktopApi desktop;
};

EglContext::Current::Before::Before(Handles const& own)
    : handles(own),
      display(own.egl.getCurrentDisplay()),
      context(own.egl.getCurrentContext()),
      drawSurface(own.egl.getCurrentSurface(EGL_DRAW)),
      readSurface(own.egl.getCurrentSurface(EGL_READ)),
      desktop(own.egl) {
  if (own.egl.makeCurrent(own.display, own.surface, own.surface, own.context) != EGL_TRUE) {
    refuse(QStringLiteral("this thread uses OpenGL in another way"));
  }
}

EglContext::Current::Before::~Before() {
  handles.egl.makeCurrent(handles.display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
  if (context != EGL_NO_CONTEXT) handles.egl.makeCurrent(display, drawSurface, readSurface, context);
}

EglContext::Current::Current(EglContext const& context) : before(std::make_unique<Before>(*context.handles)) {}

EglContext::Current::~Current() = default;

}  // namespace mvz::detail
