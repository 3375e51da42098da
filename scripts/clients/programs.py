"""Plays in the programs that people use, on a display of their own that nobody sees. Each is started
as its user would, with the engine behind tap.py, which writes down what the two say."""

import os
import pathlib
import re
import shutil
import signal
import subprocess
import time

from program import Failure, Skipped

HERE = pathlib.Path(__file__).resolve().parent
TAP = str(HERE / "tap.py")
BLACK_PROMOTES = "8/8/8/8/8/K7/6kp/8 w - - 0 1"
BOTH_PROMOTE = "8/P6k/8/8/8/8/K6p/8 w - - 0 1"
MIDDLEGAME = "r1bq1rk1/pp2bppp/2n1pn2/2pp4/3P1B2/2PBPN2/PP1N1PPP/R2QK2R w KQ - 0 8"


class Desk:
    """A display, a home directory, and the programs that were started there."""

    def __init__(self, directory, engine):
        self.home, self.started = pathlib.Path(directory), []
        self.env = dict(
            os.environ, HOME=directory, XDG_CONFIG_HOME=directory, XDG_DATA_HOME=directory,
            XDG_RUNTIME_DIR=directory, PATH=f"{directory}:/usr/games:{os.environ['PATH']}",
            GSETTINGS_BACKEND="memory", NO_AT_BRIDGE="1", LC_ALL="C.UTF-8",
            CLIENT_LOGS=directory, CLIENT_ENGINE=str(engine), CLIENT_COMMAND=TAP)
        self.need("Xvfb")
        reading, writing = os.pipe()
        self.start("Xvfb", "-displayfd", str(writing), "-screen", "0", "1100x850x24",
                   pass_fds=[writing])
        os.close(writing)
        with open(reading) as display:
            self.env["DISPLAY"] = ":" + display.readline().strip()

    def __enter__(self):
        return self

    def __exit__(self, *ignored):
        for process in reversed(self.started):
            if process.poll() is None:
                os.killpg(process.pid, signal.SIGTERM)
            try:
                process.wait(3)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()

    def need(self, *programs):
        for program in programs:
            if not shutil.which(program, path=self.env["PATH"]):
                raise Skipped(f"{program} is not installed")

    def start(self, *command, output=subprocess.DEVNULL, pass_fds=(), **env):
        self.started.append(subprocess.Popen(
            command, cwd=self.home, env={**self.env, **env}, stdin=subprocess.DEVNULL, stdout=output,
            stderr=subprocess.STDOUT, start_new_session=True, pass_fds=pass_fds, text=True))
        return self.started[-1]

    def run(self, *command, seconds, **env):
        """What a program prints until it ends."""
        process = self.start(*command, output=subprocess.PIPE, **env)
        try:
            return process.communicate(timeout=seconds)[0]
        except subprocess.TimeoutExpired:
            raise Failure(f"{command[0]} stands still") from None

    def hand(self, *actions):
        """Lets xdotool act; a number is a pause in seconds."""
        for action in actions:
            if isinstance(action, str):
                subprocess.run(["xdotool", *action.split()], env=self.env, check=False)
            else:
                time.sleep(action)

    def said(self, pattern):
        """The lines of all that was said to and from engines that match a pattern from the start."""
        logs = sorted(self.home.glob("*.log"))
        lines = [line for log in logs if log.stem.isdigit() for line in log.read_text().splitlines()]
        return [line for line in lines if re.match(pattern, line)]

    def wait_for(self, pattern, seconds):
        end = time.monotonic() + seconds
        while not self.said(pattern):
            if time.monotonic() > end:
                raise Failure(f"nothing like \"{pattern}\" was said within {seconds} s")
            time.sleep(0.2)


def scid_game(desk, fen, ponder, plies):
    desk.need("scid", "tkscid")
    output = desk.run("tkscid", str(HERE / "scid.tcl"), seconds=90, CLIENT_FEN=fen,
                      CLIENT_PONDER=str(ponder), CLIENT_PLIES=str(plies), CLIENT_SECONDS="60")
    result = [line for line in output.splitlines() if ": " in line or line.endswith(":")]
    asked = desk.said("> position ")
    twice = [line for line, after in zip(asked, asked[1:]) if line == after]
    if twice:
        raise Failure(f"did not take the answer to \"{twice[0][2:]}\" and asked again")
    if not result or not result[-1].startswith("played"):
        raise Failure(result[-1] if result else "scid said nothing")
    return result[-1]


def scid_promotion(desk):
    result = scid_game(desk, BLACK_PROMOTES, ponder=0, plies=8)
    if not re.search(r"h1[qrbn]", result):
        raise Failure(f"no promotion: {result}")
    return result


def scid_pondering(desk):
    result = scid_game(desk, MIDDLEGAME, ponder=1, plies=12)
    if not desk.said("> ponderhit"):
        raise Failure(f"no pondering: {result}")
    return result


