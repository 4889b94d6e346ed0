// Exports by plug-ins of others.
#include <gmock/gmock.h>

#include "app/cli/exit_code.h"
#include "tests/app/export/dxf2d_program.h"

namespace dxf2d {

namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kTriangle = "v 0 0 0\nv 4 0 0\nv 0 3 0\nf 1 2 3\n";
constexpr const char* kLineScene =
    R"({"nodes": [{"objectId": "a", "graphicName": "a", "color": [1, 0, 0],
        "geometry": [{"lineSet": {"coords": [0, 0, 0, 2, 1, 0], "indices": [0, 1, -1]}}],
        "label": {"text": "T:1 1 0 0 0 0 0 L 0 0 0 0 0 \"<a & b>\""},
        "bounds": {"min": [0, 0, 0], "max": [1, 1, 1]}}]})";

class ForeignPlugin : public Dxf2d {
 protected:
  // Runs an export by `plugin`.
  int Export(const std::string& plugin, const std::string& rest) {
    return Run("export --plugin '" + plugin + "' " + rest);
  }
  // What the message says after the plug-in's name.
  std::string Blamed(const std::string& plugin) const {
    const std::string start = "dxf2d: " + plugin + ": ";
    EXPECT_THAT(error_, StartsWith(start));
    return error_.substr(std::min(start.size(), error_.size()));
  }
};

TEST_F(ForeignPlugin, WritesItsOwnFormat) {
  const std::string model = Write("model.obj", kTriangle);
  EXPECT_EQ(Export(SVG_PLUGIN, model + " --up z -o " + Path("plan.svg")), kExitDone) << error_;
  EXPECT_EQ(error_, "");
  EXPECT_THAT(out_, HasSubstr("1 object"));
  const std::string drawing = Read(Path("plan.svg"));
  EXPECT_THAT(drawing, HasSubstr("viewBox=\"0 -3 4 3\""));
  EXPECT_THAT(drawing, HasSubstr("<title>" + Path("plan.svg") + "</title>"));
}

TEST_F(ForeignPlugin, DrawsSceneFiles) {
  const std::string scene = Write("scene.json", kLineScene);
  EXPECT_EQ(Export(SVG_PLUGIN, scene + " -o " + Path("plan.svg")), kExitDone) << error_;
  const std::string drawing = Read(Path("plan.svg"));
  EXPECT_THAT(drawing, HasSubstr("<path stroke=\"#ff0000\" d=\"M0 0L2 -1\"/>"));
  EXPECT_THAT(drawing, HasSubstr(">&lt;a &amp; b></text>"));
}

TEST_F(ForeignPlugin, NamesTheFilesInADirectory) {
  const std::string models = Write("a.obj", kTriangle) + " " + Write("b.obj", kTriangle);
  EXPECT_EQ(Export(SVG_PLUGIN, models + " -o " + Path("plans/")), kExitDone) << error_;
  EXPECT_TRUE(std::filesystem::exists(Path("plans/a.svg")));
  EXPECT_TRUE(std::filesystem::exists(Path("plans/b.svg")));
}

TEST_F(ForeignPlugin, IsNotMadeToWriteAnotherFormat) {
  const std::string model = Write("model.obj", kTriangle);
  EXPECT_EQ(Export(SVG_PLUGIN, model + " -o " + Path("plan.dxf")), kExitUsage);
  EXPECT_EQ(error_, "dxf2d: " + Path("plan.dxf") +
                        ": the plug-in writes SVG 1.1 and not '.dxf'; end the name in .svg\n");
  EXPECT_EQ(Export(SVG_PLUGIN, model + " --layers object -o " + Path("plan.svg")), kExitUsage);
  EXPECT_EQ(Blamed(SVG_PLUGIN),
            "writes SVG 1.1, and --layers is for drawings in DXF; leave the option out\n");
  EXPECT_EQ(Listing(), "model.obj");
}

TEST_F(ForeignPlugin, IsBelievedWhenItDrawsWithoutPolylines) {
  const std::string model = Write("model.obj", kTriangle);
  EXPECT_EQ(Export(DRAWS_LINES, model + " -o " + Path("plan.dxf")), kExitDone) << error_;
  EXPECT_THAT(Read(Path("plan.dxf")), HasSubstr("LINE"));
  EXPECT_EQ(Export(DRAWS_LINES, model + " -o " + Path("plans/")), kExitDone) << error_;
  EXPECT_TRUE(std::filesystem::exists(Path("plans/model.dxf")));
}

