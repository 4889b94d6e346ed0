#include <cxxabi.h>
#include <fcntl.h>
#include <gelf.h>
#include <libelf.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "app/cli/translation.h"
#include "app/host/plugin_module.h"
#include "app/inspect/module_exports.h"
#include "app/process/descriptor.h"

namespace dxf2d {

namespace {

// A FIFO is not waited for.
Descriptor openModule(const std::string& path) {
  Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat status {};
  if (!file.IsOpen() || fstat(file.Number(), &status) != 0) {
    throw PluginError(
        {path, tr("cannot be read: %1", {std::strerror(errno)}), tr("check the name")});
  }
  if (!S_ISREG(status.st_mode)) {
    throw PluginError({path, tr("is not a plug-in: it is not a regular file"),
                       tr("name a .so file that was linked as a module")});
  }
  return file;
}

using ElfImage = std::unique_ptr<Elf, int (*)(Elf*)>;

bool isModule(Elf* image) {
  GElf_Ehdr header;
  return image != nullptr && elf_kind(image) == ELF_K_ELF &&
         gelf_getehdr(image, &header) != nullptr && header.e_type == ET_DYN;
}

bool isExported(const GElf_Sym& symbol) {
  const auto binding = GELF_ST_BIND(symbol.st_info);
  const auto visibility = GELF_ST_VISIBILITY(symbol.st_other);
  return symbol.st_shndx != SHN_UNDEF && binding != STB_LOCAL &&
         (visibility == STV_DEFAULT || visibility == STV_PROTECTED);
}

void appendExports(Elf* image, Elf_Scn* section, const GElf_Shdr& header,
                   std::vector<std::string>& names) {
  Elf_Data* data = elf_getdata(section, nullptr);
  GElf_Sym symbol;
  for (int i = 0; data != nullptr && gelf_getsym(data, i, &symbol) != nullptr; ++i) {
    const char* name = elf_strptr(image, header.sh_link, symbol.st_name);
    if (name != nullptr && *name != '\0' && isExported(symbol)) {
      names.emplace_back(name);
    }
  }
}

}  // namespace

std::vector<std::string> exportedNames(const std::string& path) {
  const Descriptor file = openModule(path);
  elf_version(EV_CURRENT);
  const ElfImage image(elf_begin(file.Number(), ELF_C_READ, nullptr), &elf_end);
  if (!isModule(image.get())) {
    throw PluginError({path, tr("is not a plug-in: it is not a loadable module of this system"),
                       tr("name a .so file that was linked as a module")});
  }
  std::vector<std::string> names;
  GElf_Shdr header;
  for (Elf_Scn* section = elf_nextscn(image.get(), nullptr); section != nullptr;
       section = elf_nextscn(image.get(), section)) {
    if (gelf_getshdr(section, &header) != nullptr && header.sh_type == SHT_DYNSYM) {
      appendExports(image.get(), section, header, names);
    }
  }
  std::ranges::sort(names);
  return names;
}

std::string writtenInCpp(const std::string& name) {
  int status = 0;
  const std::unique_ptr<char, void (*)(void*)> written(
      abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status), &std::free);
  return status == 0 && written != nullptr ? written.get() : name;
}

}  // namespace dxf2d
