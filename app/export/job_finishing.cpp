#include "app/export/job_finishing.h"

#include <filesystem>
#include <optional>

#include "app/cli/failure.h"
#include "app/cli/file_path.h"
#include "app/cli/translation.h"
#include "app/drawing/drawing_units.h"

namespace dxf2d {

namespace {

finish::Options finishingOptionsOf(const ExportOptions& options, const FinishingPlan& plan,
                                   const PlanContent& content) {
  finish::Options finishing;
  finishing.release = plan.release;
  finishing.layers = plan.layers;
  finishing.join = plan.join;
  finishing.explode = options.finishing.explodes;
  finishing.simplifyTolerance = options.finishing.simplifyTolerance.value_or(0.0);
  if (options.plan.units) {
    finishing.units = parseUnits(unitName(*options.plan.units));
  }
  if (content.dashLength > 0.0) {
    finishing.dashLength = content.dashLength;
  }
  finishing.codePage = options.codePage;
  return finishing;
}

std::optional<PictureStyle> styleOf(std::optional<PictureFormat> format, const ExportJob& job,
                                    const ExportOptions& options, const PlanContent& content) {
  if (!format) {
    return std::nullopt;
  }
  PictureStyle style = options.picture;
  style.format = *format;
  style.codePage = options.codePage;
  style.name = job.drawing;
  if (style.sheet) {
    style.sheet->units = parseUnits(unitName(content.drawingUnit)).value_or(0);
  }
  return style;
}

std::optional<page::PageStyle> pageOf(const ExportJob& job, const ExportOptions& options,
                                      const PlanContent& content) {
  if (*options.format != OutputFormat::kHtml) {
    return std::nullopt;
  }
  page::PageStyle style;
  style.title = filePath(job.model).filename().string();
  if (options.picture.sheet && options.picture.sheet->title) {
    style.title = *options.picture.sheet->title;
  }
  style.codePage = options.codePage;
  style.units = parseUnits(unitName(content.drawingUnit)).value_or(0);
  style.name = job.drawing;
  return style;
}

}  // namespace

FinishingPlan finishingOf(const ExportJob& job, const ExportOptions& options) {
  if (!options.pluginFacts.WritesDxf()) {
    return {};
  }
  if (!isSceneFile(job.model)) {
    const bool isPicture = options.format.value_or(OutputFormat::kDxf) != OutputFormat::kDxf;
    return planFinishing(options.finishing,
                         {options.plan.units.has_value(),
                          options.plan.linework.hidden == HiddenLines::kDash, isPicture});
  }
  FinishingPlan plan = planFinishing(options.finishing, {});
  if (plan.layers == finish::LayerScheme::kMaterial || plan.layers == finish::LayerScheme::kKind) {
    throw UsageError({job.model, tr("a scene file names no materials and no kinds of lines"),
                      tr("use --layers object or --layers group")});
  }
  return plan;
}

Completion completionOf(const ExportJob& job, const ExportOptions& options,
                        const FinishingPlan& plan, const PlanContent& content) {
  Completion completion;
  if (plan.IsFinished()) {
    completion.finishing = finishingOptionsOf(options, plan, content);
  }
  completion.picture = styleOf(pictureFormatOf(*options.format), job, options, content);
  completion.page = pageOf(job, options, content);
  completion.preview = styleOf(pictureFormat(options.preview), job, options, content);
  return completion;
}

}  // namespace dxf2d
