// The web page of a game. Everything is in it: styles, pieces, script.

#include "tools/game/reportpage.h"

namespace tarvyle::tools {

// clang-format off
const char* const kReportPage = R"page(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<title>@TITLE@</title>
<link rel="icon" href="data:,">
<style>
:root {
  --page: #f4f1ea; --card: #ffffff; --ink: #24211c; --soft: #776f63; --line: #e2dccf;
  --accent: #b5651d; --accent-soft: #f6e3cf; --on-accent: #ffffff;
  --light: #efe0c6; --dark: #a97b50; --mark: rgba(250, 208, 60, .55); --check: rgba(214, 48, 49, .75);
  --white-area: #ffffff; --black-area: #4a443b; --grid: rgba(128, 118, 100, .35);
}
@media (prefers-color-scheme: dark) {
  :root {
    --page: #1b1a18; --card: #262421; --ink: #ece7de; --soft: #a39a8b; --line: #3a3732;
    --accent: #e0985a; --accent-soft: #46341f; --on-accent: #211509;
    --light: #d9c4a0; --dark: #8a623d; --mark: rgba(245, 196, 50, .55);
    --white-area: #d8d2c6; --black-area: #121110; --grid: rgba(160, 150, 130, .3);
  }
}
* { box-sizing: border-box; }
body {
  margin: 0; padding: 24px clamp(12px, 3vw, 40px); background: var(--page); color: var(--ink);
  font: 16px/1.45 "Segoe UI", system-ui, -apple-system, "DejaVu Sans", sans-serif;
}
main {
  max-width: 1120px; margin: 0 auto; display: grid; gap: 20px;
  grid-template-columns: minmax(0, 1.12fr) minmax(300px, .88fr);
  grid-template-areas: "head head" "board moves" "graph graph";
}
header { grid-area: head; display: flex; flex-wrap: wrap; gap: 4px 18px; align-items: baseline; }
h1 { margin: 0; font-size: 1.6rem; font-weight: 650; letter-spacing: -.01em; }
h1 .against { color: var(--soft); font-weight: 400; padding: 0 .35em; }
.result {
  background: var(--accent-soft); color: var(--accent); border-radius: 999px; padding: 2px 12px;
  font-weight: 650; white-space: nowrap;
}
.when { color: var(--soft); margin-left: auto; }
.card {
  background: var(--card); border: 1px solid var(--line); border-radius: 14px;
  box-shadow: 0 1px 2px rgba(0, 0, 0, .05), 0 8px 24px rgba(0, 0, 0, .05);
}
#board-card { grid-area: board; padding: 16px; align-self: start; }
.stage { display: grid; grid-template-columns: 16px minmax(0, 1fr); gap: 12px; }
#bar {
  position: relative; border-radius: 6px; overflow: hidden; background: var(--black-area);
  border: 1px solid var(--line);
}
#bar div { position: absolute; left: 0; right: 0; background: var(--white-area); transition: all .25s; }
#board { display: block; width: 100%; height: auto; border-radius: 8px; overflow: hidden; }
#board text { font-size: 17px; font-weight: 650; }
.controls { display: flex; justify-content: center; gap: 8px; margin-top: 14px; }
button {
  font: inherit; color: inherit; background: transparent; border: 1px solid var(--line);
  border-radius: 9px; min-width: 52px; height: 40px; cursor: pointer; display: inline-grid; place-items: center;
}
button:hover:not(:disabled) { background: var(--accent-soft); border-color: var(--accent); }
button:disabled { opacity: .35; cursor: default; }
button:focus-visible, a:focus-visible, #graph:focus-visible { outline: 2px solid var(--accent); outline-offset: 2px; }
button svg { width: 18px; height: 18px; fill: currentColor; }
#side { grid-area: moves; display: flex; flex-direction: column; min-height: 0; position: relative; }
#side > div { position: absolute; inset: 0; display: flex; flex-direction: column; }
.now { padding: 14px 18px 12px; border-bottom: 1px solid var(--line); display: flex; align-items: baseline; gap: 12px; }
.now strong { font-size: 1.2rem; }
.now .score { margin-left: auto; font-variant-numeric: tabular-nums; color: var(--accent); font-weight: 650; }
#moves { list-style: none; margin: 0; padding: 8px 10px; overflow-y: auto; flex: 1; }
#moves li { display: grid; grid-template-columns: 2.6em 1fr 1fr; align-items: center; border-radius: 7px; }
#moves li:nth-child(odd) { background: color-mix(in srgb, var(--line) 35%, transparent); }
#moves .number { color: var(--soft); text-align: right; padding-right: .7em; font-variant-numeric: tabular-nums; }
#moves button {
  border: 0; height: 32px; padding: 0 8px; border-radius: 7px; display: flex; gap: 8px; align-items: center; width: 100%;
}
#moves button small { margin-left: auto; color: var(--soft); font-variant-numeric: tabular-nums; }
#moves button[aria-current] { background: var(--accent); color: var(--on-accent); }
#moves button[aria-current] small { color: inherit; }
.foot { padding: 10px 18px; border-top: 1px solid var(--line); display: flex; gap: 14px; color: var(--soft); font-size: .88rem; }
.foot a { color: var(--accent); margin-left: auto; white-space: nowrap; }
#graph-card { grid-area: graph; padding: 14px 18px 12px; }
#graph-card h2 { margin: 0 0 8px; font-size: 1rem; font-weight: 650; }
#graph-card h2 span { color: var(--soft); font-weight: 400; margin-left: .6em; }
#graph { display: block; width: 100%; height: 190px; cursor: pointer; }
#graph text { font-size: 11px; fill: var(--soft); }
.inner { fill: none; stroke: var(--detail); }
.dot { fill: var(--detail); stroke: none; }
@media (max-width: 780px) {
  main { grid-template-columns: minmax(0, 1fr); grid-template-areas: "head" "board" "graph" "moves"; }
  #side > div { position: static; }
  #moves { max-height: 320px; }
  .when { margin-left: 0; }
}
@media (prefers-reduced-motion: reduce) { * { transition: none !important; } }
</style>
</head>
<body>
<svg width="0" height="0" style="position:absolute" aria-hidden="true">
  <defs>
    <g id="piece-p">
      <path d="M38 47h24c-1 14 5 21 11 29H27c6-8 12-15 11-29z"/>
      <rect x="33" y="41" width="34" height="8" rx="4"/>
      <circle cx="50" cy="28" r="14"/>
      <rect x="22" y="75" width="56" height="12" rx="5"/>
    </g>
    <g id="piece-r">
      <path d="M34 40h32l4 27H30z"/>
      <path d="M26 17h11v8h7.500v-8h11v8H63v-8h11v17l-7 8H33l-7-8z"/>
      <path d="M29 65h42l4 11H25z"/>
      <rect x="20" y="75" width="60" height="12" rx="5"/>
    </g>
    <g id="piece-n">
      <path d="M30 76c0-17 15-20 17-33-5 7-13 7-18 13-5 4-12-1-10-8 2-7 9-12 12-20 1-6 4-9 9-11l1-10 10 8c20 2 30 24 26 61z"/>
      <path class="inner" d="M58 25c10 7 14 22 12 42"/>
      <circle class="dot" cx="40" cy="30" r="3"/>
      <circle class="dot" cx="25.5" cy="47" r="2"/>
      <rect x="22" y="75" width="58" height="12" rx="5"/>
    </g>
    <g id="piece-b">
      <circle cx="50" cy="13" r="5.5"/>
      <path d="M50 18c13 9 19 20 17 29-1 6-5 9-8 11H41c-3-2-7-5-8-11-2-9 4-20 17-29z"/>
      <path class="inner" d="M50 30v16M42 38h16"/>
      <path d="M41 62h18c0 6 5 10 10 14H31c5-4 10-8 10-14z"/>
      <rect x="34" y="56" width="32" height="8" rx="4"/>
      <rect x="22" y="75" width="56" height="12" rx="5"/>
    </g>
    <g id="piece-q">
      <path d="M16 31l16 32h36l16-32-18 15-1-25-10 23-5-27-5 27-10-23-1 25z"/>
      <circle cx="15" cy="27" r="5"/><circle cx="34.5" cy="18" r="5"/><circle cx="50" cy="13" r="5"/>
      <circle cx="65.5" cy="18" r="5"/><circle cx="85" cy="27" r="5"/>
      <path d="M33 66h34l5 10H28z"/>
      <rect x="28" y="60" width="44" height="8" rx="4"/>
      <rect x="20" y="75" width="60" height="12" rx="5"/>
    </g>
    <g id="piece-k">
      <path d="M46.5 6h7v6.500H60v7h-6.500V27h-7v-7.500H40v-7h6.500z"/>
      <path d="M50 39c3-15 33-14 33 5 0 9-9 12-13 19H30c-4-7-13-10-13-19 0-19 30-20 33-5z"/>
      <path d="M50 27c5 3 6 8 0 14-6-6-5-11 0-14z"/>
      <path d="M33 66h34l5 10H28z"/>
      <rect x="28" y="60" width="44" height="8" rx="4"/>
      <rect x="20" y="75" width="60" height="12" rx="5"/>
    </g>
  </defs>
