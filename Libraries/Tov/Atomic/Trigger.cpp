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

} // namespace tov
