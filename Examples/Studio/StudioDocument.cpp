#include "StudioDocument.h"
#include <Tov/Core/Library.h>
#include <Tov/Message/Transaction/ScopedTransaction.h>

namespace studio
{

TOV_BEGIN_CLASS (BlendMode)
TOV_END_CLASS()

TOV_BEGIN_CLASS (SceneLayer)
    TOV_VARIABLE (opacity, { "default", "1.0" })
    TOV_VARIABLE (gain)
    TOV_VARIABLE (rotation)
    TOV_VARIABLE (duration, { "default", "10.0" })
    TOV_VARIABLE (tint)
    TOV_VARIABLE (blendMode)
    TOV_VARIABLE (mask)
TOV_END_CLASS()

TOV_BEGIN_CLASS (AddLayerMethod)
    TOV_VARIABLE (layerName)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Scene)
    TOV_VARIABLE (title, { "default", "\"Untitled\"" })
    TOV_VARIABLE (frameRate, { "default", "25.0" }, { "unit", "\"fps\"" })
    TOV_VARIABLE (layers)
    TOV_METHOD (addLayer, tov::String, AddLayerMethod)
TOV_END_CLASS()

TOV_BEGIN_CLASS (StudioAnnouncement)
    TOV_VARIABLE (name)
    TOV_VARIABLE (version)
    TOV_VARIABLE (port)
TOV_END_CLASS()

TOV_BEGIN_CLASS (StudioSettings)
    TOV_VARIABLE (sceneTitle, { "default", "\"Opening\"" })
    TOV_VARIABLE (numRuns)
    TOV_VARIABLE (numPreviewFrames, { "default", "100" })
TOV_END_CLASS()

//==============================================================================
tov::Object* AddLayerMethod::callOnThis (Object& object) const
{
    auto& scene = static_cast<Scene&> (object);
    const tov::ScopedTransaction transaction ("Add layer " + layerName.get(), scene.layers);
    auto* name = new tov::String();
    name->set (scene.addLayer (layerName.get()).name.get(), false);
    return name;
}

SceneLayer* Scene::findLayer (const juce::String& name) const
{
    for (size_t i = 0; i < layers.size(); ++i)
        if (layers.get (i)->name.get() == name)
            return layers.get (i);
    return nullptr;
}

SceneLayer& Scene::addLayer (const juce::String& name)
{
    auto* layer = static_cast<SceneLayer*> (SceneLayer::staticClass.createObject());
    layer->name.set (name, false);
    layer->tint.set (1.0, 1.0, 1.0, false);
    layers.append (layer);
    return *layer;
}

juce::String Scene::describe() const
{
    juce::StringArray names;
    for (size_t i = 0; i < layers.size(); ++i)
    {
        const auto& layer = *layers.get (i);
        auto* mask = layer.mask.get();
        names.add (layer.name.get() + " " + juce::String (juce::roundToInt (layer.opacity.get() * 100.0)) + " %" + (mask != nullptr ? " (mask " + mask->name.get() + ")" : juce::String()));
    }
    return "\"" + title.get() + "\": " + names.joinIntoString (", ");
}

void addStudioClasses (tov::NamedLibrary& library)
{
    library.addClass<BlendMode>();
    library.addClass<SceneLayer>();
    library.addClass<AddLayerMethod>();
    library.addClass<Scene>();
    library.addClass<StudioAnnouncement>();
    library.addClass<StudioSettings>();
}

} // namespace studio
