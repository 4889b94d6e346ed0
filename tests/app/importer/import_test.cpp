// dxf2d export of models that importer programs read.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "app/cli/exit_code.h"
#include "app/process/confinement.h"
#include "tests/app/export/dxf2d_program.h"

namespace dxf2d {
namespace {

namespace fs = std::filesystem;

constexpr const char* kGrid =
    "ncols 2\nnrows 2\nxllcorner 500000.25\nyllcorner 20\ncellsize 10\nNODATA_value -9\n1 1\n1 1\n";

class Import : public Dxf2d {
 protected:
  // An importer of .part files that runs `program` in Python; `in` and `out` are the paths.
  std::string Importer(const std::string& program) const {
    Write("importer/import.py",
          "import sys\nname, out = sys.argv[1], sys.argv[2]\n" + program + "\n");
    return Write("importer/import.json",
                 R"({"name": "import-part", "version": "1", "formats": [{"name": "Part",
                     "extensions": [".part"]}],
                     "command": ["/usr/bin/env", "python3", ")" +
                     Path("importer/import.py") + R"(", "{in}", "{out}"]})");
  }
  void SetUp() override {
    Dxf2d::SetUp();
    fs::create_directory(Path("importer"));
    fs::create_directory(Path("models"));
    Write("models/a.part", "part");
  }
  int Export(const std::string& program, const std::string& options = "") {
    return Run("export " + Path("models/a.part") + " -o " + Path("a.dxf") + " --importer " +
               Importer(program) + " " + options);
  }
};

TEST_F(Import, TheExamplesGridIsDrawnWhereItIs) {
  Write("models/hill.asc", kGrid);
  ASSERT_EQ(Run("export " + Path("models/hill.asc") + " -o " + Path("hill.dxf") +
                " --importer '" EXAMPLE_IMPORTER "/import_asc_grid.json'"),
            kExitDone)
      << error_;
  EXPECT_NE(out_.find("x 500000 to 500010"), std::string::npos) << out_;
  EXPECT_NE(out_.find("unit m"), std::string::npos) << out_;
  EXPECT_NE(out_.find("; read by import-asc-grid"), std::string::npos) << out_;
  // Single precision would have lost the quarter.
  EXPECT_NE(Read(Path("hill.dxf")).find("500000.250000"), std::string::npos);
}

TEST_F(Import, FarFromItsOriginAModelIsDrawnAsNearIt) {
  const auto verticesOfCutAt = [&](const std::string& corner) {
    Write("models/hill.asc", "ncols 3\nnrows 3\nxllcorner " + corner + "\nyllcorner " + corner +
                                 "\ncellsize 1\nNODATA_value -9\n0 0 0\n0 3 0\n0 0 0\n");
    EXPECT_EQ(Run("export " + Path("models/hill.asc") + " -f -o " + Path("hill.dxf") +
                      " --cut 1 --creases 1",
                  "DXF2D_IMPORTER_PATH='" EXAMPLE_IMPORTER "'"),
              kExitDone)
        << error_;
    const std::size_t end = out_.find(" vertices");
    return std::stoi(out_.substr(out_.rfind(' ', end - 1) + 1));
  };
  const int near = verticesOfCutAt("0");
  EXPECT_GT(near, 8);
  EXPECT_EQ(verticesOfCutAt("5400000.5"), near);
}

TEST_F(Import, OptionsThatTheReaderDoesNotHaveAreTold) {
  const std::string hill = Write("models/hill.asc", kGrid);
  const std::string arguments = " -f -o " + Path("hill.dxf") + " --tolerance 2";
  ASSERT_EQ(
      Run("export " + hill + arguments + " --spaces", "DXF2D_IMPORTER_PATH='" EXAMPLE_IMPORTER "'"),
      kExitDone)
      << error_;
  EXPECT_NE(out_.find("; no effect: --spaces, --tolerance"), std::string::npos) << out_;
  const std::string face = Write("models/face.off", "OFF\n3 1 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n");
  ASSERT_EQ(Run("export " + face + arguments), kExitDone) << error_;
  EXPECT_NE(out_.find("; no effect: --tolerance"), std::string::npos) << out_;
}

TEST_F(Import, ImportersAreFoundByTheirFormatsFirstBytes) {
  Write("models/hill.txt", kGrid);
  EXPECT_EQ(Run("export " + Path("models/hill.txt") + " -o " + Path("hill.dxf"),
                "DXF2D_IMPORTER_PATH='" EXAMPLE_IMPORTER "'"),
            kExitDone)
      << error_;
}

TEST_F(Import, FoldersHoldModelsOfImporters) {
  Write("models/hill.asc", kGrid);
  EXPECT_EQ(Run("export " + Path("models") + " -o " + Path("out"),
                "DXF2D_IMPORTER_PATH='" EXAMPLE_IMPORTER "'"),
            kExitDone)
      << error_;
  EXPECT_TRUE(fs::exists(Path("out/hill.dxf")));
}

