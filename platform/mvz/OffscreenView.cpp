#include <mvz/GraphicsState.h>
#include <mvz/OffscreenView.h>
#include <mvz/detail/EglContext.h>
#include <mvz/detail/Shading.h>
#include <utils/FileText.h>
#include <utils/QLogicError.h>
#include <utils/detail/InstalledCode.h>
#include <utils/detail/PrivateData.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <osg/FrameBufferObject>
#include <osg/GLExtensions>
#include <osgDB/ReaderWriter>
#include <osgDB/Registry>
#include <osgViewer/GraphicsWindow>
#include <osgViewer/Viewer>
#include <sstream>
#include <string>

namespace mvz {
namespace {

/// Places in a pixel that are looked at for smooth edges. Software drivers offer no more; one that offers fewer takes
/// its most.
constexpr int kSamples = 4;

[[noreturn]] void refuseSize(int width, int height) {
  throw QLogicError(QStringLiteral("OpenGL has no room for a picture of %1 by %2 pixels.").arg(width).arg(height));
}

constexpr double kScreenDots = 96.0;  // per inch

void append(std::string& bytes, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFFU);
}

/// The check sum of PNG (CRC-32 of ISO 3309).
std::uint32_t checkSum(std::string const& bytes) {
  std::uint32_t sum = 0xFFFFFFFFU;
  for (char const byte : bytes) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) sum = (sum & 1U) != 0 ? 0xEDB88320U ^ (sum >> 1U) : sum >> 1U;
  }
  return ~sum;
}

/// Tells programs that print a PNG how large it is: a chunk of pixels per metre behind the head.
void addResolution(std::string& png, double dotsPerInch) {
  constexpr std::size_t kHead = 33;
  constexpr double kInchesPerMetre = 39.37007874015748;
  auto const dots = static_cast<std::uint32_t>(std::lround(dotsPerInch * kInchesPerMetre));
  std::string chunk = "pHYs";
  append(chunk, dots);
  append(chunk, dots);
  chunk += '\1';  // per metre
  std::string whole;
  append(whole, 9);
  whole += chunk;
  append(whole, checkSum(chunk));
  png.insert(kHead, whole);
}

/// Finds the functions of this context's OpenGL.
void startExtensions(osg::State& state) {
  state.initializeExtensionProcs();
  // The dispatching libGL has an address for every function that it was ever asked for. OpenSceneGraph takes the
  // address for the function, and would get no memory from this one where the driver has none.
  bool const hasCoverage = osg::isGLExtensionSupported(state.getContextID(), "GL_NV_framebuffer_multisample_coverage");
  if (!hasCoverage) state.get<osg::GLExtensions>()->glRenderbufferStorageMultisampleCoverageNV = nullptr;
}

/// A picture in the graphics memory, with depth when it is drawn to.
osg::ref_ptr<osg::FrameBufferObject> frameBuffer(int width, int height, int samples, bool depth) {
  using osg::RenderBuffer;
  osg::ref_ptr<osg::FrameBufferObject> buffer = new osg::FrameBufferObject;
  buffer->setAttachment(osg::Camera::COLOR_BUFFER,
                        osg::FrameBufferAttachment(new RenderBuffer(width, height, GL_RGBA8, samples)));
  if (depth) {
    buffer->setAttachment(osg::Camera::DEPTH_BUFFER,
                          osg::FrameBufferAttachment(new RenderBuffer(width, height, GL_DEPTH_COMPONENT24, samples)));
  }
  return buffer;
}

}  // namespace

/// What a view draws with: the context, a viewer of its own, and two pictures: one with several samples a pixel, and
/// the one that they are averaged into.
class KELVANE_PRIVATE OffscreenView::Canvas {
  KELVANE_LATER_MEMBER

 public:
  explicit Canvas(osg::Camera* viewCamera);
  Canvas(Canvas const&) = delete;
  Canvas& operator=(Canvas const&) = delete;
  ~Canvas();

  osg::ref_ptr<osg::Image> draw();

  /// Gives back what the node, which is no longer shown, holds in this context.
  void release(osg::Node& node);

 private:
  void fitBuffers();
  void bind(osg::FrameBufferObject& buffer, osg::FrameBufferObject::BindTarget target);
  osg::ref_ptr<osg::Image> average();

  osg::Camera* camera;  ///< of the view, which outlives its canvas
  detail::EglContext context;
  osg::ref_ptr<osgViewer::GraphicsWindowEmbedded> window;
  std::unique_ptr<osgViewer::Viewer> viewer;
  osg::ref_ptr<osg::FrameBufferObject> samples;
  osg::ref_ptr<osg::FrameBufferObject> picture;
  int width = 0;
  int height = 0;
};

