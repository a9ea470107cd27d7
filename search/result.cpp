#include "search/result.h"

#include <algorithm>
#include <cstdint>

#include "position/record.h"
#include "pv/line.h"
#include "pv/tree.h"
#include "search/clock.h"
#include "search/state.h"
#include "search/status.h"

namespace tarvyle {

namespace {

constexpr int kPredictedMoves = 10;  // moves of the line that search_list takes in

void FillSearchList(int depth, const Move* line) {
  const int wanted = std::min({LineLen(line), depth, kPredictedMoves, kRecordMoves - g.game_len});
  Move* end = std::copy_n(g.game_moves, g.game_len, search_list);
  end = std::copy_n(line, std::max(wanted, 0), end);
  *end = 0;
}

}  // namespace

void SavePvLine(Move* line, const Move* child_line, Move move) {
  line[ply] = move;
  int i = ply + 1;
  for (; i < kMaxLineMoves && child_line[i] != 0; ++i) line[i] = child_line[i];
  line[i] = 0;
}

void SaveRootScore(int score, int /*ignored*/, Move move, int depth, const Move* line) {
  search_mv = move;
  search_depth = depth;
  search_score = score;
  FillSearchList(depth, line);
  search_start_pos_key = g.key;
  PrintSearchStatus(depth, score, curr_time - start_time, static_cast<std::uint32_t>(cnt_nodes),
                    static_cast<std::uint32_t>(cnt_nodes >> 32), line);
}

void SaveNewBest(Move move, int score, int beta, int depth, Move* line, const Move* child_line) {
  gl_find_move[ply] = move;
  if (TargetOf(move) != TargetOf(LastMove())) killer[ply] = move;
  if (score < beta) pv_killer[ply] = move;
  if (score < beta || ply == 0) SavePvLine(line, child_line, move);
  if (ply != 0) return;
  Move* copy = LineDup(line);
  if (copy != nullptr) pvt_push_last(&pv_table, reinterpret_cast<QueueValue>(copy));
  SaveRootScore(score, 0, move, depth, line);
}

void MergeLines() {
  while (pv_table != nullptr) {
    Move* line = reinterpret_cast<Move*>(pvt_pop_first(&pv_table));
    pvInsertLine(pv_tree, line);
    LineFree(line);
  }
}

void DropLines() {
  while (pv_table != nullptr) LineFree(reinterpret_cast<Move*>(pvt_pop_first(&pv_table)));
}

}  // namespace tarvyle
