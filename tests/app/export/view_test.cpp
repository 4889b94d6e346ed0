// dxf2d view, and pages that dxf2d export writes.
#include <gtest/gtest.h>

#include <string>

#include "app/cli/exit_code.h"
#include "tests/app/drawing/drawing_text.h"
#include "tests/app/export/dxf2d_program.h"

namespace dxf2d {

namespace {

constexpr const char* kBox = "o Kiste\nv 0 0 0\nv 2 0 0\nv 2 0 1\nv 0 0 1\nf 1 2 3 4\n";

class View : public Dxf2d {
 protected:
  std::string WriteDrawing() const {
    return Write("plan.dxf", drawingText("", lineText(1, 0, 0, 1, 1)));
  }
  void ExpectPage(const std::string& name, const std::string& title) const {
    const std::string page = Read(Path(name));
    EXPECT_EQ(page.rfind("<!DOCTYPE html>", 0), 0U);
    EXPECT_NE(page.find("<title>" + title + "</title>"), std::string::npos);
  }
};

TEST_F(View, DrawingBecomesAPageSilently) {
  EXPECT_EQ(Run("view " + WriteDrawing() + " -o " + Path("page.html")), kExitDone);
  EXPECT_EQ(out_ + error_, "");
  ExpectPage("page.html", "plan.dxf");
}

TEST_F(View, ModelBecomesAPageOfItsObjects) {
  const std::string model = Write("box.obj", kBox);
  EXPECT_EQ(Run("view " + model + " -o " + Path("page.html") + " --title 'A & B'"), kExitDone)
      << error_;
  EXPECT_NE(out_.find("1 object ("), std::string::npos) << out_;
  ExpectPage("page.html", "A &amp; B");
  EXPECT_NE(Read(Path("page.html")).find("Kiste"), std::string::npos);
}

TEST_F(View, StandardInputAndOutputWillDo) {
  WriteDrawing();
  EXPECT_EQ(Run("view - -o - <" + Path("plan.dxf")), kExitDone) << error_;
  EXPECT_EQ(out_.rfind("<!DOCTYPE html>", 0), 0U);
}

TEST_F(View, NoPageIsReplacedUnlessForced) {
  Write("page.html", "mine");
  const std::string arguments = "view " + WriteDrawing() + " -o " + Path("page.html");
  EXPECT_EQ(Run(arguments), kExitOutputExists);
  ExpectOneSentence();
  EXPECT_EQ(Read(Path("page.html")), "mine");
  EXPECT_EQ(Run(arguments + " --force"), kExitDone);
  ExpectPage("page.html", "plan.dxf");
}

TEST_F(View, OptionsForModelsAreRefusedForDrawings) {
  EXPECT_EQ(Run("view " + WriteDrawing() + " -o " + Path("page.html") + " --layers kind"),
            kExitUsage);
  ExpectOneSentence();
  EXPECT_NE(error_.find("--layers does not apply to drawings; leave it out"), std::string::npos)
      << error_;
  EXPECT_EQ(Listing(), "plan.dxf");
}

TEST_F(View, ADrawingIsNotReplacedByItsPage) {
  const std::string drawing = WriteDrawing();
  EXPECT_EQ(Run("view " + drawing + " -o " + drawing + " --force"), kExitUsage);
  ExpectOneSentence();
}

TEST_F(View, MalformedDrawingLeavesNothing) {
  const std::string drawing = Write("bad.dxf", "  0\nSECTION\n");
  EXPECT_EQ(Run("view " + drawing + " -o " + Path("page.html")), kExitInput);
  ExpectOneSentence();
  EXPECT_EQ(Listing(), "bad.dxf");
}

TEST_F(View, EmptyDrawingIsNothingToDraw) {
  const std::string drawing = Write("empty.dxf", drawingText("", ""));
  EXPECT_EQ(Run("view " + drawing + " -o " + Path("page.html")), kExitNothingToDraw);
  ExpectOneSentence();
  EXPECT_EQ(Listing(), "empty.dxf");
}

TEST_F(View, DirectoryIsNoPage) {
  EXPECT_EQ(Run("view " + WriteDrawing() + " -o " + Path("pages/")), kExitUsage);
  ExpectOneSentence();
  EXPECT_NE(error_.find("page.html'"), std::string::npos) << error_;
}

TEST_F(View, ExportMakesPagesOfManyModels) {
  Write("a.obj", kBox);
  Write("b.obj", kBox);
  EXPECT_EQ(
      Run("export " + Path("a.obj") + " " + Path("b.obj") + " --format html -o " + Path("pages/")),
      kExitDone)
      << error_;
  ExpectPage("pages/a.html", "a.obj");
  ExpectPage("pages/b.html", "b.obj");
}

TEST_F(View, ExportWritesAPageForANameThatSaysSo) {
  EXPECT_EQ(Run("export " + Write("a.obj", kBox) + " -o " + Path("a.html")), kExitDone) << error_;
  ExpectPage("a.html", "a.obj");
}

TEST_F(View, APageHasNoPaper) {
  EXPECT_EQ(Run("export " + Write("a.obj", kBox) + " --paper a4 -o " + Path("a.html")), kExitUsage);
  ExpectOneSentence();
}

}  // namespace

}  // namespace dxf2d
