// The file of a report, as the system has it.
#pragma once

#include <cstddef>
#include <string>

#include "app/process/descriptor.h"

namespace dxf2d::batch {

// Opens or creates a report that this process alone writes; what is written goes to its end. Throws
// OutputError, also while another run writes it.
Descriptor openReport(const std::string& path);

// Not open, with errno set, when it cannot be read.
Descriptor openReportToRead(const std::string& path);

// All that stands in it, from the beginning. Throws OutputError.
std::string reportText(int file, const std::string& path);

// Leaves the first `size` bytes. Throws OutputError.
void cutReport(int file, std::size_t size, const std::string& path);

}  // namespace dxf2d::batch
