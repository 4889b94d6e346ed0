#include "ktscene/kt_scene_reader.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <limits>
#include <memory>
#include <optional>
#include <system_error>

// The text of a number is parsed again here: the library's result depends on the locale, up to a
// failed assertion where the decimal separator has several bytes.
#define JSON_ASSERT(condition) static_cast<void>(0)
#include <nlohmann/json.hpp>

#include "ktscene/number_text.h"
#include "ktscene/scene_builder.h"
#include "ktscene/utf_text.h"
#include "platform/input_file.h"
#include "platform/path_text.h"

namespace {

using dxf2d::SceneBuilder;
using nlohmann::json;

std::string atByte(std::size_t offset) { return " at byte " + std::to_string(offset); }

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

// Whether a string broke off in the bytes that would encode a lone surrogate.
bool endsInSurrogateBytes(std::string_view token) {
  return token.size() >= 2 && token[token.size() - 2] == '\xED' &&
         static_cast<unsigned char>(token.back()) >= 0xA0;
}

// The library's sentence without its frame and without the quoted text, which may not be UTF-8.
std::string plainReason(std::string_view message) {
  constexpr std::string_view kBefore = " - ";
  const std::size_t begin = message.find(kBefore);
  if (begin != std::string_view::npos) {
    message.remove_prefix(begin + kBefore.size());
  }
  std::string reason(message.substr(0, message.find("; last read: ")));
  for (std::size_t i = reason.find(';'); i != std::string::npos; i = reason.find(';', i)) {
    reason[i] = ',';
  }
  return reason;
}

std::string syntaxReason(std::size_t offset, const std::string& token, const char* message) {
  if (contains(message, "surrogate") || endsInSurrogateBytes(token)) {
    return "has a lone surrogate" + atByte(offset);
  }
  if (contains(message, "UTF-8")) {
    return "is not valid UTF-8" + atByte(offset);
  }
  return "is not JSON" + atByte(offset) + ": " + plainReason(message);
}

// `token` is a number as the library keeps it: with the locale's decimal separator, cut to one
// byte.
double readReal(std::string token) {
  std::ranges::replace_if(
      token,
      [](char c) { return std::string_view("0123456789+-eE").find(c) == std::string_view::npos; },
      '.');
  double value = 0.0;
  dxf2d::parseReal(token, value);
  return value;
}

// Passes the library's events to a builder.
class EventAdapter {
 public:
  explicit EventAdapter(SceneBuilder& builder) : builder_(builder) {}

  // NOLINTBEGIN(readability-identifier-naming): the library calls them by these names.
  bool null() {
    builder_.Null();
    return true;
  }
  bool boolean(bool value) {
    builder_.Flag(value);
    return true;
  }
  bool number_integer(json::number_integer_t value) {
    // "-0" is the only number with a minus sign that is not below 0.
    const double real = value == 0 ? -0.0 : static_cast<double>(value);
    const bool fits = value >= std::numeric_limits<int>::min();
    builder_.Number(real, fits ? std::optional(static_cast<int>(value)) : std::nullopt);
    return true;
  }
  bool number_unsigned(json::number_unsigned_t value) {
    const bool fits = value <= static_cast<unsigned>(std::numeric_limits<int>::max());
    builder_.Number(static_cast<double>(value),
                    fits ? std::optional(static_cast<int>(value)) : std::nullopt);
    return true;
  }
  bool number_float(json::number_float_t /*value*/, const std::string& token) {
    builder_.Number(readReal(token), std::nullopt);
    return true;
  }
  bool string(const std::string& text) {
    builder_.Text(text);
    return true;
  }
  // No JSON text leads here.
  bool binary(const json::binary_t& /*value*/) { return false; }
  bool start_object(std::size_t /*size*/) {
    builder_.BeginObject();
    return true;
  }
  bool key(const std::string& name) {
    builder_.Key(name);
    return true;
  }
  bool end_object() {
    builder_.EndObject();
    return true;
  }
  bool start_array(std::size_t /*size*/) {
    builder_.BeginList();
    return true;
  }
  bool end_array() {
    builder_.EndList();
    return true;
  }
  bool parse_error(std::size_t bytesRead, const std::string& token, const json::exception& error) {
    constexpr int kNumberOverflow = 406;
    if (error.id == kNumberOverflow) {
      builder_.Number(std::numeric_limits<double>::infinity(), std::nullopt);
    }
    builder_.Refuse(syntaxReason(bytesRead - 1, token, error.what()));
  }
  // NOLINTEND(readability-identifier-naming)

 private:
  SceneBuilder& builder_;
};

// Why a file cannot be read and what to do about it.
std::string describeFileError(const std::error_code& error) {
  if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory) {
    return "there is no such file; check the name";
  }
  if (error == std::errc::permission_denied) {
    return "may not be read; ask for the permission to read it or copy it elsewhere";
  }
  if (error == std::errc::is_a_directory) {
    return "is a directory; name a scene file in it";
  }
  if (error == std::errc::filename_too_long) {
    return "the name is too long; choose a shorter one";
  }
  if (error == std::errc::too_many_files_open ||
      error == std::errc::too_many_files_open_in_system) {
    return "too many files are open; close some and try again";
  }
  return "cannot be read (error " + std::to_string(error.value()) +
         " of the operating system); check the disk or copy the file elsewhere";
}

// The path in UTF-8, its zero bytes as "\u0000" so that they do not end the sentence.
std::string printable(const std::string& path) {
  std::string name = dxf2d::toUtf8(pathFromBytes(path));
  std::size_t zero = 0;
  while ((zero = name.find('\0', zero)) != std::string::npos) {
    name.replace(zero, 1, "\\u0000");
  }
  return name;
}

std::string readAll(const std::string& path, const std::string& name) {
  const auto refuse = [&name](int error) {
    throw KtSceneError(name + ": " + describeFileError({error, std::generic_category()}));
  };
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(dxf2d::openForReading(path),
                                                             &std::fclose);
  if (!file) {
    refuse(errno);
  }
  std::string text;
  char block[16384];
  while (const std::size_t count = std::fread(block, 1, sizeof block, file.get())) {
    text.append(block, count);
  }
  if (std::ferror(file.get()) != 0) {
    refuse(errno);
  }
  return text;
}

}  // namespace

KtScene ParseScene(std::string_view text, const std::string& name) {
  SceneBuilder builder(name);
  if (text.empty() || text == "\xEF\xBB\xBF") {
    builder.Refuse("is empty; write a JSON object with \"nodes\" into it");
  }
  // The library takes a zero byte for the end of the text.
  const std::size_t zero = text.find('\0');
  if (zero != std::string_view::npos) {
    builder.Refuse("is not JSON in UTF-8: a zero byte" + atByte(zero));
  }
  EventAdapter adapter(builder);
  json::sax_parse(text.begin(), text.end(), &adapter);
  return builder.TakeScene();
}

KtScene ReadSceneFile(const std::string& path) {
  const std::string name = printable(path);
  if (path.find('\0') != std::string::npos) {
    throw KtSceneError(name + ": the name has a zero byte; check the name");
  }
  return ParseScene(readAll(path, name), name);
}
