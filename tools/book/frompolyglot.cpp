#include "tools/book/frompolyglot.h"

#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <unordered_set>
#include <utility>
#include <vector>

#include "host/positiontext.h"
#include "polyglot/binarybook.h"
#include "polyglot/key.h"
#include "position/makemove.h"
#include "position/setup.h"
#include "position/text.h"
#include "position/types.h"
#include "tools/book/polyglotoutput.h"

namespace tarvyle::tools {

namespace {

using polyglot::BinaryBook;
using polyglot::WeightedMove;

// A move that is played in a line; the moves that follow it stand side by side.
struct Node {
  Move move = 0;
  int depth = 0;         // half-moves up to here
  std::string position;  // the engine's text; "" where another line goes on from
  std::size_t first_child = 0;
  std::size_t children = 0;
};

// All lines, grown level by level: so each position is reached by as few moves as there are.
struct Tree {
  std::vector<Node> nodes = {Node{}};  // the start position
  std::unordered_set<std::uint64_t> seen;
  std::size_t lines = 1;
  std::size_t entries = 0;     // used
  std::size_t weightless = 0;  // moves left out
  std::size_t too_deep = 0;    // positions whose moves the bounds leave out
  std::size_t too_many = 0;
};

// The moves to be played in the position on the board.
std::vector<WeightedMove> PlayableMoves(const BinaryBook& book, Tree& tree) {
  std::vector<WeightedMove> moves = polyglot::MovesHere(book);
  tree.weightless +=
      std::erase_if(moves, [](const WeightedMove& move) { return move.weight == 0; });
  return moves;
}

Node NodeAfter(const WeightedMove& move, int depth, Tree& tree) {
  MakeMove(move.move);
  const bool is_new = tree.seen.insert(polyglot::PositionKey()).second;
  Node node{move.move, depth, is_new ? CurrentText() : "", 0, 0};
  UnMakeMove(move.move);
  return node;
}

// Adds the moves that follow a node, unless that would lead beyond the bounds.
void Grow(std::size_t index, const BinaryBook& book, const FromPolyglotOptions& options,
          Tree& tree) {
  const std::string position = std::move(tree.nodes[index].position);
  if (position.empty() || !InitGame(position.c_str())) return;
  const std::vector<WeightedMove> moves = PlayableMoves(book, tree);
  if (moves.empty()) return;
  const int depth = tree.nodes[index].depth + 1;
  const bool too_deep = depth > options.max_depth;
  const std::size_t lines = tree.lines + moves.size() - 1;
  if (too_deep || lines > static_cast<std::size_t>(options.max_lines)) {
    ++(too_deep ? tree.too_deep : tree.too_many);
    return;
  }
  tree.lines = lines;
  tree.entries += moves.size();
  tree.nodes[index].first_child = tree.nodes.size();
  tree.nodes[index].children = moves.size();
  for (const WeightedMove& move : moves) tree.nodes.push_back(NodeAfter(move, depth, tree));
}

Tree TreeOf(const BinaryBook& book, const FromPolyglotOptions& options) {
  Tree tree;
  InitNewGame();
  tree.nodes.front().position = CurrentText();
  tree.seen.insert(polyglot::PositionKey());
  for (std::size_t i = 0; i < tree.nodes.size(); ++i) Grow(i, book, options, tree);
  InitNewGame();
  return tree;
}

// Adds the lines that begin with `line` and go on behind a node.
void PutLines(const Tree& tree, const Node& node, const std::string& line, std::string& text) {
  if (node.children == 0) text += line + "\n";
  for (std::size_t i = 0; i < node.children; ++i) {
    const Node& child = tree.nodes[node.first_child + i];
    PutLines(tree, child, line + (line.empty() ? "" : " ") + MoveToStr(child.move), text);
  }
}

std::string Summary(const Tree& tree, const BinaryBook& book, const FromPolyglotOptions& options) {
  std::string text = std::to_string(tree.lines) + " lines from " + std::to_string(tree.entries) +
                     " of " + std::to_string(book.Size()) + " entries, at most " +
                     std::to_string(options.max_depth) + " half-moves";
  const auto tell = [&text](std::size_t count, const std::string& what) {
    if (count > 0) text += "; " + what + ": " + std::to_string(count);
  };
  tell(tree.weightless, "moves without weight left out");
  tell(tree.too_deep, "positions with more moves at that depth");
  tell(tree.too_many,
       "positions with moves beyond " + std::to_string(options.max_lines) + " lines");
  return text;
}

BinaryBook ReadBinaryBook(const std::string& path) {
  BinaryBook book;
  const std::string reason = polyglot::ReadBook(path, book);
  if (!reason.empty()) throw std::runtime_error("cannot read " + path + ": " + reason);
  if (book.left_over > 0) {
    std::fprintf(stderr, "tarv: %s: %zu bytes behind the last whole entry are left out\n",
                 path.c_str(), book.left_over);
  }
  if (!book.was_sorted) {
    std::fprintf(stderr,
                 "tarv: %s: the entries are out of order, which other programs do not expect\n",
                 path.c_str());
  }
  return book;
}

}  // namespace

void BookFromPolyglot(const FromPolyglotOptions& options) {
  RefuseInputAsOutput(options.book, options.output);
  const BinaryBook book = ReadBinaryBook(options.book);
  const Tree tree = TreeOf(book, options);
  if (tree.entries == 0) {
    throw std::runtime_error(options.book + " has no move to play in the start position");
  }
  const std::string summary = Summary(tree, book, options);
  std::string text = "# " + summary + "\n";
  PutLines(tree, tree.nodes.front(), "", text);
  WriteBookOutput(options.output, text, summary);
}

}  // namespace tarvyle::tools
