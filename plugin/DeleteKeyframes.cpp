#include "DeleteKeyframes.h"

namespace qlx {

namespace {

constexpr int32 kDeleteDialog = 165;

class DelKeyIsSelectionNonEmpty final : public SelectionMenuCallBack {};

class DelKeyTimelineCallback final : public IForEachTimeLineCallback {
 public:
  explicit DelKeyTimelineCallback(int32 inTime) : fTime(inTime) {}
  void MC_CALL Visit(ITimeLine* inTimeLine, void* /*inOther*/) override { inTimeLine->DeleteKeyAt(fTime); }

 private:
  int32 fTime;
};

class DeletionWork final : public KeyframeWork {
 public:
  explicit DeletionWork(I3DShScene* inScene) : fScene(inScene) {}
  void Work(ITimeLineOwner& inOwner) override {
    if (fScene) {
      SceneTime time;
      DelKeyTimelineCallback callback(fScene->GetCurrentTime(time));
      inOwner.ForEachTimeLine(&callback);
    }
  }

 private:
  I3DShScene* fScene;
};

}  // namespace

void DeleteKeyframesCommand::GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) {
  StoreMenuCallBack<DelKeyIsSelectionNonEmpty>(outCallBack);
}

MCResult DeleteKeyframesCommand::Prepare() {
  return fContext.Prepare("DeleteKeyframes", __LINE__);
}

bool DeleteKeyframesCommand::Do() {
  return RunCommand([&] {
    DeletionWork work(fContext.fScene.Get());
    RunInScope(fContext, kDeleteDialog, fScope, work);
  });
}

}  // namespace qlx
