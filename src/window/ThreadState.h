#pragma once

namespace tolvane {

// Gives back what the C and C++ libraries of this module keep for the calling thread (two handles
// and some memory), as they do when a thread ends. For a thread that goes on without the module;
// should the module run there again, they make it anew. Does nothing while the thread handles an
// exception of the module, which is part of that state.
void EndThreadState() noexcept;

}  // namespace tolvane
