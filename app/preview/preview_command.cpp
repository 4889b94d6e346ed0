#include "app/preview/preview_command.h"

#include <cstdio>
#include <filesystem>
#include <optional>

#include "app/destination.h"
#include "app/failure.h"
#include "app/preview/dxf_reader.h"
#include "app/preview/text_decoding.h"
#include "app/printable.h"

namespace {

void say(const std::string& sentence) {
  std::fprintf(stderr, "dxf2d: %s\n", printable(sentence).c_str());
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

// Makes the picture in the working process. Returns an exit code.
int drawInto(OutputFile& file, const PreviewOptions& options) {
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
  file.Write(picture.bytes);
  return kExitDone;
}

int preview(const LimitedWork& work, const PreviewOptions& options) {
  const std::string wrong = complaint(options);
  if (!wrong.empty()) return fail(kExitUsage, wrong);
  // Before the reading, which may take long: a picture that cannot be written is refused at once.
  Destination destination(options.picture, options.existing);
  const int code = work.Run([&] { return drawInto(destination.Work(), options); });
  if (code != kExitDone) return code;
  destination.Deliver();
  return kExitDone;
}

}  // namespace

int runPreview(const PreviewOptions& options) {
  const LimitedWork work("preview", options.drawing, options.limits);
  return work.Reporting([&] { return preview(work, options); });
}
