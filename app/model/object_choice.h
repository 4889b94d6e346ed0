// Which objects of a model are drawn.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace dxf2d {

// The patterns of --only and --exclude, as matchesPattern takes them. A pattern that matches a
// node's name, its readable name (readableName), or its path in the tree (the names from the root
// on, with slashes between them), chooses the node and all below it.
struct ObjectFilter {
  // None: everything.
  std::vector<std::string> only;
  std::vector<std::string> exclude;

  bool IsEmpty() const { return only.empty() && exclude.empty(); }
};

// Applies a filter to the nodes of one model.
class ObjectChoice {
 public:
  explicit ObjectChoice(const ObjectFilter& filter);

  // What is known of a node from its ancestors and itself.
  struct Verdict {
    bool isIncluded = false;
    bool isExcluded = false;
    bool IsChosen() const { return isIncluded && !isExcluded; }
  };

  // That of the root's parent.
  Verdict Start() const { return {only_.empty(), false}; }
  // False when every verdict is Start's.
  bool IsNeeded() const { return !only_.empty() || !exclude_.empty(); }
  // The verdict on a node below one with `parent`.
  Verdict Judge(Verdict parent, std::string_view name, std::string_view path);

  // Throws UsageError when a pattern has matched no node; its sentence shows the nearest of
  // `names`.
  void CheckMatched(const std::string& path, const std::vector<std::string>& names) const;

 private:
  struct Pattern {
    std::string option;
    std::string text;
    std::u16string folded;
    bool hasMatched = false;
  };

  static bool MatchAny(std::vector<Pattern>& patterns, const std::array<std::u16string, 3>& names);

  std::vector<Pattern> only_;
  std::vector<Pattern> exclude_;
};

}  // namespace dxf2d
