#pragma once

// Large data values are stored in pieces cut where their content says, not
// at fixed offsets, so that a month-long log which gains an entry at its end
// and loses one at its start changes only its first and last pieces: the
// cuts in between move with the bytes around them. Writing a value then
// writes the pieces it does not have yet, kilobytes instead of megabytes.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace sodam::pieces {

// No piece is shorter (but the last) or longer than these; cuts fall about
// every 12 KiB between them. A value no longer than `largest` is kept whole.
inline constexpr std::size_t smallest = 4 * 1024;
inline constexpr std::size_t largest = 64 * 1024;

// Where each piece ends, the last at `bytes.size()`; nothing for no bytes.
std::vector<std::size_t> cuts(std::span<const std::uint8_t> bytes);

// A 64-bit digest that names a piece among the pieces of one value. Two
// different pieces of a value meet the same digest with odds near 2^-64.
std::uint64_t digest(std::span<const std::uint8_t> bytes);

}  // namespace sodam::pieces