</svg>
<main>
  <header>
    <h1><span id="white"></span><span class="against">against</span><span id="black"></span></h1>
    <span class="result" id="result"></span>
    <span class="when" id="when"></span>
  </header>
  <section class="card" id="board-card" aria-label="Board">
    <div class="stage">
      <div id="bar" title="Score of the engine; white from below"><div></div></div>
      <svg id="board" viewBox="0 0 800 800" role="img"></svg>
    </div>
    <div class="controls">
      <button id="first" title="Start (Home)" aria-label="Start"><svg viewBox="0 0 20 20"><path d="M3 3h3v14H3zM17 3v14L7 10z"/></svg></button>
      <button id="back" title="Back (left arrow)" aria-label="Back"><svg viewBox="0 0 20 20"><path d="M15 3v14L4 10z"/></svg></button>
      <button id="forward" title="Forward (right arrow)" aria-label="Forward"><svg viewBox="0 0 20 20"><path d="M5 3v14l11-7z"/></svg></button>
      <button id="last" title="End (End)" aria-label="End"><svg viewBox="0 0 20 20"><path d="M14 3h3v14h-3zM3 3v14l10-7z"/></svg></button>
      <button id="flip" title="Turn the board (f)" aria-label="Turn the board"><svg viewBox="0 0 20 20"><path d="M6 2l5 5H8v8H4V7H1zM14 18l-5-5h3V5h4v8h3z"/></svg></button>
    </div>
  </section>
  <section class="card" id="side" aria-label="Moves">
    <div>
      <div class="now"><strong id="move" aria-live="polite"></strong><span class="score" id="score"></span></div>
      <ol id="moves"></ol>
      <div class="foot"><span id="note"></span><a id="pgn" download="game.pgn" href="#">Save as PGN</a></div>
    </div>
  </section>
  <section class="card" id="graph-card" aria-label="Scores">
    <h2>Score<span id="legend">in pawns, for White, as the engine saw it</span></h2>
    <svg id="graph" preserveAspectRatio="none" role="img" aria-label="Graph of the scores"></svg>
  </section>
