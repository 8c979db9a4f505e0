#include "Trigger.h"

namespace tov
{

TOV_BEGIN_CLASS (Trigger, { "learnable", "true" })
TOV_END_CLASS()

void Trigger::save (ObjectExporter& exporter) const
{
    if (! exporter.hasFlag (exportWithoutDefaults))
        ValueObject::save (exporter);
}

bool Trigger::load (ObjectImporter& importer)
{
    return importer.getCurrentType() == StateType::voidType || ValueObject::load (importer);
}

juce::var Trigger::saveToJson (uint32_t flags) const
{
    if ((flags & exportWithoutDefaults) != 0)
        return {};
    return (juce::int64) value;
}

bool Trigger::loadFromJson (ExecutionContext&, const juce::var& json)
{
    if (! json.isInt64())
        return false;
    setCount ((int64_t) (juce::int64) json);
    return true;
}

} // namespace tov
