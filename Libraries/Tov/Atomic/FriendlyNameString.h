#pragma once

#include "String.h"
#include <memory>

namespace tov
{

/** A text that follows the friendly name of a target object: it changes when the target's name
    or anything the name depends on changes, and empties when the target goes away. */
class FriendlyNameString : public String
{
public:
    TOV_DECLARE_CLASS (FriendlyNameString, String)

    FriendlyNameString();
    FriendlyNameString (const FriendlyNameString& other);
    ~FriendlyNameString() override;

    Object* getTarget() const noexcept               { return target; }
    /** Follows the new target from now on and takes its name. */
    void setTarget (Object* newTarget, bool notify = true);
    /** The target's friendly name, or empty without a target. */
    void updateFriendlyName (bool notify = true);

private:
    class TargetView;
    Object* target = nullptr;
    std::unique_ptr<TargetView> view;

    void registerDependencies();
};

} // namespace tov
