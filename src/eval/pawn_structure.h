#pragma once

#include "board/board.h"
#include "eval/pawn_hash.h"
#include "eval/phase_score.h"

namespace ombrin {

// The structure of one colour's pawns (doubled, isolated, backward, passed, candidates), positive
// being good for that colour. Fills `info` but for cover and rookOnFile.
PhaseScore pawnStructure(const Board& board, Color color, PawnSideInfo& info);

// All that follows from the pawns alone: fills the entry, but for its key.
void evaluatePawns(const Board& board, PawnEntry& entry);

}  // namespace ombrin
