#include "RenderPreviewTask.h"
#include <Tov/Standard/Profiler/ProfilerScope.h>

namespace studio
{

TOV_BEGIN_CLASS (RenderPreviewTask)
TOV_END_CLASS()

RenderPreviewTask::RenderPreviewTask (const Scene* s, int frames) : Task ("Render preview"), scene (s), numFrames (frames) {}

bool RenderPreviewTask::updateTask (double& progression, juce::String& text)
{
    const tov::ProfilerScope scope ("RenderFrame");
    const double time = numRendered / scene->frameRate.get();
    double light = 0.0;
    for (size_t i = 0; i < scene->layers.size(); ++i)
        if (time < scene->layers.get (i)->duration.get())
            light += scene->layers.get (i)->opacity.get();
    totalLight += light;
    ++numRendered;
    progression = numRendered / (double) numFrames;
    text = "Frame " + juce::String (numRendered) + " of " + juce::String (numFrames);
    return numRendered < numFrames;
}

} // namespace studio
