#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <string>

#include "platform/code_page.h"
#include "platform/windows_api.h"
#include "platform/windows_text.h"

inline namespace kt_platform {

namespace {

constexpr unsigned kUtf8 = 65001;
constexpr std::array kPages = {1250U, 1251U, 1252U, 1253U, 1254U, 1255U, 1256U, 1257U,
                               1258U, 874U,  932U,  936U,  949U,  950U,  kUtf8};

// What SetThreadCodePage set; until then Windows says which page the thread has.
constexpr unsigned kWindowsChoice = 0;
thread_local unsigned threadCodePage = kWindowsChoice;

bool isKnown(unsigned codePage) { return std::ranges::find(kPages, codePage) != kPages.end(); }

// Windows keeps no code page for a thread but a locale, whose page is not to be had for every page
// (none has UTF-8): so the thread's choice is ours, and Windows's where none was made.
unsigned resolve(unsigned codePage) {
  const bool isChosen = codePage == CP_THREAD_ACP && threadCodePage != kWindowsChoice;
  return isChosen ? threadCodePage : codePage;
}

}  // namespace

bool SetThreadCodePage(unsigned codePage) {
  if (!isKnown(codePage)) {
    return false;
  }
  threadCodePage = codePage;
  return true;
}

unsigned GetThreadCodePage() {
  if (threadCodePage != kWindowsChoice) {
    return threadCodePage;
  }
  DWORD page = 0;
  // The number itself in place of its text: the size is that of a number, in units.
  const int units =
      GetLocaleInfoW(GetThreadLocale(), LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
                     reinterpret_cast<wchar_t*>(&page), sizeof page / sizeof(wchar_t));
  // Locales without such a page take that of the process.
  return units > 0 && page != CP_ACP ? page : GetACP();
}

int lstrlenW(const char16_t* text) {
  const std::size_t length = text != nullptr ? std::char_traits<char16_t>::length(text) : 0;
  return length <= INT_MAX ? static_cast<int>(length) : 0;
}

int WideCharToMultiByte(unsigned codePage, unsigned long flags, const char16_t* wide,
                        int wideLength, char* bytes, int size, const char* defaultChar,
                        bool* usedDefault) {
  if (usedDefault != nullptr) {
    *usedDefault = false;
  }
  const bool isPage = codePage == CP_THREAD_ACP || isKnown(codePage);
  if (!isPage || wide == nullptr || wideLength < -1 || (bytes == nullptr && size > 0)) {
    return 0;
  }
  const unsigned page = resolve(codePage);
  // Windows refuses both with UTF-8, which holds everything.
  const bool isAsked = defaultChar != nullptr || usedDefault != nullptr;
  const bool hasDefault = isAsked && (page == CP_THREAD_ACP ? GetThreadCodePage() : page) != kUtf8;
  BOOL used = FALSE;
  const int written =
      ::WideCharToMultiByte(page, flags, dxf2d::windowsText(wide), wideLength, bytes, size,
                            hasDefault ? defaultChar : nullptr, hasDefault ? &used : nullptr);
  if (usedDefault != nullptr) {
    *usedDefault = used != FALSE;
  }
  return written;
}

}  // namespace kt_platform
