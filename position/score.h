#pragma once

// The scale of scores, the same for whoever gives, keeps or reads one: from the side to move's
// point of view, in the unit of value[], a pawn being 1000.

namespace tarvyle {

// No score lies beyond, on either side.
inline constexpr int kInfinity = 1000000;

// Minus ply: the side to move can capture the king, so the move before was illegal.
inline constexpr int kCaptureKing = kInfinity;

// Plus ply, of a side that is mated: what the capture of its king after any move would come to.
inline constexpr int kMated = 1 - kCaptureKing;

// Scores beyond this, on either side, are of mates; no evaluation comes near.
inline constexpr int kMateWindow = kInfinity - 100;

constexpr bool IsMating(int score) { return score > kMateWindow; }
constexpr bool IsMated(int score) { return score < -kMateWindow; }

}  // namespace tarvyle
