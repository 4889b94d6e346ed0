#include "app/process/worker_protocol.h"

#include <charconv>
#include <string_view>
#include <system_error>

namespace dxf2d {

namespace {

template <typename Number>
bool parse(std::string_view text, Number& number) {
  const char* const end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stopped == end;
}

// Numbers separated by commas; none for an empty text.
bool parse(std::string_view text, std::vector<int>& numbers) {
  while (!text.empty()) {
    const std::size_t comma = text.find(',');
    if (!parse(text.substr(0, comma), numbers.emplace_back())) {
      return false;
    }
    text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
  }
  return true;
}

}  // namespace

std::vector<std::string> wordsOf(const WorkerSetup& setup) {
  std::string descriptors;
  for (const int descriptor : setup.descriptors) {
    descriptors.append(descriptors.empty() ? "" : ",").append(std::to_string(descriptor));
  }
  return {std::to_string(setup.report), std::to_string(setup.parentProcess),
          std::to_string(setup.addressSpace), std::to_string(setup.processorTime), descriptors};
}

std::optional<WorkerSetup> setupOf(std::span<const std::string> words) {
  WorkerSetup setup;
  const bool isSetup = words.size() == kSetupWords && parse(words[0], setup.report) &&
                       parse(words[1], setup.parentProcess) &&
                       parse(words[2], setup.addressSpace) &&
                       parse(words[3], setup.processorTime) && parse(words[4], setup.descriptors);
  return isSetup ? std::optional(setup) : std::nullopt;
}

std::string requestOf(std::span<const std::string> words) {
  std::string request;
  for (const std::string& word : words) {
    request.append(word).push_back('\0');
  }
  return request;
}

std::vector<std::string> wordsOfRequest(std::string_view request) {
  std::vector<std::string> words;
  while (!request.empty()) {
    const std::size_t end = request.find('\0');
    words.emplace_back(request.substr(0, end));
    request.remove_prefix(end == std::string_view::npos ? request.size() : end + 1);
  }
  return words;
}

}  // namespace dxf2d