</main>
<noscript>This page needs JavaScript to step through the game.</noscript>
<script type="application/json" id="game">@GAME@</script>
<script>
"use strict";
const game = JSON.parse(document.getElementById("game").textContent);
const $ = id => document.getElementById(id);
const SVG = "http://www.w3.org/2000/svg";
const positions = [game.start, ...game.moves];
let at = 0;
let flipped = false;

function make(parent, name, attributes, text) {
  const element = document.createElementNS(SVG, name);
  for (const key in attributes) element.setAttribute(key, attributes[key]);
  if (text !== undefined) element.textContent = text;
  return parent.appendChild(element);
}

const file = square => flipped ? 7 - square % 8 : square % 8;
const row = square => flipped ? 7 - (square >> 3) : square >> 3;

function drawSquares(svg) {
  for (let square = 0; square < 64; ++square) {
    const light = (square % 8 + (square >> 3)) % 2 === 0;
    const x = 100 * file(square), y = 100 * row(square);
    make(svg, "rect", {x, y, width: 100, height: 100, fill: light ? "var(--light)" : "var(--dark)"});
    const ink = {fill: light ? "var(--dark)" : "var(--light)"};
    if (row(square) === 7) make(svg, "text", {x: x + 85, y: y + 94, ...ink}, "abcdefgh"[square % 8]);
    if (file(square) === 0) make(svg, "text", {x: x + 5, y: y + 20, ...ink}, 8 - (square >> 3));
  }
}

function mark(svg, square, colour) {
  make(svg, "rect", {x: 100 * file(square), y: 100 * row(square), width: 100, height: 100, fill: colour});
}

function drawPiece(svg, letter, square) {
  const white = letter === letter.toUpperCase();
  const piece = make(svg, "use", {
    href: "#piece-" + letter.toLowerCase(), "data-piece": letter, "data-square": square,
    transform: `translate(${100 * file(square) - 1} ${100 * row(square) + 2}) scale(1.02)`,
    fill: white ? "#fffdf8" : "#2e2a26", stroke: white ? "#2e2a26" : "#12100e",
    "stroke-width": 3.2, "stroke-linejoin": "round", "stroke-linecap": "round"});
  piece.style.setProperty("--detail", white ? "#2e2a26" : "#e9dfcf");
}