TEST_F(Import, ListsNameWhatIsInTheModel) {
  Write("models/hill.asc", kGrid);
  EXPECT_EQ(
      Run("export --list " + Path("models/hill.asc"), "DXF2D_IMPORTER_PATH='" EXAMPLE_IMPORTER "'"),
      kExitDone)
      << error_;
  EXPECT_NE(out_.find("terrain"), std::string::npos) << out_;
}

TEST_F(Import, FormatsNameTheImporter) {
  ASSERT_EQ(Run("formats --json --importer '" EXAMPLE_IMPORTER "/import_asc_grid.json'"), kExitDone)
      << error_;
  const auto list = nlohmann::json::parse(out_);
  const auto grid = std::ranges::find_if(
      list, [](const auto& format) { return format["name"] == "Esri ASCII grid"; });
  ASSERT_NE(grid, list.end());
  EXPECT_EQ((*grid)["extensions"], nlohmann::json::array({".asc"}));
  EXPECT_EQ((*grid)["reader"], "import-asc-grid 1.0");
  EXPECT_EQ((*grid)["readable"], true);
  ASSERT_EQ(Run("formats"), kExitDone);
  EXPECT_NE(out_.find("Scene file (.json): read by dxf2d\n"), std::string::npos) << out_;
  EXPECT_NE(out_.find("(.obj): read by assimp\n"), std::string::npos) << out_;
}

TEST_F(Import, TheLastLineOfStandardErrorIsTheReason) {
  EXPECT_EQ(Export("print('first', file=sys.stderr)\nsys.exit('line 3 is not a number.')"),
            kExitInput);
  ExpectOneSentence();
  EXPECT_NE(error_.find("a.part: cannot be read: line 3 is not a number; repair the file"),
            std::string::npos)
      << error_;
  EXPECT_FALSE(fs::exists(Path("a.dxf")));
}

TEST_F(Import, WhatAnImporterPrintsDoesNotReachTheUser) {
  EXPECT_EQ(Export("print('hello')\nsys.exit('\\x1b[31mno\\u202e')"), kExitInput);
  ExpectOneSentence();
  EXPECT_NE(error_.find("cannot be read: ?[31mno"), std::string::npos) << error_;
}

TEST_F(Import, AFailureWithoutAReasonSaysSo) {
  EXPECT_EQ(Export("sys.exit(4)"), kExitInput);
  ExpectOneSentence();
  EXPECT_NE(error_.find("import-part gives no reason"), std::string::npos) << error_;
}

TEST_F(Import, ResultsThatAreNotBinaryGltfAreTheImportersFault) {
  EXPECT_EQ(Export("open(out, 'w').write('solid part')"), kExitInput);
  ExpectOneSentence();
  EXPECT_NE(error_.find("import-part did not write a binary glTF file"), std::string::npos)
      << error_;
  EXPECT_EQ(Export(""), kExitInput);
  ExpectOneSentence();
}

TEST_F(Import, CrashesAreTheModels) {
  EXPECT_EQ(Export("import os, signal\nos.kill(os.getpid(), signal.SIGSEGV)"), kExitInput);
  ExpectOneSentence();
  EXPECT_NE(error_.find("crashes the importer"), std::string::npos) << error_;
}

TEST_F(Import, LimitsHold) {
  EXPECT_EQ(
      Export("memory = bytearray(400 << 20)\nimport time\ntime.sleep(30)", "--max-memory 128"),
      kExitLimit);
  ExpectOneSentence();
  EXPECT_NE(error_.find("128 MiB"), std::string::npos) << error_;
  EXPECT_EQ(Export("while True: pass", "--max-time 1"), kExitLimit);
  ExpectOneSentence();
  EXPECT_NE(error_.find("--max-time"), std::string::npos) << error_;
}

TEST_F(Import, TheLimitOfTimeIsOneForTheImporterAndWhatFollows) {
  const std::string grid = Write("models/hill.asc", kGrid);
  Write("importer/slow.py",
        "import time, runpy, sys\nwhile time.process_time() < 2: pass\n"
        "sys.argv = sys.argv[1:]\nrunpy.run_path(sys.argv[0], run_name='__main__')\n");
  Write("importer/import_asc_grid.py", Read(EXAMPLE_IMPORTER "/import_asc_grid.py"));
  const std::string description = Write(
      "importer/slow.json",
      R"({"name": "slow", "version": "1", "formats": [{"name": "Grid", "extensions": [".asc"]}],
          "command": ["/usr/bin/env", "python3", ")" +
          Path("importer/slow.py") + R"(", ")" + Path("importer/import_asc_grid.py") +
          R"(", "{in}", "{out}"]})");
  const std::string arguments =
      "export " + grid + " -f -o " + Path("hill.dxf") + " --importer " + description;
  EXPECT_EQ(Run(arguments + " --max-time 1"), kExitLimit);
  // A second is left for what is drawn in much less.
  EXPECT_EQ(Run(arguments + " --max-time 3"), kExitDone) << error_;
}

