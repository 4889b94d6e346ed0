// The files that a model consists of, as its reader opens them.
#pragma once

#include <assimp/IOSystem.hpp>
#include <cerrno>
#include <string>
#include <vector>

#include "app/process/file_identity.h"

struct aiScene;

namespace dxf2d {

// What became of the files that a reader asked for.
struct ModelFiles {
  // Names as the model gives them, each file name once, in the order in which they were asked for.
  std::vector<std::string> missing;
  // Files outside the model's directory, and what is not a regular file: not opened.
  std::vector<std::string> outside;
  // Whatever was asked for and exists, opened or not.
  std::vector<FileIdentity> named;
  // Missing files for which the importer looked. assimp itself looks for parts of names.
  std::vector<std::string> probed;
  // Without directories.
  std::vector<std::string> openedNames;
  // Of material libraries that were opened (.mtl), in the order in which they were.
  std::vector<std::string> materialLibraries;
  // The first file that could not be read to its end, and why; empty when there is none.
  std::string failedFile;
  std::string failure;

  void NoteFailure(const std::string& file, const std::string& reason);
};

// Opens files for assimp's readers: the model, and what it refers to in its directory and below.
// Readers take a read error for the end of a file, so that half a model would be drawn: this
// remembers errors, reads that end before the file does, and files that change meanwhile.
class ModelFileSystem : public Assimp::IOSystem {
 public:
  // `files` must outlive this object and its streams.
  ModelFileSystem(const std::string& model, bool allowsOutside, ModelFiles& files);

  bool Exists(const char* path) const override;
  char getOsSeparator() const override { return '/'; }
  // Null when there is no such file or it may not be opened.
  Assimp::IOStream* Open(const char* asked, const char* mode) override;
  void Close(Assimp::IOStream* stream) override;

 private:
  bool IsAllowed(const std::string& path) const;
  std::string NameOf(const std::string& path) const;
  void NoteNamed(const std::string& path) const;

  // Both with all links followed.
  std::string model_;
  std::string directory_;
  // As the model's path names it, with a slash at its end; empty for the current one.
  std::string prefix_;
  bool allowsOutside_;
  ModelFiles& files_;
};

// Removes what was found in another place, and from `files.missing` what readers look for without
// being told to: files named after the model in place of those that it names, and companions of
// the models of games.
void dropOptionalFiles(ModelFiles& files, const std::string& model);

// The identities of the texture files that the materials of `scene`, read from `model`, name, as
// far as there are such files. Plans have no textures, so that readers do not open them.
std::vector<FileIdentity> textureFiles(const aiScene& scene, const std::string& model);

}  // namespace dxf2d
