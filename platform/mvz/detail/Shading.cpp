#include <mvz/GraphicsState.h>
#include <mvz/detail/Shading.h>

namespace mvz {
namespace detail {
namespace {

#ifdef KELVANE_USES_OSGEARTH
bool isByAttributes = true;
#else
bool isByAttributes = false;
#endif

}  // namespace

bool usesAttributes() { return isByAttributes; }
void setUsesAttributes(bool wanted) { isByAttributes = wanted; }

osg::ref_ptr<osg::Program> plainProgram() {
  if (!isByAttributes) return nullptr;
  // OpenSceneGraph puts its own names in the place of those of the fixed functions, attributes alone: a fragment has
  // none.
  osg::ref_ptr<osg::Program> program = new osg::Program;
  program->addShader(new osg::Shader(osg::Shader::VERTEX,
                                     "varying vec4 colour;\n"
                                     "void main() {\n"
                                     "  colour = gl_Color;\n"
                                     "  gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex;\n"
                                     "}\n"));
  program->addShader(new osg::Shader(osg::Shader::FRAGMENT,
                                     "varying vec4 colour;\n"
                                     "void main() { gl_FragColor = colour; }\n"));
  return program;
}

}  // namespace detail

void prepareGraphicsState(osg::State& state) {
  if (!detail::usesAttributes()) return;
  state.setUseModelViewAndProjectionUniforms(true);
  state.setUseVertexAttributeAliasing(true);
}

}  // namespace mvz
