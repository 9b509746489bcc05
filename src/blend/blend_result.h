#pragma once

// What the blend operations report. The host script compares against these exact
// values, so they never change.

namespace neq::blend {

constexpr float kBlendDone = 0.0f;
constexpr float kTargetUnreadable = -1760.0f; // the target scene cannot be opened for reading
constexpr float kBaseUnreadable = -2760.0f;   // the base scene cannot be opened for reading
constexpr float kBaseUnwritable = -3760.0f;   // the base scene cannot be written

} // namespace neq::blend
