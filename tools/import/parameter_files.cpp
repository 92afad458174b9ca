#include "tools/import/commands.hpp"
#include "tools/import/gamma_par.hpp"
#include "tools/import/prm.hpp"
#include "tools/import/scene_finish.hpp"
#include "tools/import/scene_pool.hpp"

namespace varnoth::tools {

namespace {

TOOL_STATUS Import(const PARAMETERS_REQUEST& request, SCENE (*read)(const SOURCE_FILE&)) {
  if (IsWrongUsage(request.interpolation, request.out, {request.source})) return WRONG_USAGE;
  SCENE scene;
  std::string interpolation = request.interpolation;
  const TOOL_STATUS status = WithFailuresTold(request.source, [&] {
    scene = read(ReadSource(request.source));
    if (interpolation.empty()) interpolation = UsualInterpolation(scene);
    FinishScene(scene, *FindInterpolation(interpolation));
    return IsWrongUsage("", request.out, scene.inputs) ? WRONG_USAGE : GOOD;
  });
  if (status != GOOD) return status;
  return WithFailuresTold(request.out, [&] {
    WriteScenePool(scene, interpolation, request.out);
    TellScene(scene, interpolation, request.source, request.out);
    return GOOD;
  });
}

}  // namespace

TOOL_STATUS ImportGmtsar(const PARAMETERS_REQUEST& request) { return Import(request, ReadPrm); }

TOOL_STATUS ImportGamma(const PARAMETERS_REQUEST& request) { return Import(request, ReadGammaPar); }

}  // namespace varnoth::tools
