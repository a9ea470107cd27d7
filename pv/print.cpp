#include "pv/print.h"

#include <algorithm>
#include <cstring>

#include "position/text.h"

namespace tarvyle {

PvNode* pvTable[kPvRows][kPvColumns];

namespace {

constexpr int kAlternatives = 3;  // replies shown of each position

bool RowIsEmpty(int row) {
  return std::all_of(pvTable[row], pvTable[row] + kPvColumns,
                     [](const PvNode* node) { return node == nullptr; });
}

void PrintRow(int row, std::FILE* out) {
  for (const PvNode* node : pvTable[row]) {
    std::fprintf(out, "%-7s", node != nullptr ? MoveToStr(node->move) : "-");
  }
  std::fputc('\n', out);
}

}  // namespace

int GetFirstY() {
  int row = kPvRows;
  while (row > 0 && RowIsEmpty(row - 1)) --row;
  return row;
}

void pvTreeToTable(PvNode* list, int column, int row) {
  int shown = 0;
  for (PvNode* node = list; node != nullptr && shown < kAlternatives; node = node->next, ++shown) {
    if (row < kPvRows && column < kPvColumns) pvTable[row][column] = node;
    pvTreeToTable(node->child, column + 1, row);
    row = GetFirstY();
  }
}

void pvPrint(PvTree& tree, std::FILE* out) {
  std::memset(pvTable, 0, sizeof pvTable);
  pvTreeToTable(tree.root, 0, 0);
  for (int row = 0; row < kPvRows && !RowIsEmpty(row); ++row) PrintRow(row, out);
}

char* PrintMove(char* buffer, Move move, bool check) {
  MoveToStr(move, buffer);
  if (check) std::strcat(buffer, "+");
  return buffer;
}

}  // namespace tarvyle
