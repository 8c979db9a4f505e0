#include "Trigger.h"
#include "../Core/ObjectExporter.h"
#include "../Core/ObjectImporter.h"

namespace tov
{

TOV_BEGIN_CLASS (Trigger, { "learnable", "true" })
TOV_END_CLASS()

void Trigger::trig()
{
    ++count;
    changed();
}

void Trigger::setCount (int64_t newCount, bool notify)
{
    if (newCount == count)
        return;
    count = newCount;
    if (notify)
        changed();
}

bool Trigger::equalsSameClass (const Object& other) const
{
    return count == static_cast<const Trigger&> (other).count;
}

void Trigger::copyTo (Object& target) const
{
    copyClassTo (target);
    if (auto* trigger = dynamic_cast<Trigger*> (&target))
        trigger->count = count;
}

void Trigger::save (ObjectExporter& exporter) const
{
    if (! exporter.hasFlag (exportWithoutDefaults))
        exporter.writeInteger (count);
}

bool Trigger::load (ObjectImporter& importer)
{
    if (importer.getCurrentType() == StateType::voidType)
        return true;
    int64_t newCount = 0;
    if (! importer.readInteger (newCount))
        return false;
    setCount (newCount);
    return true;
}

} // namespace tov
