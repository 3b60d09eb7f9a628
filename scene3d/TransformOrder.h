// The six rotation orders. An order names the axes in the sequence in which their rotations act on a vector: order 0
// turns about X, then Y, then Z, so its matrix is Rz * Ry * Rx.
//
//   Function               order out of 0 to 5
//   GetOrderAxes(order)    reports, answers X, Y, Z
//   GetMiddleIndex(order)  reports, answers 0
#pragma once

#include "MCAssert.h"

namespace qlx {

inline constexpr int32 kOrderCount = 6;

struct OrderAxes {
  int fAxes[3];  // 0 is X; the first one acts first

  constexpr int operator[](int inIndex) const { return fAxes[inIndex]; }
};

constexpr bool IsOrderValid(int32 inOrder) {
  return inOrder >= 0 && inOrder < kOrderCount;
}

// True for the orders whose axes are an odd permutation of X, Y, Z: seen in their own frame the angles change sign.
constexpr bool IsOrderOdd(int32 inOrder) {
  return inOrder == 1 || inOrder == 2 || inOrder == 4;
}

inline OrderAxes GetOrderAxes(int32 inOrder) {
  constexpr OrderAxes kAxes[kOrderCount] = {{{0, 1, 2}}, {{0, 2, 1}}, {{1, 0, 2}},
                                            {{1, 2, 0}}, {{2, 1, 0}}, {{2, 0, 1}}};
  return MC_ASSERT_TEXT(IsOrderValid(inOrder), "invalid joint order") ? kAxes[inOrder] : kAxes[0];
}

// The angle that the two Euler solutions of this module mirror. For orders 2 and 3 it is not the second axis of the
// order: scenes made with this system hold angles chosen by this table, so it stays as it is. What follows for those
// two orders stands at `SetNearestEuler`.
inline int GetMiddleIndex(int32 inOrder) {
  constexpr int kMiddle[kOrderCount] = {1, 2, 2, 0, 1, 0};
  return MC_ASSERT_TEXT(IsOrderValid(inOrder), "Should not be called !!!") ? kMiddle[inOrder] : 0;
}

}  // namespace qlx
