#include "app/model/model_files.h"

#include <assimp/cimport.h>
#include <assimp/material.h>
#include <assimp/scene.h>
#include <strings.h>

#include <algorithm>
#include <array>
#include <assimp/IOStream.hpp>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "app/cli/file_path.h"
#include "app/cli/path_separators.h"
#include "app/cli/translation.h"
#include "app/model/opened_file.h"

namespace dxf2d {

namespace {

namespace fs = std::filesystem;

// Without the directories; models of other systems separate them by backslashes.
std::string fileNameOf(std::string name) {
  std::ranges::replace(name, '\\', '/');
  return filePath(name).filename().string();
}

// Readers try one file in several directories, and with both kinds of slashes.
void addFile(std::vector<std::string>& names, const std::string& name) {
  const std::string file = fileNameOf(name);
  if (std::ranges::none_of(names, [&](const auto& other) { return fileNameOf(other) == file; })) {
    names.push_back(name);
  }
}

// With all links followed, also where the last names do not exist. Empty if that fails.
std::string placeOf(const std::string& path) {
  std::error_code error;
  const fs::path place = fs::weakly_canonical(fs::absolute(filePath(path), error), error);
  return error ? std::string() : place.generic_string();
}

// A regular file that is open for reading.
class FileStream : public Assimp::IOStream {
 public:
  FileStream(OpenedFile file, std::string name, ModelFiles& files)
      : file_(std::move(file)), name_(std::move(name)), files_(files) {}
  ~FileStream() override {
    if (file_.HasChanged()) {
      files_.NoteFailure(name_, tr("it changes while it is read"));
    }
  }
  FileStream(const FileStream&) = delete;
  FileStream& operator=(const FileStream&) = delete;

  size_t Read(void* buffer, size_t size, size_t count) override {
    if (size == 0 || count == 0) {
      return 0;
    }
    errno = 0;
    const size_t read = std::fread(buffer, size, count, file_.Stream());
    if (read < count) {
      CheckEnd();
    }
    return read;
  }
  size_t Write(const void*, size_t, size_t) override { return 0; }
  aiReturn Seek(size_t offset, aiOrigin origin) override {
    const int whence = origin == aiOrigin_SET   ? SEEK_SET
                       : origin == aiOrigin_CUR ? SEEK_CUR
                                                : SEEK_END;
    return file_.Seek(offset, whence) ? aiReturn_SUCCESS : aiReturn_FAILURE;
  }
  size_t Tell() const override { return file_.Tell(); }
  size_t FileSize() const override { return file_.Size(); }
  void Flush() override {}

 private:
  // After a read that returned less than was asked for.
  void CheckEnd() {
    if (std::ferror(file_.Stream()) != 0) {
      files_.NoteFailure(name_, std::generic_category().message(errno != 0 ? errno : EIO));
    } else if (file_.Tell() < file_.Size()) {
      files_.NoteFailure(name_, tr("it ends before its size is reached"));
    }
  }

