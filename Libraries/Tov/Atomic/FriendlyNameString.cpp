#include "FriendlyNameString.h"
#include "../Core/View.h"

namespace tov
{

TOV_BEGIN_CLASS (FriendlyNameString)
TOV_END_CLASS()

/** Watches the target and what its name depends on; it is the string's weak pointer and its
    dependency declarator at once. */
class FriendlyNameString::TargetView : public View, public VariableDependenciesDeclarator
{
public:
    explicit TargetView (FriendlyNameString& owner) : owner (owner) {}

    void add (Object* dependency) override           { attachObject (dependency); }

    void changedCallback (Object*, Object*) override { owner.updateFriendlyName(); }

    // A dependency is usually a part of the target, and goes first when the target goes: it is
    // half destroyed here, so the name is not asked for again until the target says so.
    void deletedCallback (Object* object) override
    {
        if (object == owner.target)
            owner.setTarget (nullptr);
        else
            detachObject (object);
    }

private:
    FriendlyNameString& owner;
};

FriendlyNameString::FriendlyNameString()
    : view (std::make_unique<TargetView> (*this))
{
}

// A copy takes the text: following a target is a relation of the original only.
FriendlyNameString::FriendlyNameString (const FriendlyNameString& other)
    : String (other), view (std::make_unique<TargetView> (*this))
{
}

FriendlyNameString::~FriendlyNameString()
{
    view->detachAllObjects();
}

void FriendlyNameString::setTarget (Object* newTarget, bool notify)
{
    target = newTarget;
    registerDependencies();
    updateFriendlyName (notify);
}

void FriendlyNameString::registerDependencies()
{
    view->detachAllObjects();
    if (target == nullptr)
        return;
    view->attachObject (target);
    target->getFriendlyNameDependencies (*view);
}

void FriendlyNameString::updateFriendlyName (bool notify)
{
    set (target != nullptr ? target->getFriendlyName() : juce::String(), notify);
}

} // namespace tov
