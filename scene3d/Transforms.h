// Everything that places an element: rotations, transforms in both modes, the chain to the scene.
#pragma once

#include "DecomposedTransform.h"
#include "GlobalTreeTransform.h"
#include "TransformEuler.h"
#include "TransformOrder.h"
#include "TransformRotation.h"
#include "TreeChainTransform.h"
#include "TreeTransform.h"
