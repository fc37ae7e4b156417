#pragma once

namespace tarnby {

/// Gives up, for this process and for good, every right but to read its standard input, to write its standard output,
/// to have memory and to end: no file, no program, no thread, no other process and no network is within its reach any
/// more. False when the system cannot keep to that; nothing of a stranger's may be decoded then.
bool confine_to_pipes();

}  // namespace tarnby
