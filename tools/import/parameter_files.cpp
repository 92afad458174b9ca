#include <filesystem>

#include "tools/import/commands.hpp"
#include "tools/import/gamma_par.hpp"
#include "tools/import/prm.hpp"
#include "tools/import/scene_finish.hpp"
#include "tools/import/scene_pool.hpp"

namespace varnoth::tools {

namespace {

TOOL_STATUS Import(const PARAMETERS_REQUEST& request, SCENE (*read)(const SOURCE_FILE&)) {
  const auto interpolation = FindInterpolation(request.interpolation);
  std::error_code ignored;
  const bool is_input = std::filesystem::equivalent(request.out, request.source, ignored);
  if (!interpolation || is_input) {
    Tell(is_input ? request.out : request.source, 1, SEVERITY::ERROR,
         is_input ? "is an input" : "no run knows the interpolation " + request.interpolation);
    return WRONG_USAGE;
  }
  SCENE scene;
  const TOOL_STATUS status = WithFailuresTold(request.source, [&] {
    scene = read(ReadSource(request.source));
    FinishScene(scene, *interpolation);
    return GOOD;
  });
  if (status != GOOD) return status;
  return WithFailuresTold(request.out, [&] {
    WriteScenePool(scene, request.interpolation, request.out);
    TellScene(scene, request.source, request.out);
    return GOOD;
  });
}

}  // namespace

TOOL_STATUS ImportGmtsar(const PARAMETERS_REQUEST& request) { return Import(request, ReadPrm); }

TOOL_STATUS ImportGamma(const PARAMETERS_REQUEST& request) { return Import(request, ReadGammaPar); }

}  // namespace varnoth::tools
