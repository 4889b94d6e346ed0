#include "app/batch/batch_input.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <system_error>
#include <utility>

#include "app/cli/file_path.h"
#include "app/cli/translation.h"

namespace dxf2d::batch {

namespace {

namespace fs = std::filesystem;

std::string readList(const std::string& name) {
  std::ifstream file(filePath(name == "-" ? "/dev/stdin" : name), std::ios::binary);
  std::ostringstream text;
  // A list may be empty, which sets a flag of both streams.
  file.peek();
  if (!file.bad() && !file.eof()) {
    text << file.rdbuf();
  }
  std::error_code ignored;
  if (!file.is_open() || file.bad() || fs::is_directory(filePath(name), ignored)) {
    throw UsageError(
        {name, tr("the list cannot be read"), tr("name a file with one path in each line")});
  }
  return text.str();
}

bool isFolder(const std::string& path) {
  std::error_code ignored;
  return fs::is_directory(filePath(path), ignored);
}

class Collection {
 public:
  Collection(const InputRequest& request, const std::function<bool(const std::string&)>& isInput)
      : request_(request), isInput_(isInput) {
    std::error_code ignored;
    if (!request.outputs.empty()) {
      outputs_ = fs::weakly_canonical(filePath(request.outputs), ignored);
    }
  }

  void Add(const std::string& path) {
    if (isFolder(path)) {
      AddFolder(path);
    } else {
      AddFile(path, "");
    }
  }
  Inputs Take() { return std::move(found_); }

 private:
  void AddFile(const std::string& path, const std::string& folder) {
    if (taken_.insert(filePath(path).lexically_normal().string()).second) {
      found_.inputs.push_back({path, folder});
    }
  }

  // One level after the other, so that no depth is too deep.
  void AddFolder(const std::string& top) {
    std::vector<fs::path> folders{fs::path()};
    while (!folders.empty()) {
      const fs::path folder = std::move(folders.back());
      folders.pop_back();
      std::vector<fs::path> deeper;
      for (const fs::directory_entry& entry : EntriesOf(top, folder)) {
        std::error_code ignored;
        const fs::path name = entry.path().filename();
        if (name.native().starts_with('.')) {
          continue;
        }
        if (entry.is_directory(ignored)) {
          if (request_.isRecursive && !entry.is_symlink(ignored)) {
            deeper.push_back(folder / name);
          }
        } else if (isInput_(entry.path().string())) {
          AddFile(entry.path().string(), folder.string());
        }
      }
      // The last one is taken first.
      folders.insert(folders.end(), deeper.rbegin(), deeper.rend());
    }
  }

  // In the order of their names; none of the folder for outputs, if that is below `top`.
  std::vector<fs::directory_entry> EntriesOf(const std::string& top, const fs::path& folder) {
    const fs::path path = filePath(top) / folder;
    std::error_code error;
    if (!outputs_.empty() && !folder.empty() && fs::weakly_canonical(path, error) == outputs_) {
      return {};
    }
    std::vector<fs::directory_entry> entries;
    for (fs::directory_iterator at(path, error), end; !error && at != end; at.increment(error)) {
      entries.push_back(*at);
    }
    if (error) {
      found_.problems.push_back({path.string(),
                                 tr("the folder cannot be read: %1", {error.message()}),
                                 tr("change its permissions or leave it out")});
    }
    std::ranges::sort(entries, {}, [](const auto& entry) { return entry.path().native(); });
    return entries;
  }

  const InputRequest& request_;
  const std::function<bool(const std::string&)>& isInput_;
  fs::path outputs_;
  std::set<std::string> taken_;
  Inputs found_;
};

}  // namespace

std::vector<std::string> pathsInList(const std::string& text) {
  const char separator = text.find('\0') == std::string::npos ? '\n' : '\0';
  std::vector<std::string> paths;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(separator, begin), text.size());
    std::string path = text.substr(begin, end - begin);
    if (separator == '\n' && path.ends_with('\r')) {
      path.pop_back();
    }
    if (!path.empty()) {
      paths.push_back(std::move(path));
    }
    begin = end + 1;
  }
  return paths;
}

Inputs collectInputs(const InputRequest& request,
                     const std::function<bool(const std::string&)>& isInput) {
  Collection collection(request, isInput);
  for (const std::string& path : request.paths) {
    collection.Add(path);
  }
  for (const std::string& list : request.lists) {
    for (const std::string& path : pathsInList(readList(list))) {
      collection.Add(path);
    }
  }
  return collection.Take();
}

}  // namespace dxf2d::batch
