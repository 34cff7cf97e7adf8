// Synthetic boards for scale tests and benchmarks.
#pragma once

#include <cstdint>
#include <memory>

#include "CPdb.h"

// A board of componentCount components on a grid, a third of them on the bottom:
// 0603 resistors, 0402 capacitors (two pins each), SOIC-8 ICs and 10-pin through-hole
// connectors, about four pins per component. Four copper layers (TOP, GND, PWR,
// BOTTOM) between silk and mask layers and an outline layer. Pins go to GND (one in
// twenty), VCC (one in twenty) or to signal nets of two or three pins; each signal net
// is routed pin to pin, with a via where it changes sides. GND and VCC have a plane
// each on their inner layer with a hole in the middle; every component has its
// reference on the silk of its side. The same count and seed give the same board
// on every platform.
std::unique_ptr<CPdb> GenerateBoard(int componentCount, uint32_t seed = 1);
