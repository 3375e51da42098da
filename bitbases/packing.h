#pragma once

#include "full_table.h"
#include "table_file.h"

namespace bitbases {

// Compresses a table for its file, in the order of its words that makes it smallest, as far as a
// sample tells. Positions whose values a file need not have get those that make it small.
TableWriter pack(const FullTable& table, const TableSource& source, int longestChain, int threads);

}  // namespace bitbases