// Whose king is in check: that of the side to move.
function kingInCheck() {
  const last = game.moves[at - 1];
  const side = last ? 1 - last.side : (game.moves[0] ? game.moves[0].side : 0);
  return positions[at].board.indexOf(side === 0 ? "K" : "k");
}

function drawBoard() {
  const svg = $("board");
  svg.replaceChildren();
  drawSquares(svg);
  const last = game.moves[at - 1];
  if (last) { mark(svg, last.from, "var(--mark)"); mark(svg, last.to, "var(--mark)"); }
  if (positions[at].check) mark(svg, kingInCheck(), "var(--check)");
  [...positions[at].board].forEach((letter, square) => {
    if (letter !== " ") drawPiece(svg, letter, square);
  });
  svg.setAttribute("aria-label", moveText(at));
}

const numbered = move => move.number + (move.side === 0 ? ". " : " ... ") + move.san;
const moveText = index => index === 0 ? "Start position" : numbered(game.moves[index - 1]);

// The last score that was known at a position.
function scoreAt(index) {
  for (let i = index - 1; i >= 0; --i) if (game.moves[i].scoreText !== undefined) return game.moves[i];
  return null;
}

// Scores from -1 to 1: one pawn more matters less and less.
const bend = score => Math.max(-1, Math.min(1, Math.asinh(score) / Math.asinh(20)));

function drawBar() {
  const known = scoreAt(at);
  const share = 50 + 50 * bend(known ? known.score : 0);
  const white = $("bar").firstElementChild;
  white.style.height = share + "%";
  white.style[flipped ? "top" : "bottom"] = 0;
  white.style[flipped ? "bottom" : "top"] = "auto";
}

const WIDTH = 1000, HEIGHT = 190, LEFT = 34, TOP = 8;
const graphX = index => LEFT + (WIDTH - LEFT - 10) * (game.moves.length > 1 ? (index - 1) / (game.moves.length - 1) : .5);
const graphY = value => TOP + (HEIGHT - 26) / 2 * (1 - value);

function drawArea(svg, points, white) {
  const zero = graphY(0);
  const clip = make(make(svg, "clipPath", {id: white ? "above" : "below"}), "rect",
    {x: 0, y: white ? 0 : zero, width: WIDTH, height: white ? zero : HEIGHT});
  const first = points[0], last = points[points.length - 1];
  make(svg, "path", {
    d: `M${first[0]} ${zero}L${points.map(p => p.join(" ")).join("L")}L${last[0]} ${zero}Z`,
    fill: white ? "var(--white-area)" : "var(--black-area)", stroke: "none",
    "clip-path": `url(#${clip.parentNode.id})`});
}

function drawGraph() {
  const svg = $("graph");
  const width = svg.clientWidth || WIDTH;
  svg.replaceChildren();
  svg.setAttribute("viewBox", `0 0 ${WIDTH} ${HEIGHT}`);
  const squeeze = WIDTH / width;  // keeps letters and dots in shape
  make(svg, "rect", {x: LEFT, y: TOP, width: WIDTH - LEFT - 10, height: HEIGHT - 26, fill: "var(--grid)", opacity: .35});
  const points = game.moves.map((move, i) => [graphX(i + 1), move.score]).filter(p => p[1] !== undefined)
    .map(p => [p[0].toFixed(2), graphY(bend(p[1])).toFixed(2)]);
  if (points.length > 0) { drawArea(svg, points, true); drawArea(svg, points, false); }
  for (const score of [-10, -3, -1, 0, 1, 3, 10]) {
    const y = graphY(bend(score));
    make(svg, "line", {x1: LEFT, x2: WIDTH - 10, y1: y, y2: y, stroke: score === 0 ? "var(--soft)" : "var(--grid)",
      "stroke-width": 1, "vector-effect": "non-scaling-stroke"});
    make(svg, "text", {transform: `translate(${LEFT - 6 * squeeze} ${y + 4}) scale(${squeeze} 1)`, "text-anchor": "end"},
      score > 0 ? "+" + score : score);
  }
  const step = Math.max(1, Math.ceil(game.moves.length / 2 / 12 / 5) * 5);
  game.moves.forEach((move, i) => {
    if (move.side === 0 && (move.number === 1 || move.number % step === 0)) {
      make(svg, "text", {transform: `translate(${graphX(i + 1)} ${HEIGHT - 3}) scale(${squeeze} 1)`,
        "text-anchor": "middle"}, move.number);
    }
  });
  if (points.length > 0) {
    make(svg, "path", {d: "M" + points.map(p => p.join(" ")).join("L"), fill: "none", stroke: "var(--accent)",
      "stroke-width": 2, "vector-effect": "non-scaling-stroke", "stroke-linejoin": "round"});
  }
  if (at > 0) {
    const x = graphX(at);
    make(svg, "line", {x1: x, x2: x, y1: TOP, y2: HEIGHT - 18, stroke: "var(--accent)", "stroke-width": 1.5,
      "stroke-dasharray": "4 3", "vector-effect": "non-scaling-stroke"});
    const known = game.moves[at - 1].score;
    if (known !== undefined) {
      make(svg, "ellipse", {cx: x, cy: graphY(bend(known)), rx: 5 * squeeze, ry: 5, fill: "var(--accent)",
        stroke: "var(--card)", "stroke-width": 2, "vector-effect": "non-scaling-stroke"});
    }
  }
}

