// Reading the values of accessors.
#include <algorithm>
#include <cstring>

#include "GltfModel.h"

namespace qlx::host {

namespace {

constexpr std::size_t kMostZeros = 1 << 24;  // components of an accessor that has no bytes

struct Layout {
  std::size_t fComponents = 0;     // of an element
  std::size_t fComponentSize = 0;  // bytes
  std::size_t fElementSize = 0;
  std::size_t fColumn = 0;      // components of a matrix column, all of them for other types
  std::size_t fColumnSize = 0;  // bytes, with padding
};

Layout LayoutOf(int inComponentType, int inType) {
  Layout layout;
  layout.fComponents = static_cast<std::size_t>(tinygltf::GetNumComponentsInType(static_cast<uint32>(inType)));
  layout.fComponentSize =
      static_cast<std::size_t>(tinygltf::GetComponentSizeInBytes(static_cast<uint32>(inComponentType)));
  layout.fColumn = layout.fComponents;
  layout.fColumnSize = layout.fComponents * layout.fComponentSize;
  layout.fElementSize = layout.fColumnSize;
  if (inType == TINYGLTF_TYPE_MAT2 || inType == TINYGLTF_TYPE_MAT3 || inType == TINYGLTF_TYPE_MAT4) {
    layout.fColumn = inType == TINYGLTF_TYPE_MAT2 ? 2 : (inType == TINYGLTF_TYPE_MAT3 ? 3 : 4);
    layout.fColumnSize = (layout.fColumn * layout.fComponentSize + 3) / 4 * 4;
    layout.fElementSize = layout.fColumn * layout.fColumnSize;
  }
  return layout;
}

template <class Number>
Number Load(const uint8* inBytes) {
  Number value;
  std::memcpy(&value, inBytes, sizeof value);
  return value;
}

template <class Integer>
real32 LoadInteger(const uint8* inBytes, bool inNormalized) {
  const auto value = static_cast<real64>(Load<Integer>(inBytes));
  const real64 scale = inNormalized ? static_cast<real64>(std::numeric_limits<Integer>::max()) : 1.0;
  return static_cast<real32>(std::max(value / scale, inNormalized ? -1.0 : value));
}

real32 LoadReal(const uint8* inBytes, int inComponentType, bool inNormalized) {
  switch (inComponentType) {
    case TINYGLTF_COMPONENT_TYPE_BYTE:
      return LoadInteger<int8>(inBytes, inNormalized);
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
      return LoadInteger<uint8>(inBytes, inNormalized);
    case TINYGLTF_COMPONENT_TYPE_SHORT:
      return LoadInteger<int16>(inBytes, inNormalized);
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT:
      return LoadInteger<uint16>(inBytes, inNormalized);
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT:
      return LoadInteger<uint32>(inBytes, inNormalized);
    default:
      return Load<real32>(inBytes);
  }
}

uint32 LoadWhole(const uint8* inBytes, int inComponentType) {
  switch (inComponentType) {
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
      return *inBytes;
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT:
      return Load<uint16>(inBytes);
    default:
      return Load<uint32>(inBytes);
  }
}

const tinygltf::Accessor& AccessorAt(const GltfModel& inModel, int inAccessor) {
  return inModel.fParts.accessors[static_cast<std::size_t>(inAccessor)];
}

// One component after another from elements that stand `inStride` bytes apart.
template <class Value, class LoadOne>
void LoadElements(const uint8* inBytes, std::size_t inStride, std::size_t inCount, const Layout& inLayout,
                  std::vector<Value>& ioValues, const LoadOne& inLoad) {
  for (std::size_t element = 0; element < inCount; ++element) {
    const uint8* start = inBytes + element * inStride;
    for (std::size_t i = 0; i < inLayout.fComponents; ++i) {
      ioValues.push_back(
          inLoad(start + i / inLayout.fColumn * inLayout.fColumnSize + i % inLayout.fColumn * inLayout.fComponentSize));
    }
  }
}

template <class Value, class LoadOne>
std::vector<Value> ReadAll(const GltfModel& inModel, const tinygltf::Accessor& inAccessor, const LoadOne& inLoad) {
  const Layout layout = LayoutOf(inAccessor.componentType, inAccessor.type);
  std::vector<Value> values;
  if (inAccessor.bufferView < 0) {
    values.resize(inAccessor.count * layout.fComponents);
  } else {
    const auto& view = inModel.fParts.bufferViews[static_cast<std::size_t>(inAccessor.bufferView)];
    values.reserve(inAccessor.count * layout.fComponents);
    LoadElements(inModel.GetViewBytes(inAccessor.bufferView)->data() + inAccessor.byteOffset,
                 view.byteStride == 0 ? layout.fElementSize : view.byteStride, inAccessor.count, layout, values,
                 inLoad);
  }
  if (!inAccessor.sparse.isSparse) {
    return values;
  }
  const auto& sparse = inAccessor.sparse;
  const auto count = static_cast<std::size_t>(sparse.count);
  std::vector<Value> replaced;
  LoadElements(inModel.GetViewBytes(sparse.values.bufferView)->data() + sparse.values.byteOffset, layout.fElementSize,
               count, layout, replaced, inLoad);
  const std::vector<uint32> places = ReadSparsePlaces(inModel, inAccessor);
  for (std::size_t i = 0; i < count; ++i) {
    std::copy_n(replaced.begin() + static_cast<std::ptrdiff_t>(i * layout.fComponents), layout.fComponents,
                values.begin() + static_cast<std::ptrdiff_t>(places[i] * layout.fComponents));
  }
  return values;
}

}  // namespace

std::size_t ElementSize(int inComponentType, int inType) {
  return LayoutOf(inComponentType, inType).fElementSize;
}

bool HasContent(const GltfModel& inModel, int inAccessor) {
  const tinygltf::Accessor& accessor = AccessorAt(inModel, inAccessor);
  const auto& sparse = accessor.sparse;
  if (sparse.isSparse &&
      (!inModel.GetViewBytes(sparse.indices.bufferView) || !inModel.GetViewBytes(sparse.values.bufferView))) {
    return false;
  }
  if (accessor.bufferView >= 0) {
    return inModel.GetViewBytes(accessor.bufferView).has_value();
  }
  return accessor.count <= kMostZeros / LayoutOf(accessor.componentType, accessor.type).fComponents;
}

std::vector<uint32> ReadSparsePlaces(const GltfModel& inModel, const tinygltf::Accessor& inAccessor) {
  const auto& indices = inAccessor.sparse.indices;
  const Layout layout = LayoutOf(indices.componentType, TINYGLTF_TYPE_SCALAR);
  std::vector<uint32> places;
  LoadElements(inModel.GetViewBytes(indices.bufferView)->data() + indices.byteOffset, layout.fElementSize,
               static_cast<std::size_t>(inAccessor.sparse.count), layout, places,
               [&](const uint8* inBytes) { return LoadWhole(inBytes, indices.componentType); });
  return places;
}

std::vector<real32> ReadReals(const GltfModel& inModel, int inAccessor) {
  const tinygltf::Accessor& accessor = AccessorAt(inModel, inAccessor);
  return ReadAll<real32>(inModel, accessor, [&](const uint8* inBytes) {
    return LoadReal(inBytes, accessor.componentType, accessor.normalized);
  });
}

std::vector<uint32> ReadWholes(const GltfModel& inModel, int inAccessor) {
  const tinygltf::Accessor& accessor = AccessorAt(inModel, inAccessor);
  return ReadAll<uint32>(inModel, accessor,
                         [&](const uint8* inBytes) { return LoadWhole(inBytes, accessor.componentType); });
}

}  // namespace qlx::host
