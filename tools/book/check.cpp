#include "tools/book/check.h"

#include <cstdio>
#include <cstdlib>
#include <unordered_set>
#include <utility>
#include <vector>

#include "host/boundedsearch.h"
#include "host/scoretext.h"
#include "position/record.h"
#include "position/types.h"
#include "tools/book/bookreader.h"
#include "tools/failure.h"
#include "tools/progress.h"

namespace tarvyle::tools {

namespace {

enum class Balance { kSound, kGambit, kUnsound };

// Tells the lines whose positions all stand in a longer line or in one before, in that order of
// moves.
std::size_t TellRedundantLines(const BookFile& book) {
  std::unordered_set<std::string> starts;  // of lines, without their last move
  for (const BookLine& line : book.lines) {
    std::string text;
    for (std::size_t i = 0; i + 1 < line.moves.size(); ++i) {
      text += std::to_string(line.moves[i]) + ' ';
      starts.insert(text);
    }
  }
  std::size_t count = 0;
  std::unordered_set<std::string> whole;
  for (const BookLine& line : book.lines) {
    std::string text;
    for (const Move move : line.moves) text += std::to_string(move) + ' ';
    if (!starts.contains(text) && whole.insert(text).second) continue;
    ++count;
    std::printf("warning: line %zu (line %zu of the file) adds nothing: %s\n", line.number,
                line.file_line, MovesText(line).c_str());
  }
  return count;
}

Balance Judge(const BookCheckOptions& options, const BookHeading* heading, double white_score) {
  if (std::abs(white_score) <= options.limit) return Balance::kSound;
  const int behind = white_score < 0 ? White : Black;
  const bool gambit = heading != nullptr && heading->gambit[behind];
  return gambit && std::abs(white_score) <= options.gambit_limit ? Balance::kGambit
                                                                 : Balance::kUnsound;
}

// The score at the end of the line, in pawns, from White's side.
double EndScore(const std::string& position, int depth) {
  const BoundedResult result = SearchPosition(position, {depth, 0});
  return (g.side == White ? result.score : -result.score) / kPawn;
}

struct Soundness {
  std::size_t unsound = 0;
  std::size_t gambits = 0;
};

void JudgeLine(const BookCheckOptions& options, const BookFile& book, const BookLine& line,
               Soundness& counts, Progress& progress) {
  const double score = EndScore(line.positions.back(), options.depth);
  const Balance balance = Judge(options, HeadingOf(book, line), score);
  if (balance == Balance::kSound) return;
  ++(balance == Balance::kGambit ? counts.gambits : counts.unsound);
  progress.Clear();
  std::printf("%s: line %zu (line %zu of the file): %+.2f after %s\n",
              balance == Balance::kGambit ? "gambit" : "unbalanced", line.number, line.file_line,
              score, MovesText(line).c_str());
  std::fflush(stdout);
}

Soundness JudgeLines(const BookCheckOptions& options, const BookFile& book) {
  Soundness counts;
  Progress progress(book.lines.size());
  for (const BookLine& line : book.lines) {
    progress.Show(line.number - 1);
    if (!line.positions.empty()) JudgeLine(options, book, line, counts, progress);
  }
  return counts;
}

}  // namespace

void CheckBook(const BookCheckOptions& options) {
  const BookFile book = ReadBookFile(options.file);
  for (const BookError& error : book.errors) {
    std::printf("error: %s\n", ErrorText(error).c_str());
  }
  const std::size_t redundant = TellRedundantLines(book);
  std::fflush(stdout);
  Soundness soundness;
  if (options.depth > 0) soundness = JudgeLines(options, book);
  std::printf("%s: %zu lines, %zu errors, %zu that add nothing\n", options.file.c_str(),
              book.lines.size(), book.errors.size(), redundant);
  if (options.depth > 0) {
    std::printf("depth %d: %zu unbalanced by more than %.2f, %zu more are gambits within %.2f\n",
                options.depth, soundness.unsound, options.limit, soundness.gambits,
                options.gambit_limit);
  }
  std::fflush(stdout);
  if (!book.errors.empty() || soundness.unsound > 0) {
    throw CheckFailed(options.file + " does not pass");
  }
}

}  // namespace tarvyle::tools
