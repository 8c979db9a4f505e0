#include "ClassObject.h"
#include "../Core/ClassRegistry.h"

namespace tov
{

TOV_BEGIN_CLASS (ClassObject)
TOV_END_CLASS()

juce::String ClassObject::toString() const
{
    return value != nullptr ? value->getName() : juce::String ("< None >");
}

void ClassObject::save (ObjectExporter& exporter) const
{
    // No class leaves the node void, which loads back as none.
    if (value != nullptr)
        exporter.writeClass (value);
}

bool ClassObject::load (ObjectImporter& importer)
{
    switch (importer.getCurrentType())
    {
        case StateType::voidType:
            set (nullptr);
            return true;

        case StateType::stringType:
        {
            // A name that no class has gives none, as an empty one does.
            const juce::String name = importer.getCurrentState()->getString();
            set (name.isNotEmpty() ? tov::getClass (name) : nullptr);
            return true;
        }

        default:
        {
            Class* loaded = importer.readClass();
            if (loaded == nullptr && importer.getCurrentType() != StateType::classExpressionType)
                return false;
            set (loaded);
            return true;
        }
    }
}

juce::var ClassObject::saveToJson (uint32_t) const
{
    return toString();
}

bool ClassObject::loadFromJson (ExecutionContext&, const juce::var& json)
{
    const juce::String name = json.toString();
    if (name == "< None >")
    {
        set (nullptr);
        return true;
    }
    Class* loaded = tov::getClass (name);
    if (loaded == nullptr)
        return false;
    set (loaded);
    return true;
}

} // namespace tov