function buildMoves() {
  const list = $("moves");
  let item = null;
  game.moves.forEach((move, i) => {
    if (item === null || move.side === 0) {
      item = document.createElement("li");
      const number = item.appendChild(document.createElement("span"));
      number.className = "number";
      number.textContent = move.number;
      if (move.side === 1) item.appendChild(document.createElement("span"));
      list.appendChild(item);
    }
    const button = item.appendChild(document.createElement("button"));
    button.append(move.san);
    if (move.scoreText !== undefined) {
      button.appendChild(document.createElement("small")).textContent = move.scoreText;
    }
    button.addEventListener("click", () => show(i + 1));
  });
}

function markMove() {
  const buttons = $("moves").querySelectorAll("button");
  buttons.forEach((button, i) => {
    if (i === at - 1) button.setAttribute("aria-current", "step");
    else button.removeAttribute("aria-current");
  });
  const list = $("moves");
  if (at === 0) { list.scrollTop = 0; return; }
  const item = buttons[at - 1].parentNode;
  const top = item.offsetTop - list.offsetTop;
  if (top < list.scrollTop || top + item.offsetHeight > list.scrollTop + list.clientHeight) {
    list.scrollTop = top - list.clientHeight / 2;
  }
}

function show(index) {
  at = Math.max(0, Math.min(game.moves.length, index));
  $("move").textContent = moveText(at);
  const move = game.moves[at - 1];
  $("score").textContent = move && move.scoreText !== undefined ? move.scoreText : "";
  $("first").disabled = $("back").disabled = at === 0;
  $("last").disabled = $("forward").disabled = at === game.moves.length;
  drawBoard();
  drawBar();
  drawGraph();
  markMove();
}

function turn() { flipped = !flipped; drawBoard(); drawBar(); }

$("white").textContent = game.white;
$("black").textContent = game.black;
$("result").textContent = game.result === "*" ? "in progress" : game.result + (game.reason ? ", " + game.reason : "");
$("when").textContent = game.date.includes("?") ? "" : game.date;
$("note").textContent = game.takenBack.length > 0 ? "Taken back: " + game.takenBack.join(" ")
                                                  : game.moves.length + " half-moves";
$("pgn").href = "data:application/x-chess-pgn;charset=utf-8," + encodeURIComponent(game.pgn);
if (!game.moves.some(move => move.score !== undefined)) $("legend").textContent = "none in this game: no move was searched";
buildMoves();
$("first").addEventListener("click", () => show(0));
$("back").addEventListener("click", () => show(at - 1));
$("forward").addEventListener("click", () => show(at + 1));
$("last").addEventListener("click", () => show(game.moves.length));
$("flip").addEventListener("click", turn);
$("graph").addEventListener("click", event => {
  const box = $("graph").getBoundingClientRect();
  const share = ((event.clientX - box.left) / box.width * WIDTH - LEFT) / (WIDTH - LEFT - 10);
  show(Math.max(1, Math.round(share * (game.moves.length - 1)) + 1));
});
const keys = {ArrowLeft: () => show(at - 1), ArrowRight: () => show(at + 1), Home: () => show(0),
              End: () => show(game.moves.length), f: turn};
document.addEventListener("keydown", event => {
  if (event.ctrlKey || event.altKey || event.metaKey || !(event.key in keys)) return;
  event.preventDefault();
  keys[event.key]();
});
window.addEventListener("resize", drawGraph);
show(Number(location.hash.slice(1)) || game.moves.length);
</script>
</body>
</html>
)page";
// clang-format on

}  // namespace tarvyle::tools
