// Commands of pages that print none but describe their parts: "Header ID SP Command SP Parameter CR" with
// what each part is, a list of names and a list of values. None of them is sure.
#pragma once

#include "manuals/pairing.h"

#include <vector>

namespace qdm {

// `findings` are those of the codes that stand on the page: names with their labels are taken from them, and
// what does not begin as the grammar says is doubted. The commands that were put together come behind them.
void ComposeByGrammar(const ManualPage& page, std::vector<Finding>& findings);

}  // namespace qdm
