#include "ObjectExporter.h"
#include "Object.h"

namespace tov
{

void ObjectExporter::saveVariable (const VariableSignature& signature, const Object& variable)
{
    if (! signature.canBeSaved (hasFlag (exportTransientVariables)))
        return;
    enterVariable (signature.getName());
    save (variable, false);
    leaveVariable();
}

} // namespace tov
