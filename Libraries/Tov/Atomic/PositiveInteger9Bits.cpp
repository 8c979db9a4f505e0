#include "PositiveInteger9Bits.h"
#include "../Core/ObjectImporter.h"

namespace tov
{

TOV_BEGIN_CLASS (PositiveInteger9Bits, { "friendlyName", "\"Number (0 - 511)\"" }, { "maximum", "511" })
TOV_END_CLASS()

bool PositiveInteger9Bits::load (ObjectImporter& importer)
{
    if (importer.getCurrentType() == StateType::variablesType && importer.getNumVariables() == 2)
    {
        ObjectImporter::Scope scope (importer, "value");
        return scope.isOpen() && PositiveInteger::load (importer);
    }
    return PositiveInteger::load (importer);
}

} // namespace tov
