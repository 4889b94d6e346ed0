#include "dxf/dxf_writer.h"

#include <array>
#include <exception>
#include <memory>
#include <new>
#include <vector>

#include "ktscene/zu_message.h"
#include "platform/code_page.h"

namespace {

// Not a smart pointer's job alone: a host may never close an export, and unloading ends it too.
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

// NOLINTNEXTLINE(performance-unnecessary-value-param): by value, as names are.
bool DxfWriter::Open(CString path) {
  CFileException exception(CFileException::none, -1, nullptr);
  file_.Close();
  if (!file_.Open(path, CFile::modeCreate | CFile::modeWrite, &exception)) {
    showOpenError(exception);
    return false;
  }
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
  // A null inside ends what is converted, and zeros follow it.
  if (text.View().find(u'\0') == std::u16string_view::npos) {
    WriteWide(text.View());
  } else {
    WriteConverted(text.View());
  }
}

void DxfWriter::WriteWide(std::u16string_view text) {
  // Room for every number and name; what is longer is a label's.
  constexpr std::size_t kShort = 512;
  std::array<char, kShort> bytes;
  if (text.size() <= kShort && narrowAscii(text, bytes.data())) {
    file_.Write(bytes.data(), text.size());
  } else {
    WriteConverted(text);
  }
}

void DxfWriter::WriteConverted(std::u16string_view text) {
  // Two bytes a unit and the null's, on the heap because a label may be longer than a stack. A
  // conversion that needs more fails, and the write of no bytes then fails as CFile says.
  constexpr std::size_t kTooLong = 0x40000000;
  const int units = lstrlenW(text.data()) + 1;
  std::vector<char> bytes;
  int converted = 0;
  if (text.size() + 1 < kTooLong) {
    bytes.resize(2 * (text.size() + 1));
    converted = WideCharToMultiByte(CP_THREAD_ACP, 0, text.data(), -1, bytes.data(), 2 * units,
                                    nullptr, nullptr);
  }
  file_.Write(converted > 0 ? bytes.data() : nullptr, text.size());
}
