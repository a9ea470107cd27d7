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
