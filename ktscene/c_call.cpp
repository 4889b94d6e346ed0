#include "ktscene/c_call.h"

#include <new>
#include <system_error>

#include "ktscene/kt_traverser_error.h"
#include "ktscene/ktscene_c.h"

namespace {

// Of a fixed size: an object that must be destroyed with its thread would keep the library loaded
// until then, and there may be no memory for a longer text.
thread_local char errorText[2048] = "";

void keepSentence(const char* text) noexcept {
  std::size_t length = std::min(std::strlen(text), sizeof errorText - 1);
  // Not within a character of UTF-8.
  while (text[length] != '\0' && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) {
    --length;
  }
  std::memcpy(errorText, text, length);
  errorText[length] = '\0';
}

}  // namespace

namespace dxf2d {

int keepError() noexcept {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    keepSentence("out of memory");
    return KTC_NO_MEMORY;
  } catch (const std::length_error&) {
    keepSentence("out of memory");
    return KTC_NO_MEMORY;
  } catch (const Canceled& error) {
    keepSentence(error.what());
    return KTC_CANCELED;
  } catch (const PluginFailure& error) {
    keepSentence(error.what());
    return KTC_PLUGIN_FAILED;
  } catch (const KtTraverserError& error) {
    keepSentence(error.what());
    return KTC_PLUGIN_FAILED;
  } catch (const WriteFailure& error) {
    keepSentence(error.what());
    return KTC_NOT_WRITTEN;
  } catch (const std::system_error& error) {
    keepSentence(error.what());
    return KTC_NOT_WRITTEN;
  } catch (const std::exception& error) {
    keepSentence(error.what());
    return KTC_INVALID;
  } catch (...) {
    keepSentence("an exception without a description");
    return KTC_PLUGIN_FAILED;
  }
}

}  // namespace dxf2d

const char* KtCErrorText() { return errorText; }
