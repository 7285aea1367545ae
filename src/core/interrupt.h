#pragma once

namespace texturon {

/// Lets a run end in order: after this, Ctrl-C and a request to terminate set a mark instead of ending the program. A
/// second Ctrl-C ends it at once.
void CatchInterrupts();

/// Whether the mark is set. Safe from any thread.
bool Interrupted();

}  // namespace texturon
