#include "tools/learn/verify.h"

#include <cstdlib>

#include "book/learn.h"
#include "position/record.h"
#include "search/root.h"
#include "search/state.h"
#include "tools/positiontext.h"

namespace tarvyle::tools {

namespace {

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
  const std::string refusal = SetUpText(record.text);
  if (!refusal.empty()) return refusal;
  const std::string text = CurrentText();
  if (text != record.text) return "the engine would write the position as \"" + text + "\"";
  if (g.side != record.side) return "side to move and text do not agree";
  if (g.key != record.Key()) return "key and text do not agree";
  return "";
}

}  // namespace

std::string RecordProblem(const LearnRecord& record) {
  const std::string problem = FieldProblem(record);
  return problem.empty() ? PositionProblem(record) : problem;
}

}  // namespace tarvyle::tools
