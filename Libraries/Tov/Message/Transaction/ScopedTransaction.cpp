#include "ScopedTransaction.h"
#include "TransactionBuilderImplementation.h"
#include "../../Core/ObjectSpace.h"
#include "../../Standard/ExecutionContext.h"

namespace tov
{

ScopedTransaction::ScopedTransaction (const juce::String& description, const Object& contextObject, bool deep)
    : context (ExecutionContext::get()), space (contextObject.getSpace())
{
    context.enter ("Transaction " + description);
    if (space == nullptr)
        return;
    builder = space->startTransaction (description, contextObject);
    store (contextObject, deep);
}

ScopedTransaction::~ScopedTransaction()
{
    if (builder != nullptr)
        space->finishTransaction (builder);
    context.leave();
}

void ScopedTransaction::addObjectCurrentValue (const Object& object)
{
    if (builder != nullptr)
        builder->addObjectCurrentValue (object);
}

void ScopedTransaction::addObjectWithUndoValue (const Object& object, const Object& undoValue)
{
    if (builder != nullptr)
        builder->addObjectWithUndoValue (object, undoValue);
}

void ScopedTransaction::store (const Object& object, bool deep)
{
    if (builder != nullptr)
        builder->store (object, deep, true);
}

void ScopedTransaction::flush()
{
    if (builder != nullptr)
        builder->flush();
}

} // namespace tov
