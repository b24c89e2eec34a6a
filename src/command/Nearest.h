#pragma once

#include <string>
#include <vector>

namespace tolvane {

// The word that takes the fewest changed, added, left out or swapped letters; empty when every word
// would need more than a third of its letters changed.
std::string Nearest(const std::string& word, const std::vector<std::string>& words);

}  // namespace tolvane
