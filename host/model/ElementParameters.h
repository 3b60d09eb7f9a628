// The parameters of an element: its transform, as a tree of groups, and behind it a group for each set of values that
// is attached to it.
//
//   amet                      what an element has
//     TRAN                    its transform
//       OFFS  XCOO YCOO ZCOO  position, in scene units
//       ROTA  RotX RotY RotZ  rotation, radians
//       SCAL                  uniform scale
//       XYZ   ScaX ScaY ScaZ  scale along each axis
#pragma once

#include <memory>

#include "ElementChannel.h"
#include "Parameter.h"

namespace qlx::host {

class WorkLines;

class ElementParameters {
 public:
  explicit ElementParameters(Element& inElement);
  ~ElementParameters();

  ParameterGroup* GetRoot() const { return fRoot.Get(); }
  // What reads and writes of the parameters that somebody holds go through.
  void ListWorkMemory(WorkLines& ioLines) const;

 private:
  TMCCountedPtr<ParameterGroup> fRoot;
};

}  // namespace qlx::host
