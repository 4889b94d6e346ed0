// Finds what a drawing of a scene would lack or show in the wrong place.
//
// Example:
//
//   for (const KtSceneFinding& finding : KtCheckScene(scene)) {
//     std::fprintf(stderr, "%s: %s; %s\n", finding.node.c_str(), finding.problem.c_str(),
//                  finding.remedy.c_str());
//   }
#pragma once

#include <string>
#include <vector>

#include "ktscene/export.h"
#include "ktscene/kt_reserved.h"
#include "ktscene/kt_scene.h"

// How much a finding matters.
enum class KtSeverity {
  // Drawn, but perhaps not as it is meant.
  kWarning,
  // Missing from the drawing, or wrong in it.
  kError,
};

// One thing that is wrong with a scene.
struct KtSceneFinding {
  // Whether something is missing or wrong, or may be meant.
  KtSeverity severity = KtSeverity::kWarning;
  // The node or the part of it, as a JSON pointer (RFC 6901) into the scene's file, such as
  // "/nodes/0/children/2/label".
  std::string node{};
  // What is wrong, and what to do: parts of a sentence, in UTF-8.
  std::string problem{};
  std::string remedy{};
  KtReserved<4> reserved{};
};

// What a drawing of `scene` by the plug-in of this SDK would lack or show in the wrong place, in
// the order of the walk. Any content and any depth is safe; also content that a scene file could
// not hold, such as coordinates that are not finite. Changes nothing. Safe to call from several
// threads.
KT_SCENE_API std::vector<KtSceneFinding> KtCheckScene(const KtScene& scene);
