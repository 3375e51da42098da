#pragma once

#include "full_table.h"
#include "table_file.h"

namespace bitbases {

// Compresses a table for its file. Positions whose values a file need not have get those that make
// it small.
void pack(const FullTable& table, const TableSource& source, int threads, TableWriter& writer);

}  // namespace bitbases
