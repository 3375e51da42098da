#include "soak/game.h"

#include <algorithm>

#include "board/display.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "board/notation.h"
#include "support/random_positions.h"

namespace ombrin {

namespace {

constexpr int MOST_PLIES = 400;
// What a move may take beyond its time: pipes, two processes that take turns, and the tick of the
// clock.
constexpr int LAG_MS = 60;

bool isRepeated(const Board& board) {
  int seen = 0;
  for (std::uint32_t back = 2; back <= board.reversiblePlies(); back += 2) {
    seen += board.hashHistory[board.ply - back] == board.hash ? 1 : 0;
  }
  return seen >= 2;
}

bool isDeadDraw(const Board& board) {
  return !board.WhiteMaterial.hasPawnRookOrQueen() && !board.BlackMaterial.hasPawnRookOrQueen() &&
         board.WhiteMaterial.minors() + board.BlackMaterial.minors() < 2;
}

// As both protocols write moves.
std::string inLowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// The move that a protocol's text stands for; the null move for anything but a legal move in
// coordinates.
Move readReply(const Board& board, const std::string& text) {
  const Move move = parseMove(board, text);
  const bool exact = !move.isNull() && inLowerCase(moveToCoordinates(move)) == inLowerCase(text);
  return exact ? move : NULL_MOVE;
}

bool canMove(const Board& board) {
  return !legalMoves(board).empty();
}

void playRandomOpening(Board& board, std::mt19937& random) {
  for (;;) {
    setFen(board, random() % 4 == 0 ? VARIED_FENS[random() % 5] : START_FEN);
    const unsigned plies = random() % 9;
    for (unsigned ply = 0; ply < plies; ++ply) {
      const MoveList moves = legalMoves(board);
      if (moves.empty()) break;
      const Move move = parseMove(board, moveToCoordinates(moves[random() % moves.size()]));
      makeMove(board, move);
    }
    if (canMove(board)) return;
  }
}

}  // namespace

GameResult playGame(Player& white, Player& black, const GameClock& clock, std::mt19937& random) {
  Board board;
  playRandomOpening(board, random);
  const std::string fen = writeFen(board);
  setFen(board, fen);
  white.newGame(fen, WHITE, clock);
  black.newGame(fen, BLACK, clock);
  std::array<int, 2> left = {clock.baseMs, clock.baseMs};
  std::vector<std::string> moves;
  GameResult result;
  const auto end = [&](int score, const std::string& reason, bool isFault = false) {
    result.score = score;
    result.reason = reason;
    result.isFault = isFault;
  };

  while (result.reason.empty()) {
    const Color side = board.side;
    const int lost = side == WHITE ? -1 : 1;
    Player& player = side == WHITE ? white : black;
    if (!canMove(board)) {
      end(board.lastMove().isCheck() ? lost : 0, board.lastMove().isCheck() ? "mate" : "stalemate");
    } else if (board.reversiblePlies() >= 100) {
      end(0, "fifty moves");
    } else if (isRepeated(board)) {
      end(0, "repetition");
    } else if (isDeadDraw(board)) {
      end(0, "insufficient material");
    } else if (moves.size() >= MOST_PLIES) {
      end(0, "adjudicated as too long");
    } else {
      const std::optional<Reply> reply = player.think(moves, {left[side], left[~side]});
      if (!reply) {
        end(lost, player.hasDied() ? "crash" : "stall", true);
        break;
      }
      const int allowed = clock.moveTimeMs > 0 ? clock.moveTimeMs * 21 / 20 + 5 : left[side];
      const long lag = reply->elapsedMs - allowed;
      result.longestLagMs = std::max(result.longestLagMs, lag);
      if (lag > LAG_MS) {
        // Most of the lag, as waking up and finding memory take longer then, too.
        const bool starved = reply->starvedMs * 4 >= lag * 3;
        if (clock.moveTimeMs == 0 || !starved) {
          end(lost, starved ? "flag fell, without a processor" : "flag fell", !starved);
          result.record = "took " + std::to_string(reply->elapsedMs) + " of " +
                          std::to_string(allowed) + " ms, kept waiting for " +
                          std::to_string(reply->starvedMs) + " ms; ";
          break;
        }
        ++result.lateMoves;
      }
      left[side] = std::max(1, left[side] - static_cast<int>(reply->elapsedMs)) + clock.incrementMs;
      const Move move = readReply(board, reply->move);
      if (move.isNull()) {
        end(lost, "illegal move: " + reply->move, true);
        break;
      }
      makeMove(board, move);
      moves.push_back(inLowerCase(moveToCoordinates(move)));
      if (!reply->ponderMove.empty() && readReply(board, reply->ponderMove).isNull()) {
        end(lost, "illegal ponder move: " + reply->ponderMove, true);
      }
    }
  }
  white.endGame();
  black.endGame();
  result.plies = static_cast<int>(moves.size());
  result.record += fen;
  for (const std::string& move : moves) result.record += " " + move;
  return result;
}

}  // namespace ombrin
