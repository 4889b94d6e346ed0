#include "app/batch/record.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <nlohmann/json.hpp>
#include <utility>

namespace dxf2d::batch {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::array kOutcomes{std::pair(Outcome::kDrawn, "drawn"),
                               std::pair(Outcome::kSkipped, "skipped"),
                               std::pair(Outcome::kFailed, "failed")};

// Without the facts. The order is that of the members and of the columns.
constexpr const char* kColumns[] = {"input",     "output",   "options", "outcome",
                                    "exit_code", "sentence", "seconds", "peak_memory"};

Json jsonOf(const Record& record) {
  const auto* const outcome =
      std::ranges::find(kOutcomes, record.outcome, [](const auto& pair) { return pair.first; });
  Json json{{"input", record.input},        {"output", record.output},
            {"options", record.options},    {"outcome", outcome->second},
            {"exit_code", record.exitCode}, {"sentence", record.sentence},
            {"seconds", record.seconds},    {"peak_memory", record.peakMemory}};
  const Json facts = Json::parse(record.facts, nullptr, false);
  for (const char* const fact : kFacts) {
    if (facts.is_object() && facts.contains(fact)) {
      json[fact] = facts[fact];
    }
  }
  return json;
}

std::string textOf(const Json& value) {
  return value.is_string() ? value.get<std::string>()
                           : value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// A line holds a record, so that line ends in it become spaces.
std::string quoted(std::string text) {
  std::ranges::replace_if(
      text, [](char c) { return c == '\n' || c == '\r' || c == '\0'; }, ' ');
  if (text.find_first_of("\",") == std::string::npos) {
    return text;
  }
  std::string quotedText(1, '"');
  for (const char c : text) {
    quotedText.append(c == '"' ? 2 : 1, c);
  }
  quotedText += '"';
  return quotedText;
}

std::vector<std::string> columns() {
  std::vector<std::string> names(std::begin(kColumns), std::end(kColumns));
  names.insert(names.end(), std::begin(kFacts), std::end(kFacts));
  return names;
}

std::string rowOf(const Json& json) {
  std::string row;
  bool isFirst = true;
  for (const std::string& column : columns()) {
    if (!std::exchange(isFirst, false)) {
      row += ',';
    }
    if (json.contains(column)) {
      row += quoted(textOf(json[column]));
    }
  }
  row += '\n';
  return row;
}

std::vector<std::string> cellsOf(std::string_view line) {
  std::vector<std::string> cells(1);
  bool isQuoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"' && isQuoted && i + 1 < line.size() && line[i + 1] == '"') {
      cells.back() += line[++i];
    } else if (line[i] == '"') {
      isQuoted = !isQuoted;
    } else if (line[i] == ',' && !isQuoted) {
      cells.emplace_back();
    } else {
      cells.back() += line[i];
    }
  }
  return cells;
}

// Numbers are numbers again; all else is text.
Json jsonOfRow(std::string_view line) {
  const std::vector<std::string> names = columns();
  const std::vector<std::string> cells = cellsOf(line);
  if (cells.size() != names.size()) {
    return Json();
  }
  Json json = Json::object();
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (!cells[i].empty()) {
      const Json number = Json::parse(cells[i], nullptr, false);
      json[names[i]] = number.is_number() || number.is_array() ? number : Json(cells[i]);
    }
  }
  return json;
}

std::optional<Record> recordOf(const Json& json) {
  if (!json.is_object() || !json.contains("outcome")) {
    return std::nullopt;
  }
  const auto* const outcome = std::ranges::find(kOutcomes, textOf(json["outcome"]),
                                                [](const auto& pair) { return pair.second; });
  if (outcome == kOutcomes.end()) {
    return std::nullopt;
  }
  const auto text = [&](const char* name) {
    return json.contains(name) ? textOf(json[name]) : std::string();
  };
  const auto number = [&](const char* name) {
    return json.contains(name) && json[name].is_number() ? json[name].get<double>() : 0.0;
  };
  Record record{text("input"),
                text("output"),
                text("options"),
                outcome->first,
                0,
                text("sentence"),
                number("seconds"),
                0,
                {}};
  record.exitCode = static_cast<int>(std::clamp(number("exit_code"), 0.0, 255.0));
  record.peakMemory = static_cast<std::uint64_t>(std::clamp(number("peak_memory"), 0.0, 0x1p62));
  Json facts = Json::object();
  for (const char* const fact : kFacts) {
    if (json.contains(fact)) {
      facts[fact] = json[fact];
    }
  }
  record.facts = facts.empty() ? std::string() : textOf(facts);
  return record;
}

}  // namespace

std::optional<RecordFormat> recordFormat(const std::string& file) {
  std::string name = file;
  std::ranges::transform(name, name.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (name.ends_with(".jsonl")) {
    return RecordFormat::kJsonLines;
  }
  return name.ends_with(".csv") ? std::optional(RecordFormat::kCsv) : std::nullopt;
}

std::string headOf(RecordFormat format) {
  if (format == RecordFormat::kJsonLines) {
    return "";
  }
  std::string head;
  for (const std::string& column : columns()) {
    head += (head.empty() ? "" : ",") + column;
  }
  return head + "\n";
}

std::string lineOf(const Record& record, RecordFormat format) {
  // What is not UTF-8 is replaced first, so that both formats hold the same.
  const Json json = Json::parse(textOf(jsonOf(record)));
  return format == RecordFormat::kCsv ? rowOf(json) : textOf(json) + "\n";
}

std::string asciiLineOf(const Record& record) {
  return jsonOf(record).dump(-1, ' ', true, Json::error_handler_t::replace);
}

std::optional<std::vector<Record>> recordsOf(std::string_view text, RecordFormat format) {
  const std::string head = headOf(format);
  if (!text.starts_with(head)) {
    return std::nullopt;
  }
  text.remove_prefix(head.size());
  std::vector<Record> records;
  for (std::size_t end = 0; (end = text.find('\n')) != std::string_view::npos;) {
    const std::string_view line = text.substr(0, end);
    const auto record = recordOf(format == RecordFormat::kCsv ? jsonOfRow(line)
                                                              : Json::parse(line, nullptr, false));
    if (!record) {
      return std::nullopt;
    }
    records.push_back(*record);
    text.remove_prefix(end + 1);
  }
  return records;
}

}  // namespace dxf2d::batch
