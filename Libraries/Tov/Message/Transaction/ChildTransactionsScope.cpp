#include "ChildTransactionsScope.h"
#include "../Peer.h"
#include "../../Core/ObjectSpaceProvider.h"

namespace tov
{

static thread_local ChildTransactionsScope* innermostScope = nullptr;

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
