// One command on several inputs.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "app/cli/exit_code.h"
#include "app/cli/failure.h"
#include "app/cli/translation.h"

namespace dxf2d {

// Runs `one`, which returns an exit code, on each item. Returns that of a single item; of several,
// kExitSomeFailed after a message if any failed. `missed` says what became of those, such as
// "%1 of %2 models were not drawn".
template <typename Item, typename One>
int runAll(const std::vector<Item>& items, const char* missed, const One& one) {
  std::size_t failed = 0;
  for (const Item& item : items) {
    const int code = one(item);
    // A single one has said it all, and other models need the same plug-in.
    if (items.size() == 1 || code == kExitPlugin) {
      return code;
    }
    failed += code == kExitDone ? 0 : 1;
  }
  if (failed == 0) {
    return kExitDone;
  }
  return fail(kExitSomeFailed,
              {"", tr(missed, {std::to_string(failed), std::to_string(items.size())}),
               tr("see the messages above")});
}

}  // namespace dxf2d
