#include "tools/book/stats.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <iterator>
#include <set>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "tools/book/bookreader.h"

namespace tarvyle::tools {

namespace {

constexpr int kCodesOfVolume = 100;

// Figures of some lines of the book.
struct Coverage {
  std::size_t lines = 0;
  std::size_t half_moves = 0;
  std::size_t longest = 0;
  std::size_t shortest = SIZE_MAX;
  std::unordered_set<std::string> positions;

  void Count(const BookLine& line) {
    ++lines;
    half_moves += line.moves.size();
    longest = std::max(longest, line.moves.size());
    shortest = std::min(shortest, line.moves.size());
    positions.insert(line.positions.begin(), line.positions.end());
  }
};

// A position may be reached by several orders of moves.
struct Transpositions {
  std::size_t positions = 0;  // reached by two orders or more
  std::size_t orders = 0;     // in all
};

Transpositions CountTranspositions(const BookFile& book) {
  std::unordered_set<std::string> orders;
  std::unordered_map<std::string, std::size_t> ways;
  for (const BookLine& line : book.lines) {
    std::string order;
    for (std::size_t i = 0; i < line.moves.size(); ++i) {
      order += std::to_string(line.moves[i]) + ' ';
      if (orders.insert(order).second) ++ways[line.positions[i]];
    }
  }
  Transpositions result;
  result.orders = orders.size();
  for (const auto& [position, count] : ways) result.positions += count > 1 ? 1 : 0;
  return result;
}

int CodeNumber(const std::string& code) {
  return (code[0] - 'A') * kCodesOfVolume + std::atoi(code.c_str() + 1);
}

// Numbers of the codes that the headings with lines name.
std::set<int> CodesOf(const BookFile& book) {
  std::set<int> codes;
  for (const BookLine& line : book.lines) {
    const BookHeading* heading = HeadingOf(book, line);
    if (heading == nullptr) continue;
    const int last = CodeNumber(heading->last_code);
    for (int code = CodeNumber(heading->first_code); code <= last; ++code) codes.insert(code);
  }
  return codes;
}

std::string CodeText(const BookHeading& heading) {
  return heading.first_code == heading.last_code ? heading.first_code
                                                 : heading.first_code + "-" + heading.last_code;
}

std::string VolumeOf(const BookFile& book, const BookLine& line) {
  const BookHeading* heading = HeadingOf(book, line);
  return heading == nullptr ? "none" : heading->first_code.substr(0, 1);
}

// Prints tables as aligned text or as Markdown.
class Table {
 public:
  Table(bool markdown, std::vector<std::string> head) : markdown_(markdown) {
    rows_.push_back(std::move(head));
  }
  void Add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
  void Print() const {
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      PrintRow(rows_[i]);
      if (i == 0 && markdown_) PrintRule();
    }
    std::puts("");
  }

 private:
  std::size_t Width(std::size_t column) const {
    std::size_t width = 0;
    for (const auto& row : rows_) width = std::max(width, row[column].size());
    return width;
  }
  // The last column is text, the first a name, the others are numbers.
  void PrintRow(const std::vector<std::string>& row) const {
    std::string text = markdown_ ? "| " : "";
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string fill(markdown_ ? 0 : Width(i) - row[i].size(), ' ');
      text += i == 0 ? row[i] + fill : fill + row[i];
      text += markdown_ ? " | " : "  ";
    }
    std::puts(text.substr(0, text.find_last_not_of(' ') + 1).c_str());
  }
  void PrintRule() const {
    std::string text = "|---|";
    for (std::size_t i = 1; i < rows_[0].size(); ++i) text += "--:|";
    std::puts(text.c_str());
  }

  bool markdown_;
  std::vector<std::vector<std::string>> rows_;
};

std::string Number(std::size_t number) { return std::to_string(number); }

void PrintTotals(const BookStatsOptions& options, const BookFile& book) {
  Coverage all;
  for (const BookLine& line : book.lines) all.Count(line);
  const Transpositions transpositions = CountTranspositions(book);
  char average[32];
  std::snprintf(
      average, sizeof average, "%.1f",
      all.lines == 0 ? 0.0 : static_cast<double>(all.half_moves) / static_cast<double>(all.lines));
  Table table(options.markdown, {"book", options.file});
  table.Add({"lines", Number(all.lines)});
  table.Add({"half-moves in them", Number(all.half_moves)});
  table.Add({"half-moves of a line, shortest", Number(all.lines == 0 ? 0 : all.shortest)});
  table.Add({"half-moves of a line, average", average});
  table.Add({"half-moves of a line, longest", Number(all.longest)});
  table.Add({"positions", Number(all.positions.size())});
  table.Add({"orders of moves that lead to them", Number(transpositions.orders)});
  table.Add({"positions with several orders of moves", Number(transpositions.positions)});
  table.Add({"lines with an error", Number(book.errors.size())});
  table.Print();
}

void PrintVolumes(const BookStatsOptions& options, const BookFile& book) {
  std::vector<std::pair<std::string, Coverage>> volumes;
  for (const char* name : {"A", "B", "C", "D", "E", "none"}) volumes.push_back({name, {}});
  for (const BookLine& line : book.lines) {
    for (auto& [name, coverage] : volumes) {
      if (name == VolumeOf(book, line)) coverage.Count(line);
    }
  }
  const std::set<int> codes = CodesOf(book);
  Table table(options.markdown, {"volume", "codes", "lines", "half-moves", "positions"});
  int first_code = 0;
  for (const auto& [name, coverage] : volumes) {
    const auto begin = codes.lower_bound(first_code);
    first_code += kCodesOfVolume;
    if (coverage.lines == 0) continue;
    const auto end = codes.lower_bound(first_code);
    table.Add({name, Number(static_cast<std::size_t>(std::distance(begin, end))),
               Number(coverage.lines), Number(coverage.half_moves),
               Number(coverage.positions.size())});
  }
  table.Print();
}

void PrintOpenings(const BookStatsOptions& options, const BookFile& book) {
  Table table(options.markdown, {"codes", "lines", "half-moves", "opening"});
  for (std::size_t i = 0; i < book.headings.size(); ++i) {
    Coverage coverage;
    for (const BookLine& line : book.lines) {
      if (line.heading == static_cast<std::ptrdiff_t>(i)) coverage.Count(line);
    }
    table.Add({CodeText(book.headings[i]), Number(coverage.lines), Number(coverage.half_moves),
               book.headings[i].name});
  }
  table.Print();
}

}  // namespace

void PrintBookStats(const BookStatsOptions& options) {
  const BookFile book = ReadBookFile(options.file);
  PrintTotals(options, book);
  PrintVolumes(options, book);
  if (options.openings) PrintOpenings(options, book);
  std::fflush(stdout);
}

}  // namespace tarvyle::tools
