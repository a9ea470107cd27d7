// An independent referee: plays what it is told by the rules of chess.js and says what then holds.
//
// One request a line, one JSON answer a line:
//   new          a new game
//   move e2e4    a move by its two squares, with a letter for a promotion (a7a8q)
//   undo         takes the last move back
// Answers: {"legal": moves of the side to move, "board": FEN without en passant and counters,
// "over": "" or why the game has ended}; or {"refused": the move}, after which nothing has changed.

import { createInterface } from "node:readline";
import { Chess } from "chess.js";

const game = new Chess();

function ending() {
  if (game.isCheckmate()) return "checkmate";
  if (game.isStalemate()) return "stalemate";
  if (game.isThreefoldRepetition()) return "repetition";
  if (game.isDrawByFiftyMoves()) return "fifty moves";
  if (game.isInsufficientMaterial()) return "material";
  return "";
}

function state() {
  const legal = game.moves({ verbose: true }).map((move) => move.from + move.to + (move.promotion ?? ""));
  return { legal, board: game.fen().split(" ").slice(0, 3).join(" "), over: ending() };
}

function answer(line) {
  const [request, text] = line.split(" ");
  if (request === "new") {
    game.reset();
    return state();
  }
  if (request === "undo") {
    game.undo();
    return state();
  }
  try {
    game.move({ from: text.slice(0, 2), to: text.slice(2, 4), promotion: text.slice(4) || undefined });
  } catch {
    return { refused: text };
  }
  return state();
}

for await (const line of createInterface({ input: process.stdin })) console.log(JSON.stringify(answer(line)));