  OpenedFile file_;
  std::string name_;
  ModelFiles& files_;
};

}  // namespace

void ModelFiles::NoteFailure(const std::string& file, const std::string& reason) {
  if (failure.empty()) {
    failedFile = file;
    failure = reason;
  }
}

ModelFileSystem::ModelFileSystem(const std::string& model, bool allowsOutside, ModelFiles& files)
    : model_(placeOf(model)),
      prefix_(model.substr(0, model.find_last_of(kPathSeparators) + 1)),
      allowsOutside_(allowsOutside),
      files_(files) {
  directory_ = placeOf(prefix_.empty() ? "." : prefix_);
  if (!directory_.ends_with('/')) {
    directory_ += '/';
  }
}

// Links may lead out of the directory.
bool ModelFileSystem::IsAllowed(const std::string& path) const {
  const std::string place = placeOf(path);
  return allowsOutside_ || place == model_ || place.starts_with(directory_);
}

// As the model gives it, where it was completed by the model's directory.
std::string ModelFileSystem::NameOf(const std::string& path) const {
  std::string name = path.starts_with(prefix_) ? path.substr(prefix_.size()) : path;
  while (name.starts_with("./")) {
    name.erase(0, 2);
  }
  return name;
}

void ModelFileSystem::NoteNamed(const std::string& path) const {
  const std::optional<FileIdentity> file = identityOf(path);
  if (file && std::ranges::find(files_.named, *file) == files_.named.end()) {
    files_.named.push_back(*file);
  }
}

bool ModelFileSystem::Exists(const char* path) const {
  NoteNamed(path);
  OpenedFile::Kind kind{};
  const bool exists = OpenedFile::Find(path, kind) && kind != OpenedFile::Kind::kDirectory;
  // Importers do not open a file that is reported as missing.
  if (!exists) {
    addFile(files_.probed, NameOf(path));
  } else if (kind != OpenedFile::Kind::kRegular || !IsAllowed(path)) {
    addFile(files_.outside, NameOf(path));
    return false;
  }
  return exists;
}

Assimp::IOStream* ModelFileSystem::Open(const char* asked, const char* mode) {
  // Readers do not write.
  if (std::string_view(mode).find_first_of("wa+") != std::string_view::npos) {
    return nullptr;
  }
  const std::string name = NameOf(asked);
  // Readers put the directory of the model before absolute names, too.
  const std::string path = filePath(name).is_absolute() ? name : asked;
  NoteNamed(path);
  if (!IsAllowed(path)) {
    addFile(files_.outside, name);
    return nullptr;
  }
  OpenedFile file(path);
  const int error = errno;
  if (file.Stream() == nullptr && file.What() != OpenedFile::Kind::kDirectory) {
    if (error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG) {
      addFile(files_.missing, name);
    } else {
      files_.NoteFailure(name, std::generic_category().message(error));
    }
    return nullptr;
  }
  if (file.What() == OpenedFile::Kind::kDirectory) {
    addFile(files_.missing, name);
    return nullptr;
  }
  if (file.What() != OpenedFile::Kind::kRegular) {
    addFile(files_.outside, name);
    return nullptr;
  }
  files_.openedNames.push_back(filePath(path).filename().string());
  if (strcasecmp(filePath(path).extension().string().c_str(), ".mtl") == 0) {
    files_.materialLibraries.push_back(path);
  }
  return std::make_unique<FileStream>(std::move(file), name, files_).release();
}

void ModelFileSystem::Close(Assimp::IOStream* stream) { delete stream; }

void dropOptionalFiles(ModelFiles& files, const std::string& model) {
  // Animations, skins and shaders of games, which readers look for beside every model, as they look
  // for NAME_animation.txt.
  constexpr std::array kOptional{".md5anim", ".md5camera", ".skin", ".shader", ".skeleton"};
  const std::string stem = filePath(model).stem().string();
  const auto isNamedAfterModel = [&](const std::string& name) {
    return filePath(name).stem().string() == stem;
  };
  // Objects of a scene in files of their own are not opened when they do not exist.
  for (const std::string& name : files.probed) {
    const std::string extension = filePath(name).extension().string();
    if (!extension.empty() && aiIsExtensionSupported(extension.c_str()) == AI_TRUE) {
      addFile(files.missing, name);
    }
  }
  const auto wasOpened = [&](const std::string& name) {
    const std::string file = filePath(name).filename().string();
    return std::ranges::find(files.openedNames, file) != files.openedNames.end();
  };
  std::erase_if(files.missing, wasOpened);
  std::erase_if(files.outside, wasOpened);
  const std::vector<std::string> asked = files.missing;
  std::erase_if(files.missing, [&](const std::string& name) {
    const std::string extension = filePath(name).extension().string();
    if (std::ranges::find(kOptional, extension) != kOptional.end() ||
        name.ends_with("_animation.txt")) {
      return true;
    }
    // A reader that does not find a file looks for one of the model's name.
    return isNamedAfterModel(name) && std::ranges::any_of(asked, [&](const std::string& other) {
             return !isNamedAfterModel(other) && filePath(other).extension() == extension;
           });
  });
}

std::vector<FileIdentity> textureFiles(const aiScene& scene, const std::string& model) {
  std::vector<FileIdentity> found;
  const fs::path directory = filePath(model).parent_path();
  for (unsigned i = 0; i < scene.mNumMaterials; ++i) {
    const aiMaterial& material = *scene.mMaterials[i];
    for (int kind = 0; kind <= AI_TEXTURE_TYPE_MAX; ++kind) {
      const auto type = static_cast<aiTextureType>(kind);
      for (unsigned n = 0; n < material.GetTextureCount(type); ++n) {
        aiString name;
        if (material.GetTexture(type, n, &name) != aiReturn_SUCCESS) {
          continue;
        }
        std::string path = name.C_Str();
        std::ranges::replace(path, '\\', '/');
        if (const auto identity = identityOf((directory / filePath(path)).string())) {
          found.push_back(*identity);
        }
      }
    }
  }
  return found;
}

}  // namespace dxf2d
