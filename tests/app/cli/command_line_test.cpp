#include "app/cli/command_line.h"

#include <gtest/gtest.h>

#include "app/cli/exit_code.h"
#include "app/cli/option_values.h"

namespace dxf2d {

namespace {

// A program with one command, "draw", and what it was last told.
class DrawProgram : public testing::Test {
 protected:
  DrawProgram() {
    Command draw;
    draw.name = "draw";
    draw.help = "Draws.";
    draw.inputName = "FILE";
    draw.takesSeveralInputs = true;
    draw.takeInputs = [this](const auto& inputs) { inputs_ = inputs; };
    draw.isScene = [](const std::string& input) { return input.ends_with(".json"); };
    draw.options = {
        {"--size", "N", "Size", "a number", into(size_, parseNumber)},
        {"--turn", "N", "Turn", "a number", into(turn_, parseNumber), AppliesTo::kModelsOnly},
        {"-q,--quiet", "", "Say nothing", "", [this](const std::string&) {
           ++quiet_;
           return true;
         }}};
    Option only{"--only", "GLOB", "Parts to draw", "a pattern", [this](const std::string& text) {
                  only_.push_back(text);
                  return true;
                }};
    only.isRepeatable = true;
    only.needs = "--size";
    draw.options.push_back(only);
    Option list{"--list", "", "List the parts", "", [](const std::string&) { return true; }};
    list.onlyWith = {"--turn"};
    draw.options.push_back(list);
    draw.run = [this](const OptionWords& words) {
      words_ = words;
      ++runs_;
      return kExitLimit;
    };
    program_.version = "drawer 7";
    program_.commands.push_back(draw);
  }

  int Run(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "drawer");
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    const int code = runCommandLine(program_, static_cast<int>(arguments.size()), arguments.data());
    out_ = testing::internal::GetCapturedStdout();
    error_ = testing::internal::GetCapturedStderr();
    return code;
  }

  void ExpectUsageError(const std::vector<const char*>& arguments, const std::string& message) {
    EXPECT_EQ(Run(arguments), kExitUsage);
    EXPECT_EQ(error_, "dxf2d: " + message + "\n");
    EXPECT_EQ(runs_, 0);
  }

  Program program_;
  std::vector<std::string> inputs_;
  double size_ = 0.0;
  double turn_ = 0.0;
  int quiet_ = 0;
  std::vector<std::string> only_;
  int runs_ = 0;
  OptionWords words_;
  std::string out_;
  std::string error_;
};

TEST_F(DrawProgram, StoresInputsAndOptionsAndReturnsTheCommandsCode) {
  EXPECT_EQ(Run({"draw", "a", "--size", "2", "-q", "b", "--turn=-3"}), kExitLimit);
  EXPECT_EQ(inputs_, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(size_, 2.0);
  EXPECT_EQ(turn_, -3.0);
  EXPECT_EQ(quiet_, 1);
  EXPECT_EQ(error_, "");
}

TEST_F(DrawProgram, RepeatableOptionsAreTakenInOrder) {
  EXPECT_EQ(Run({"draw", "a", "--size", "1", "--only", "x", "--only", "y", "b"}), kExitLimit);
  EXPECT_EQ(only_, (std::vector<std::string>{"x", "y"}));
  EXPECT_EQ(inputs_, (std::vector<std::string>{"a", "b"}));
}

TEST_F(DrawProgram, OptionsForModelsAreErrorsForScenes) {
  ExpectUsageError({"draw", "a", "b.json", "--turn", "1"},
                   "b.json: --turn applies to models only, and a scene file is drawn exactly as it "
                   "is; leave the option out");
  EXPECT_EQ(Run({"draw", "b.json", "--size", "1"}), kExitLimit);
}

TEST_F(DrawProgram, MessagesNameTheOffenderAndTheWayOut) {
  const std::string help = "; see dxf2d draw --help";
  ExpectUsageError({}, "no command given; use draw, or see dxf2d --help");
  ExpectUsageError({"paint"}, "unknown command 'paint'; use draw, or see dxf2d --help");
  ExpectUsageError({"--bogus"}, "unknown option '--bogus'; see dxf2d --help");
  ExpectUsageError({"draw"}, "no FILE given" + help);
  ExpectUsageError({"draw", "a", "--bogus"}, "unknown option '--bogus'" + help);
  ExpectUsageError({"draw", "a", "--size"}, "--size needs a value: expected a number" + help);
  ExpectUsageError({"draw", "a", "--size="}, "--size needs a value: expected a number" + help);
  ExpectUsageError({"draw", "a", "--size=x"}, "invalid --size 'x': expected a number" + help);
  ExpectUsageError({"draw", "a", "--size=1", "--size=2"}, "--size is given more than once" + help);
  ExpectUsageError({"draw", "a", "--quiet=no"}, "--quiet takes no value" + help);
  ExpectUsageError({"draw", "a", "--only", "x"}, "--only needs --size" + help);
}

TEST_F(DrawProgram, HelpAndVersionArePrintedAndNotRun) {
  EXPECT_EQ(Run({"--version"}), kExitDone);
  EXPECT_EQ(out_, "drawer 7\n");
  EXPECT_EQ(Run({"draw", "--help"}), kExitDone);
  EXPECT_NE(out_.find("--turn N"), std::string::npos) << out_;
  EXPECT_EQ(runs_, 0);
}

TEST_F(DrawProgram, AnOptionThatChangesTheCommandSaysWhatMayStandBesideIt) {
  for (Option& option : program_.commands[0].options) {
    option.isRequired = option.LongName() == "--size";
  }
  EXPECT_EQ(Run({"draw", "a", "--list", "--turn", "3"}), kExitLimit) << error_;
  EXPECT_EQ(turn_, 3.0);
  runs_ = 0;
  ExpectUsageError({"draw", "a", "--list", "--size", "2"},
                   "--size does not apply with --list; see dxf2d draw --help");
  ExpectUsageError({"draw", "a"}, "no --size given; see dxf2d draw --help");
}

}  // namespace

}  // namespace dxf2d
