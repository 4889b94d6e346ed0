#include <algorithm>
#include <cstdio>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ktscene/library_folder.h"
#include "ktscene/message_catalog.h"
#include "ktscene/mo_catalog.h"
#include "ktscene/utf_text.h"
#include "platform/input_file.h"
#include "platform/windows_api.h"
#include "platform/windows_text.h"

// gettext is not part of Windows, and its library would be one more to ship for a handful of texts:
// catalogs are read here, and the language is found as gettext finds it.

namespace dxf2d {

namespace {

std::string environmentVariable(const wchar_t* name) {
  wchar_t value[256];
  const DWORD length = GetEnvironmentVariableW(name, value, static_cast<DWORD>(std::size(value)));
  return length < std::size(value) ? toUtf8(frameworkString({value, length})) : "";
}

// The user's languages, the preferred one first, joined by colons ("de_AT:de"); "C" for none.
std::string userLanguages() {
  std::string locale;
  for (const wchar_t* const name : {L"LC_ALL", L"LC_MESSAGES", L"LANG"}) {
    locale = environmentVariable(name);
    if (!locale.empty()) {
      break;
    }
  }
  // Everything in plain "C" is in the language of the program.
  const std::string language = locale == "C" ? "" : environmentVariable(L"LANGUAGE");
  if (!language.empty()) {
    return language;
  }
  if (!locale.empty()) {
    return locale.substr(0, locale.find_first_of(".@"));
  }
  wchar_t name[LOCALE_NAME_MAX_LENGTH];
  const LCID user = MAKELCID(GetUserDefaultUILanguage(), SORT_DEFAULT);
  const int size = LCIDToLocaleName(user, name, LOCALE_NAME_MAX_LENGTH, 0);
  std::string windowsName = size > 0 ? toUtf8(frameworkText(name)) : "C";
  std::ranges::replace(windowsName, '-', '_');
  return windowsName;
}

std::string readFile(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(openForReading(path), &std::fclose);
  std::string bytes;
  char block[4096];
  while (const std::size_t count = file ? std::fread(block, 1, sizeof block, file.get()) : 0) {
    bytes.append(block, count);
  }
  return bytes;
}

// The catalog of a language such as "de_AT", or else that of "de"; empty where there is none.
std::string readCatalog(const std::string& directory, const std::string& language) {
  const auto read = [&](const std::string& name) {
    return readFile(directory + "/" + name + "/LC_MESSAGES/ktscene.mo");
  };
  std::string bytes = read(language);
  const std::size_t territory = language.find('_');
  return bytes.empty() && territory != std::string::npos ? read(language.substr(0, territory))
                                                         : bytes;
}

// The catalogs of the user's languages, read again when the user's choice or the directory changes.
struct Catalogs {
  std::mutex mutex;
  std::string directory;
  std::string languages;
  bool isRead = false;
  std::vector<std::string> bytes;

  void Read() {
    const std::string wanted = userLanguages();
    if (isRead && wanted == languages) {
      return;
    }
    languages = wanted;
    bytes.clear();
    const std::string place =
        directory.empty() ? libraryFolder() + "/" KT_SCENE_CATALOG_DIRECTORY : directory;
    for (std::size_t begin = 0; begin <= wanted.size();) {
      const std::size_t end = std::min(wanted.find(':', begin), wanted.size());
      const std::string language = wanted.substr(begin, end - begin);
      // What follows the program's own language is not wanted.
      if (language == "C" || language == "en") {
        break;
      }
      bytes.push_back(readCatalog(place, language));
      begin = end + 1;
    }
    isRead = true;
  }
};

Catalogs& catalogs() {
  static Catalogs all;
  return all;
}

}  // namespace

std::u16string translate(const char16_t* text) {
  Catalogs& all = catalogs();
  const std::lock_guard lock(all.mutex);
  all.Read();
  const std::string original = toUtf8(text);
  for (const std::string& bytes : all.bytes) {
    if (const std::optional<std::string_view> translation = findTranslation(bytes, original)) {
      return fromUtf8(*translation);
    }
  }
  return text;
}

void setCatalogDirectory(const std::string& directory) {
  Catalogs& all = catalogs();
  const std::lock_guard lock(all.mutex);
  all.directory = directory;
  all.isRead = false;
}

}  // namespace dxf2d
