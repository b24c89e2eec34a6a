#pragma once

namespace tolvane::bench {

// Writes the articles into one virtual ETS over TCP and prints the time beside the sum of the
// pauses that the protocol asks for, which are made `shorter` times as short, and the processor
// time of the run's thread. Ends the program when the run fails.
void MeasureEtsRun(int articles, int shorter);

}  // namespace tolvane::bench
