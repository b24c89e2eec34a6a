#pragma once

namespace tolvane {

// The four runs over the scales: which menu command of the list window starts the run, and what the
// run window does.
enum class TRunNumber : int { SaveMarked = 1, SaveAll = 2, DeleteMarked = 3, DeleteAll = 4 };

}  // namespace tolvane
