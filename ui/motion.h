#pragma once

/// How long things move. A person can ask their desktop for less motion; then nothing moves at all.
namespace tarnby::motion {

inline constexpr int fade_ms = 100;    // a line of text that changes
inline constexpr int push_ms = 300;    // a number that changes
inline constexpr int glide_ms = 600;   // the background at a screen change; also charts and bars
inline constexpr int pulse_ms = 2400;  // one ring from the middle to its end

/// Whether every animation is to become a plain change. Running ones end with the next frame.
bool reduced();
void set_reduced(bool reduced);

}  // namespace tarnby::motion