def xboard(desk, *options):
    """Starts xboard without the user's settings."""
    desk.need("xboard")
    settings = str(desk.home / "settings")
    return desk.start("xboard", "-settingsFile", settings, "-saveSettingsFile", settings, "-fcp", TAP,
                      "-scp", TAP, "-fd", ".", "-sd", ".", *options)


def xboard_match(desk, *options):
    (desk.home / "start.fen").write_text(BOTH_PROMOTE + "\n")
    games = desk.home / "games.pgn"
    xboard(desk, "-mg", "2", "-tc", "0:10", "-inc", "0", "-lpf", "start.fen", "-lpi", "1",
           "-sgf", str(games), *options)
    results, end = [], time.monotonic() + 90
    while len(results) < 2 and time.monotonic() < end:
        time.sleep(0.5)
        if games.exists():
            results = re.findall(r"\{([^-{}]*)\}\s+(?:1-0|0-1|1/2-1/2|\*)\s", games.read_text())
    if len(results) < 2:
        raise Failure(f"stands still after {len(results)} games")
    if any(re.search("(?i)illegal|forfeit|exit|false|unfinished", result) for result in results):
        raise Failure(", ".join(results))
    return ", ".join(results)


def xboard_games(desk):
    return xboard_match(desk)


def xboard_games_unchecked(desk):
    return xboard_match(desk, "-testLegality", "false")


def xboard_polyglot(desk):
    desk.need("polyglot")
    return xboard_match(desk, "-fUCI", "-sUCI")


def xboard_refused_move(desk):
    """Without rules of its own, xboard takes an illegal move back when the engine says so."""
    desk.need("xdotool")
    xboard(desk, "-mode", "MachineBlack", "-testLegality", "false", "-tc", "1")
    desk.wait_for("> (new|post)", 10)
    # The second "Return" closes the box in which xboard says what is wrong.
    desk.hand(2, "mousemove 200 300", "type e2e5", 0.5, "key Return", 2, "key Return", 0.5,
              "mousemove 200 400", "type e2e4", 0.5, "key Return")
    desk.wait_for("> (usermove )?e2e5", 5)
    desk.wait_for("> (usermove )?e2e4", 5)
    desk.wait_for("< move ", 10)
    return "taken back, and played on"


def pychess_game(desk, protocol):
    desk.need("pychess", "/usr/bin/python3")
    output = desk.run("/usr/bin/python3", "-B", str(HERE / "pychess_game.py"), seconds=90,
                      CLIENT_FEN=BOTH_PROMOTE, CLIENT_PROTOCOL=protocol, CLIENT_SECONDS="60")
    errors = re.findall(r"^\w*Error: .*", output, re.MULTILINE)
    result = re.search(r"^(WON_MATE|DRAW_\w+): .*=Q.*", output, re.MULTILINE)
    if errors or not result:
        raise Failure((errors or output.splitlines()[-1:] or ["it did not start the engine"])[0])
    return result[1]


def pychess_uci(desk):
    result, hits = pychess_game(desk, "uci"), len(desk.said("> ponderhit"))
    if not hits:
        raise Failure("no ponder hits")
    return f"{result}, {hits} ponder hits"


def pychess_xboard(desk):
    return pychess_game(desk, "xboard")


def gnome_chess(desk):
    """The engine promotes, the user answers, and the engine has understood both."""
    desk.need("gnome-chess", "dbus-run-session", "xdotool")
    (desk.home / "ombrin").symlink_to(TAP)  # its configuration names the program
    (desk.home / "gnome-chess").mkdir()
    shutil.copy(HERE.parents[1] / "examples/gnome-chess.conf", desk.home / "gnome-chess/engines.conf")
    (desk.home / "game.pgn").write_text(
        '[Event "?"]\n[Site "?"]\n[Date "2026.01.01"]\n[Round "1"]\n[White "?"]\n[Black "?"]\n'
        '[Result "*"]\n[X-GNOME-WhiteAI "ombrin"]\n[X-GNOME-WhiteLevel "normal"]\n\n'
        '1. e4 d5 2. exd5 c6 3. dxc6 a6 4. cxb7 a5 *\n')
    desk.start("dbus-run-session", "--", "gnome-chess", "game.pgn")
    desk.wait_for("< bestmove b7[ac]8[Qq]", 30)
    # From a5 to a4, on a board with Black at the bottom.
    desk.hand(1, "mousemove 518 298 click 1", 1, "mousemove 518 250 click 1")
    desk.wait_for("> position .* a5a4$", 10)
    desk.hand(3)
    if len(desk.said("< bestmove ")) != 2:
        raise Failure("no answer to the move after the promotion")
    return "promotion and the move after it"


CHECKS = [scid_promotion, scid_pondering, xboard_games, xboard_games_unchecked, xboard_polyglot,
          xboard_refused_move, pychess_uci, pychess_xboard, gnome_chess]


def run(check, command, directory):
    with Desk(directory, command[0]) as desk:
        return check(desk)
