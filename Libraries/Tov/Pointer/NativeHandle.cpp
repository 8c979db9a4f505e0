#include "NativeHandle.h"

namespace tov
{

TOV_BEGIN_CLASS (NativeHandle)
TOV_END_CLASS()

juce::String NativeHandle::toString() const
{
    return value == 0 ? juce::String ("null") : "Native Handle (" + juce::String::toHexString ((juce::int64) value) + ")";
}

void NativeHandle::copyTo (Object& target) const
{
    copyClassTo (target);
    if (auto* handle = dynamic_cast<NativeHandle*> (&target))
        handle->set (value);
}

void NativeHandle::save (ObjectExporter& exporter) const
{
    exporter.writeString (juce::String::toHexString ((juce::int64) value));
}

bool NativeHandle::load (ObjectImporter& importer)
{
    juce::String text;
    if (! importer.readString (text))
        return false;
    set ((uint64_t) text.getHexValue64());
    return true;
}

juce::var NativeHandle::saveToJson (uint32_t) const
{
    return juce::String::toHexString ((juce::int64) value);
}

bool NativeHandle::loadFromJson (ExecutionContext&, const juce::var& json)
{
    set ((uint64_t) json.toString().getHexValue64());
    return true;
}

} // namespace tov
