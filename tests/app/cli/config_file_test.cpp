#include "app/cli/config_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "app/cli/command_line.h"
#include "app/cli/exit_code.h"
#include "app/cli/failure.h"
#include "app/cli/option_values.h"

namespace dxf2d {

namespace {

namespace fs = std::filesystem;

// A program with one command, "draw", whose defaults are configured.
class ConfiguredProgram : public testing::Test {
 protected:
  ConfiguredProgram()
      : directory_(fs::path(testing::TempDir()) /
                   ("dxf2d-config-test-" + std::to_string(getpid()))) {
    fs::remove_all(directory_);
    fs::create_directories(directory_);
    setenv("XDG_CONFIG_HOME", directory_.c_str(), 1);
    Command draw;
    draw.name = "draw";
    draw.inputName = "FILE";
    draw.takesSeveralInputs = true;
    draw.takeInputs = [](const auto&) {};
    draw.isScene = [](const std::string& input) { return input.ends_with(".json"); };
    Option size{"--size", "N", "Size", "a number", into(size_, parseNumber)};
    Option only{"--only", "GLOB", "Parts", "a pattern", [this](const std::string& text) {
                  only_.push_back(text);
                  return true;
                }};
    only.isRepeatable = true;
    Option fast{"--fast", "", "Fast", "", [this](const std::string&) { return isFast_ = true; }};
    Option look{"--look", "a|b", "Look", "a or b", oneOf()};
    look.overrides = {"--size"};
    size.isConfigurable = only.isConfigurable = fast.isConfigurable = look.isConfigurable = true;
    Option plugin{"--plugin", "FILE", "Plug-in", "a file", [](const auto&) { return true; }};
    draw.options = {size, only, fast, look, plugin};
    draw.config = std::make_shared<ConfigRequest>();
    append(draw.options, configOptions(*draw.config));
    draw.beforeDefaults = [this](const OptionWords& words) {
      sizeBefore_ = size_;
      wordsBefore_ = words;
    };
    draw.run = [this](const OptionWords& words) {
      words_ = words;
      ++runs_;
      return result_;
    };
    program_.commands.push_back(draw);
  }

  ~ConfiguredProgram() override {
    unsetenv("XDG_CONFIG_HOME");
    fs::remove_all(directory_);
  }

  std::function<bool(const std::string&)> oneOf() {
    return [this](const std::string& text) {
      look_ = text;
      return text == "a" || text == "b";
    };
  }

  void Configure(const std::string& text) { std::ofstream(directory_ / "dxf2d.toml") << text; }

  int Run(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "drawer");
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    const int code = runCommandLine(program_, static_cast<int>(arguments.size()), arguments.data());
    out_ = testing::internal::GetCapturedStdout();
    error_ = testing::internal::GetCapturedStderr();
    return code;
  }

  void ExpectRefused(const std::string& text, const std::string& message) {
    Configure(text);
    EXPECT_EQ(Run({"draw", "x"}), kExitUsage) << text;
    EXPECT_EQ(error_, "dxf2d: " + (directory_ / "dxf2d.toml").string() + ": " + message + "\n");
    EXPECT_EQ(runs_, 0);
  }