TEST_F(Import, AddressSpaceThatIsNotUsedDoesNotCount) {
  EXPECT_EQ(Export("import mmap\nmemory = mmap.mmap(-1, 8 << 30)\nsys.exit('reserved')",
                   "--max-memory 128"),
            kExitInput);
  EXPECT_NE(error_.find("cannot be read: reserved"), std::string::npos) << error_;
}

TEST_F(Import, ResultsAreNoLargerThanBinaryGltfCanBe) {
  EXPECT_EQ(
      Export("import os\nfile = os.open(out, os.O_WRONLY)\ntry:\n  os.truncate(file, 5 << 30)\n"
             "except OSError as error:\n  sys.exit(os.strerror(error.errno))"),
      kExitInput);
  EXPECT_NE(error_.find("cannot be read: File too large"), std::string::npos) << error_;
}

TEST_F(Import, ModelsThatChangeMeanwhileAreRefused) {
  // The confined importer cannot change the model itself. Another program adds a byte every tenth
  // of a second, so that one comes after the importer's first look.
  const std::string model = Path("models/a.part");
  Write("change.sh", "for i in $(seq 100); do sleep 0.1; test -e '" + model +
                         "' || exit; dd if=/dev/zero bs=1 count=1 conv=notrunc,nocreat "
                         "oflag=append 'of=" +
                         model + "' 2>/dev/null; done");
  EXPECT_EQ(std::system(("sh '" + Path("change.sh") + "' &").c_str()), 0);
  EXPECT_EQ(Export("import time\nsize = len(open(name).read())\n"
                   "while len(open(name).read()) == size: time.sleep(0.01)"),
            kExitInput);
  ExpectOneSentence();
  EXPECT_NE(error_.find("it changes while it is read"), std::string::npos) << error_;
}

TEST_F(Import, ImportersThatAreMissingAreNamed) {
  const std::string description =
      Write("importer/gone.json", R"({"name": "gone", "version": "1", "formats": [{"name": "Part",
            "extensions": [".part"]}], "command": ["./gone", "{in}", "{out}"]})");
  EXPECT_EQ(Run("export " + Path("models/a.part") + " -o " + Path("a.dxf") + " --importer " +
                description),
            kExitInternal);
  ExpectOneSentence();
  EXPECT_NE(error_.find("importer/gone: the importer cannot be started"), std::string::npos)
      << error_;
}

TEST_F(Import, DescriptionsThatAreNotValidAreUsageErrors) {
  const std::string description = Write("importer/broken.json", "{");
  EXPECT_EQ(Run("export " + Path("models/a.part") + " -o " + Path("a.dxf") + " --importer " +
                description),
            kExitUsage);
  ExpectOneSentence();
}

// What a confined importer tries, and that it is refused.
class ConfinedImport : public Import {
 protected:
  void SetUp() override {
    Import::SetUp();
    if (availableConfinement().fileRules == 0 || !availableConfinement().callFilter) {
      GTEST_SKIP() << "this system has no Landlock or no seccomp";
    }
    Write("secret", "a secret");
    Write("models/program", "#!/bin/sh\necho ran\n");
    fs::permissions(Path("models/program"), fs::perms::owner_all);
  }
  // The reason that the importer gives when `attempt`, a line of Python, is refused.
  std::string Refusal(const std::string& attempt) {
    EXPECT_EQ(
        Export("import os, socket, subprocess\ntry:\n  " + attempt +
               "\nexcept OSError as error:\n  sys.exit('refused: ' + os.strerror(error.errno))"
               "\nsys.exit('allowed')"),
        kExitInput);
    const std::size_t begin = error_.find("cannot be read: ") + 16;
    return error_.substr(begin, error_.find(';') - begin);
  }
};

TEST_F(ConfinedImport, ReadsTheModelsDirectoryAlone) {
  EXPECT_EQ(Refusal("open('" + Path("models/program") + "').read()"), "allowed");
  EXPECT_EQ(Refusal("open('" + Path("secret") + "').read()"), "refused: Permission denied");
}

TEST_F(ConfinedImport, WritesItsResultAlone) {
  EXPECT_EQ(Refusal("open('" + Path("models/new") + "', 'w')"), "refused: Permission denied");
  EXPECT_EQ(Refusal("open(name, 'a')"), "refused: Permission denied");
}

TEST_F(ConfinedImport, RunsProgramsOfTheSystemAndItsOwnAlone) {
  EXPECT_EQ(Refusal("subprocess.run(['/bin/true'], check=True)"), "allowed");
  EXPECT_EQ(Refusal("subprocess.run(['" + Path("models/program") + "'])"),
            "refused: Permission denied");
}

TEST_F(ConfinedImport, HasNoNetwork) {
  EXPECT_EQ(Refusal("socket.socket()"), "refused: Operation not permitted");
}

}  // namespace
}  // namespace dxf2d
