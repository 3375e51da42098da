"""An xboard client as strict as the strictest: what it does not understand is 'illegal xboard'."""

import random
import re
import time

from program import Client, Failure
from rules import Position, START
from uci import BLACK_TO_MOVE, MATE_IN_ONE, WHITE_TO_MOVE

FEATURES = set("""ping setboard playother san usermove time draw sigint sigterm reuse analyze myname
    variants colors ics name pause nps debug memory smp egt option exclude setscore highlight
    done""".split())
TEXT_FEATURES = {"myname", "variants", "egt", "option"}
MATED_IN_ONE = "K7/8/1k6/8/8/8/8/7r w - - 0 1"
# What an engine may say beside moves, thinking lines and features.
LINES = {
    "pong": r"pong \d+",
    "illegal": r"Illegal move(?: \([^)]+\))?: \S+",
    "error": r"Error \([^)]+\): .+",
    "hint": r"Hint: \S+",
    "stat": r"stat01: \d+ \d+ \d+ \d+ \d+(?: \S+)?",
    "offer": r"offer draw",
    "result": r"(?:resign|(?:1-0|0-1|1/2-1/2) \{[^}]*\})",
    "comment": r"(?:#|tell\w+ ).*",
}


class XboardClient(Client):
    def __init__(self, command, directory, protocol=2):
        super().__init__(command, directory)
        self.position = Position()  # as the engine has to have it
        self.thinking = False  # a move is to come
        self.features, self.bad_features = {}, []
        self.book_lines = None  # while a list of book moves is read
        self.pings = 0
        self.send("xboard")
        if protocol == 2:
            self.send("protover 2")
            self.skip_greeting("feature ")
            while self.features.get("done") != "1":
                self.read_until("feature")
            self.send("new")
            self.send("cores 1")
            self.send("post")
            self.send("easy")
            self.sync()
        else:
            while self.program.line(0.5) is not None:
                pass

    def understand(self, line):
        if self.book_lines is not None and (not line or line[0] in " \t"):
            return ("book" if line else "end of book"), line
        words = line.split()
        if words[:1] == ["feature"]:
            return "feature", self.understand_features(line)
        if words[:1] == ["move"] and len(words) == 2:
            return "move", self.understand_move(line, words[1])
        if match := re.fullmatch(r"\s*(\d+)[.+-]? (-?\d+) (\d+) (\d+)(?: (.*))?", line):
            self.check_line(line, (match[5] or "").split())
            return "thinking", [int(number) for number in match.groups()[:4]]
        for kind, pattern in LINES.items():
            if re.fullmatch(pattern, line):
                return kind, line
        raise Failure(f"illegal xboard: {line}")

    def understand_features(self, line):
        rest = line[len("feature "):]
        for feature in re.finditer(r"(\w+)=(\d+|\"[^\"]*\") ?|.+", rest):
            if feature[1] is None:
                raise Failure(f"illegal xboard: {line}")
            if (feature[1] in TEXT_FEATURES) != feature[2].startswith('"'):
                self.bad_features.append(feature[0])
            known = feature[1] in FEATURES
            self.send(("accepted " if known else "rejected ") + feature[1])
            self.features[feature[1]] = feature[2].strip('"')

    def understand_move(self, line, move):
        if not self.thinking:
            raise Failure(f"a move more than was asked for: {line}")
        if move not in (legal := self.position.moves()):
            raise Failure(f"illegal xboard, {move}: {line}")
        self.thinking = False
        self.position = legal[move]
        return move

    def check_line(self, line, words):
        """Lines are free text; but what looks like a promotion has to be one of the wire."""
        wrong = [word for word in words if re.fullmatch(r"[a-h][1-8][a-h][1-8][NBRQ]", word)]
        if wrong:
            raise Failure(f"illegal xboard, {wrong[0]}: {line}")

    def setup(self, fen=START):
        self.thinking = False
        self.position = Position(fen)
        self.send("force")
        self.send("setboard " + fen)

    def go(self):
        self.thinking = True
        self.send("go")

    def user_move(self, move, answer=True):
        self.position = self.position.play(move)
        self.thinking = answer and bool(self.position.moves())
        self.send("usermove " + move)

    def sync(self):
        """Nothing but pong may come: whatever was asked for has been answered."""
        self.pings += 1
        self.send(f"ping {self.pings}")
        if self.read_until("pong") != f"pong {self.pings}":
            raise Failure("a pong of another ping")


def features(client):
    needed = {"ping": "1", "setboard": "1", "usermove": "1", "analyze": "1", "colors": "0",
              "debug": "1", "sigint": "0", "sigterm": "1"}
    wrong = {key: value for key, value in needed.items() if client.features.get(key) != value}
    if client.bad_features:
        raise Failure("illegal xboard, a text or no text: " + " ".join(client.bad_features))
    if wrong:
        raise Failure("missing: " + " ".join(f"{key}={value}" for key, value in wrong.items()))
    return f"{len(client.features)} features"