  fs::path directory_;
  Program program_;
  double size_ = 1.0;
  double sizeBefore_ = 0.0;
  std::vector<std::string> only_;
  bool isFast_ = false;
  std::string look_;
  int result_ = kExitDone;
  int runs_ = 0;
  OptionWords words_;
  OptionWords wordsBefore_;
  std::string out_;
  std::string error_;
};

TEST_F(ConfiguredProgram, TakesWhatTheCommandLineLeavesOpen) {
  Configure("[draw]\nsize = 2.5\nonly = [\"a b\", \"c\"]\nfast = true\n# a remark\n");
  EXPECT_EQ(Run({"draw", "x", "--only", "d"}), kExitDone) << error_;
  EXPECT_EQ(size_, 2.5);
  EXPECT_TRUE(isFast_);
  EXPECT_EQ(only_, (std::vector<std::string>{"d"}));
  EXPECT_EQ(words_, (OptionWords{"--only", "d", "--size", "2.5", "--fast", ""}));
  // What scene files get.
  EXPECT_EQ(sizeBefore_, 1.0);
  EXPECT_EQ(wordsBefore_, (OptionWords{"--only", "d"}));
}

TEST_F(ConfiguredProgram, LeavesScenesAlone) {
  Configure("[draw]\nsize = 2\n");
  EXPECT_EQ(Run({"draw", "x.json", "y.json"}), kExitDone);
  EXPECT_EQ(size_, 1.0);
  EXPECT_EQ(words_, OptionWords());
}

TEST_F(ConfiguredProgram, TheCommandLineOverridesWhatContradictsIt) {
  Configure("[draw]\nsize = 2\nfast = false\n");
  EXPECT_EQ(Run({"draw", "x", "--look", "a"}), kExitDone);
  EXPECT_EQ(size_, 1.0);
  EXPECT_FALSE(isFast_);
}

TEST_F(ConfiguredProgram, AnotherFileOrNoneIsNamedOnTheCommandLine) {
  Configure("[draw]\nsize = 2\n");
  std::ofstream(directory_ / "other.toml") << "[draw]\nsize = 3\n";
  EXPECT_EQ(Run({"draw", "x", "--config", (directory_ / "other.toml").c_str()}), kExitDone);
  EXPECT_EQ(size_, 3.0);
  // Workers need not know where defaults come from.
  EXPECT_EQ(words_, (OptionWords{"--size", "3"}));
  size_ = 1.0;
  *program_.commands[0].config = {};
  EXPECT_EQ(Run({"draw", "x", "--no-config"}), kExitDone);
  EXPECT_EQ(size_, 1.0);
  *program_.commands[0].config = {};
  EXPECT_EQ(Run({"draw", "x", "--config", "/no/such/file"}), kExitUsage);
  EXPECT_EQ(error_,
            "dxf2d: /no/such/file: the configuration file cannot be read; name another with "
            "--config, or use --no-config\n");
}

TEST_F(ConfiguredProgram, ShowsWhatIsSet) {
  Configure("[draw]\nfast = true\nonly = [\"a\", \"b\"]\nsize = 2\n");
  EXPECT_EQ(Run({"draw", "--show-config"}), kExitDone) << error_;
  EXPECT_EQ(out_, "# " + (directory_ / "dxf2d.toml").string() +
                      "\n[draw]\nfast = true\nonly = [\"a\", \"b\"]\nsize = \"2\"\n");
  EXPECT_EQ(runs_, 0);
  EXPECT_EQ(Run({"draw", "--show-config", "--no-config"}), kExitDone);
  EXPECT_EQ(out_, "# no configuration file\n");
}

TEST_F(ConfiguredProgram, RefusesWhatItDoesNotKnowOrMustNotSet) {
  ExpectRefused(
      "[draw]\nplugin = \"x.so\"\n",
      "'plugin' cannot be set in a configuration file; give --plugin on the command line");
  ExpectRefused("[draw]\nsise = 2\n",
                "unknown setting 'sise'; did you mean size? If not, see dxf2d help draw");
  ExpectRefused("size = 2\n", "unknown setting 'size'; put defaults of draw below [draw]");
  ExpectRefused("[paint]\nsize = 2\n",
                "unknown setting 'size' in the section 'paint'; put defaults of draw below [draw]");
  ExpectRefused("[draw]\nsize = \"x\"\n", "invalid size 'x': expected a number; correct the file");
  ExpectRefused("[draw]\nfast = 3\n", "invalid fast '3': expected true or false; correct the file");
  ExpectRefused("[draw]\nsize = [1, 2]\n", "size has several values; give it one");
  ExpectRefused("[draw]\nsize = 1\nfast = true\nsize = 2\n",
                "size is set more than once; set it once");
}

TEST_F(ConfiguredProgram, UsageErrorsSayThatDefaultsWereSet) {
  Configure("[draw]\nsize = 2\n");
  result_ = kExitUsage;
  EXPECT_EQ(Run({"draw", "x"}), kExitUsage);
  EXPECT_EQ(error_, "dxf2d: " + (directory_ / "dxf2d.toml").string() +
                        ": sets defaults for models; leave them out with --no-config\n");
}

TEST_F(ConfiguredProgram, IsNeverOfTheCurrentDirectory) {
  Configure("[draw]\nsize = 2\n");
  const fs::path before = fs::current_path();
  fs::current_path(directory_);
  setenv("XDG_CONFIG_HOME", ".", 1);
  const std::string home = std::getenv("HOME") == nullptr ? "" : std::getenv("HOME");
  setenv("HOME", ".", 1);
  EXPECT_EQ(userConfigFile(), std::nullopt);
  EXPECT_EQ(Run({"draw", "x"}), kExitDone);
  EXPECT_EQ(size_, 1.0);
  setenv("HOME", "/somewhere", 1);
  EXPECT_EQ(userConfigFile(), "/somewhere/.config/dxf2d.toml");
  setenv("HOME", home.c_str(), 1);
  fs::current_path(before);
}

}  // namespace

}  // namespace dxf2d
