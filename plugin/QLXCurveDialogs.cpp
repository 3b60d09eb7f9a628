#include "QLXCurveDialogs.h"

#include "PartAccess.h"
#include "PluginDialog.h"

namespace qlx {

namespace {

constexpr int32 kDecayDialog = 160;
constexpr int32 kGrowthDialog = 170;
constexpr int32 kOscillatorDialog = 180;

void EditFields(int32 inDialog, std::initializer_list<PartField> inFields) {
  PluginDialog dialog(inDialog);
  ShowFields(dialog.GetPart(), inFields);
  if (dialog.Run()) {
    TakeFields(dialog.GetPart(), inFields);
  }
}

}  // namespace

void EditDecay(QLXDecay& ioDecay) {
  EditFields(kDecayDialog, {{"dlin"_id, ioDecay.fDecayLinear},
                            {"dqua"_id, ioDecay.fDecayQuadratic},
                            {"dcub"_id, ioDecay.fDecayCubic},
                            {"dqut"_id, ioDecay.fDecayQuadraticOnly},
                            {"dcut"_id, ioDecay.fDecayCubicOnly},
                            {"dmax"_id, ioDecay.fDecayMax},
                            {"dmin"_id, ioDecay.fDecayMin}});
}

void EditGrowth(QLXGrowth& ioGrowth) {
  EditFields(kGrowthDialog, {{"glin"_id, ioGrowth.fGrowLinear},
                             {"gqua"_id, ioGrowth.fGrowQuadratic},
                             {"gcub"_id, ioGrowth.fGrowCubic},
                             {"gqut"_id, ioGrowth.fGrowQuadraticOnly},
                             {"gcut"_id, ioGrowth.fGrowCubicOnly},
                             {"gmax"_id, ioGrowth.fGrowMax},
                             {"gmin"_id, ioGrowth.fGrowMin}});
}

void EditOscillator(QLXOscillator& ioOscillator) {
  EditFields(kOscillatorDialog, {{"osin"_id, ioOscillator.fOscillatorSine},
                                 {"ocos"_id, ioOscillator.fOscillatorCosine},
                                 {"opho"_id, ioOscillator.fOscillatorPhase},
                                 {"osca"_id, ioOscillator.fOscillatorScale},
                                 {"omax"_id, ioOscillator.fOscillatorMax},
                                 {"omin"_id, ioOscillator.fOscillatorMin},
                                 {"ospd"_id, ioOscillator.fOscillatorSpeed}});
}

}  // namespace qlx
