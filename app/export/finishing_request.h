// What dxf2d export is asked to make of the plug-in's drawing.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/cli/command.h"
#include "app/drawing/drawing.h"
#include "app/finish/layer_assignment.h"

namespace dxf2d {

// As the user gives it; kR10 is the plug-in's drawing itself.
struct FinishingRequest {
  std::optional<Release> release;
  std::optional<finish::LayerScheme> layers;
  std::optional<bool> join;
  bool explodes = false;
  std::optional<double> simplifyTolerance;
  bool hasTrueColors = false;
};

// The options, which store what they take in `request`. It must outlive them.
std::vector<Option> finishingOptions(FinishingRequest& request);

// What is made of the plug-in's drawing.
struct FinishingPlan {
  // kR10: the drawing stays as it is.
  Release release = Release::kR10;
  // The options that decided it, as text such as "--layers and --units"; empty when the user did.
  std::string reason;
  finish::LayerScheme layers = finish::LayerScheme::kNone;
  bool join = false;

  bool IsFinished() const { return release != Release::kR10; }
};

// What of the options for models bears on the release.
struct ReleaseNeeds {
  // --units.
  bool units = false;
  // --hidden dash.
  bool dashes = false;
  // A picture, which shows kinds of lines in widths of their own.
  bool picture = false;
};

// The release is the one asked for, else the earliest that holds what is asked for. The release of
// the plug-in holds units and dashes too, as lengths and as pieces of lines. Throws UsageError for
// a release that cannot hold an option, and for options that mean nothing together.
FinishingPlan planFinishing(const FinishingRequest& request, const ReleaseNeeds& needs);

// "plain", "r2000" or "r2004".
const char* releaseName(Release release);

}  // namespace dxf2d
