"""The rules of chess, as far as the judge of a match needs them: which moves are legal, and when a game has ended.

Plain and slow, so that it can be trusted: tests count its moves against known figures and play games beside another
referee. Moves are written as in the Universal Chess Interface.
"""

from __future__ import annotations

import collections
from collections.abc import Iterator

START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"

# Squares are numbers in a board of 12 rows of 10 with a rim: a1 is 21, h8 is 98.
RIM, EMPTY = " ", "."
STRAIGHT, DIAGONAL = (1, -1, 10, -10), (9, 11, -9, -11)
STEPS = {"n": (8, 12, 19, 21, -8, -12, -19, -21), "b": DIAGONAL, "r": STRAIGHT, "q": STRAIGHT + DIAGONAL,
         "k": STRAIGHT + DIAGONAL}
SLIDING = "brq"
CORNERS = {21: "Q", 28: "K", 91: "q", 98: "k"}  # the right that goes with the rook
KINGS = {25: "KQ", 95: "kq"}

Move = tuple[int, int, str]  # from, to, the letter of a promotion or nothing


class Illegal(ValueError):
    """A move that the rules do not allow."""


def square(name: str) -> int:
    return 21 + "abcdefgh".index(name[0]) + 10 * (int(name[1]) - 1)


def name_of(number: int) -> str:
    return f"{'abcdefgh'[number % 10 - 1]}{number // 10 - 1}"


def written(move: Move) -> str:
    return name_of(move[0]) + name_of(move[1]) + move[2]


