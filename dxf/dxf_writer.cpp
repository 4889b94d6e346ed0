#include "dxf/dxf_writer.h"

#include <array>
#include <exception>
#include <memory>
#include <new>
#include <vector>

#include "ktscene/zu_message.h"
#include "platform/code_page.h"

namespace dxf2d {

namespace {

// Also destroyed when the module is unloaded: a host may never close an export.
std::unique_ptr<DxfWriter>& instance() {
  static std::unique_ptr<DxfWriter> writer;
  return writer;
}

void showOpenError(const CFileException& exception) {
  constexpr unsigned kMessageSize = 1024;
  std::array<char16_t, kMessageSize> message{};
  if (exception.GetErrorMessage(message.data(), kMessageSize, nullptr)) {
    ZuErrorBox(nullptr, ZuTranslateText(u"DXF export error").c_str(), message.data(), 0);
  }
}

// What is thrown when a text needs more room than its drawing has, two bytes per UTF-16 unit.
CFileException unconvertible(std::u16string_view text, const CString& path) {
  // A label may be longer than a message should be.
  constexpr std::size_t kQuoted = 40;
  CString page;
  page.Format(u"%u", GetThreadCodePage());
  CFileException exception(CFileException::invalidFile, -1, path.GetString());
  exception.m_strReason = u" cannot take the text \"" + CString(text.substr(0, kQuoted)) +
                          (text.size() > kQuoted ? u"...\"" : u"\"") +
                          u", which needs more than two bytes per character in code page " + page +
                          u".";
  return exception;
}

// Copies `text` into `bytes` as long as it is ASCII; true when all of it is.
bool narrowAscii(std::u16string_view text, char* bytes) {
  unsigned units = 0;
  for (const char16_t unit : text) {
    units |= unit;
    *bytes++ = static_cast<char>(unit);
  }
  return units < 0x80;
}

}  // namespace

DxfWriter* DxfWriter::Instance() {
  if (instance() == nullptr) {
    instance().reset(new (std::nothrow) DxfWriter);
  }
  return instance().get();
}

void DxfWriter::Release() { instance().reset(); }

// NOLINTNEXTLINE(performance-unnecessary-value-param): passed by value, as names are.
bool DxfWriter::Open(CString path) {
  CFileException exception(CFileException::none, -1, nullptr);
  file_.Close();
  if (!file_.Open(path, CFile::modeCreate | CFile::modeWrite, &exception)) {
    showOpenError(exception);
    return false;
  }
  path_ = path;
  WriteHeaderSection();
  WriteTablesSection();
  Write("  0\nSECTION\n  2\nBLOCKS\n");
  Flush();
  return true;
}

void DxfWriter::Close() { file_.Close(); }

void DxfWriter::Flush() { file_.Flush(); }

void DxfWriter::FlushQuietly() noexcept {
  try {
    file_.Flush();
  } catch (const std::exception&) {
    return;
  }
}

void DxfWriter::Write(const CString& text) {
  // A null inside ends the conversion, and zero bytes follow.
  if (text.View().find(u'\0') == std::u16string_view::npos) {
    WriteWide(text.View());
  } else {
    WriteConverted(text.View());
  }
}

void DxfWriter::WriteWide(std::u16string_view text) {
  // Enough for every number and name; only labels are longer.
  constexpr std::size_t kShort = 512;
  std::array<char, kShort> bytes;
  if (text.size() <= kShort && narrowAscii(text, bytes.data())) {
    file_.Write(bytes.data(), text.size());
  } else {
    WriteConverted(text);
  }
}

void DxfWriter::WriteConverted(std::u16string_view text) {
  // Two bytes per unit and for the null. Short texts are converted on the stack; a label may be
  // longer than a stack.
  constexpr std::size_t kShort = 128;
  constexpr std::size_t kTooLong = 0x40000000;
  std::array<char, 2 * (kShort + 1)> shortBytes{};
  std::vector<char> longBytes;
  char* bytes = shortBytes.data();
  int converted = 0;
  if (text.size() + 1 < kTooLong) {
    if (text.size() > kShort) {
      longBytes.resize(2 * (text.size() + 1));
      bytes = longBytes.data();
    }
    // What follows a null inside the text is not converted.
    const int units = lstrlenW(text.data()) + 1;
    converted =
        WideCharToMultiByte(CP_THREAD_ACP, 0, text.data(), -1, bytes, 2 * units, nullptr, nullptr);
  }
  if (converted <= 0 && file_.IsOpen()) {
    throw unconvertible(text, path_);
  }
  file_.Write(bytes, text.size());
}

}  // namespace dxf2d
