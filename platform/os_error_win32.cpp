#include "platform/os_error.h"

#include <iterator>

#include "platform/windows_api.h"
#include "platform/windows_text.h"

namespace dxf2d {

std::u16string osErrorText(long osError) {
  wchar_t text[512];
  DWORD length = FormatMessageW(
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
      nullptr, static_cast<DWORD>(osError), 0, text, static_cast<DWORD>(std::size(text)), nullptr);
  while (length > 0 && (text[length - 1] == L' ' || text[length - 1] == L'.')) {
    --length;
  }
  return frameworkString({text, length});
}

}  // namespace dxf2d
