#include "VolatileTransactionBuilderImplementation.h"
#include "../Envelop.h"
#include "../MessageTarget.h"
#include "../Mirroring/MirroringMessage.h"

namespace tov
{

VolatileTransactionBuilderImplementation::VolatileTransactionBuilderImplementation (ObjectSpace& space, VolatileTransactionBuilderImplementation* parentBuilder,
                                                                                    const MessageTarget& senderTarget)
    : TransactionBuilderImplementation (space),
      parentBuilder (parentBuilder),
      envelop (senderTarget.createEnvelopAsSender (nullptr, const_cast<MessageTarget*> (&senderTarget)))
{
}

VolatileTransactionBuilderImplementation::~VolatileTransactionBuilderImplementation()
{
    if (envelop != nullptr)
        envelop->deleteThis();
}

void VolatileTransactionBuilderImplementation::objectCreated (Object* object)
{
    if (parentBuilder != nullptr)
        parentBuilder->objectCreated (object);
    if (envelop != nullptr)
        envelop->addMessage (new MirroringMessage (*object));
}

void VolatileTransactionBuilderImplementation::objectChanged (Object* object)
{
    if (parentBuilder != nullptr)
        parentBuilder->objectChanged (object);
    changedObjects.insert (object);
}

void VolatileTransactionBuilderImplementation::objectPreDeleted (Object* object)
{
    if (parentBuilder != nullptr)
        parentBuilder->objectPreDeleted (object);
    changedObjects.erase (object);
}

bool VolatileTransactionBuilderImplementation::checkThatAllChangedObjectsAreChildOf (const Object& object) const
{
    for (auto* changed : changedObjects)
        if (! changed->isChildOf (&object, false))
            return false;
    return true;
}

Envelop* VolatileTransactionBuilderImplementation::takeFinishedEnvelop()
{
    auto* finished = envelop;
    envelop = nullptr;
    if (finished == nullptr)
        return nullptr;
    finished->reserveMessages (finished->getNumMessages() + changedObjects.size());
    for (auto* object : changedObjects)
        finished->addMessage (new MirroringMessage (*object));
    return finished;
}

} // namespace tov
