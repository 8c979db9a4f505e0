#include "TransactionMakerObjectSpaceView.h"
#include "CompositeTransaction.h"
#include "CreateTransactionBuilderImplementation.h"
#include "History.h"
#include "VolatileTransactionBuilderImplementation.h"
#include "../Envelop.h"
#include "../MessageTarget.h"
#include "../../Core/ObjectSpace.h"
#include "../../Core/StateComparingObjectExporter.h"
#include "../../Core/StateObjectExporter.h"
#include "../../Standard/ExecutionContext.h"
#include "../../Standard/Service.h"
#include <algorithm>

namespace tov
{

TransactionMakerObjectSpaceView::TransactionMakerObjectSpaceView (ObjectSpace& space, MessageTarget& receiver, MessageTarget& sender)
    : ObjectSpaceView (space), receiverMessageTarget (&receiver), senderMessageTarget (&sender)
{
}

TransactionMakerObjectSpaceView::~TransactionMakerObjectSpaceView()
{
    for (auto* builder : transactionBuilders)
        delete builder;
}

//==============================================================================
TransactionBuilderImplementation* TransactionMakerObjectSpaceView::getTop() const
{
    return transactionBuilders.empty() ? nullptr : transactionBuilders.back();
}

void TransactionMakerObjectSpaceView::objectCreated (Object* object)
{
    if (auto* top = getTop())
        top->objectCreated (object);
}

void TransactionMakerObjectSpaceView::objectChanged (Object* object)
{
    if (auto* top = getTop())
        top->objectChanged (object);
}

void TransactionMakerObjectSpaceView::objectDestroyed (Object* object)
{
    if (auto* top = getTop())
        top->objectDestroyed (object);
}

void TransactionMakerObjectSpaceView::objectPreDeleted (Object* object)
{
    if (auto* top = getTop())
        top->objectPreDeleted (object);
}

//==============================================================================
std::shared_ptr<State> TransactionMakerObjectSpaceView::makeContextSnapshot (const Object& context, uint32_t flags)
{
    if (contextSnapshot == nullptr || contextSnapshotFlags != flags
         || ! StateComparingObjectExporter::matches (context, *contextSnapshot, flags, true, &contextSnapshotIdentifiers))
    {
        contextSnapshot = StateObjectExporter::make (context, flags, true);
        contextSnapshotFlags = flags;
        contextSnapshotIdentifiers.clear();
    }
    return contextSnapshot;
}

//==============================================================================
bool TransactionMakerObjectSpaceView::isInsideVolatileTransaction() const
{
    return findFirstVolatileBuilder() != nullptr;
}

bool TransactionMakerObjectSpaceView::isInsideNonVolatileTransaction() const
{
    return ! transactionBuilders.empty() && ! isInsideVolatileTransaction();
}

VolatileTransactionBuilderImplementation* TransactionMakerObjectSpaceView::findFirstVolatileBuilder() const
{
    for (auto* builder : transactionBuilders)
        if (auto* volatileBuilder = dynamic_cast<VolatileTransactionBuilderImplementation*> (builder))
            return volatileBuilder;
    return nullptr;
}

bool TransactionMakerObjectSpaceView::isInsideBypass() const
{
    return std::find (transactionBuilders.begin(), transactionBuilders.end(), nullptr) != transactionBuilders.end();
}

// The builder below stops hearing the stream: its pending change is taken now, before the
// new scope changes the same object again and leaves it with a state of the new scope's making.
void TransactionMakerObjectSpaceView::flushTop()
{
    if (auto* top = getTop())
        top->flush();
}

TransactionBuilderImplementation* TransactionMakerObjectSpaceView::push (TransactionBuilderImplementation* builder)
{
    flushTop();
    if (builder != nullptr && isInsideBypass())
    {
        inertBuilders.emplace_back (builder);
        transactionBuilders.push_back (nullptr);
        return builder;
    }
    transactionBuilders.push_back (builder);
    return builder;
}

//==============================================================================
TransactionBuilderImplementation* TransactionMakerObjectSpaceView::startTransaction (const juce::String& description, const Object& context)
{
    auto& space = *getObjectSpace();
    if (auto* parentBuilder = findFirstVolatileBuilder())
        return push (new VolatileTransactionBuilderImplementation (space, parentBuilder, *senderMessageTarget));

    History* history = nullptr;
    if (! isInsideNonVolatileTransaction())
        if (auto* service = Service::getCurrentService())
            if ((history = service->getHistory (context, &space)) != nullptr)
                history->setMessageTargets (*receiverMessageTarget, *senderMessageTarget);

    return push (new CreateTransactionBuilderImplementation (space, description, history));
}

TransactionBuilderImplementation* TransactionMakerObjectSpaceView::startVolatileTransaction()
{
    auto& space = *getObjectSpace();
    // Inside a normal scope a volatile one simply becomes part of it.
    if (isInsideNonVolatileTransaction())
        return push (new CreateTransactionBuilderImplementation (space, "Volatile", nullptr));
    return push (new VolatileTransactionBuilderImplementation (space, findFirstVolatileBuilder(), *senderMessageTarget));
}

void TransactionMakerObjectSpaceView::startBypassTransaction()
{
    flushTop();
    transactionBuilders.push_back (nullptr);
}

void TransactionMakerObjectSpaceView::storeValueForTransaction (const Object& object, bool deep, bool climb)
{
    for (auto* builder : transactionBuilders)
        if (dynamic_cast<CreateTransactionBuilderImplementation*> (builder) != nullptr)
            return builder->store (object, deep, climb);
    if (auto* volatileBuilder = findFirstVolatileBuilder())
        volatileBuilder->store (object, deep, climb);
}

//==============================================================================
void TransactionMakerObjectSpaceView::leave()
{
    if (transactionBuilders.empty())
        return;
    std::unique_ptr<TransactionBuilderImplementation> builder (transactionBuilders.back());
    transactionBuilders.pop_back();
    if (transactionBuilders.empty())
        inertBuilders.clear();
    if (builder == nullptr)
        return;

    if (auto* createBuilder = dynamic_cast<CreateTransactionBuilderImplementation*> (builder.get()))
        finish (*createBuilder);
    else if (auto* volatileBuilder = dynamic_cast<VolatileTransactionBuilderImplementation*> (builder.get()))
        finish (*volatileBuilder);
}

void TransactionMakerObjectSpaceView::finish (CreateTransactionBuilderImplementation& builder)
{
    auto* composite = builder.takeFinishedTransaction();
    if (composite == nullptr)
        return;

    if (auto* top = getTop())
    {
        if (auto* outer = dynamic_cast<CreateTransactionBuilderImplementation*> (top))
            return outer->appendTransaction (composite);
        reportBadStack (top);
        composite->deleteThis();
        return;
    }
    performOutermost (*composite, builder.getHistory());
}

void TransactionMakerObjectSpaceView::performOutermost (CompositeTransaction& composite, History* history)
{
    auto& space = *getObjectSpace();
    composite.callInitializeObject (&space, nullptr, history != nullptr ? static_cast<Object*> (&history->getTransactions()) : &space);

    // A sender target without identifier makes no envelop: the edit then reaches nobody.
    if (auto* envelop = senderMessageTarget->createEnvelopAsSender (nullptr, &composite))
    {
        composite.perform (*envelop);
        receiverMessageTarget->postEnvelop (envelop);
    }

    if (history != nullptr)
        return history->addTransaction (&composite);
    composite.callDeinitializeObject();
    composite.deleteThis();
}

void TransactionMakerObjectSpaceView::reportBadStack (TransactionBuilderImplementation* top) const
{
    auto& context = ExecutionContext::get();
    context.error ("fatal: TransactionMakerObjectSpaceView::leave get a bad transaction. Transactions size: "
                   + juce::String ((juce::int64) transactionBuilders.size()));
    context.error ("transaction back: " + juce::String ((juce::int64) (juce::pointer_sized_int) top));
    context.error ("transaction back type: " + juce::String (typeid (*top).name()));
}

void TransactionMakerObjectSpaceView::finish (VolatileTransactionBuilderImplementation& builder)
{
    if (auto* envelop = builder.takeFinishedEnvelop())
        receiverMessageTarget->postEnvelop (envelop);
}

} // namespace tov
