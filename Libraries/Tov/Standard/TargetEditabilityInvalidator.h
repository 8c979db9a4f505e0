#pragma once

#include "ViewVariableDependenciesDeclarator.h"

namespace tov
{

class Attachable;

/** The declarator into which an Attachable's target declares what its editability depends on
    (a switch that greys a value out, a read-only owner): when one of those objects changes,
    the attachable is told whether its target is editable now.
*/
class TargetEditabilityInvalidator : public ViewVariableDependenciesDeclarator
{
public:
    explicit TargetEditabilityInvalidator (Attachable& owner) : owner (owner) {}

    void changedCallback (Object* object, Object* changedObject) override;

private:
    Attachable& owner;
};

} // namespace tov
