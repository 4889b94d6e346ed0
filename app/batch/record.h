// What a batch reports about each of its inputs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dxf2d::batch {

enum class Outcome { kDrawn, kSkipped, kFailed };

struct Record {
  std::string input;
  std::string output;
  // The options of the command line, as a shell would take them.
  std::string options;
  Outcome outcome = Outcome::kDrawn;
  int exitCode = 0;
  // Why it failed or was skipped.
  std::string sentence;
  double seconds = 0.0;
  // Bytes; 0 where no process was needed.
  std::uint64_t peakMemory = 0;
  // What is known of the model and of the drawing: a JSON object. Its members are strings, numbers
  // and arrays of numbers, see kFacts. Empty for none.
  std::string facts;
};

// The members of Record::facts.
inline constexpr const char* kFacts[] = {
    "sha256", "reader",    "unit",     "model_unit", "views",   "objects", "instances",
    "parts",  "polylines", "vertices", "labels",     "extents", "repairs", "skipped"};

// What the members of a JSON record and the columns of a table of records are called.
enum class RecordFormat { kJsonLines, kCsv };

// Of the end of a file's name, in any case: .jsonl or .csv.
std::optional<RecordFormat> recordFormat(const std::string& file);

// The line of a table that names the columns, with its end; empty for JSON.
std::string headOf(RecordFormat format);

// A record as one line, with its end. Bytes that are not UTF-8 become
// U+FFFD.
std::string lineOf(const Record& record, RecordFormat format);

// The same in JSON, without an end and in ASCII, for printing.
std::string asciiLineOf(const Record& record);

// The records in the text of a report, one line each and without its end: an unfinished last line,
// as a run that was killed may leave, is passed over. Returns nothing for other texts.
std::optional<std::vector<Record>> recordsOf(std::string_view text, RecordFormat format);

}  // namespace dxf2d::batch
