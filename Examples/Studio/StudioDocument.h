#pragma once

// The document of the studio example: a scene of layers, each with numbers in units, a
// colour, an enumeration and a link to another layer; and the studio's configuration.
#include <Tov/Atomic/Atomic.h>
#include <Tov/Container/OwnedVector.h>
#include <Tov/Core/Method.h>
#include <Tov/Pointer/WeakPointer.h>
#include <Tov/Network/NetworkPort.h>
#include <Tov/Standard/Color.h>
#include <Tov/Standard/SoftwareVersion.h>

namespace studio
{

/** How a layer is drawn over the ones below it. */
class BlendMode : public tov::Enumeration
{
public:
    TOV_DECLARE_CLASS (BlendMode, Enumeration)
    TOV_ELEMENTS ((normal, 0),
                  (add, 1, description ("us-en", "Adds the colours")),
                  (multiply, 2),
                  (screen, 3))
};

/** One layer of a scene. ("Layer" names, in old documents, a class that loading translates.) */
class SceneLayer : public tov::NameableObject
{
public:
    TOV_DECLARE_CLASS (SceneLayer, NameableObject)

    tov::Percentage opacity;
    tov::Decibel gain;
    tov::Angle rotation;
    tov::Seconds duration;
    tov::Color tint;
    BlendMode blendMode;
    tov::WeakPointer<SceneLayer> mask;
};

/** Adds a layer of the given name to the scene it is called on, as one undoable edit; answers
    the name the layer got. */
class AddLayerMethod : public tov::Method
{
public:
    TOV_DECLARE_CLASS (AddLayerMethod, Method)
    AddLayerMethod()                                           { layerName.setParent (this); }
    explicit AddLayerMethod (const juce::String& name) : AddLayerMethod()  { layerName.set (name, false); }

    tov::String layerName;
    Object* callOnThis (Object& scene) const override;
};

class Scene : public tov::Object
{
public:
    TOV_DECLARE_CLASS (Scene, Object)

    tov::String title;
    tov::Real frameRate;
    tov::OwnedVector<SceneLayer> layers;

    SceneLayer* findLayer (const juce::String& name) const;
    /** A new layer at the top, fully opaque, white, lasting ten seconds. */
    SceneLayer& addLayer (const juce::String& name);
    /** "title: Background, Logo (mask Background), ..." */
    juce::String describe() const;
};

/** The studio's configuration file. */
class StudioSettings : public tov::Object
{
public:
    TOV_DECLARE_CLASS (StudioSettings, Object)

    tov::String sceneTitle;
    tov::Integer numRuns;
    tov::Integer numPreviewFrames;
};

/** The classes of the example, for the program's library. */
void addStudioClasses (tov::NamedLibrary& library);

} // namespace studio

namespace studio
{

/** What the editor's "Alife" packets carry: who it is, and the port of its server. */
class StudioAnnouncement : public tov::Object
{
public:
    TOV_DECLARE_CLASS (StudioAnnouncement, Object)

    tov::String name;
    tov::SoftwareVersion version;
    tov::NetworkPort port;
};

} // namespace studio
