// The layouts that cross the border between host and plug-in, the same on every target.
#include <cstddef>
#include <type_traits>

#include "Transforms.h"

namespace qlx {

struct TransformLayout {
  static_assert(std::is_standard_layout_v<TransformRotation> && std::is_trivially_copyable_v<TransformRotation>);
  static_assert(offsetof(TransformRotation, fOrder) == 0);
  static_assert(offsetof(TransformRotation, fIsMatrixPrimary) == 1);
  static_assert(offsetof(TransformRotation, fMatrix) == 4);
  static_assert(offsetof(TransformRotation, fEuler) == 40);
  static_assert(sizeof(TransformRotation) == 56);

  static_assert(std::is_standard_layout_v<TreeTransform> && std::is_trivially_copyable_v<TreeTransform>);
  static_assert(offsetof(TreeTransform, fMode) == 0);
  static_assert(offsetof(TreeTransform, fHotPoint) == 4);
  static_assert(offsetof(TreeTransform, fScalingAxes) == 16);
  static_assert(offsetof(TreeTransform, fRotation) == 52);
  static_assert(offsetof(TreeTransform, fPosition) == 108);
  static_assert(offsetof(TreeTransform, fUniformScale) == 120);
  static_assert(offsetof(TreeTransform, fScaling) == 124);
  static_assert(sizeof(TreeTransform) == 136);

  static_assert(std::is_standard_layout_v<TTreeChainTransform> && std::is_trivially_copyable_v<TTreeChainTransform>);
  static_assert(offsetof(TTreeChainTransform, fTransform) == 0);
  static_assert(offsetof(TTreeChainTransform, fPivot) == 136);
  static_assert(offsetof(TTreeChainTransform, fParentMatrix) == 148);
  static_assert(offsetof(TTreeChainTransform, fParentOffset) == 184);
  static_assert(sizeof(TTreeChainTransform) == 196);
};

}  // namespace qlx
