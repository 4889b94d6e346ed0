// The program itself in a directory of its own.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace dxf2d {

class Dxf2d : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "dxf2d-test-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    directory_ = name;
  }
  void TearDown() override {
    std::filesystem::permissions(directory_, std::filesystem::perms::owner_all);
    std::filesystem::remove_all(directory_);
  }

  std::string Path(const std::string& name) const { return (directory_ / name).string(); }

  std::string Write(const std::string& name, const std::string& text) const {
    std::ofstream(Path(name), std::ios::binary) << text;
    return Path(name);
  }

  static std::string Read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }

  // Runs the program with arguments as a shell takes them; keeps what it prints.
  int Run(const std::string& arguments, const std::string& environment = "") {
    const std::string command = environment + " '" DXF2D_PROGRAM "' " + arguments + " >" +
                                Path("stdout") + " 2>" + Path("stderr");
    const int status = std::system(command.c_str());
    out_ = Read(Path("stdout"));
    error_ = Read(Path("stderr"));
    std::filesystem::remove(Path("stdout"));
    std::filesystem::remove(Path("stderr"));
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }

  // Names in the directory, in order.
  std::string Listing() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory_)) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    std::string list;
    for (const std::string& name : names) {
      list += (list.empty() ? "" : " ") + name;
    }
    return list;
  }

  void ExpectOneSentence() const {
    EXPECT_EQ(std::count(error_.begin(), error_.end(), '\n'), 1) << error_;
    EXPECT_EQ(error_.rfind("dxf2d: ", 0), 0u) << error_;
    EXPECT_EQ(out_, "");
  }

  std::filesystem::path directory_;
  std::string out_;
  std::string error_;
};

}  // namespace dxf2d
