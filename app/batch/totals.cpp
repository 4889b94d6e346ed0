#include "app/batch/totals.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "app/cli/translation.h"

namespace dxf2d::batch {

namespace {

std::uint64_t factOf(const nlohmann::json& facts, const char* name) {
  const bool isThere =
      facts.is_object() && facts.contains(name) && facts[name].is_number_unsigned();
  return isThere ? facts[name].get<std::uint64_t>() : 0;
}

std::string formatted(const char* format, double value) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

// As the help of dxf2d explains them.
std::string meaningOf(int exitCode) {
  switch (exitCode) {
    case 1:
      return tr("internal error");
    case 2:
      return tr("wrong usage");
    case 3:
      return tr("unreadable input");
    case 4:
      return tr("nothing to draw");
    case 5:
      return tr("output cannot be created");
    case 6:
      return tr("writing failed");
    case 7:
      return tr("limit exceeded");
    case 8:
      return tr("plug-in missing or invalid");
    case 9:
      return tr("output exists");
    default:
      return tr("unknown");
  }
}

void add(Totals& totals, const Record& record) {
  ++totals.inputs;
  switch (record.outcome) {
    case Outcome::kDrawn:
      ++totals.drawn;
      break;
    case Outcome::kSkipped:
      ++totals.skipped;
      break;
    case Outcome::kFailed:
      ++totals.failed[record.exitCode];
      break;
  }
  const nlohmann::json facts = nlohmann::json::parse(record.facts, nullptr, false);
  totals.polylines += factOf(facts, "polylines");
  totals.vertices += factOf(facts, "vertices");
  totals.seconds += record.seconds;
  if (record.seconds > totals.longest) {
    totals.longest = record.seconds;
    totals.longestInput = record.input;
  }
  if (record.peakMemory > totals.peakMemory) {
    totals.peakMemory = record.peakMemory;
    totals.peakInput = record.input;
  }
}

}  // namespace

Totals totalsOf(const std::vector<Record>& records) {
  std::map<std::string, const Record*> lastOf;
  for (const Record& record : records) {
    const Record*& last = lastOf[record.input];
    if (last == nullptr || record.outcome != Outcome::kSkipped) {
      last = &record;
    }
  }
  Totals totals;
  for (const auto& [input, record] : lastOf) {
    add(totals, *record);
  }
  return totals;
}

std::string textOf(const Totals& totals) {
  std::size_t failed = 0;
  for (const auto& [code, count] : totals.failed) {
    failed += count;
  }
  std::string text = trn("%1 input: %2 drawn, %3 skipped, %4 failed",
                         "%1 inputs: %2 drawn, %3 skipped, %4 failed", totals.inputs,
                         {std::to_string(totals.inputs), std::to_string(totals.drawn),
                          std::to_string(totals.skipped), std::to_string(failed)}) +
                     "\n";
  for (const auto& [code, count] : totals.failed) {
    text += tr("exit code %1 (%2): %3",
               {std::to_string(code), meaningOf(code), std::to_string(count)}) +
            "\n";
  }
  text += tr("%1 polylines, %2 vertices",
             {std::to_string(totals.polylines), std::to_string(totals.vertices)}) +
          "\n" + tr("%1 s in all", {formatted("%.1f", totals.seconds)});
  if (totals.longest > 0.0) {
    text += tr(", at most %1 s: %2", {formatted("%.1f", totals.longest), totals.longestInput});
  }
  text += "\n";
  if (totals.peakMemory != 0) {
    text += tr("at most %1 MiB of memory: %2",
               {std::to_string(totals.peakMemory >> 20), totals.peakInput}) +
            "\n";
  }
  return text;
}

std::string jsonOf(const Totals& totals) {
  using Json = nlohmann::ordered_json;
  Json failed = Json::object();
  for (const auto& [code, count] : totals.failed) {
    failed[std::to_string(code)] = count;
  }
  const Json json{{"inputs", totals.inputs},
                  {"drawn", totals.drawn},
                  {"skipped", totals.skipped},
                  {"failed", failed},
                  {"polylines", totals.polylines},
                  {"vertices", totals.vertices},
                  {"seconds", totals.seconds},
                  {"longest", {{"seconds", totals.longest}, {"input", totals.longestInput}}},
                  {"peak", {{"memory", totals.peakMemory}, {"input", totals.peakInput}}}};
  return json.dump(-1, ' ', true, Json::error_handler_t::replace);
}

}  // namespace dxf2d::batch
