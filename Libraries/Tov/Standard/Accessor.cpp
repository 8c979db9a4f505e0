#include "Accessor.h"
#include "../Message/Transaction/DefaultTemporalTransaction.h"
#include "../Message/Transaction/ScopedTransaction.h"
#include "../Message/Transaction/ScopedVolatileTransaction.h"
#include "../Core/ObjectConverters.h"
#include "ExecutionContext.h"
#include "Service.h"

namespace tov
{

TOV_BEGIN_CLASS (Accessor)
TOV_END_CLASS()

Accessor* Accessor::getAccessor (Object& object)
{
    if (auto* own = object.getContextVariableByNameAndClass ("accessor", &Accessor::staticClass))
        return static_cast<Accessor*> (own);
    auto* service = Service::getCurrentService();
    return service != nullptr ? &service->getDefaultAccessor() : nullptr;
}

TemporalTransaction* Accessor::createTemporalTransaction (Object&) const
{
    return new DefaultTemporalTransaction();
}

void Accessor::convertValue (const Object& value, Object& target)
{
    if (value.getClass() != target.getClass())
    {
        auto* converters = ObjectConverters::getInstanceWithoutCreating();
        if (auto* converter = converters != nullptr ? converters->getFirstConverter (value, target.getClass()) : nullptr)
            value.convertTo (ExecutionContext::get(), target, converter);
        else
            value.convertToObject (target);
        return;
    }
    if (value.equals (target))
        return;
    value.copyTo (target);
    target.changed();
}

void Accessor::setTargetValue (Object& target, const Object& value, const juce::String& description,
                               const TemporalTransaction* temporalTransaction) const
{
    if (! target.isEditable())
        return;
    if (description.isEmpty())
    {
        ScopedVolatileTransaction transaction (target);
        convertValue (value, target);
        return;
    }

    auto* defaultTransaction = dynamic_cast<const DefaultTemporalTransaction*> (temporalTransaction);
    const Object* undoValue = defaultTransaction != nullptr ? defaultTransaction->getUndoValue() : nullptr;
    const bool temporal = temporalTransaction != nullptr;
    setTargetBeforeTransaction (target, value, temporal, undoValue);
    ScopedTransaction transaction (description, target);
    setTargetInsideTransaction (transaction, target, value, temporal, undoValue);
}

bool Accessor::hasConstraints (const Object& target)
{
    auto* parent = target.getParent();
    return parent != nullptr && parent->hasVariableConstraints (&target);
}

void Accessor::setTargetBeforeTransaction (Object& target, const Object& value, bool temporal, const Object* undoValue)
{
    if (! temporal)
        return;
    if (! hasConstraints (target))
    {
        convertValue (value, target);
    }
    else if (undoValue != nullptr)
    {
        ScopedVolatileTransaction transaction (target);
        convertValue (*undoValue, target);
    }
}

void Accessor::setTargetInsideTransaction (ScopedTransaction& transaction, Object& target, const Object& value,
                                           bool temporal, const Object* undoValue)
{
    if (temporal && ! hasConstraints (target))
    {
        if (undoValue != nullptr)
            transaction.addObjectWithUndoValue (target, *undoValue);
        else
            transaction.addObjectCurrentValue (target);
        return;
    }
    transaction.store (target, false);
    convertValue (value, target);
}

} // namespace tov
