#include <assimp/Importer.hpp>
#include <vector>

#include "app/export/export_call.h"
#include "app/export/export_confinement.h"
#include "app/export/exported_model.h"
#include "app/export/worker_tasks.h"
#include "app/model/model_listing.h"
#include "app/model/up_axis.h"

namespace dxf2d {
namespace {

std::string listingOf(const std::string& path, const ExportOptions& options,
                      const ImportedFile& imported) {
  const PlanOptions& plan = options.plan;
  Model model = readExportedModel(path, options, imported);
  LimitChecker limits(plan.limits, path);
  const std::vector<ListedNode> nodes =
      listNodes(*model.scene, uprightTurn(*model.scene, model.source, plan.up), plan.filter,
                model.source, limits);
  LengthUnit unit = model.source.unit;
  if (!unit.IsKnown() && plan.sourceUnits) {
    unit = *plan.sourceUnits;
  }
  return options.isJson ? listingAsJson(nodes, unit, path) : listingAsText(nodes, unit);
}

}  // namespace

WorkerTask listTask() {
  return {kListTask, [](std::span<const std::string> words) {
            const ExportArguments arguments = listArgumentsOf(words);
            const std::string& model = arguments.job.model;
            confine(rulesFor(model, arguments.options, {}, arguments.imported));
            tellParent(listingOf(model, arguments.options, arguments.imported));
            return static_cast<int>(kExitDone);
          }};
}

}  // namespace dxf2d