TEST_F(ForeignPlugin, ThatThrowsIsTheCulprit) {
  const std::string scene = Write("scene.json", kLineScene);
  EXPECT_EQ(Export(THROWS_ON_LINES, scene + " -o " + Path("plan.dxf")), kExitPlugin);
  EXPECT_EQ(Blamed(THROWS_ON_LINES), "throws \"lines are beyond me\" while it draws '" + scene +
                                         "'; fix the plug-in or name another with --plugin\n");
  ExpectOneSentence();
  EXPECT_EQ(Listing(), "scene.json");
}

TEST_F(ForeignPlugin, ThatCrashesIsTheCulprit) {
  const std::string scene = Write("scene.json", kLineScene);
  EXPECT_EQ(Export(CRASHES_ON_LABELS, scene + " -o " + Path("plan.dxf")), kExitPlugin);
  EXPECT_THAT(Blamed(CRASHES_ON_LABELS), StartsWith("crashes its host (Aborted) while it draws"));
  EXPECT_EQ(Listing(), "scene.json");
}

TEST_F(ForeignPlugin, ThatEndsItsHostIsTheCulprit) {
  const std::string scene = Write("scene.json", kLineScene);
  EXPECT_EQ(Export(ENDS_ITS_HOST, scene + " -o " + Path("plan.dxf")), kExitPlugin);
  EXPECT_THAT(Blamed(ENDS_ITS_HOST), StartsWith("makes its host exit (exit code 77) while it "));
}

TEST_F(ForeignPlugin, ThatReturnsFalseIsTheCulprit) {
  const std::string scene = Write("scene.json", kLineScene);
  EXPECT_EQ(Export(FAILS_AT_THE_END, scene + " -o " + Path("plan.dxf")), kExitPlugin);
  EXPECT_THAT(Blamed(FAILS_AT_THE_END), StartsWith("returns false from slot 20 while it draws"));
}

TEST_F(ForeignPlugin, ThatWritesNothingIsTheCulprit) {
  const std::string scene = Write("scene.json", R"({"nodes": []})");
  EXPECT_EQ(Export(WRITES_NOTHING, scene + " -o " + Path("plan.dxf")), kExitPlugin);
  EXPECT_THAT(Blamed(WRITES_NOTHING), StartsWith("returns true and writes nothing while"));
  EXPECT_EQ(Listing(), "scene.json");
}

TEST_F(ForeignPlugin, ThatCrashesAtLoadIsTheCulprit) {
  const std::string scene = Write("scene.json", kLineScene);
  EXPECT_EQ(Export(CRASHES_AT_LOAD, scene + " -o " + Path("plan.dxf")), kExitPlugin);
  EXPECT_EQ(Blamed(CRASHES_AT_LOAD),
            "crashes its host (Aborted) while it is loaded; fix the plug-in or name another with "
            "--plugin\n");
}

TEST_F(ForeignPlugin, FailsWithOneModelOfSeveral) {
  const std::string scene = Write("a.json", kLineScene);
  const std::string model = Write("b.obj", kTriangle);
  EXPECT_EQ(Export(CRASHES_ON_LABELS, scene + " --jobs 1 " + model + " -o " + Path("plans/")),
            kExitSomeFailed);
  // The other one has no label.
  EXPECT_FALSE(std::filesystem::exists(Path("plans/a.dxf")));
  EXPECT_TRUE(std::filesystem::exists(Path("plans/b.dxf")));
}

// The plug-in of this program has its own way of saying that nothing is to be seen.
TEST_F(ForeignPlugin, NamedByItsPathTheOwnOneIsItself) {
  const std::string model = Write("model.obj", "v 0 0 0\nv 0 1 0\nl 1 2\n");
  EXPECT_EQ(Export(OWN_PLUGIN, model + " -o " + Path("plan.dxf")), kExitNothingToDraw) << error_;
}

}  // namespace

}  // namespace dxf2d
