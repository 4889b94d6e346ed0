#include "app/export/finishing_request.h"

#include "app/cli/failure.h"
#include "app/cli/option_values.h"
#include "app/cli/translation.h"

namespace dxf2d {

namespace {

using finish::LayerScheme;

std::optional<double> parseTolerance(const std::string& text) {
  const std::optional<double> tolerance = parseNumber(text);
  return tolerance && *tolerance >= 0.0 ? tolerance : std::nullopt;
}

// An Option::take of a flag.
std::function<bool(const std::string&)> setTrue(bool& flag) {
  return [&flag](const std::string&) { return flag = true; };
}

// Names of options in a sentence.
class OptionList {
 public:
  void AddIf(bool isGiven, const char* name) {
    if (isGiven) {
      text_ += (text_.empty() ? "" : ", ") + std::string(name);
    }
  }
  bool IsEmpty() const { return text_.empty(); }
  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

bool wantsLayers(const FinishingRequest& request) {
  return request.layers && *request.layers != LayerScheme::kNone;
}

// The options that only a finished drawing holds.
OptionList finishedOnly(const FinishingRequest& request) {
  OptionList list;
  list.AddIf(wantsLayers(request), "--layers");
  list.AddIf(request.join && *request.join, "--join");
  list.AddIf(request.explodes, "--explode");
  list.AddIf(request.simplifyTolerance.has_value(), "--simplify");
  list.AddIf(request.hasTrueColors, "--true-color");
  return list;
}

void checkRelease(const FinishingRequest& request, Release release) {
  const OptionList list = finishedOnly(request);
  if (release == Release::kR10 && !list.IsEmpty()) {
    throw UsageError({"", tr("--release plain cannot hold what %1 asks for", {list.Text()}),
                      tr("use --release r2000 or leave out %1", {list.Text()})});
  }
  if (release == Release::kR2000 && request.hasTrueColors) {
    throw UsageError({"", tr("--release r2000 cannot hold true colors"),
                      tr("use --release r2004 or leave out --true-color")});
  }
}

// The earliest release that holds what is asked for.
void chooseRelease(const FinishingRequest& request, const ReleaseNeeds& needs,
                   FinishingPlan& plan) {
  OptionList list = finishedOnly(request);
  list.AddIf(needs.units, "--units");
  list.AddIf(needs.dashes, "--hidden dash");
  if (request.hasTrueColors) {
    plan.release = Release::kR2004;
    plan.reason = "--true-color";
  } else if (!list.IsEmpty() || needs.picture) {
    plan.release = Release::kR2000;
    plan.reason = list.IsEmpty() ? tr("the picture") : list.Text();
  }
}

}  // namespace

std::vector<Option> finishingOptions(FinishingRequest& request) {
  return {
      {"--release", "plain|r2000|r2004",
       "Release of the drawing: the plug-in's own (default), 2000 or 2004; what another option "
       "needs is implied",
       "plain, r2000 or r2004",
       into(request.release, oneOf<Release>({{"plain", Release::kR10},
                                             {"r2000", Release::kR2000},
                                             {"r2004", Release::kR2004}}))},
      {"--layers", "none|object|group|material|kind [none]",
       "Layers: none, or one for each object, group (storey), material, or kind of line (border, "
       "crease, cut, hidden, label)",
       "none, object, group, material or kind",
       into(request.layers, oneOf<LayerScheme>({{"none", LayerScheme::kNone},
                                                {"object", LayerScheme::kObject},
                                                {"group", LayerScheme::kGroup},
                                                {"material", LayerScheme::kMaterial},
                                                {"kind", LayerScheme::kKind}}))},
      {"--join", "on|off",
       "Whether lines on one another become one, and lines in a row one polyline (default: on, "
       "save in the plug-in's own release)",
       "on or off", into(request.join, oneOf<bool>({{"on", true}, {"off", false}}))},
      {"--explode", "", "Draw everything in its place instead of in blocks", "",
       setTrue(request.explodes)},
      {"--simplify", "TOL", "Leave out points within TOL drawing units of the joined line",
       "a number from 0", into(request.simplifyTolerance, parseTolerance)},
      {"--true-color", "", "Exact colors next to those of the palette, in release 2004", "",
       setTrue(request.hasTrueColors)},
  };
}

FinishingPlan planFinishing(const FinishingRequest& request, const ReleaseNeeds& needs) {
  if (request.simplifyTolerance && request.join && !*request.join) {
    throw UsageError({"", tr("--simplify needs joined lines"), tr("leave out --join off")});
  }
  FinishingPlan plan;
  plan.layers = request.layers.value_or(LayerScheme::kNone);
  if (request.release) {
    checkRelease(request, *request.release);
    plan.release = *request.release;
  } else {
    chooseRelease(request, needs, plan);
  }
  plan.join = plan.IsFinished() && request.join.value_or(true);
  return plan;
}

const char* releaseName(Release release) {
  switch (release) {
    case Release::kR2000:
      return "r2000";
    case Release::kR2004:
      return "r2004";
    case Release::kR10:
      break;
  }
  return "plain";
}

}  // namespace dxf2d
