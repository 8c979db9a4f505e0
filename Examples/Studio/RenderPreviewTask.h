#pragma once

#include "StudioDocument.h"
#include <Tov/Standard/Task.h>

namespace studio
{

/** Renders a preview of the scene, a frame per step: each frame's light is the sum of the
    layers' opacities, each taken while the frame lies within the layer's duration. */
class RenderPreviewTask : public tov::Task
{
public:
    TOV_DECLARE_CLASS (RenderPreviewTask, Task)

    explicit RenderPreviewTask (const Scene* scene = nullptr, int numFrames = 100);

    /** The mean light of the frames rendered so far. */
    double getMeanLight() const noexcept        { return numRendered > 0 ? totalLight / numRendered : 0.0; }

protected:
    bool updateTask (double& progression, juce::String& text) override;

private:
    const Scene* scene;
    int numFrames, numRendered = 0;
    double totalLight = 0.0;
};

} // namespace studio
