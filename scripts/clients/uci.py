"""A UCI client as strict as the strictest: what it does not understand is 'illegal uci'."""

import random
import re
import time

from program import Client, Failure
from rules import Position, START

NUMBERS = {"depth", "seldepth", "time", "nodes", "nps", "multipv", "currmovenumber", "tbhits"}
OPTION_TYPES = {
    "check": r"default (true|false)",
    "spin": r"default (-?\d+) min (-?\d+) max (-?\d+)",
    "string": r"default \S.*",
    "combo": r"default \S.*?( var \S.*?)+",
    "button": "",
}
WHITE_TO_MOVE = "r1bq1rk1/pp2bppp/2n1pn2/2pp4/3P1B2/2PBPN2/PP1N1PPP/R2QK2R w KQ - 0 8"
BLACK_TO_MOVE = "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 b - - 0 10"
MATE_IN_ONE = "6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1"
MATED = "7k/5KQ1/8/8/8/8/8/8 b - - 0 1"
STALEMATE = "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1"
ONE_MOVE = "k7/2Q5/8/8/8/8/8/1R5K b - - 0 1"


def numbers(line, words):
    if not all(re.fullmatch(r"-?\d+", word) for word in words):
        raise Failure(f"illegal uci: {line}")
    return [int(word) for word in words]


class UciClient(Client):
    def __init__(self, command, directory, options=("Threads value 1",)):
        super().__init__(command, directory)
        self.position = None  # while a search runs, the one it searches
        self.held = False  # the client does not want to hear the best move yet
        self.options, self.bad_options = {}, []
        self.send("uci")
        self.skip_greeting("id name ")
        self.read_until("uciok")
        for option in options:
            self.send("setoption name " + option)
        self.sync()

    def understand(self, line):
        words = line.split()
        kind = words[0] if words else ""
        if line in ("uciok", "readyok"):
            return kind, None
        if kind == "id" and words[1] in ("name", "author"):
            return kind, None
        if kind == "option":
            return kind, self.understand_option(line)
        if kind == "info":
            return kind, self.understand_info(line, words[1:])
        if kind == "bestmove":
            return kind, self.understand_best_move(line)
        raise Failure(f"illegal uci: {line}")

    def understand_option(self, line):
        match = re.fullmatch(r"option name (\S+(?: \S+)*) type (\w+)(?: (\S.*))?", line)
        name, kind, rest = match.groups("") if match and "  " not in line else ("", "", "")
        good = line == line.strip() and re.fullmatch(OPTION_TYPES.get(kind, "none"), rest)
        if good and kind == "spin":
            default, least, most = numbers(line, rest.split()[1::2])
            good = least <= default <= most
        if good:
            self.options[name] = kind
        else:
            self.bad_options.append(line)

    def understand_info(self, line, words):
        if words[:1] == ["string"]:
            return {"string": " ".join(words[1:])}
        if self.position is None:
            raise Failure(f"illegal uci, nothing is searched: {line}")
        info = {}
        while words:
            word = words.pop(0)
            if word in NUMBERS or word == "hashfull":
                [info[word]] = numbers(line, [words.pop(0) if words else ""])
            elif word == "currmove":
                info[word] = self.legal_line(line, words[:1])
                del words[:1]
            elif word == "score" and len(words) > 1 and words[0] in ("cp", "mate"):
                info[word] = words[0], *numbers(line, words[1:2])
                del words[:2]
                if words[:1] in (["lowerbound"], ["upperbound"]):
                    del words[0]
            elif word == "pv":
                info[word] = self.legal_line(line, words)
                words = []
            else:
                raise Failure(f"illegal uci: {line}")
        if info.get("hashfull", 0) > 1000:
            raise Failure(f"illegal uci, more than full: {line}")
        return info

    def legal_line(self, line, moves):
        position = self.position
        for move in moves:
            if move not in (legal := position.moves()):
                raise Failure(f"illegal uci, {move}: {line}")
            position = legal[move]
        if not moves:
            raise Failure(f"illegal uci, no move: {line}")
        return moves

    def understand_best_move(self, line):
        match = re.fullmatch(r"bestmove (\S+)(?: ponder (\S+))?", line)
        if not match:
            raise Failure(f"illegal uci: {line}")
        if self.position is None:
            raise Failure(f"a best move more than was asked for: {line}")
        if self.held:
            raise Failure(f"a best move before \"stop\" or \"ponderhit\": {line}")
        if self.position.moves():
            self.legal_line(line, [move for move in match.groups() if move])
        elif match[1] not in ("0000", "(none)"):
            raise Failure(f"illegal uci, there is no move: {line}")
        self.position = None
        return match[1], match[2]

    def go(self, limits, fen=START, moves=(), position=None):
        """Starts a search; "infinite" and "ponder" among its limits hold the best move back.
        `position` is what the moves lead to, when that is known already."""
        if position is None:
            position = Position(fen)
            for move in moves:
                position = position.play(move)
        self.position = position
        self.held = "infinite" in limits or "ponder" in limits
        where = "startpos" if fen == START else "fen " + fen
        self.send(f"position {where}" + (" moves " + " ".join(moves) if moves else ""))
        self.send("go " + limits)

    def release(self, word="stop"):
        self.held = False
        self.send(word)

    def best_move(self):
        return self.read_until("bestmove")

    def sync(self):
        """Nothing but readyok may come: whatever was asked for has been answered."""
        self.send("isready")
        self.read_until("readyok")