class Position:
    """A position with the counters of a FEN."""

    def __init__(self, fen: str = START):
        rows, turn, rights, passant, quiet, number = fen.split()
        self.board = [RIM] * 120
        for row, text in enumerate(rows.split("/")):
            pieces = "".join(EMPTY * int(letter) if letter.isdigit() else letter for letter in text)
            self.board[91 - 10 * row:99 - 10 * row] = pieces
        self.white = turn == "w"
        self.rights = rights.replace("-", "")
        self.passant = 0 if passant == "-" else square(passant)
        self.quiet, self.number = int(quiet), int(number)  # half-moves since a capture or a pawn's move; the move

    def own(self, piece: str) -> bool:
        return piece.isalpha() and piece.isupper() == self.white

    def attacked(self, target: int, by_white: bool) -> bool:
        board = self.board
        side = str.upper if by_white else str.lower
        behind = -10 if by_white else 10  # where a pawn stands that attacks straight ahead of it
        if side("p") in (board[target + behind - 1], board[target + behind + 1]):
            return True
        for kind, steps in STEPS.items():
            piece = side(kind)
            for step in steps:
                at = target + step
                while kind in SLIDING and board[at] == EMPTY:
                    at += step
                if board[at] == piece:
                    return True
        return False

    def in_check(self, white: bool) -> bool:
        return self.attacked(self.board.index("K" if white else "k"), not white)

    def pawn_moves(self, origin: int) -> Iterator[Move]:
        ahead = 10 if self.white else -10
        targets = []
        if self.board[origin + ahead] == EMPTY:
            targets.append(origin + ahead)
            if origin // 10 == (3 if self.white else 8) and self.board[origin + 2 * ahead] == EMPTY:
                targets.append(origin + 2 * ahead)
        for target in (origin + ahead - 1, origin + ahead + 1):
            piece = self.board[target]
            if target == self.passant or (piece.isalpha() and not self.own(piece)):
                targets.append(target)
        for target in targets:
            for letter in "qrbn" if target // 10 in (2, 9) else ("",):
                yield origin, target, letter

    def castlings(self) -> Iterator[Move]:
        king = 25 if self.white else 95
        for right, step in (("K", 1), ("Q", -1)):
            if (right if self.white else right.lower()) not in self.rights:
                continue
            rook = king + 3 if step == 1 else king - 4
            free = all(self.board[at] == EMPTY for at in range(min(king, rook) + 1, max(king, rook)))
            if free and not any(self.attacked(king + count * step, not self.white) for count in range(3)):
                yield king, king + 2 * step, ""

    def moves(self) -> Iterator[Move]:
        """All moves, also those that leave the king in check."""
        for origin, piece in enumerate(self.board):
            if not self.own(piece):
                continue
            kind = piece.lower()
            if kind == "p":
                yield from self.pawn_moves(origin)
                continue
            for step in STEPS[kind]:
                target = origin + step
                while kind in SLIDING and self.board[target] == EMPTY:
                    yield origin, target, ""
                    target += step
                if self.board[target] != RIM and not self.own(self.board[target]):
                    yield origin, target, ""
        yield from self.castlings()

    def after(self, move: Move) -> Position:
        origin, target, letter = move
        new = Position.__new__(Position)
        board = new.board = self.board[:]
        piece, taken = board[origin], board[target]
        board[origin] = EMPTY
        board[target] = (letter.upper() if self.white else letter) or piece
        pawn = piece in "Pp"
        if pawn and target == self.passant:
            board[target + (-10 if self.white else 10)] = EMPTY
        if piece in "Kk" and abs(target - origin) == 2:
            rook = target + 1 if target > origin else target - 2
            board[(origin + target) // 2], board[rook] = board[rook], EMPTY
        lost = "".join(CORNERS.get(at, "") + KINGS.get(at, "") for at in (origin, target))
        new.rights = "".join(right for right in self.rights if right not in lost)
        new.passant = (origin + target) // 2 if pawn and abs(target - origin) == 20 else 0
        new.quiet = 0 if pawn or taken != EMPTY else self.quiet + 1
        new.number = self.number + (not self.white)
        new.white = not self.white
        return new

    def legal(self) -> Iterator[Move]:
        for move in self.moves():
            if not self.after(move).in_check(self.white):
                yield move

    def take(self, text: str) -> Position:
        """The position after this move."""
        move = next((move for move in self.moves() if written(move) == text), None)
        new = self.after(move) if move else None
        if new is None or new.in_check(self.white):
            raise Illegal(text)
        return new

    def placement(self) -> str:
        """The first four fields of a FEN; a square of passing alone where a pawn can really take there."""
        rows = []
        for row in range(9, 1, -1):
            text = "".join(self.board[10 * row + 1:10 * row + 9])
            for count in range(8, 0, -1):
                text = text.replace(EMPTY * count, str(count))
            rows.append(text)
        passant = self.passant and any(self.board[move[0]] in "Pp" and move[1] == self.passant for move in self.legal())
        return (f"{'/'.join(rows)} {'w' if self.white else 'b'} {self.rights or '-'} "
                f"{name_of(self.passant) if passant else '-'}")

    def fen(self) -> str:
        return f"{self.placement()} {self.quiet} {self.number}"

    def bare(self) -> bool:
        """Whether nobody has what a mate takes: bare kings, one minor piece, or bishops of one colour of squares."""
        pieces = [(piece.lower(), sum(divmod(at, 10)) % 2) for at, piece in enumerate(self.board)
                  if piece.isalpha() and piece not in "Kk"]
        if len(pieces) == 1:
            return pieces[0][0] in "bn"
        return all(kind == "b" for kind, _ in pieces) and len({shade for _, shade in pieces}) <= 1


class Board:
    """A game from a position on: takes moves, and knows when it is over."""

    def __init__(self, fen: str = START):
        self.position = Position(fen)
        self.moves: list[str] = []
        self.seen = collections.Counter([self.position.placement()])

    def play(self, text: str) -> None:
        """Makes a move; raises Illegal, and nothing has changed."""
        self.position = self.position.take(text)
        self.moves.append(text)
        self.seen[self.position.placement()] += 1

    def over(self) -> str:
        """Why the game has ended, or nothing."""
        position = self.position
        if next(position.legal(), None) is None:
            return "checkmate" if position.in_check(position.white) else "stalemate"
        if self.seen[position.placement()] >= 3:
            return "repetition"
        if position.quiet >= 100:
            return "fifty moves"
        return "material" if position.bare() else ""
