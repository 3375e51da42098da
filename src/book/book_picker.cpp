#include "book/book_picker.h"

#include <algorithm>
#include <cstdlib>

#include "board/notation.h"

namespace ombrin {

Move BookPicker::pick() {
  return pick(std::rand() / (RAND_MAX + 1.0));
}

Move BookPicker::pick(double drawn) {
  double sum = 0;
  for (const Choice& choice : choices()) {
    sum += choice.probability;
    if (drawn <= sum) return choice.move;
  }
  return NULL_MOVE;
}

std::vector<BookPicker::Choice> BookPicker::choices() {
  const Board& board = book_.board();
  if (settings_.maxply != 0 && static_cast<std::int64_t>(board.gamePly()) > settings_.maxply) {
    return {};
  }
  const int count = book_.readMoves();
  if (count == 0) return {};
  std::array<double, BookFile::MAX_MOVES_READ> probabilities;
  weigh(count, probabilities, board.side);
  std::vector<Choice> found;
  for (int index = 0; index < count; ++index) {
    if (probabilities[index] == 0) continue;
    found.push_back({parseMove(board, moveText(book_.move(index + 1))), probabilities[index]});
  }
  return found;
}

void BookPicker::weigh(int count, std::span<double> probabilities, Color side) {
  records_.fill({});
  const std::span<const BookEntry> moves = book_.moves(count);
  const std::span records = std::span(records_).first(moves.size());
  weighMoves(moves, records, side, settings_, {.elo = book_.hasElo(), .score = book_.hasScore()});
  std::ranges::transform(records, probabilities.begin(), &PickRecord::probability);
}

}  // namespace ombrin
