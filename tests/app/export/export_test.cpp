// dxf2d as a user meets it: the program itself, its exit codes and the files that it leaves.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include "app/cli/exit_code.h"
#include "tests/app/export/dxf2d_program.h"
#include "tests/support/sanitizers.h"

namespace dxf2d {

namespace {

namespace fs = std::filesystem;

constexpr const char* kTriangle = "v 0 0 0\nv 4 0 0\nv 0 0 -3\no house\nf 1 2 3\n";
constexpr const char* kEmptyScene = R"({"format": "ktscene", "version": 1, "nodes": []})";

TEST_F(Dxf2d, DrawsAModelAndPrintsASummary) {
  const std::string model = Write("house.obj", kTriangle);
  EXPECT_EQ(Run("export " + model + " -o " + Path("plan.dxf")), kExitDone) << error_;
  EXPECT_EQ(error_, "");
  EXPECT_EQ(std::count(out_.begin(), out_.end(), '\n'), 1);
  EXPECT_NE(out_.find("1 object (0 instances shared), 1 part, 1 polyline, 4 vertices; "
                      "x 0 to 4, y 0 to 3; "),
            std::string::npos)
      << out_;
  EXPECT_NE(out_.find("skipped: nothing"), std::string::npos) << out_;
  const std::string drawing = Read(Path("plan.dxf"));
  EXPECT_EQ(drawing.rfind("  0\nSECTION\n", 0), 0u);
  EXPECT_NE(drawing.find("  0\nEOF\n"), std::string::npos);
  EXPECT_EQ(Listing(), "house.obj plan.dxf");
}

TEST_F(Dxf2d, ReportsWhatItLeavesOut) {
  const std::string model = Write("mixed.obj", std::string(kTriangle) + "p 1\n");
  EXPECT_EQ(Run("export " + model + " -o " + Path("plan.dxf")), kExitDone) << error_;
  EXPECT_NE(out_.find("skipped: 1 point"), std::string::npos) << out_;
}

TEST_F(Dxf2d, DrawsOnStandardOutputWithTheSameBytes) {
  const std::string model = Write("house.obj", kTriangle);
  ASSERT_EQ(Run("export " + model + " -o " + Path("plan.dxf")), kExitDone);
  const std::string drawing = Read(Path("plan.dxf"));
  EXPECT_EQ(Run("export " + model + " -o -"), kExitDone);
  EXPECT_EQ(out_, drawing);
  EXPECT_NE(error_.find("1 polyline"), std::string::npos) << error_;
}

TEST_F(Dxf2d, StandardOutputByItsOtherNamesIsTheSame) {
  const std::string model = Write("house.obj", kTriangle);
  ASSERT_EQ(Run("export " + model + " -o " + Path("plan.dxf")), kExitDone);
  fs::create_symlink("/dev/stdout", Path("link"));
  for (const std::string& name : {std::string("/dev/stdout"), std::string("/dev/fd/1"),
                                  std::string("/proc/self/fd/1"), Path("link")}) {
    EXPECT_EQ(Run("export " + model + " -o " + name), kExitDone) << error_;
    EXPECT_EQ(out_, Read(Path("plan.dxf"))) << name;
    EXPECT_NE(error_.find("1 polyline"), std::string::npos) << error_;
  }
}

TEST_F(Dxf2d, AnOpenFileIsWrittenAtItsFileOffset) {
  const std::string model = Write("house.obj", kTriangle);
  ASSERT_EQ(Run("export " + model + " -o " + Path("plan.dxf")), kExitDone);
  const std::string kept = Write("kept", "mine\n");
  EXPECT_EQ(Run("export " + model + " -o /dev/fd/3 3>>" + kept), kExitDone) << error_;
  EXPECT_EQ(Read(kept), "mine\n" + Read(Path("plan.dxf")));
  EXPECT_NE(out_.find("1 polyline"), std::string::npos) << out_;
}

TEST_F(Dxf2d, DrawsIntoAFifo) {
  const std::string model = Write("house.obj", kTriangle);
  ASSERT_EQ(mkfifo(Path("fifo").c_str(), 0600), 0);
  const std::string reader = "cat " + Path("fifo") + " >" + Path("read.dxf") + " & ";
  const std::string command = reader + "'" DXF2D_PROGRAM "' export " + model + " -o " +
                              Path("fifo") + " >" + Path("stdout") + "; code=$?; wait; exit $code";
  EXPECT_EQ(std::system(command.c_str()), 0);
  EXPECT_NE(Read(Path("read.dxf")).find("  0\nEOF\n"), std::string::npos);
  EXPECT_TRUE(fs::is_fifo(Path("fifo")));
}

TEST_F(Dxf2d, AnEmptySceneIsAnEmptyDrawing) {
  const std::string scene = Write("empty.json", kEmptyScene);
  EXPECT_EQ(Run("export " + scene + " -o " + Path("plan.dxf")), kExitDone) << error_;
  EXPECT_NE(Read(Path("plan.dxf")).find("ENTITIES\n  0\nENDSEC\n  0\nEOF\n"), std::string::npos);
}

TEST_F(Dxf2d, ABrokenSceneIsRefusedWithItsName) {
  const std::string scene = Write("bad.json", R"({"nodes": 3})");
  EXPECT_EQ(Run("export " + scene + " -o " + Path("plan.dxf")), kExitInput);
  ExpectOneSentence();
  EXPECT_NE(error_.find("bad.json"), std::string::npos) << error_;
  EXPECT_EQ(Listing(), "bad.json");
}

TEST_F(Dxf2d, AMissingModelIsReported) {
  EXPECT_EQ(Run("export " + Path("none.stl") + " -o " + Path("plan.dxf")), kExitInput);
  ExpectOneSentence();
  EXPECT_NE(error_.find("none.stl: cannot be read: there is no such file; check the name"),
            std::string::npos)
      << error_;
  EXPECT_EQ(Listing(), "");
}

TEST_F(Dxf2d, AFileForADirectoryOfModelsIsRefused) {
  EXPECT_EQ(Run("export " + Path("") + " -o " + Path("plan.dxf")), kExitUsage);
  ExpectOneSentence();
}

TEST_F(Dxf2d, AnUnknownFormatIsReported) {
  const std::string model = Write("model.unknown", "what is this");
  EXPECT_EQ(Run("export " + model + " -o " + Path("plan.dxf")), kExitInput);
  ExpectOneSentence();
  EXPECT_NE(error_.find("no importer knows this format; save"), std::string::npos) << error_;
}

TEST_F(Dxf2d, AModelThatDeclaresMoreThanItHoldsIsRefused) {
  NEEDS_MEMORY_LIMITS();
  const std::string model = Write("huge.off", "OFF\n1300000000 1 0\n0 0 0\n3 0 1 2\n");
  EXPECT_EQ(Run("export " + model + " -o " + Path("plan.dxf")), kExitLimit);
  ExpectOneSentence();
  EXPECT_NE(error_.find("--max-memory"), std::string::npos) << error_;
  EXPECT_EQ(Listing(), "huge.off");
}

TEST_F(Dxf2d, OutputOfImportersIsDiscarded) {
  NEEDS_SILENCE();
  const std::string model = Write("odd.ogex", "CameraObject $camera1 {}\nnonsense {\n");
  EXPECT_NE(Run("export " + model + " -o " + Path("plan.dxf")), kExitDone);
  ExpectOneSentence();
}

TEST_F(Dxf2d, ALongImporterMessageIsCut) {
  std::string text = "solid mesh\nfacet normal 0 0 x\n";
  for (int i = 0; i < 1000; ++i) {
    text += "vertex 0 0 0\n";
  }
  const std::string model = Write("long.stl", text);
  EXPECT_EQ(Run("export " + model + " -o " + Path("plan.dxf")), kExitInput);
  ExpectOneSentence();
  EXPECT_LT(error_.size(), model.size() + 400);
}

TEST_F(Dxf2d, AnImporterThatExitsPrintsNothing) {
  // A bitmap's chunk that ends in its head makes a destructor of the reader throw.
  const std::string head = "Caligari V00.01BLH             \nBitM";
  const std::string chunk("\0\0\1\0\0\0\0\0\0\0\0\0\xbf\x0e\0\0(\0\0\0", 20);
  const std::string model = Write("cut.cob", head + chunk);
  EXPECT_EQ(Run("export " + model + " -o " + Path("plan.dxf")), kExitInput);
  ExpectOneSentence();
  EXPECT_NE(error_.find("crashes the importer"), std::string::npos) << error_;
}

TEST_F(Dxf2d, ABrokenModelLeavesTheExistingFile) {
  const std::string model = Write("bad.stl", "solid\nfacet");
  const std::string drawing = Write("plan.dxf", "mine");
  const std::string empty = Write("points.obj", "v 0 0 0\nv 1 1 1\np 1 2\n");
  EXPECT_NE(Run("export --force " + model + " -o " + drawing), kExitDone);
  ExpectOneSentence();
  EXPECT_EQ(Run("export --force " + empty + " -o " + drawing), kExitNothingToDraw);
  ExpectOneSentence();
  EXPECT_EQ(Read(drawing), "mine");
  EXPECT_EQ(Listing(), "bad.stl plan.dxf points.obj");
}

TEST_F(Dxf2d, AnExistingFileIsReplacedOnlyByForce) {
  const std::string model = Write("house.obj", kTriangle);
  const std::string drawing = Write("plan.dxf", "mine");
  EXPECT_EQ(Run("export " + model + " -o " + drawing), kExitOutputExists);
  ExpectOneSentence();
  EXPECT_NE(error_.find("plan.dxf: already exists; use --force to replace it"), std::string::npos);
  EXPECT_EQ(Read(drawing), "mine");
  EXPECT_EQ(Run("export --force " + model + " -o " + drawing), kExitDone) << error_;
  EXPECT_NE(Read(drawing).find("  0\nEOF\n"), std::string::npos);
  EXPECT_EQ(Run("export -f " + model + " -o " + drawing), kExitDone) << error_;
  EXPECT_EQ(Listing(), "house.obj plan.dxf");
}

TEST_F(Dxf2d, NothingThatShowsIsNothingToDraw) {
  // A line on end, seen from above.
  const std::string model = Write("mast.obj", "v 1 0 1\nv 1 9 1\nl 1 2\n");
  EXPECT_EQ(Run("export " + model + " -o " + Path("plan.dxf")), kExitNothingToDraw);
  ExpectOneSentence();
  EXPECT_EQ(Listing(), "mast.obj");
  EXPECT_EQ(Run("export " + model + " --view front -o " + Path("plan.dxf")), kExitDone) << error_;
}

TEST_F(Dxf2d, TheModelItselfIsNotOverwritten) {
  const std::string model = Write("house.obj", kTriangle);
  fs::create_symlink(model, Path("link.dxf"));
  EXPECT_EQ(Run("export " + model + " -o " + model), kExitUsage);
  EXPECT_EQ(Run("export " + model + " -o " + Path("link.dxf")), kExitUsage);
  ExpectOneSentence();
  EXPECT_EQ(Read(model), kTriangle);
}

TEST_F(Dxf2d, AMissingDirectoryIsNamed) {
  const std::string model = Write("house.obj", kTriangle);
  EXPECT_EQ(Run("export " + model + " -o " + Path("none/plan.dxf")), kExitOutputNotMade);
  ExpectOneSentence();
  EXPECT_NE(error_.find("none/plan.dxf"), std::string::npos) << error_;
}

TEST_F(Dxf2d, AFullDiskIsAFailedWrite) {
  const std::string model = Write("house.obj", kTriangle);
  EXPECT_EQ(Run("export " + model + " -o /dev/full"), kExitWriteFailed);
  ExpectOneSentence();
  EXPECT_NE(error_.find("/dev/full"), std::string::npos) << error_;
}

TEST_F(Dxf2d, WrongUsageIsExplained) {
  const std::string model = Write("house.obj", kTriangle);
  const std::string drawing = " -o " + Path("plan.dxf");
  EXPECT_EQ(Run(""), kExitUsage);
  EXPECT_EQ(Run("export"), kExitUsage);
  EXPECT_EQ(Run("export " + model), kExitUsage);
  EXPECT_EQ(Run("export " + model + drawing + " --view above"), kExitUsage);
  EXPECT_NE(error_.find("AZIMUTH,ELEVATION"), std::string::npos) << error_;
  EXPECT_EQ(Run("export " + model + drawing + " --up x"), kExitUsage);
  for (const char* scale : {"0", "-1", "nan", "inf", "two"}) {
    EXPECT_EQ(Run("export " + model + drawing + " --scale=" + scale), kExitUsage) << scale;
  }
  EXPECT_EQ(Run("draw " + model), kExitUsage);
  EXPECT_EQ(Listing(), "house.obj");
}

TEST_F(Dxf2d, EachWrongUsageIsOneSentenceThatNamesIt) {
  const std::string model = Write("house.obj", kTriangle);
  const std::string drawing = " -o " + Path("plan.dxf") + " ";
  const std::map<std::string, std::string> offenders{
      {"", "no command given; use export, finish, preview, view, inspect, "},
      {"draw", "unknown command 'draw'; use export, finish, preview, view, inspect, "},
      {"export", "no MODEL given"},
      {"export " + model, "no --output given"},
      {"export " + model + " --out plan.dxf", "unknown option '--out'"},
      {"export " + model + drawing + "--bogus", "unknown option '--bogus'"},
      {"export " + model + drawing + "--view", "--view needs a value: expected top"},
      {"export " + model + drawing + "--force=no", "--force takes no value"},
      {"export " + model + drawing + "--up y --up z", "--up is given more than once"},
      {"export " + model + drawing + "--labels all",
       "invalid --labels 'all': expected none or name"},
      {"export " + model + drawing + "--labels 1", "invalid --labels '1': expected none or name"},
      {"export " + model + drawing + "--label-height 1", "--label-height needs --labels"},
      {"export " + model + drawing + "--up x", "invalid --up 'x': expected auto, y or z"},
      {"export " + model + drawing + "--scale ten",
       "invalid --scale 'ten': expected a number above 0"},
      {"export " + model + drawing + "--codepage utf8",
       "invalid --codepage 'utf8': expected 1250 to"},
      {"export " + model + drawing + "--max-time 0",
       "invalid --max-time '0': expected a whole number"},
      {"export " + model + drawing + "--view \"$(printf 'a\\nb\\033')\"",
       "invalid --view 'a?b?': expected top"},
      {"export -- " + model, "no --output given"},
      {"preview plan.dxf -o plan.png --size 5",
       "invalid --size '5': expected a whole number from 16"},
      {"inspect plugin.so more.so", "unexpected argument 'more.so'"},
      {"inspect", "no PLUGIN given"}};
  for (const auto& [arguments, offender] : offenders) {
    EXPECT_EQ(Run(arguments), kExitUsage) << arguments;
    ExpectOneSentence();
    EXPECT_NE(error_.find(offender), std::string::npos) << error_;
    EXPECT_NE(error_.find("--help"), std::string::npos) << error_;
  }
}

TEST_F(Dxf2d, OptionsForModelsAreUsageErrorsForSceneFiles) {
  const std::string scene = Write("empty.json", kEmptyScene);
  const std::string command = "export " + scene + " -o " + Path("plan.dxf");
  for (const std::string option :
       {"--up z", "--view front", "--scale 2", "--labels name", "--labels none", "--repair on",
        "--repair off", "--weld 0", "--creases off", "--creases 30", "--units mm",
        "--source-units mm", "--colors none", "--only x", "--exclude x"}) {
    EXPECT_EQ(Run(command + " " + option), kExitUsage) << option;
    ExpectOneSentence();
    const std::string name = option.substr(0, option.find(' '));
    EXPECT_EQ(error_.find("dxf2d: " + scene + ": " + name + " applies to models only"), 0u)
        << error_;
  }
  EXPECT_EQ(Listing(), "empty.json");
  EXPECT_EQ(Run(command + " --codepage 1253 --max-nodes 9 --max-time 60"), kExitDone) << error_;
}

TEST_F(Dxf2d, ListsWhatAModelHolds) {
  const std::string model = Write("house.obj", kTriangle);
  ASSERT_EQ(Run("export --list " + model), kExitDone) << error_;
  EXPECT_EQ(out_.find("objects instances triangles"), 0u) << out_;
  ASSERT_EQ(Run("export --list --json --source-units mm " + model), kExitDone) << error_;
  EXPECT_NE(out_.find("\"unit\": \"mm\""), std::string::npos) << out_;
  EXPECT_EQ(Listing(), "house.obj");
}

TEST_F(Dxf2d, ListsNeedModelsThatCanBeRead) {
  const std::string model = Write("house.obj", kTriangle);
  EXPECT_EQ(Run("export --list " + Path("none.obj")), kExitInput);
  ExpectOneSentence();
  EXPECT_EQ(Run("export --list " + model + " " + Path("none.obj")), kExitSomeFailed);
  EXPECT_NE(error_.find("1 of 2 models were not listed"), std::string::npos) << error_;
  const std::string scene = Write("empty.json", kEmptyScene);
  EXPECT_EQ(Run("export --list " + scene), kExitUsage);
  EXPECT_EQ(error_.find("dxf2d: " + scene + ": --list applies to models only"), 0u) << error_;
}

TEST_F(Dxf2d, OneSceneFileAmongModelsRefusesTheirOptions) {
  const std::string scene = Write("empty.json", kEmptyScene);
  const std::string model = Write("house.obj", kTriangle);
  EXPECT_EQ(Run("export --view iso " + model + " " + scene + " -o " + Path("")), kExitUsage);
  EXPECT_EQ(error_.find("dxf2d: " + scene + ": --view "), 0u) << error_;
  EXPECT_EQ(Listing(), "empty.json house.obj");
}

TEST_F(Dxf2d, ViewsAndAxesAreTakenInAnyCaseAndWithBlanks) {
  const std::string model = Write("house.obj", kTriangle);
  ASSERT_EQ(Run("export " + model + " --up y --view 30,45 -o " + Path("a.dxf")), kExitDone);
  ASSERT_EQ(Run("export " + model + " --up Y --view ' 30 , 45' -o " + Path("b.dxf")), kExitDone)
      << error_;
  EXPECT_EQ(Read(Path("a.dxf")), Read(Path("b.dxf")));
  ASSERT_EQ(Run("export " + model + " --view front -o " + Path("c.dxf")), kExitDone) << error_;
  ASSERT_EQ(Run("export " + model + " --view Front -o " + Path("d.dxf")), kExitDone) << error_;
  EXPECT_EQ(Read(Path("c.dxf")), Read(Path("d.dxf")));
}

TEST_F(Dxf2d, NamesAreNeitherListsNorEnds) {
  for (const std::string& name : {std::string("[house]"), std::string("++")}) {
    Write(name, kTriangle);
    EXPECT_EQ(Run("export '" + name + "' -o '[plan]'", "cd " + Path("") + ";"), kExitDone)
        << error_;
    EXPECT_TRUE(fs::remove(Path("[plan]")));
  }
}

TEST_F(Dxf2d, HelpAndVersionSucceed) {
  EXPECT_EQ(Run("--version"), kExitDone);
  EXPECT_EQ(out_.rfind("dxf2d ", 0), 0u) << out_;
  EXPECT_EQ(Run("--help"), kExitDone);
  EXPECT_NE(out_.find("export"), std::string::npos);
  EXPECT_EQ(Run("export --help"), kExitDone);
  EXPECT_NE(out_.find("--view"), std::string::npos);
}

TEST_F(Dxf2d, AViewMayBeginWithAMinus) {
  const std::string model = Write("house.obj", kTriangle);
  EXPECT_EQ(Run("export " + model + " --view -30,45 -o " + Path("plan.dxf")), kExitDone) << error_;
}

TEST_F(Dxf2d, AnInvalidPluginIsReported) {
  const std::string model = Write("house.obj", kTriangle);
  const std::string text = Write("text.so", "no library");
  EXPECT_EQ(Run("export " + model + " --plugin " + text + " -o " + Path("plan.dxf")), kExitPlugin);
  ExpectOneSentence();
  EXPECT_NE(error_.find("text.so"), std::string::npos) << error_;
  EXPECT_EQ(Run("export " + model + " --plugin " + Path("none.so") + " -o " + Path("plan.dxf")),
            kExitPlugin);
  EXPECT_EQ(Listing(), "house.obj text.so");
}

TEST_F(Dxf2d, TheLocaleDoesNotAffectTheDrawing) {
  const std::string model = Write("house.obj", kTriangle);
  ASSERT_EQ(Run("export " + model + " --scale 0.1 -o " + Path("c.dxf"), "LC_ALL=C"), kExitDone);
  ASSERT_EQ(Run("export " + model + " --scale 0.1 -o " + Path("de.dxf"), "LC_ALL=de_DE.UTF-8"),
            kExitDone);
  EXPECT_EQ(Read(Path("c.dxf")), Read(Path("de.dxf")));
}

TEST_F(Dxf2d, TheEnvironmentDoesNotAffectTheDrawing) {
  const std::string model = Write("house.obj", kTriangle);
  ASSERT_EQ(Run("export --labels name " + model + " -o " + Path("here.dxf")), kExitDone);
  ASSERT_EQ(Run("export --labels name " + model + " -o " + Path("there.dxf"),
                "cd /; umask 077; TZ=Asia/Tokyo USER=other HOME=/nowhere LANG=tr_TR.UTF-8 "
                "LC_ALL= LANGUAGE=de"),
            kExitDone);
  ASSERT_EQ(Run("export --labels name house.obj -o inside.dxf", "cd " + Path("") + ";"), kExitDone);
  EXPECT_EQ(Read(Path("here.dxf")), Read(Path("there.dxf")));
  EXPECT_EQ(Read(Path("here.dxf")), Read(Path("inside.dxf")));
}

TEST_F(Dxf2d, AModelThatIsTurnedRightWayUpTwoWaysIsTheSame) {
  const std::string model = Write("house.obj", kTriangle);
  ASSERT_EQ(Run("export " + model + " -o " + Path("auto.dxf")), kExitDone);
  ASSERT_EQ(Run("export " + model + " --up y -o " + Path("y.dxf")), kExitDone);
  EXPECT_EQ(Read(Path("auto.dxf")), Read(Path("y.dxf")));
}

}  // namespace

}  // namespace dxf2d
