// What a host tells a plug-in and does for it on request: the optional second argument of
// InitializeTraverser. Plain C.
//
// A host passes null or a KtHost that outlives the plug-in's last callback. A plug-in need not look
// at it. One that does checks it for null, and reads only those members of each structure below
// that lie within its `size` bytes: later versions add members at the end, and remove none.
//
// All texts are null-terminated UTF-8 and valid during the call. The functions may be called from
// the entry and from callbacks, on their thread. They throw nothing.
//
// Example, in a plug-in:
//
//   const KtHost* host = static_cast<const KtHost*>(second);
//   const KtHostLog* log = host == nullptr ? nullptr
//       : static_cast<const KtHostLog*>(host->get_extension(host, KT_HOST_LOG));
//   if (log != nullptr) {
//     log->write(host, KT_LOG_WARNING, "two nodes have one name; the second is left out");
//   }
#pragma once

#include <stddef.h>  // NOLINT(modernize-deprecated-headers): for C

#include "ktscene/kt_version.h"

#if defined(__cplusplus)
extern "C" {
#endif

// NOLINTBEGIN(modernize-use-using, readability-identifier-naming): for C, in its style.

// The host, as it shows itself to a plug-in.
typedef struct KtHost {
  // sizeof(KtHost) and KTSCENE_VERSION of the headers that the host was built with.
  size_t size;
  int version;
  // The host's name and version, such as "viewer 3.1"; not null.
  const char* name;
  // For the host's own use.
  void* context;
  // Not null. Returns the extension of that name, one of the structures below, or null if the host
  // does not have it. The structure lives as long as the host.
  const void* (*get_extension)(const struct KtHost* host, const char* id);
} KtHost;

// ---- Progress and cancel: KtHostProgress

// The name of KtHostProgress for get_extension.
#define KT_HOST_PROGRESS "ktscene.progress/1"

// Shows how far an export is, and whether the user still wants it.
typedef struct KtHostProgress {
  // sizeof(KtHostProgress)
  size_t size;
  // Shows the progress of an export: `fraction` from 0 to 1, below 0 when unknown; `text` says
  // what is being done, or is null. Returns whether the user has canceled the export, as
  // is_canceled does.
  int (*report)(const KtHost* host, double fraction, const char* text);
  // Returns 0 unless the user has canceled the export. The plug-in then does as little as it can
  // until slot 20, and returns false from it.
  int (*is_canceled)(const KtHost* host);
} KtHostProgress;

// ---- Log: KtHostLog

// The name of KtHostLog for get_extension.
#define KT_HOST_LOG "ktscene.log/1"

// How much a sentence in the log matters.
enum { KT_LOG_INFO = 0, KT_LOG_WARNING = 1, KT_LOG_ERROR = 2 };

// Where a plug-in says what the user should know.
typedef struct KtHostLog {
  // sizeof(KtHostLog)
  size_t size;
  // Shows one sentence without a line feed. An error here does not end the export: for that the
  // slot returns false or throws.
  void (*write)(const KtHost* host, int severity, const char* sentence);
} KtHostLog;

// ---- Names of files: KtHostFiles

// The name of KtHostFiles for get_extension.
#define KT_HOST_FILES "ktscene.files/1"

// The names of the files that an export makes.
typedef struct KtHostFiles {
  // sizeof(KtHostFiles)
  size_t size;
  // The name under which the user gets the file of the export that is open or about to open, for
  // titles and references. Slot 19's path is often that of a temporary file. Null when there is
  // none.
  const char* (*final_name)(const KtHost* host);
  // Where a further file of that export goes, one for each `suffix`, such as "-textures.png":
  // writes its path, in the operating system's bytes, with a zero byte to `path` of `size` bytes.
  // The host delivers it together with the export's file. Returns 0 when it takes no further files,
  // or when there is no room.
  int (*companion_path)(const KtHost* host, const char* suffix, char* path, size_t size);
} KtHostFiles;

// NOLINTEND(modernize-use-using, readability-identifier-naming)

#if defined(__cplusplus)
}
#endif
