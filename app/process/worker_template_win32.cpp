// No process of Windows is a copy of another: the program is started for each call.
#include <utility>

#include "app/process/worker_template.h"

namespace dxf2d {

class WorkerTemplate::Child {};

WorkerTemplate::WorkerTemplate(std::string program, std::vector<std::string> libraries)
    : program_(std::move(program)), libraries_(std::move(libraries)) {}

WorkerTemplate::~WorkerTemplate() = default;

std::optional<long> WorkerTemplate::Fork(const WorkerCall& /*call*/, const WorkerLimits& /*limits*/,
                                         int /*report*/, int /*signals*/) {
  return std::nullopt;
}

long WorkerTemplate::Process() const { return 0; }

}  // namespace dxf2d
