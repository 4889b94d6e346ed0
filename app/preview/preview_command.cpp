#include "app/preview/preview_command.h"

#include <cstdio>
#include <filesystem>
#include <new>
#include <optional>

#include "app/exit_code.h"
#include "app/output_file.h"
#include "app/preview/dxf_reader.h"
#include "app/preview/text_decoding.h"

namespace {

void say(const std::string& sentence) { std::fprintf(stderr, "dxf2d: %s\n", sentence.c_str()); }

int fail(ExitCode code, const std::string& sentence) {
  say(sentence);
  return code;
}

// The sentence for what no picture can be made with; empty when all is well.
std::string complaint(const PreviewOptions& options) {
  if (!pictureFormat(options.picture)) {
    return "the name '" + options.picture +
           "' does not say what picture to make; end it in .png, .svg or .pdf";
  }
  if (options.size < kMinPictureSize || options.size > kMaxPictureSize) {
    return "a picture of size " + std::to_string(options.size) + " cannot be made; choose " +
           std::to_string(kMinPictureSize) + " to " + std::to_string(kMaxPictureSize);
  }
  if (!isTextCodePage(options.codePage)) return unknownCodePage(options.codePage);
  std::error_code ignored;
  if (std::filesystem::equivalent(options.drawing, options.picture, ignored)) {
    return "'" + options.picture + "' is the drawing itself; give the picture another name";
  }
  return {};
}

void noteSkipped(const PreviewOptions& options, const Drawing& drawing) {
  if (drawing.skippedCount == 0) return;
  std::string kinds;
  for (const std::string& kind : drawing.skippedKinds) kinds += (kinds.empty() ? "" : ", ") + kind;
  say(options.drawing + ": " + std::to_string(drawing.skippedCount) +
      " entities of other kinds than are drawn were left out, such as " + kinds);
}

void noteLeftOut(const PreviewOptions& options, const Picture& picture) {
  if (picture.leftOut == 0) return;
  say(options.drawing + ": " + std::to_string(picture.leftOut) +
      " entities lie beyond the range of numbers and were left out");
}

int preview(const PreviewOptions& options) {
  const std::string wrong = complaint(options);
  if (!wrong.empty()) return fail(kExitUsage, wrong);
  // Before the reading, which may take long: a picture that cannot be written is refused at once.
  OutputFile output(options.picture);
  const Drawing drawing = readDrawing(options.drawing);
  noteSkipped(options, drawing);
  const Picture picture =
      drawPicture(drawing, {*pictureFormat(options.picture), options.size, options.codePage});
  noteLeftOut(options, picture);
  if (picture.bytes.empty()) {
    return fail(kExitNothingToDraw, "'" + options.drawing +
                                        "' holds nothing to draw; check that "
                                        "its scene has geometry in objects that are placed");
  }
  output.Write(picture.bytes);
  output.Commit();
  return kExitDone;
}

}  // namespace

int runPreview(const PreviewOptions& options) {
  try {
    return preview(options);
  } catch (const OutputError& error) {
    return fail(error.Code(), error.what());
  } catch (const DxfError& error) {
    return fail(kExitInput, error.what());
  } catch (const LimitError& error) {
    return fail(kExitLimit, error.what());
  } catch (const std::bad_alloc&) {
    return fail(kExitLimit, "'" + options.drawing +
                                "' needs more memory than there is; preview a part of it or make "
                                "a smaller picture");
  } catch (const std::exception& error) {
    return fail(kExitInternal, std::string(error.what()) + "; please report this");
  }
}
