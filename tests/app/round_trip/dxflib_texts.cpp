// Prints what dxflib reads of a drawing's texts and of the blocks that it places, a line each, with
// tabs between: "text", block, both points, height, width factor, justifications, degrees, color,
// text; "insert", block, point, degrees.
//
// usage: dxflib_texts DRAWING
#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

#include <cmath>
#include <cstdio>
#include <string>

namespace {

class Printer : public DL_CreationAdapter {
 public:
  void addBlock(const DL_BlockData& block) override { block_ = block.name; }
  void endBlock() override { block_.clear(); }

  void addText(const DL_TextData& text) override {
    // Of texts alone, dxflib gives the angle in radians.
    constexpr double kDegrees = 180.0 / M_PI;
    std::printf("text\t%s\t%.17g\t%.17g\t%.17g\t%.17g\t%.17g\t%.17g\t%d\t%d\t%.17g\t%d\t%s\n",
                block_.c_str(), text.ipx, text.ipy, text.apx, text.apy, text.height,
                text.xScaleFactor, text.hJustification, text.vJustification, text.angle * kDegrees,
                getAttributes().getColor(), text.text.c_str());
  }

  void addInsert(const DL_InsertData& insert) override {
    // Containers are inserted nowhere.
    if (!block_.empty()) {
      return;
    }
    std::printf("insert\t%s\t%.17g\t%.17g\t%.17g\n", insert.name.c_str(), insert.ipx, insert.ipy,
                insert.angle);
  }

 private:
  std::string block_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: dxflib_texts DRAWING\n");
    return 2;
  }
  Printer printer;
  DL_Dxf reader;
  if (!reader.in(argv[1], &printer)) {
    std::fprintf(stderr, "dxflib_texts: '%s' cannot be read\n", argv[1]);
    return 1;
  }
}
