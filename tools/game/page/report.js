// The page of a saved game, stepped through on the board, in the list of moves and in the graph.
//
// What is drawn depends on a view alone: {game, at, flipped}, `at` half-moves into the game. Only
// `show` and `turn` change it. A game is what tools/game/report.cpp writes.
(() => {
  "use strict";

  const SVG = "http://www.w3.org/2000/svg";
  const $ = id => document.getElementById(id);

  // Puts a shape behind all that its parent holds.
  function make(parent, name, attributes, text) {
    const element = document.createElementNS(SVG, name);
    for (const key of Object.keys(attributes)) element.setAttribute(key, attributes[key]);
    if (text !== undefined) element.textContent = text;
    return parent.appendChild(element);
  }

  // --- the board: 64 letters as in a FEN, squares from a8 to h1, each 100 units wide ----------------

  // Column and row of a square as it is seen, from the upper left.
  function placeOf(square, flipped) {
    const seen = flipped ? 63 - square : square;
    return {column: seen % 8, row: seen >> 3};
  }

  function colourSquare(svg, square, flipped, colour) {
    const {column, row} = placeOf(square, flipped);
    make(svg, "rect", {x: 100 * column, y: 100 * row, width: 100, height: 100, fill: colour});
  }

  // With its letter or number, at two edges of the board.
  function drawSquare(svg, square, flipped) {
    const light = (square % 8 + (square >> 3)) % 2 === 0;
    const {column, row} = placeOf(square, flipped);
    colourSquare(svg, square, flipped, light ? "var(--light)" : "var(--dark)");
    const fill = light ? "var(--dark)" : "var(--light)";
    if (row === 7) make(svg, "text", {x: 100 * column + 85, y: 100 * row + 94, fill}, "abcdefgh"[square % 8]);
    if (column === 0) make(svg, "text", {x: 100 * column + 5, y: 100 * row + 20, fill}, 8 - (square >> 3));
  }

  function drawPiece(svg, letter, square, flipped) {
    const white = letter === letter.toUpperCase();
    const {column, row} = placeOf(square, flipped);
    const piece = make(svg, "use", {
      href: "#piece-" + letter.toLowerCase(), "data-piece": letter, "data-square": square,
      transform: `translate(${100 * column - 1} ${100 * row + 2}) scale(1.02)`,
      fill: white ? "#fffdf8" : "#2e2a26", stroke: white ? "#2e2a26" : "#12100e",
      "stroke-width": 3.2, "stroke-linejoin": "round", "stroke-linecap": "round"});
    piece.style.setProperty("--detail", white ? "#2e2a26" : "#e9dfcf");
  }

  // The squares of `moved` are marked, and `attacked`, which may be undefined.
  function drawBoard(svg, board, {moved, attacked, flipped}) {
    svg.replaceChildren();
    for (let square = 0; square < 64; ++square) drawSquare(svg, square, flipped);
    for (const square of moved) colourSquare(svg, square, flipped, "var(--mark)");
    if (attacked !== undefined) colourSquare(svg, attacked, flipped, "var(--check)");
    for (let square = 0; square < 64; ++square) {
      if (board[square] !== " ") drawPiece(svg, board[square], square, flipped);
    }
  }

  // --- moves and scores -----------------------------------------------------------------------------

  function moveText(game, index) {
    if (index === 0) return "Start position";
    const move = game.moves[index - 1];
    return move.number + (move.side === 0 ? ". " : " ... ") + move.san;
  }

  function sideToMove(game, index) {
    if (index > 0) return 1 - game.moves[index - 1].side;
    return game.moves.length > 0 ? game.moves[0].side : 0;
  }

  // The last score that was known at a position; even until there is one.
  function lastScore(game, index) {
    for (let i = index - 1; i >= 0; --i) if (game.moves[i].score !== undefined) return game.moves[i].score;
    return 0;
  }

  // Scores from -1 to 1: one pawn more matters less and less.
  const bend = score => Math.max(-1, Math.min(1, Math.asinh(score) / Math.asinh(20)));

  // --- the graph ------------------------------------------------------------------------------------

  const WIDTH = 1000, HEIGHT = 190;
  const LEFT = 34, RIGHT = WIDTH - 10, TOP = 8, BOTTOM = HEIGHT - 18;
  const LEVELS = [-10, -3, -1, 0, 1, 3, 10];  // in pawns

  // Where the half-move `index` of `count` stands, and the one at a place.
  const graphX = (index, count) => LEFT + (RIGHT - LEFT) * (count > 1 ? (index - 1) / (count - 1) : .5);
  const indexAt = (x, count) => Math.max(1, Math.round((x - LEFT) / (RIGHT - LEFT) * (count - 1)) + 1);
  const graphY = score => TOP + (BOTTOM - TOP) / 2 * (1 - bend(score));

  // The half of the curve that is above or below zero, filled.
  function drawArea(svg, points, {id, colour, y, height}) {
    const zero = graphY(0);
    make(make(svg, "clipPath", {id}), "rect", {x: 0, y, width: WIDTH, height});
    const first = points[0], last = points[points.length - 1];
    make(svg, "path", {
      d: `M${first[0]} ${zero}L${points.map(p => p.join(" ")).join("L")}L${last[0]} ${zero}Z`,
      fill: colour, stroke: "none", "clip-path": `url(#${id})`});
  }

  function drawAreas(svg, points) {
    const zero = graphY(0);
    drawArea(svg, points, {id: "above", colour: "var(--white-area)", y: 0, height: zero});
    drawArea(svg, points, {id: "below", colour: "var(--black-area)", y: zero, height: HEIGHT});
  }

  function drawLevels(svg, squeeze) {
    for (const score of LEVELS) {
      const y = graphY(score);
      make(svg, "line", {x1: LEFT, x2: RIGHT, y1: y, y2: y, stroke: score === 0 ? "var(--soft)" : "var(--grid)",
        "stroke-width": 1, "vector-effect": "non-scaling-stroke"});
      make(svg, "text", {transform: `translate(${LEFT - 6 * squeeze} ${y + 4}) scale(${squeeze} 1)`,
        "text-anchor": "end"}, score > 0 ? "+" + score : score);
    }
  }

  // The numbers of some moves below, a dozen at most.
  function drawNumbers(svg, moves, squeeze) {
    const step = Math.max(1, Math.ceil(moves.length / 2 / 12 / 5) * 5);
    moves.forEach((move, i) => {
      if (move.side !== 0 || (move.number !== 1 && move.number % step !== 0)) return;
      make(svg, "text", {transform: `translate(${graphX(i + 1, moves.length)} ${HEIGHT - 3}) scale(${squeeze} 1)`,
        "text-anchor": "middle"}, move.number);
    });
  }

  function drawCurve(svg, points) {
    make(svg, "path", {d: "M" + points.map(p => p.join(" ")).join("L"), fill: "none", stroke: "var(--accent)",
      "stroke-width": 2, "vector-effect": "non-scaling-stroke", "stroke-linejoin": "round"});
  }

  // Where in the game the page is: a line, and a dot on the curve.
  function drawCursor(svg, moves, index, squeeze) {
    const x = graphX(index, moves.length);
    make(svg, "line", {x1: x, x2: x, y1: TOP, y2: BOTTOM, stroke: "var(--accent)", "stroke-width": 1.5,
      "stroke-dasharray": "4 3", "vector-effect": "non-scaling-stroke"});
    const score = moves[index - 1].score;
    if (score === undefined) return;
    make(svg, "ellipse", {cx: x, cy: graphY(score), rx: 5 * squeeze, ry: 5, fill: "var(--accent)",
      stroke: "var(--card)", "stroke-width": 2, "vector-effect": "non-scaling-stroke"});
  }

  function drawGraph(svg, moves, index) {
    const squeeze = WIDTH / (svg.clientWidth || WIDTH);  // keeps letters and dots in shape
    svg.replaceChildren();
    svg.setAttribute("viewBox", `0 0 ${WIDTH} ${HEIGHT}`);
    make(svg, "rect", {x: LEFT, y: TOP, width: RIGHT - LEFT, height: BOTTOM - TOP, fill: "var(--grid)", opacity: .35});
    const points = moves.map((move, i) => [graphX(i + 1, moves.length), move.score])
      .filter(([, score]) => score !== undefined).map(([x, score]) => [x.toFixed(2), graphY(score).toFixed(2)]);
    if (points.length > 0) drawAreas(svg, points);
    drawLevels(svg, squeeze);
    drawNumbers(svg, moves, squeeze);
    if (points.length > 0) drawCurve(svg, points);
    if (index > 0) drawCursor(svg, moves, index, squeeze);
  }

  // --- the list of moves ----------------------------------------------------------------------------

  // A line for a move of White and Black's answer; empty on White's side where Black begins.
  function addLine(list, move) {
    const line = list.appendChild(document.createElement("li"));
    const number = line.appendChild(document.createElement("span"));
    number.className = "number";
    number.textContent = move.number;
    if (move.side === 1) line.appendChild(document.createElement("span"));
    return line;
  }

  // `choose` is called with the number of half-moves up to the one that is clicked.
  function buildMoves(list, moves, choose) {
    let line = null;
    moves.forEach((move, i) => {
      if (line === null || move.side === 0) line = addLine(list, move);
      const button = line.appendChild(document.createElement("button"));
      button.append(move.san);
      if (move.scoreText !== undefined) {
        button.appendChild(document.createElement("small")).textContent = move.scoreText;
      }
      button.addEventListener("click", () => choose(i + 1));
    });
  }

  function bringIntoSight(list, line) {
    const top = line.offsetTop - list.offsetTop;
    if (top < list.scrollTop || top + line.offsetHeight > list.scrollTop + list.clientHeight) {
      list.scrollTop = top - list.clientHeight / 2;
    }
  }

  function markMove(list, index) {
    const buttons = list.querySelectorAll("button");
    buttons.forEach((button, i) => {
      if (i === index - 1) button.setAttribute("aria-current", "step");
      else button.removeAttribute("aria-current");
    });
    if (index === 0) list.scrollTop = 0;
    else bringIntoSight(list, buttons[index - 1].parentNode);
  }

  // --- the page -------------------------------------------------------------------------------------

  function showBoard({game, at, flipped}) {
    const position = at === 0 ? game.start : game.moves[at - 1];
    const king = sideToMove(game, at) === 0 ? "K" : "k";
    drawBoard($("board"), position.board, {
      moved: at === 0 ? [] : [position.from, position.to],
      attacked: position.check ? position.board.indexOf(king) : undefined, flipped});
    $("board").setAttribute("aria-label", moveText(game, at));
  }

  function showBar({game, at, flipped}) {
    const white = $("bar").firstElementChild;
    white.style.height = 50 + 50 * bend(lastScore(game, at)) + "%";
    white.style[flipped ? "top" : "bottom"] = 0;
    white.style[flipped ? "bottom" : "top"] = "auto";
  }

  function showMove({game, at}) {
    const move = game.moves[at - 1];
    $("move").textContent = moveText(game, at);
    $("score").textContent = move && move.scoreText !== undefined ? move.scoreText : "";
    $("first").disabled = $("back").disabled = at === 0;
    $("last").disabled = $("forward").disabled = at === game.moves.length;
    markMove($("moves"), at);
  }

  // The position after so many half-moves, or that at the nearer end of the game.
  function show(view, index) {
    view.at = Math.max(0, Math.min(view.game.moves.length, index));
    showBoard(view);
    showBar(view);
    drawGraph($("graph"), view.game.moves, view.at);
    showMove(view);
  }

  function turn(view) {
    view.flipped = !view.flipped;
    showBoard(view);
    showBar(view);
  }

  // What stays the same while the game is stepped through.
  function fillIn(game) {
    $("white").textContent = game.white;
    $("black").textContent = game.black;
    $("result").textContent = game.result === "*" ? "in progress"
                                                  : game.result + (game.reason ? ", " + game.reason : "");
    $("when").textContent = game.date.includes("?") ? "" : game.date;
    $("note").textContent = game.takenBack.length > 0 ? "Taken back: " + game.takenBack.join(" ")
                                                      : game.moves.length + " half-moves";
    $("pgn").href = "data:application/x-chess-pgn;charset=utf-8," + encodeURIComponent(game.pgn);
    if (!game.moves.some(move => move.score !== undefined)) {
      $("legend").textContent = "none in this game: no move was searched";
    }
  }

  function listenToButtons(actions) {
    for (const id of Object.keys(actions)) $(id).addEventListener("click", actions[id]);
  }

  function listenToKeys(actions) {
    document.addEventListener("keydown", event => {
      if (event.ctrlKey || event.altKey || event.metaKey || !(event.key in actions)) return;
      event.preventDefault();
      actions[event.key]();
    });
  }

  function listenToGraph(view) {
    $("graph").addEventListener("click", event => {
      const box = $("graph").getBoundingClientRect();
      show(view, indexAt((event.clientX - box.left) / box.width * WIDTH, view.game.moves.length));
    });
    window.addEventListener("resize", () => drawGraph($("graph"), view.game.moves, view.at));
  }

  function start(game) {
    const view = {game, at: 0, flipped: false};
    const first = () => show(view, 0), last = () => show(view, game.moves.length);
    const back = () => show(view, view.at - 1), forward = () => show(view, view.at + 1);
    const flip = () => turn(view);
    fillIn(game);
    buildMoves($("moves"), game.moves, index => show(view, index));
    listenToButtons({first, back, forward, last, flip});
    listenToKeys({ArrowLeft: back, ArrowRight: forward, Home: first, End: last, f: flip});
    listenToGraph(view);
    show(view, Number(location.hash.slice(1)) || game.moves.length);
  }

  start(JSON.parse($("game").textContent));
})();
