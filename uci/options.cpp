#include "uci/options.h"

#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "base/number.h"
#include "host/engine.h"
#include "search/hashmemory.h"
#include "search/lifetimes.h"
#include "search/style.h"
#include "uci/knowledge.h"
#include "uci/optionvalues.h"
#include "uci/output.h"
#include "uci/words.h"

namespace tarvyle::uci {

namespace {

constexpr std::string_view kEmptyText = "<empty>";
constexpr int kLeastEntries = 0x10000;  // of one table
constexpr int kMostEntries = 0x40000000;
constexpr int kMostOverhead = 5000;
constexpr std::int64_t kMostSeed = 2147483647;

// Megabytes of both tables, rounded up.
constexpr int Megabytes(int entries) {
  return static_cast<int>((2 * sizeof(HashEntry) * static_cast<std::size_t>(entries) + 0xFFFFF) >>
                          20);
}

constexpr int kLeastMegabytes = 1;  // GUIs like to ask for 1; the smallest tables are larger

struct OptionRow {
  std::string_view name;
  std::string (*declaration)();           // type, default value and range
  void (*set)(const std::string& value);  // throws std::runtime_error with what was expected
};

std::string Spin(std::int64_t usual, std::int64_t least, std::int64_t most) {
  return "spin default " + std::to_string(usual) + " min " + std::to_string(least) + " max " +
         std::to_string(most);
}

std::string Text(const std::string& usual) {
  return "string default " + (usual.empty() ? std::string(kEmptyText) : usual);
}

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& letter : lower) {
    letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  }
  return lower;
}

std::int64_t ReadSpin(const std::string& value, std::int64_t least, std::int64_t most) {
  std::int64_t number = 0;
  if (!ReadInteger(value, number) || number < least || number > most) {
    throw std::runtime_error("a number from " + std::to_string(least) + " to " +
                             std::to_string(most) + " was expected");
  }
  return number;
}

bool ReadCheck(const std::string& value) {
  const std::string word = Lower(value);
  if (word != "true" && word != "false") throw std::runtime_error("true or false was expected");
  return word == "true";
}

std::string ReadText(const std::string& value) { return value == kEmptyText ? "" : value; }

// The largest tables that fit; at least the smallest there are.
int EntriesFor(std::int64_t megabytes) {
  int entries = kLeastEntries;
  while (entries < kMostEntries && Megabytes(2 * entries) <= megabytes) entries *= 2;
  return entries;
}

void SetHash(const std::string& value) {
  const int entries = EntriesFor(ReadSpin(value, kLeastMegabytes, Megabytes(kMostEntries)));
  const bool fits = entries == Hash_Size || HashAllocate(entries);
  SayInfo((fits ? "the tables take " : "not enough memory: the tables stay at ") +
          std::to_string(Megabytes(Hash_Size)) + " MB");
}

void SetStyle(const std::string& value) {
  if (!load_play_style(Lower(value).c_str())) {
    throw std::runtime_error("knowledge1, knowledge2 or knowledge3 was expected");
  }
}

void SetOwnBook(bool on) {
  settings.own_book = on;
  KnowledgeIsStale();
}

void ClearHash(const std::string& /*value*/) {
  HashClear();
  ForgetSearches();
}

constexpr std::array kOptionRows = {
    OptionRow{
        "Hash",
        [] { return Spin(Megabytes(kUsualEntries), kLeastMegabytes, Megabytes(kMostEntries)); },
        SetHash},
    OptionRow{"Clear Hash", [] { return std::string("button"); }, ClearHash},
    OptionRow{"Threads", [] { return Spin(1, 1, 1); },
              [](const std::string& value) { ReadSpin(value, 1, 1); }},
    OptionRow{"Style",
              [] {
                return std::string(
                    "combo default knowledge3 var knowledge1 var knowledge2 "
                    "var knowledge3");
              },
              SetStyle},
    OptionRow{"Random Search", [] { return std::string("check default false"); },
              [](const std::string& value) { is_rnd_search = ReadCheck(value) ? 1 : 0; }},
    OptionRow{"OwnBook", [] { return std::string("check default false"); },
              [](const std::string& value) { SetOwnBook(ReadCheck(value)); }},
    OptionRow{"Book File", [] { return Text(DefaultFile("tarvyle.bk")); },
              [](const std::string& value) {
                settings.book_file = ReadText(value);
                KnowledgeIsStale();
              }},
    OptionRow{"Learn File", [] { return Text(DefaultFile("tarvyle.lrn")); },
              [](const std::string& value) {
                settings.learn_file = ReadText(value);
                KnowledgeIsStale();
              }},
    OptionRow{"Learn Output", [] { return Text({}); },
              [](const std::string& value) { settings.learn_output = ReadText(value); }},
    OptionRow{"Move Overhead", [] { return Spin(Settings{}.move_overhead, 0, kMostOverhead); },
              [](const std::string& value) {
                settings.move_overhead = static_cast<int>(ReadSpin(value, 0, kMostOverhead));
              }},
    OptionRow{"Seed", [] { return Spin(0, 0, kMostSeed); },
              [](const std::string& value) {
                settings.seed = static_cast<unsigned>(ReadSpin(value, 0, kMostSeed));
              }},
};

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

struct Assignment {
  std::string name;
  std::string value;
};

// A name may hold blanks; it ends at the word "value" or at the end.
Assignment ReadAssignment(std::string_view words) {
  words = Trimmed(words);
  if (!words.starts_with("name ")) throw std::runtime_error("name was expected");
  words.remove_prefix(5);
  constexpr std::string_view kValue = " value";
  std::size_t at = words.find(" value ");
  if (at == std::string_view::npos && words.ends_with(kValue)) at = words.size() - kValue.size();
  if (at == std::string_view::npos) return {std::string(Trimmed(words)), {}};
  return {std::string(Trimmed(words.substr(0, at))),
          std::string(Trimmed(words.substr(at + kValue.size())))};
}

void Assign(const Assignment& assignment) {
  for (const OptionRow& option : kOptionRows) {
    if (Lower(option.name) == Lower(assignment.name)) return option.set(assignment.value);
  }
  throw std::runtime_error("there is no such option");
}

}  // namespace

void ResetOptions() {
  settings = {};
  settings.book_file = DefaultFile("tarvyle.bk");
  settings.learn_file = DefaultFile("tarvyle.lrn");
  load_play_style("knowledge3");
  is_rnd_search = 0;
  SetOwnBook(false);
}

void SayOptions() {
  for (const OptionRow& option : kOptionRows) {
    Say("option name " + std::string(option.name) + " type " + option.declaration());
  }
}

void ObeySetOption(std::string_view words) {
  Assignment assignment;
  try {
    assignment = ReadAssignment(words);
    Assign(assignment);
  } catch (const std::runtime_error& error) {
    SayInfo("setoption " + assignment.name + ": " + error.what());
  }
}

}  // namespace tarvyle::uci
