"""The rules of chess, as far as a client needs them: is this move legal, is the game over?"""

START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"
STRAIGHT = [(1, 0), (-1, 0), (0, 1), (0, -1)]
DIAGONAL = [(1, 1), (1, -1), (-1, 1), (-1, -1)]
JUMPS = [(1, 2), (2, 1), (2, -1), (1, -2), (-1, -2), (-2, -1), (-2, 1), (-1, 2)]
STEPS = {"n": JUMPS, "b": DIAGONAL, "r": STRAIGHT, "q": STRAIGHT + DIAGONAL, "k": STRAIGHT + DIAGONAL}
ROOK_CORNERS = {(7, 0): "K", (0, 0): "Q", (7, 7): "k", (0, 7): "q"}


def name(square):
    return "abcdefgh"[square[0]] + str(square[1] + 1)


class Position:
    """Squares are pairs (file, rank), counted from 0; men are the letters of a FEN."""

    def __init__(self, fen=START):
        placement, turn, self.castling, passant = fen.split()[:4]
        self.white = turn == "w"
        self.passant = None if passant == "-" else ("abcdefgh".index(passant[0]), int(passant[1]) - 1)
        self.men = {}
        for rank, row in zip(range(7, -1, -1), placement.split("/")):
            file = 0
            for letter in row:
                if letter.isdigit():
                    file += int(letter)
                else:
                    self.men[file, rank] = letter
                    file += 1

    def in_check(self, white=None):
        white = self.white if white is None else white
        king = "K" if white else "k"
        return any(self.is_attacked(at, not white) for at, man in self.men.items() if man == king)

    def is_attacked(self, square, by_white):
        return any(
            man.isupper() == by_white and square in self.reach(at, man)
            for at, man in self.men.items()
        )

    def reach(self, at, man):
        """The squares that a man attacks, own men's among them."""
        if man in "Pp":
            forward = 1 if man == "P" else -1
            return [(at[0] - 1, at[1] + forward), (at[0] + 1, at[1] + forward)]
        reached = []
        for dx, dy in STEPS[man.lower()]:
            to = (at[0] + dx, at[1] + dy)
            while 0 <= to[0] < 8 and 0 <= to[1] < 8:
                reached.append(to)
                if man in "NnKk" or to in self.men:
                    break
                to = (to[0] + dx, to[1] + dy)
        return reached

    def steps(self):
        """Every (from, to) that obeys the men's ways, whatever happens to the king."""
        for at, man in self.men.items():
            if man.isupper() != self.white:
                continue
            for to in self.reach(at, man):
                victim = self.men.get(to)
                takes = victim is not None and victim.isupper() != self.white
                if man in "Pp":
                    if takes or to == self.passant:
                        yield at, to
                elif takes or victim is None:
                    yield at, to
            if man in "Pp":
                forward, first = (1, 1) if self.white else (-1, 6)
                one, two = (at[0], at[1] + forward), (at[0], at[1] + 2 * forward)
                if one not in self.men:
                    yield at, one
                    if at[1] == first and two not in self.men:
                        yield at, two
        yield from self.castlings()

    def castlings(self):
        rank = 0 if self.white else 7
        for right, between, way in [("K", (5, 6), (4, 5)), ("Q", (1, 2, 3), (4, 3))]:
            right = right if self.white else right.lower()
            if right not in self.castling or any((file, rank) in self.men for file in between):
                continue
            if not any(self.is_attacked((file, rank), not self.white) for file in way):
                yield (4, rank), (6 if right in "Kk" else 2, rank)

    def after(self, at, to, promotion=""):
        """The position behind a move."""
        next_one = Position.__new__(Position)
        men = next_one.men = dict(self.men)
        man = men.pop(at)
        men.pop(to, None)
        men[to] = (promotion.upper() if self.white else promotion) or man
        next_one.passant = None
        if man in "Pp":
            if to == self.passant:
                men.pop((to[0], at[1]))
            elif abs(to[1] - at[1]) == 2:
                next_one.passant = (at[0], (at[1] + to[1]) // 2)
        if man in "Kk" and abs(to[0] - at[0]) == 2:
            men[(at[0] + to[0]) // 2, at[1]] = men.pop((7 if to[0] == 6 else 0, at[1]))
        lost = {ROOK_CORNERS.get(at), ROOK_CORNERS.get(to)}
        lost |= set("KQ" if man == "K" else "kq" if man == "k" else "")
        next_one.castling = "".join(right for right in self.castling if right not in lost)
        next_one.white = not self.white
        return next_one

    def moves(self):
        """The legal moves, as UCI and xboard write them, each with the position behind it."""
        legal = {}
        for at, to in list(self.steps()):
            promotes = self.men[at] in "Pp" and to[1] in (0, 7)
            for promotion in "qrbn" if promotes else ("",):
                behind = self.after(at, to, promotion)
                if not behind.in_check(self.white):
                    legal[name(at) + name(to) + promotion] = behind
        return legal

    def play(self, move):
        return self.moves()[move]


def perft(position, depth):
    if depth == 0:
        return 1
    return sum(perft(behind, depth - 1) for behind in position.moves().values())
