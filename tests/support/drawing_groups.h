// Reads a drawing back as its groups, so that tests speak of entities and blocks and not of lines.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <ostream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/open_file.h"

// One group: its code, and its value as it stands in the file (padding included, without the line
// feed).
struct Group {
  int code;
  std::string value;
  friend bool operator==(const Group&, const Group&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Group& group) {
    return out << '(' << group.code << ", \"" << group.value << "\")";
  }
};

// What begins with a group 0 (an entity, but also SECTION, TABLE, BLOCK, EOF, …), and the groups
// that follow up to the next 0.
struct Entity {
  std::string type;
  std::vector<Group> groups;

  // The value of the first group with `code`; nothing when there is none.
  std::optional<std::string> Value(int code) const {
    for (const Group& group : groups) {
      if (group.code == code) {
        return group.value;
      }
    }
    return std::nullopt;
  }
  bool Has(int code) const { return Value(code).has_value(); }
  // The first group with `code` as a number. Throws std::runtime_error when there is none.
  double Number(int code) const {
    const std::optional<std::string> value = Value(code);
    if (!value) {
      throw std::runtime_error(type + " has no group " + std::to_string(code));
    }
    return std::stod(*value);
  }

  friend bool operator==(const Entity&, const Entity&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Entity& entity) {
    out << entity.type;
    for (const Group& group : entity.groups) {
      out << ' ' << group;
    }
    return out;
  }
};

// A block: its BLOCK entity, and what stands between that and ENDBLK.
struct Block {
  Entity head;
  std::vector<Entity> entities;

  std::string Name() const { return head.Value(2).value_or(""); }
};

// The bytes of a file, which this process may have open. Throws std::runtime_error when it cannot
// be read.
inline std::string readFile(const std::string& path) {
  const std::optional<std::string> bytes = readOpenFile(path);
  if (!bytes) {
    throw std::runtime_error("cannot read " + path);
  }
  return *bytes;
}

// Splits the text of a drawing into groups. Throws std::runtime_error at a code that is not a
// number or has no value line.
inline std::vector<Group> groupsOf(const std::string& text) {
  std::vector<Group> groups;
  std::size_t begin = 0;
  const auto nextLine = [&] {
    const std::size_t end = text.find('\n', begin);
    if (end == std::string::npos) {
      throw std::runtime_error("a line does not end: " + text.substr(begin));
    }
    std::string line = text.substr(begin, end - begin);
    begin = end + 1;
    return line;
  };
  while (begin < text.size()) {
    const std::string code = nextLine();
    std::size_t used = 0;
    const int number = code.empty() ? 0 : std::stoi(code, &used);
    if (code.empty() || used != code.size()) {
      throw std::runtime_error("not a group code: '" + code + "'");
    }
    groups.push_back({number, nextLine()});
  }
  return groups;
}

inline std::vector<Group> readGroups(const std::string& path) { return groupsOf(readFile(path)); }

inline std::vector<Entity> entitiesOf(const std::vector<Group>& groups) {
  std::vector<Entity> entities;
  for (const Group& group : groups) {
    if (group.code == 0) {
      entities.push_back({group.value, {}});
    } else if (!entities.empty()) {
      entities.back().groups.push_back(group);
    }
  }
  return entities;
}

// The entities between `SECTION` of the given name and its `ENDSEC`.
inline std::vector<Entity> sectionOf(const std::vector<Entity>& entities, const std::string& name) {
  std::vector<Entity> section;
  bool inside = false;
  for (const Entity& entity : entities) {
    if (entity.type == "SECTION") {
      inside = entity.Value(2) == name;
    } else if (entity.type == "ENDSEC") {
      inside = false;
    } else if (inside) {
      section.push_back(entity);
    }
  }
  return section;
}

// The blocks in file order; several may have one name.
inline std::vector<Block> blocksOf(const std::vector<Entity>& entities) {
  std::vector<Block> blocks;
  bool inside = false;
  for (const Entity& entity : entities) {
    if (entity.type == "BLOCK") {
      blocks.push_back({entity, {}});
      inside = true;
    } else if (entity.type == "ENDBLK") {
      inside = false;
    } else if (inside) {
      blocks.back().entities.push_back(entity);
    }
  }
  return blocks;
}

inline std::vector<Block> blocksNamed(const std::vector<Entity>& entities,
                                      const std::string& name) {
  std::vector<Block> blocks = blocksOf(entities);
  std::erase_if(blocks, [&](const Block& block) { return block.Name() != name; });
  return blocks;
}

inline std::vector<Entity> entitiesOfType(std::vector<Entity> entities, const std::string& type) {
  std::erase_if(entities, [&](const Entity& entity) { return entity.type != type; });
  return entities;
}

// A path of its own in the tests' temporary folder; what stands there at the end is removed.
class TempFile {
 public:
  explicit TempFile(const std::string& ending = ".dxf") {
    static std::random_device random;
    path_ = testing::TempDir() + "dxf2d_" + std::to_string(random()) + std::to_string(random()) +
            ending;
  }
  ~TempFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;

  const std::string& Path() const { return path_; }
  std::u16string WidePath() const { return std::filesystem::path(path_).u16string(); }

 private:
  std::string path_;
};
