// dxf2d export of models in archives and compressed files.
#include <gtest/gtest.h>

#include <algorithm>

#include "app/cli/exit_code.h"
#include "app/importer/unpacked_model.h"
#include "tests/app/export/dxf2d_program.h"

namespace dxf2d {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSquare =
    "mtllib square.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nusemtl red\nf 1 2 3 4\n";
constexpr const char* kMaterial = "newmtl red\nKd 1 0 0\n";

class PackedModel : public Dxf2d {
 protected:
  void SetUp() override {
    Dxf2d::SetUp();
    fs::create_directory(Path("temporary"));
    Write("square.obj", kSquare);
    Write("square.mtl", kMaterial);
  }
  // Runs lines of Python in the directory, with `pack(archive, {name in it: text})` for Zip.
  void Pack(const std::string& program) const {
    Write("pack.py",
          "import gzip, io, os, tarfile, zipfile\n"
          "def pack(archive, members):\n"
          "  with zipfile.ZipFile(archive, 'w') as file:\n"
          "    for name, text in members.items(): file.writestr(name, text)\n"
          "obj, mtl = open('square.obj').read(), open('square.mtl').read()\n" +
              program + "\n");
    ASSERT_EQ(
        std::system(("cd '" + directory_.string() + "' && /usr/bin/env python3 pack.py").c_str()),
        0);
  }
  int Export(const std::string& model, const std::string& options = "") {
    return Run("export " + Path(model) + " -f -o " + Path("out.dxf") + " --up z " + options,
               "TMPDIR='" + Path("temporary") + "'");
  }
  void ExpectTheSquareIn(const std::string& archive) {
    ASSERT_EQ(Export("square.obj"), kExitDone) << error_;
    const std::string drawn = Read(Path("out.dxf"));
    ASSERT_EQ(Export(archive), kExitDone) << error_;
    EXPECT_EQ(Read(Path("out.dxf")), drawn);
    EXPECT_NE(out_.find("; unpacked square.obj"), std::string::npos) << out_;
    EXPECT_TRUE(fs::is_empty(Path("temporary")));
  }
  void ExpectRefusal(const std::string& archive, const std::string& reason) {
    EXPECT_EQ(Export(archive), kExitInput);
    ExpectOneSentence();
    EXPECT_NE(error_.find(archive + ": cannot be read: " + reason), std::string::npos) << error_;
    EXPECT_FALSE(fs::exists(Path("out.dxf")));
    EXPECT_TRUE(fs::is_empty(Path("temporary")));
  }
};

TEST_F(PackedModel, InAnArchiveHasWhatIsBesideIt) {
  Pack(
      "pack('a.zip', {'top/': '', 'top/square.obj': obj, 'top/square.mtl': mtl, "
      "'top/more/other.txt': 'x', '__MACOSX/top/._square.obj': 'x'})");
  ExpectTheSquareIn("a.zip");
}

TEST_F(PackedModel, InATarFileIsDrawn) {
  Pack(
      "tarfile.open('a.tar.bz2', 'w:bz2').add('square.obj')\n"
      "file = tarfile.open('b.tgz', 'w:gz')\nfile.add('square.obj')\nfile.add('square.mtl')\n"
      "file.close()");
  ExpectTheSquareIn("b.tgz");
}

TEST_F(PackedModel, CompressedAloneLacksItsMaterials) {
  Pack("gzip.open('square.obj.gz', 'wt').write(obj)");
  ASSERT_EQ(Export("square.obj.gz"), kExitDone) << error_;
  EXPECT_NE(out_.find("; missing: square.mtl; unpacked square.obj"), std::string::npos) << out_;
}

TEST_F(PackedModel, MembersStayInTheirDirectory) {
  Pack("pack('a.zip', {'../square.obj': obj, '../square.mtl': mtl, '../../evil.txt': 'x'})");
  ExpectTheSquareIn("a.zip");
  EXPECT_FALSE(fs::exists(Path("evil.txt")));
}

TEST_F(PackedModel, LinksAreNotFollowed) {
  Pack(
      "file = tarfile.open('a.tar', 'w')\nlink = tarfile.TarInfo('square.mtl')\n"
      "link.type = tarfile.SYMTYPE\nlink.linkname = '/etc/passwd'\nfile.addfile(link)\n"
      "file.add('square.obj')\nfile.close()");
  ASSERT_EQ(Export("a.tar"), kExitDone) << error_;
  EXPECT_NE(out_.find("; missing: square.mtl"), std::string::npos) << out_;
}

TEST_F(PackedModel, IsOneOfAKnownFormat) {
  Pack(
      "pack('two.zip', {'a.obj': obj, 'b.obj': obj})\npack('none.zip', {'a.txt': 'x'})\n"
      "pack('scene.zip', {'a.json': '{}'})\npack('empty.zip', {})");
  ExpectRefusal("two.zip", "it holds 2 models, such as 'a.obj' and 'b.obj'; unpack it");
  ExpectRefusal("none.zip", "it holds no model of a known format");
  ExpectRefusal("scene.zip", "it holds no model of a known format");
  ExpectRefusal("empty.zip", "it holds no model of a known format");
}

TEST_F(PackedModel, ThatIsDamagedIsRefused) {
  Pack(
      "pack('a.zip', {'square.obj': obj})\nopen('cut.zip', 'wb').write(open('a.zip', "
      "'rb').read()[:90])\ngzip.open('a.gz', 'wb').write(os.urandom(9999))\n"
      "open('cut.obj.gz', 'wb').write(open('a.gz', 'rb').read()[:5000])\n"
      "open('text.obj.gz', 'w').write(obj)");
  EXPECT_EQ(Export("cut.zip"), kExitInput);
  ExpectOneSentence();
  ExpectRefusal("cut.obj.gz", "truncated gzip input");
  ExpectRefusal("text.obj.gz", "it is not a packed file of a kind that is known");
}

TEST_F(PackedModel, FaultsAreThoseOfTheArchive) {
  Pack("pack('a.zip', {'square.obj': 'no model'})");
  EXPECT_NE(Export("a.zip"), kExitDone);
  ExpectOneSentence();
  EXPECT_NE(error_.find(Path("a.zip") + ": "), std::string::npos) << error_;
  EXPECT_EQ(error_.find("temporary"), std::string::npos) << error_;
}

TEST_F(PackedModel, IsListed) {
  Pack("pack('a.zip', {'square.obj': obj, 'square.mtl': mtl})");
  ASSERT_EQ(Run("export --list " + Path("a.zip")), kExitDone) << error_;
  EXPECT_NE(out_.find("#ff0000"), std::string::npos) << out_;
}

TEST_F(PackedModel, InAFolderIsKnownByTheEndBefore) {
  Pack(
      "os.mkdir('folder')\ngzip.open('folder/a.obj.gz', 'wt').write(obj)\n"
      "pack('folder/pictures.zip', {'a.png': 'x'})");
  ASSERT_EQ(Run("export " + Path("folder") + " -o " + Path("drawings")), kExitDone) << error_;
  EXPECT_TRUE(fs::exists(Path("drawings/a.obj.dxf")));
  EXPECT_FALSE(UnpackedModel::IsPackedModel("pictures.zip", {".obj"}));
  EXPECT_TRUE(UnpackedModel::IsPackedModel("a/B.OBJ.GZ", {".obj"}));
  EXPECT_TRUE(UnpackedModel::IsPackedModel("house.ifcZIP", {}));
}

}  // namespace
}  // namespace dxf2d
