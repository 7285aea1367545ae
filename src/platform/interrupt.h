// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace texturon {

/// Lets a run end in order: after this, Ctrl-C and a request to terminate set a mark instead of ending the program. A
/// second Ctrl-C ends it at once. Nor does it end because nobody reads its output any more.
void CatchInterrupts();

/// Lets a write beyond a file-size limit fail as on a full disk, instead of ending the program in the middle of it.
/// Once, at the start of a program.
void LetLargeWritesFail();

/// Whether the mark is set. Safe from any thread.
bool Interrupted();

}  // namespace texturon