def options(client):
    if client.bad_options:
        raise Failure(f"illegal uci, with {len(client.bad_options)} like it: {client.bad_options[0]}")
    if client.options.get("Hash") != "spin":
        raise Failure("no option Hash")
    for name in ("Hash value 16", "hash value 17", "HASH value 16"):
        client.send("setoption name " + name)
    if "Clear Hash" not in client.options:
        raise Failure("no option Clear Hash")
    client.send("setoption name Clear Hash")
    client.sync()
    return f"{len(client.options)} options"


def pairs(client):
    """Stop a search when it is about to end by itself, and play at once."""
    chance = random.Random(1)
    for number in range(60):
        if number % 3 == 0:
            client.go("infinite", fen=MATE_IN_ONE)
            client.listen(chance.uniform(0, 0.1))
        else:
            client.go("movetime 60", fen=WHITE_TO_MOVE)
            time.sleep(0.06 + chance.uniform(-0.01, 0.005))
        client.release()
        client.best_move()
        client.go("movetime 30", fen=BLACK_TO_MOVE)
        client.best_move()
        client.sync()
    return "60 pairs"


def one_answer(client):
    """When the best move is out, "stop" and "ponderhit" are silent."""
    for word in ("stop", "ponderhit"):
        client.go("depth 4")
        client.best_move()
        client.send(word)
        if client.listen(0.3):
            raise Failure(f"an answer to {word} without a search")
    client.go("infinite")
    client.listen(0.1)
    client.release()
    client.send("stop")
    client.best_move()
    client.sync()
    return "stop, ponderhit, two stops"


def held_back(client):
    """A search that ends by itself keeps its answer until the client wants to hear it."""
    for fen in (MATE_IN_ONE, MATED, STALEMATE, ONE_MOVE):
        for limits, word in (("infinite", "stop"), ("ponder movetime 50", "ponderhit"),
                             ("ponder movetime 50", "stop")):
            client.go(limits, fen=fen)
            client.listen(0.4)
            client.release(word)
            client.best_move()
            client.sync()
    return "mate, stalemate, one move"


def game(client):
    """60 moves with pondering; the opponent plays the expected move, or any other."""
    chance = random.Random(2)
    moves, position, pondering, hits = [], Position(), False, 0
    client.send("setoption name Ponder value true")
    client.send("ucinewgame")
    clock = "wtime 8000 btime 8000 winc 100 binc 100"
    for _ in range(60):
        if not pondering:
            client.go(clock, moves=moves, position=position)
        move, expected = client.best_move()
        moves.append(move)
        position = position.play(move)
        if expected:
            client.go("ponder " + clock, moves=moves + [expected],
                      position=position.play(expected))
            client.listen(0.05)
        replies = list(position.moves())
        reply = expected if expected and chance.random() < 0.6 else \
            chance.choice(replies) if replies else None
        pondering = reply is not None and reply == expected
        hits += pondering
        if pondering:
            client.release("ponderhit")
        elif expected:
            client.release()
            client.best_move()
        if reply:
            moves.append(reply)
            position = position.play(reply)
        if not position.moves():
            client.sync()
            client.send("ucinewgame")
            moves, position, pondering = [], Position(), False
    client.release()
    return f"60 moves, {hits} ponder hits"


def promotions(client):
    for fen, at, to in (("7k/P7/8/8/8/8/8/K7 w - - 0 1", "a7", "a8"),
                        ("7k/8/8/8/8/8/p7/7K b - - 0 1", "a2", "a1")):
        client.go("movetime 100", fen=fen)
        move, _ = client.best_move()
        if move[:4] != at + to or move[4:] not in tuple("qrbn"):
            raise Failure(f"{move} does not promote in {fen}")
        for kind in "qrbn":
            client.go("movetime 20", fen=fen, moves=[at + to + kind])
            client.best_move()
    client.go("depth 8", fen="8/8/8/8/8/K7/6kp/8 w - - 0 1")
    client.best_move()
    client.sync()
    return "by both sides, to every piece"


def search_moves(client):
    for fen, moves in ((START, ["a2a3", "h2h4"]), (BLACK_TO_MOVE, ["h7h6"]),
                       ("7k/P7/8/8/8/8/8/K7 w - - 0 1", ["a7a8n", "a1b1"])):
        client.go("depth 6 searchmoves " + " ".join(moves), fen=fen)
        best, _ = client.best_move()
        looked = [info.get("pv") or info.get("currmove") for _, info in client.before]
        wrong = [line[0] for line in looked + [[best]] if line and line[0] not in moves]
        if wrong:
            raise Failure(f"searchmoves {' '.join(moves)}: it looked at {wrong[0]}")
    return "3 positions"


def analysis(client):
    client.go("infinite", fen=WHITE_TO_MOVE)
    lines = [info for kind, info in client.listen(1.5) if "pv" in info]
    client.release()
    best, _ = client.best_move()
    if len(lines) < 5 or not all({"depth", "score", "time", "nodes"} <= set(info) for info in lines):
        raise Failure(f"{len(lines)} lines, or some without depth, score, time and nodes")
    if any(later["depth"] < info["depth"] for info, later in zip(lines, lines[1:])):
        raise Failure("a line of a depth that was done before")
    client.sync()
    return f"{len(lines)} lines to depth {lines[-1]['depth']}"


def nonsense(client):
    """What it does not understand never reaches the client's stream as prose."""
    for line in ("foo", "setoption name Nosuch value 3", "setoption name Hash value many",
                 "position fen rubbish", "debug on", "register later", ""):
        client.send(line)
        client.sync()
    client.go("depth 3")
    client.best_move()
    return "7 lines"


CHECKS = [options, pairs, one_answer, held_back, game, promotions, search_moves, analysis, nonsense]


def run(check, command, directory):
    with UciClient(command, directory) as client:
        return check(client)
