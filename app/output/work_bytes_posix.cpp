#include "app/output/whole_write.h"
#include "app/output/work_output.h"

namespace dxf2d {

void WorkOutput::Write(std::string_view bytes) const { writeWhole(file, bytes, name); }

void WorkOutput::Clear() const { removeBytes(file, name); }

}  // namespace dxf2d
