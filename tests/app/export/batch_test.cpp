// dxf2d export of folders and lists of models.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/cli/exit_code.h"
#include "tests/app/export/dxf2d_program.h"

namespace dxf2d {

namespace {

namespace fs = std::filesystem;

constexpr const char* kTriangle = "v 0 0 0\nv 4 0 0\nv 0 0 -3\no house\nf 1 2 3\n";
constexpr const char* kStl =
    "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\n"
    "endfacet\nendsolid a\n";
constexpr const char* kScene = R"({"format": "ktscene", "version": 1, "nodes": []})";

class Batch : public Dxf2d {
 protected:
  void SetUp() override {
    Dxf2d::SetUp();
    fs::create_directories(Path("in/deep"));
    Write("in/a.obj", kTriangle);
    Write("in/notes.txt", "not a model\n");
    Write("in/old.dxf", "  0\nEOF\n");
    Write("in/deep/b.obj", kTriangle);
  }
  int Export(const std::string& arguments) {
    return Run("export " + arguments + " -o " + Path("out"));
  }
  // All files below the output directory, in order.
  std::string Drawn() const {
    std::vector<std::string> names;
    if (fs::exists(Path("out"))) {
      for (const auto& entry : fs::recursive_directory_iterator(Path("out"))) {
        if (entry.is_regular_file()) {
          names.push_back(entry.path().lexically_relative(Path("out")).string());
        }
      }
    }
    std::ranges::sort(names);
    std::string list;
    for (const std::string& name : names) {
      list += (list.empty() ? "" : " ") + name;
    }
    return list;
  }
  std::vector<nlohmann::json> Report() const {
    std::vector<nlohmann::json> records;
    std::istringstream lines(Read(Path("report.jsonl")));
    for (std::string line; std::getline(lines, line);) {
      records.push_back(nlohmann::json::parse(line));
    }
    return records;
  }
};

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST_F(Batch, AFolderIsDrawnIntoADirectoryThatIsMade) {
  EXPECT_EQ(Export(Path("in")), kExitDone) << error_;
  EXPECT_EQ(Drawn(), "a.dxf");
}

TEST_F(Batch, FoldersOfFoldersAreMirrored) {
  EXPECT_EQ(Export("-r " + Path("in")), kExitDone) << error_;
  EXPECT_EQ(Drawn(), "a.dxf deep/b.dxf");
}

TEST_F(Batch, ModelsOfOneNameKeepApartByThemselves) {
  Write("in/Wuson.stl", kStl);
  Write("in/Wuson.obj", kTriangle);
  EXPECT_EQ(Export(Path("in")), kExitDone) << error_;
  EXPECT_EQ(Drawn(), "Wuson.obj.dxf Wuson.stl.dxf a.dxf");
  EXPECT_TRUE(has(error_, "Wuson.obj, ")) << error_;
  EXPECT_TRUE(has(error_, "Wuson.stl; each keeps its end")) << error_;
}

TEST_F(Batch, AListNamesModelsAndFolders) {
  Write("list", Path("in/deep") + "\n" + Path("in/a.obj") + "\n");
  EXPECT_EQ(Export("--from-file " + Path("list")), kExitDone) << error_;
  EXPECT_EQ(Drawn(), "a.dxf b.dxf");
}

TEST_F(Batch, StandardInputMayBeAList) {
  EXPECT_EQ(Export("--from-file - < " + Write("list", Path("in/a.obj") + "\n")), kExitDone)
      << error_;
  EXPECT_EQ(Drawn(), "a.dxf");
}

TEST_F(Batch, AnEmptyListOrFolderIsSaid) {
  fs::create_directory(Path("empty"));
  for (const std::string& arguments :
       {Path("empty"), "--from-file " + Write("list", "\n"), "--from-file " + Path("none")}) {
    EXPECT_EQ(Export(arguments), kExitUsage) << arguments;
    ExpectOneSentence();
  }
  EXPECT_FALSE(fs::exists(Path("out")));
}

TEST_F(Batch, APlainFileNameForSeveralModelsIsExplained) {
  EXPECT_EQ(
      Run("export " + Path("in/a.obj") + " " + Path("in/deep/b.obj") + " -o " + Path("plan.dxf")),
      kExitUsage);
  ExpectOneSentence();
  EXPECT_TRUE(has(error_, "is the name of one file")) << error_;
  EXPECT_TRUE(has(error_, Path("plan/"))) << error_;
  EXPECT_FALSE(fs::exists(Path("plan.dxf")));
}

TEST_F(Batch, ExistingDrawingsAreSkipped) {
  fs::create_directory(Path("out"));
  Write("out/a.dxf", "mine");
  EXPECT_EQ(Export("-r --skip-existing " + Path("in")), kExitDone) << error_;
  EXPECT_EQ(Read(Path("out/a.dxf")), "mine");
  EXPECT_EQ(Drawn(), "a.dxf deep/b.dxf");
  EXPECT_EQ(Export("-r --skip-existing " + Path("in")), kExitDone) << error_;
  EXPECT_EQ(out_ + error_, "");
}

TEST_F(Batch, ModelsThatAreNewerThanTheirDrawingsAreDrawnAgain) {
  ASSERT_EQ(Export("-r --if-newer " + Path("in")), kExitDone) << error_;
  Write("out/a.dxf", "mine");
  Write("out/deep/b.dxf", "mine");
  fs::last_write_time(Path("in/a.obj"),
                      fs::last_write_time(Path("out/a.dxf")) + std::chrono::hours(1));
  EXPECT_EQ(Export("-r --if-newer " + Path("in")), kExitDone) << error_;
  EXPECT_NE(Read(Path("out/a.dxf")), "mine");
  EXPECT_EQ(Read(Path("out/deep/b.dxf")), "mine");
}

TEST_F(Batch, SeveralJobsDrawTheSameBytes) {
  std::string list;
  for (int i = 0; i < 20; ++i) {
    list += Write("in/deep/m" + std::to_string(i) + ".obj", kTriangle) + "\n";
  }
  Write("list", list);
  ASSERT_EQ(Export("--jobs 1 --from-file " + Path("list")), kExitDone) << error_;
  fs::rename(Path("out"), Path("one"));
  ASSERT_EQ(Export("--jobs 4 --from-file " + Path("list")), kExitDone) << error_;
  for (int i = 0; i < 20; ++i) {
    const std::string name = "/m" + std::to_string(i) + ".dxf";
    EXPECT_EQ(Read(Path("one") + name), Read(Path("out") + name)) << name;
  }
}

TEST_F(Batch, FailingFastBeginsNoMore) {
  Write("in/broken.obj", "f 1 2 3\nf 9 9 9\n");
  const std::string models = Path("in/broken.obj") + " " + Path("in/a.obj");
  EXPECT_EQ(Export("--jobs 1 --fail-fast " + models), kExitSomeFailed);
  EXPECT_EQ(Drawn(), "");
  EXPECT_TRUE(has(error_, "1 of 2 models were not drawn, 1 not begun")) << error_;
  EXPECT_EQ(Export("--jobs 1 --keep-going " + models), kExitSomeFailed);
  EXPECT_EQ(Drawn(), "a.dxf");
  EXPECT_EQ(Export("--keep-going --fail-fast " + models), kExitUsage);
}

TEST_F(Batch, TheReportTellsWhatBecameOfEachModel) {
  Write("in/broken.obj", "f 1 2 3\nf 9 9 9\n");
  EXPECT_EQ(Export("--jobs 1 --units mm --source-units m --report " + Path("report.jsonl") + " " +
                   Path("in")),
            kExitSomeFailed);
  const std::vector<nlohmann::json> records = Report();
  ASSERT_EQ(records.size(), 2U);
  const nlohmann::json& drawn = records[0];
  EXPECT_EQ(drawn["input"], Path("in/a.obj"));
  EXPECT_EQ(drawn["output"], Path("out/a.dxf"));
  EXPECT_EQ(drawn["outcome"], "drawn");
  EXPECT_EQ(drawn["exit_code"], 0);
  // As sha256sum has it.
  EXPECT_EQ(drawn["sha256"], "6f4fee2b8969aa39859dfa4016c7f048aa7fedea54603013493ea13195b7c6f8");
  EXPECT_EQ(drawn["reader"], "Wavefront Object Importer");
  EXPECT_TRUE(has(drawn["options"], "--units 'mm'"));
  EXPECT_EQ(drawn["polylines"], 1);
  EXPECT_EQ(drawn["vertices"], 4);
  EXPECT_EQ(drawn["extents"], nlohmann::json::parse("[0, 0, 4000, 3000]"));
  EXPECT_EQ(drawn["unit"], "mm");
  EXPECT_EQ(drawn["model_unit"], "m");
  EXPECT_TRUE(drawn.contains("repairs"));
  EXPECT_GT(drawn["seconds"], 0.0);
  EXPECT_GT(drawn["peak_memory"], 0);
  EXPECT_EQ(records[1]["outcome"], "failed");
  EXPECT_EQ(records[1]["exit_code"], kExitInput);
  EXPECT_TRUE(has(records[1]["sentence"], "broken.obj"));
}

TEST_F(Batch, AReportGoesOnAndIsAddedUp) {
  const std::string report = Path("report.csv");
  ASSERT_EQ(Export("-r --report " + report + " " + Path("in")), kExitDone) << error_;
  ASSERT_EQ(Export("-r --skip-existing --report " + report + " " + Path("in")), kExitDone);
  EXPECT_EQ(std::ranges::count(Read(report), '\n'), 5);
  EXPECT_EQ(Run("report " + report), kExitDone) << error_;
  EXPECT_TRUE(out_.starts_with("2 inputs: 2 drawn, 0 skipped, 0 failed\n2 polylines, 8 vertices\n"))
      << out_;
}

TEST_F(Batch, AReportIsNotWrittenIntoAnotherFile) {
  EXPECT_EQ(Export("--report " + Write("data.csv", "a,b\n") + " " + Path("in")), kExitUsage);
  EXPECT_EQ(Read(Path("data.csv")), "a,b\n");
  EXPECT_EQ(Drawn(), "");
}

TEST_F(Batch, OptionsForModelsFailOnlyTheScenesOfAList) {
  Write("list", Write("in/scene.json", kScene) + "\n" + Path("in/a.obj") + "\n");
  EXPECT_EQ(Export("--view front --from-file " + Path("list")), kExitSomeFailed);
  EXPECT_EQ(Drawn(), "a.dxf");
  EXPECT_TRUE(has(error_, "scene.json: --view applies to models only")) << error_;
}

TEST_F(Batch, QuietPrintsNothingAndVerboseTheStages) {
  EXPECT_EQ(Export("--quiet " + Path("in")), kExitDone);
  EXPECT_EQ(out_ + error_, "");
  EXPECT_EQ(Export("--verbose --force --hidden remove " + Path("in")), kExitDone);
  for (const char* stage : {"reading ", "repairing ", "visibility ", "drawing "}) {
    EXPECT_TRUE(has(error_, stage)) << error_;
  }
}

TEST_F(Batch, ThereIsNoProgressWithoutATerminal) {
  EXPECT_EQ(Export(Path("in")), kExitDone);
  EXPECT_EQ(error_, "");
}

}  // namespace

}  // namespace dxf2d
