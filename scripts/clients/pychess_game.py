"""Has pychess play the engine against itself, without its window, and says how the game went. Run by
the Python that pychess is installed for; the engine's command, the protocol, the position and the
time are in the environment."""

import asyncio
import gettext
import io
import os

import gi

for library, version in (("Gtk", "3.0"), ("GtkSource", "3.0"), ("PangoCairo", "1.0"), ("Rsvg", "2.0")):
    gi.require_version(library, version)
gettext.install("pychess")

from gi.repository import GLib

from pychess.Players.engineNest import discoverer
from pychess.Savers import fen
from pychess.System import conf
from pychess.Utils import const
from pychess.Utils.GameModel import GameModel
from pychess.Utils.Move import toAN
from pychess.Utils.TimeModel import TimeModel
from pychess.Variants.normal import NormalBoard

REASONS = {value: key for key, value in vars(const).items()
           if key.startswith(("WON_", "DRAW_", "WHITE_ENGINE", "BLACK_ENGINE", "UNKNOWN_REASON"))}


async def play():
    engine = {"name": "engine", "protocol": os.environ["CLIENT_PROTOCOL"], "md5": None, "args": [],
              "command": os.environ["CLIENT_COMMAND"], "workingDirectory": os.getcwd()}
    conf.set("book_depth_max", 0)
    game = GameModel(TimeModel(5, 0.1))
    players = [await discoverer.initPlayerEngine(engine, color, 20, NormalBoard, 5, 0.1)
               for color in (const.WHITE, const.BLACK)]
    game.setPlayers(players)
    ended = asyncio.get_running_loop().create_future()
    game.connect("game_ended", lambda model, reason: ended.done() or ended.set_result(reason))
    game.loadAndStart(io.StringIO(os.environ["CLIENT_FEN"]), fen, 0, -1)
    try:
        reason = REASONS.get(await asyncio.wait_for(ended, float(os.environ["CLIENT_SECONDS"])))
    except asyncio.TimeoutError:
        reason = "stands still"
    moves = [toAN(board, move) for board, move in zip(game.boards, game.moves)]
    print(f"{reason}: {' '.join(moves)}", flush=True)
    os._exit(0)


def serve_glib(loop):
    while GLib.MainContext.default().iteration(False):
        pass
    loop.call_later(0.01, serve_glib, loop)


loop = asyncio.SelectorEventLoop()
asyncio.set_event_loop(loop)
loop.call_soon(serve_glib, loop)
loop.run_until_complete(play())
