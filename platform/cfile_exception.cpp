#include "platform/cfile_exception.h"

#include <algorithm>
#include <array>

#include "platform/code_page.h"
#include "platform/os_error.h"

inline namespace kt_platform {

namespace {

// How the sentence about a file goes on after its name, by cause.
constexpr std::array<const char16_t*, CFileException::endOfFile + 1> kEndings = {
    u"",
    u" could not be used, for a reason that is not known.",
    u" was not found.",
    u" has a path that is not valid, or lies in a folder that does not exist.",
    u" could not be opened because too many files are open.",
    u" could not be used because access to it was denied.",
    u" is not open for this operation.",
    u" could not be removed because it is the current folder.",
    u" could not be created because its folder is full.",
    u" has no such position.",
    u" could not be read or written because its device failed.",
    u" could not be opened because it is in use.",
    u" could not be read or written because a part of it is locked.",
    u" could not be written in full because the disk is full.",
    u" ended before everything was read.",
};

CString sentence(const CFileException& exception) {
  if (exception.m_cause == CFileException::none) {
    return {};
  }
  CString text(u"The file");
  if (!exception.m_strFileName.IsEmpty()) {
    text += u" \"" + exception.m_strFileName + u"\"";
  }
  if (!exception.m_strReason.IsEmpty()) {
    return text += exception.m_strReason;
  }
  constexpr std::size_t kGeneric = CFileException::genericException;
  const auto cause = static_cast<std::size_t>(exception.m_cause);
  const std::size_t known = cause < kEndings.size() ? cause : kGeneric;
  if (known != kGeneric || exception.m_lOsError < 0) {
    return text += kEndings[known];
  }
  const std::u16string reason = dxf2d::osErrorText(exception.m_lOsError);
  CString ending;
  ending.Format(u" could not be used: the operating system reported error %ld%s.",
                exception.m_lOsError, reason.empty() ? u"" : (u" (" + reason + u")").c_str());
  return text += ending;
}

std::string toUtf8(const CString& text) {
  constexpr unsigned kUtf8 = 65001;
  const int length = text.GetLength();
  const int size =
      WideCharToMultiByte(kUtf8, 0, text.GetString(), length, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(kUtf8, 0, text.GetString(), length, bytes.data(), size, nullptr, nullptr);
  return bytes;
}

}  // namespace

CFileException::CFileException(Cause cause, long osError, const char16_t* fileName)
    : m_cause(cause), m_lOsError(osError), m_strFileName(fileName) {}

CFileException::CFileException(const CFileException&) = default;

CFileException& CFileException::operator=(const CFileException&) = default;

CFileException::~CFileException() = default;

bool CFileException::GetErrorMessage(char16_t* buffer, unsigned size, unsigned* helpContext) const {
  if (helpContext != nullptr) {
    *helpContext = 0;
  }
  if (buffer == nullptr || size == 0) {
    return false;
  }
  const CString text = sentence(*this);
  const std::u16string_view cut = text.View().substr(0, size - 1);
  *std::copy(cut.begin(), cut.end(), buffer) = u'\0';
  return !cut.empty();
}

const char* CFileException::what() const noexcept {
  try {
    what_ = toUtf8(sentence(*this));
    return what_.c_str();
  } catch (const std::exception&) {
    return "A file could not be used, and there is no memory to say why.";
  }
}

}  // namespace kt_platform