OffscreenView::Canvas::Canvas(osg::Camera* viewCamera) : camera(viewCamera) {
  detail::EglContext::Current const current(context);
  window = new osgViewer::GraphicsWindowEmbedded(0, 0, 1, 1);
  viewer = std::make_unique<osgViewer::Viewer>();
  viewer->setThreadingModel(osgViewer::ViewerBase::SingleThreaded);
  viewer->setLightingMode(osg::View::NO_LIGHT);
  camera->setGraphicsContext(window);
  osg::ref_ptr<osg::Node> const shown = camera->getChild(0);
  viewer->setCamera(camera);
  viewer->setSceneData(shown);
  viewer->realize();
  startExtensions(*window->getState());
  prepareGraphicsState(*window->getState());
}

OffscreenView::Canvas::~Canvas() {
  detail::EglContext::Current const current(context);
  samples = nullptr;
  picture = nullptr;
  // Closing gives back what the scene holds in this context, for which the context is current here.
  window->close();
  camera->setGraphicsContext(nullptr);
  viewer.reset();
  window = nullptr;
}

void OffscreenView::Canvas::bind(osg::FrameBufferObject& buffer, osg::FrameBufferObject::BindTarget target) {
  osg::State& state = *window->getState();
  buffer.apply(state, target);
  auto* const extensions = state.get<osg::GLExtensions>();
  if (extensions->glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) refuseSize(width, height);
}

void OffscreenView::Canvas::fitBuffers() {
  int const newWidth = static_cast<int>(camera->getViewport()->width());
  int const newHeight = static_cast<int>(camera->getViewport()->height());
  if (newWidth == width && newHeight == height) return;
  if (std::max(newWidth, newHeight) > window->getState()->get<osg::GLExtensions>()->maxTextureSize)
    refuseSize(newWidth, newHeight);
  samples = frameBuffer(newWidth, newHeight, kSamples, true);
  picture = frameBuffer(newWidth, newHeight, 0, false);
  width = newWidth;
  height = newHeight;
}

osg::ref_ptr<osg::Image> OffscreenView::Canvas::draw() {
  detail::EglContext::Current const current(context);
  fitBuffers();
  bind(*samples, osg::FrameBufferObject::READ_DRAW_FRAMEBUFFER);
  window->setDefaultFboId(samples->getHandle(window->getState()->getContextID()));
  viewer->frame();
  // Names of osgEarth come into view little by little, and its features are built when a first frame is made.
  for (double const seconds : {1.0, 2.0}) {
    if (detail::usesAttributes()) viewer->frame(viewer->getFrameStamp()->getSimulationTime() + seconds);
  }
  return average();
}

osg::ref_ptr<osg::Image> OffscreenView::Canvas::average() {
  bind(*samples, osg::FrameBufferObject::READ_FRAMEBUFFER);
  bind(*picture, osg::FrameBufferObject::DRAW_FRAMEBUFFER);
  auto* const extensions = window->getState()->get<osg::GLExtensions>();
  extensions->glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
  bind(*picture, osg::FrameBufferObject::READ_DRAW_FRAMEBUFFER);
  osg::ref_ptr<osg::Image> image = new osg::Image;
  image->readPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE);
  return image;
}

void OffscreenView::Canvas::release(osg::Node& node) {
  detail::EglContext::Current const current(context);
  node.releaseGLObjects(window->getState());
}

OffscreenView::OffscreenView(int width, int height) : View(width, height) {}

OffscreenView::~OffscreenView() = default;

void OffscreenView::setScene(osg::Node* node) {
  // The number of a dead context is given to the next one, which must not find the old one's objects in a scene that
  // was put aside in between.
  if (canvas && getScene() != nullptr && getScene() != node) canvas->release(*getScene());
  View::setScene(node);
}

osg::ref_ptr<osg::Image> OffscreenView::render() {
  utils::InstalledCode const guard;
  if (!canvas) canvas = std::make_unique<Canvas>(getCamera());
  drawn();
  return canvas->draw();
}

void OffscreenView::writeImage(QString const& path) {
  utils::InstalledCode const guard;
  osgDB::ReaderWriter* const png = osgDB::Registry::instance()->getReaderWriterForExtension("png");
  if (png == nullptr) throw QLogicError(QStringLiteral("OpenSceneGraph has no plug-in for PNG pictures."));
  std::ostringstream bytes;
  bytes.exceptions(std::ios::badbit);  // else a failed allocation would leave half a picture
  osgDB::ReaderWriter::WriteResult const result = png->writeImage(*render(), bytes);
  if (!result.success()) throw QLogicError(QString::fromStdString(result.statusMessage()));
  std::string picture = bytes.str();
  double const size = magnification() * displayScale();
  if (size != 1.0) addResolution(picture, kScreenDots * size);
  QString const error = utils::replaceFile(path, picture);
  if (!error.isEmpty()) throw QLogicError(error);
}

}  // namespace mvz
