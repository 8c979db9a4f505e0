#include "ChildTransactionsScope.h"
#include "../Peer.h"
#include "../../Core/ObjectSpaceProvider.h"
#include "../../Core/VariableAddress.h"
#include "../../Standard/ExecutionContext.h"

namespace tov
{

// Asked several times per child: read with the initial-exec model (one read through the thread
// pointer, eight bytes of static TLS) rather than through the loader on every use.
[[gnu::tls_model ("initial-exec")]] static thread_local ChildTransactionsScope* innermostScope = nullptr;

ChildTransactionsScope::ChildTransactionsScope (const Object& parent)
    : childrensParent (parent), enclosing (innermostScope)
{
    innermostScope = this;
}

ChildTransactionsScope::~ChildTransactionsScope()
{
    innermostScope = enclosing;
}

ChildTransactionsScope* ChildTransactionsScope::findFor (const Object& child)
{
    auto* scope = innermostScope;
    return scope != nullptr && child.getParent() == &scope->childrensParent ? scope : nullptr;
}

ObjectSpaceProvider* ChildTransactionsScope::getProviderAboveChildren()
{
    if (! providerFound)
    {
        provider = ObjectSpaceProvider::get (childrensParent, false);
        providerFound = true;
    }
    return provider;
}

// The children's addresses mostly copy one string for the name of their space: the kept copy
// holds its text, so the same text is the same name and no other string can have taken it.
ObjectSpace* ChildTransactionsScope::getSpaceAboveChildren (const VariableAddress& address)
{
    if (! spaceFound || address.getSpace().getCharPointer() != spaceName.getCharPointer())
    {
        space = address.getObjectSpaceFromProvider (getProviderAboveChildren());
        spaceName = address.getSpace();
        spaceFound = true;
    }
    return space;
}

ExecutionContext& ChildTransactionsScope::getExecutionContext()
{
    if (context == nullptr)
        context = &ExecutionContext::get();
    return *context;
}

// A child in a space finds its peer above the space, any other above the children's parent.
Peer* ChildTransactionsScope::getPeerOf (const Object& child)
{
    const auto* space = child.hasSpace() ? child.getSpace() : nullptr;
    if (! peerFound || space != peerSpace)
    {
        peer = Peer::get (child);
        peerSpace = space;
        peerFound = true;
    }
    return peer;
}

} // namespace tov
