#include "tools/learn/verify.h"

#include <cstdlib>
#include <iostream>
#include <string_view>

#include "book/learn.h"
#include "host/positiontext.h"
#include "position/record.h"
#include "position/score.h"
#include "position/types.h"
#include "search/root.h"
#include "tools/failure.h"
#include "tools/files.h"
#include "tools/learn/recordreader.h"
#include "tools/learn/recordset.h"

namespace tarvyle::tools {

namespace {

constexpr std::size_t kProblemsShown = 20;  // of a file; the others are counted

std::string FieldProblem(const LearnRecord& record) {
  if (record.side != White && record.side != Black) {
    return "side to move is " + std::to_string(record.side);
  }
  if (record.book > 1) return "book flag is " + std::to_string(record.book);
  if (record.depth < 0 || record.depth > kMaxIteration) {
    return "depth is " + std::to_string(record.depth);
  }
  if (std::abs(static_cast<long>(record.score)) > kInfinity) {
    return "score is " + std::to_string(record.score);
  }
  if (record.bytes.size() != kLearnHeader + record.text.size() + 1) {
    return "bytes behind the end of its text";
  }
  return "";
}

std::string PositionProblem(const LearnRecord& record) {
  std::string refusal = SetUpText(record.text);
  if (!refusal.empty()) return refusal;
  const std::string text = CurrentText();
  if (text != record.text) return "the engine would write the position as \"" + text + "\"";
  if (g.side != record.side) return "side to move and text do not agree";
  if (g.key != record.Key()) return "key and text do not agree";
  return "";
}

std::string RecordProblem(const LearnRecord& record) {
  const std::string problem = FieldProblem(record);
  return problem.empty() ? PositionProblem(record) : problem;
}

// Returns how many problems there are; prints the first of them.
std::size_t VerifyFile(const std::string& file) {
  std::size_t problems = 0;
  std::size_t records = 0;
  RecordSet seen;
  const auto tell = [&](const std::string& text) {
    if (++problems <= kProblemsShown) std::cout << text << '\n';
  };
  const std::string content = ReadWholeFile(file);
  const Damage damage = ReadRecords(content, [&](const LearnRecord& record, std::size_t number) {
    records = number;
    std::string problem = RecordProblem(record);
    if (problem.empty() && seen.Find(record) != nullptr) problem = "its position was there before";
    seen.Add(record);
    if (!problem.empty()) tell(file + ": record " + std::to_string(number) + ": " + problem);
  });
  if (damage) tell(DamageText(file, damage));
  if (problems > kProblemsShown) {
    std::cout << file << ": " << problems - kProblemsShown << " more\n";
  }
  std::cout << file << ": " << records << " records, " << problems << " problems\n";
  return problems;
}

}  // namespace

void VerifyFiles(const std::vector<std::string>& files) {
  std::size_t problems = 0;
  for (const std::string& file : files) problems += VerifyFile(file);
  std::cout.flush();
  if (problems > 0) throw CheckFailed("the learn files have problems");
}

}  // namespace tarvyle::tools
