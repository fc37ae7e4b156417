#pragma once

namespace tarnby::cli {

// What a terminal shows. One that says of itself that it is dumb knows no control sequences (terminfo(5)).

/// Whether lines that matter most may be set in bold on standard output: it is a terminal, not a dumb one, and nobody
/// has asked for plain text with the variable NO_COLOR.
bool shows_bold();

/// Whether a line on standard error can be written over.
bool rewrites_lines();

}  // namespace tarnby::cli
