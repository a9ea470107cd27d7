"""Positions that several tests set up: as FEN without counters, and as the engine's own texts."""

START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -"
START_TEXT = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w QKqk"

AFTER_E4_TEXT = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b QKqk"
AFTER_D4_TEXT = "rnbqkbnr/pppppppp/8/8/3P4/8/PPP1PPPP/RNBQKBNR b QKqk"

MATE_IN_ONE = "6k1/5ppp/8/8/8/8/8/R3K3 w Q -"  # a1a8
MATED_IN_ONE = "4k3/R7/8/8/8/8/1R6/4K3 b - -"
ONE_REPLY = "7k/8/8/8/8/8/1r6/K7 w - -"  # a1b2
BEFORE_ONE_REPLY = "7k/8/8/8/8/1r6/8/K7 b - -"  # b3b2 leads to it
STALEMATE = "7k/5Q2/6K1/8/8/8/8/8 b - -"
CHECKMATE = "R5k1/5ppp/8/8/8/8/8/4K3 b - -"
ILLEGAL = "4k3/4R3/8/8/8/8/8/4K3 w - -"  # White could take the king
NO_KINGS = "8/8/8/8/8/8/8/8 w - -"
MIDDLE_GAME = "r1bq1rk1/pp2ppbp/2np2p1/2n5/P3PP2/N1P2N2/1PB3PP/R1B1QRK1 b - -"
CLOSED_GAME = "r2q1rk1/1ppnbppp/p2p1nb1/3Pp3/2P1P1P1/2N2N1P/PPB1QP2/R1B2RK1 b - -"
OUT_OF_BOOK = "4k3/8/8/8/8/8/PPPP4/4K3 w - -"  # no opening leads to it, so its answer is searched and learned
OUT_OF_BOOK_TEXT = "4k3/8/8/8/8/8/PPPP4/4K3 w"
