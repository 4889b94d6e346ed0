#include "app/cli/translation.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <iterator>
#include <vector>

#include "app/cli/catalog.h"

namespace dxf2d {
namespace {

// As many as one sentence can be made of, and a few that are thrown and caught meanwhile.
constexpr std::size_t kMostRemembered = 64;

struct Translated {
  std::string text;
  std::string english;
};

// The latest last.
thread_local std::deque<Translated> latest;

template <typename Values>
std::string filledIn(std::string_view rest, const Values& values) {
  std::string result;
  for (std::size_t at = 0; (at = rest.find('%')) != std::string_view::npos;) {
    const std::size_t number =
        at + 1 < rest.size() ? static_cast<unsigned char>(rest[at + 1]) - std::size_t{'1'} : 9;
    result += rest.substr(0, at);
    if (number < values.size()) {
      result += *std::next(values.begin(), static_cast<std::ptrdiff_t>(number));
      rest.remove_prefix(at + 2);
    } else {
      result += '%';
      rest.remove_prefix(at + 1);
    }
  }
  return result.append(rest);
}

// `translation` of `source`, which is the same pointer where there is none.
std::string filledIn(const char* source, const char* translation,
                     std::initializer_list<std::string_view> values) {
  std::string text = filledIn(translation, values);
  if (translation != source) {
    std::vector<std::string> english;
    english.reserve(values.size());
    for (const std::string_view value : values) {
      english.push_back(inEnglish(std::string(value)));
    }
    rememberEnglish(text, filledIn(source, english));
  }
  return text;
}

}  // namespace

std::string tr(const char* text, std::initializer_list<std::string_view> values) {
  return filledIn(text, catalogText(text), values);
}

std::string trn(const char* one, const char* many, std::uint64_t count,
                std::initializer_list<std::string_view> values) {
  return filledIn(count == 1 ? one : many, catalogText(one, many, count), values);
}

std::string inEnglish(const std::string& text) {
  const auto found = std::find_if(latest.rbegin(), latest.rend(),
                                  [&](const Translated& each) { return each.text == text; });
  return found == latest.rend() ? text : found->english;
}

void rememberEnglish(const std::string& text, const std::string& english) {
  if (text == english) {
    return;
  }
  if (latest.size() == kMostRemembered) {
    latest.pop_front();
  }
  latest.push_back({text, english});
}

}  // namespace dxf2d