def pairs(client):
    """Stop an analysis or a search when it is about to end by itself, and play at once."""
    chance = random.Random(1)
    client.send("st 1")
    for number in range(60):
        if number % 3 == 0:
            client.setup(MATE_IN_ONE)
            client.send("analyze")
            client.listen(chance.uniform(0, 0.1))
            client.send("exit")
        else:
            client.send("sd 6")
            client.setup(WHITE_TO_MOVE)
            client.go()
            time.sleep(chance.uniform(0, 0.1))
            client.send("?")
            client.read_until("move")
        client.send("sd 3")
        client.setup(BLACK_TO_MOVE)
        client.go()
        client.read_until("move")
        client.sync()
    return "60 pairs"


def game(client):
    """60 moves with pondering; the opponent plays the expected move, or any other."""
    chance = random.Random(2)
    start = ("new", "hard", "level 0 5 0", "sd 7")
    played = hits = 0
    while played < 60:
        client.position = Position()
        for command in start:
            client.send(command)
        client.go()
        while client.thinking and played < 60:
            client.read_until("move")
            played += 1
            client.send("hint")
            heard = client.listen(0.1)
            if any(kind == "result" for kind, _ in heard):
                break
            hint = [line.split()[1] for kind, line in heard if kind == "hint"]
            replies = list(client.position.moves())
            if replies:
                expected = hint and hint[0] in replies and chance.random() < 0.6
                hits += bool(expected)
                client.send("time 30000")
                client.send("otim 30000")
                client.user_move(hint[0] if expected else chance.choice(replies))
        client.thinking = False
    return f"60 moves, {hits} expected ones"


def promotions(client):
    client.send("sd 5")
    for fen, way in (("7k/P7/8/8/8/8/8/K7 w - - 0 1", "a7a8"),
                     ("7k/8/8/8/8/8/p7/7K b - - 0 1", "a2a1")):
        client.setup(fen)
        client.go()
        move = client.read_until("move")
        if move[:4] != way:
            raise Failure(f"{move} does not promote in {fen}")
        for kind in "qrbn":
            client.setup(fen)
            client.user_move(way + kind, answer=False)
            client.go()
            client.read_until("move")
    return "by both sides, to every piece"


def analysis(client):
    client.setup(WHITE_TO_MOVE)
    client.send("analyze")
    lines = sum(kind == "thinking" for kind, _ in client.listen(1))
    client.send(".")
    client.read_until("stat")
    client.user_move("e1g1", answer=False)
    lines += sum(kind == "thinking" for kind, _ in client.listen(0.5))
    client.send("undo")
    client.send("exit")
    client.sync()
    if lines < 5:
        raise Failure(f"{lines} lines")
    return f"{lines} lines, a move and a step back"


def refusals(client):
    """An illegal move and an unknown word are answered in the protocol's words."""
    client.setup()
    client.send("usermove e2e5")
    client.read_until("illegal")
    client.send("foo")
    if client.read_until("error") != "Error (unknown command): foo":
        raise Failure("an unknown command is answered differently")
    client.sync()
    return "a move and a word"


def plain_moves(client):
    """A client that pays no attention to features sends moves as they are."""
    client.send("new")
    client.send("sd 3")
    client.position = client.position.play("e2e4")
    client.thinking = True
    client.send("e2e4")
    return client.read_until("move", 5)


def fractions(client):
    """Half a second is half a second."""
    for command in ("st 0.5", "level 0 1 0.5", "level 40 0:30 0"):
        client.send("new")
        client.setup(WHITE_TO_MOVE)
        client.send(command)
        client.send("time 3000")
        client.send("otim 3000")
        start = time.monotonic()
        client.go()
        client.read_until("move")
        taken = time.monotonic() - start
        if not 0.1 <= taken <= 3:
            raise Failure(f"{command}: {taken:.2f} s")
    return "st and level"


def mates(client):
    for fen, score in ((MATE_IN_ONE, 100001), (MATED_IN_ONE, -100001)):
        client.setup(fen)
        client.send("analyze")
        scores = [content[1] for kind, content in client.listen(0.4) if kind == "thinking"]
        client.send("exit")
        client.sync()
        if scores[-1:] != [score]:
            raise Failure(f"{score} expected, not {scores[-1:]}")
    return "for and against"


def book(client):
    """Lines that begin with a blank, then an empty line."""
    client.setup()
    client.book_lines = []
    client.send("bk")
    client.read_until("end of book")
    return f"{len(client.before)} moves"


CHECKS = [features, pairs, game, promotions, analysis, refusals, plain_moves, fractions, mates, book]


def run(check, command, directory):
    with XboardClient(command, directory, protocol=1 if check == plain_moves else 2) as client:
        return check(client)
