// Tables that extraction has torn into columns: all labels, then all codes. A column of labels that is as
// long as the column of codes is taken; nothing is ever shifted to make it fit.
#pragma once

#include "manuals/pairing.h"

#include <vector>

namespace qdm {

// Gives the codes that stand in columns their labels. `findings` are those of the codes of `pieces`, in
// order.
void AlignColumns(const std::vector<Piece>& pieces, std::vector<Finding>& findings);

// How well columns of codes find labels: the higher, the better.
int ColumnFit(const std::vector<Piece>& pieces);

}  // namespace qdm
