// What the drawings of several models are called.
#pragma once

#include <string>
#include <vector>

#include "app/export/export_job.h"

// The jobs of `models`, in order. A single model is drawn to `output` unless that ends in a slash.
// Else `output` is a directory, and each drawing in it has its model's name with .dxf in place of
// the end. Throws UsageError when several would go to standard output ("-") or two would have
// one name.
std::vector<ExportJob> exportJobs(const std::vector<std::string>& models,
                                  const std::string& output);
