#pragma once

#include "NetworkAddress.h"
#include "../Pointer/ObjectOwnedPointer.h"
#include "../Standard/Time.h"

namespace tov
{

/** What the last "Alife" packet heard from a server leaves behind: who sent it, as the socket
    saw the sender, when it was read, and the object it carried, rebuilt.

    How old aliveTime may grow before the server counts as gone is the application's choice.
*/
class LastNetworkServerFootprint : public Object
{
public:
    TOV_DECLARE_CLASS (LastNetworkServerFootprint, Object)

    NetworkAddress address;
    Time aliveTime;
    ObjectOwnedPointer information;

    const NetworkAddress& getAddress() const noexcept    { return address; }
    juce::Time getAliveTime() const noexcept             { return aliveTime.get(); }
    Object* getInformation() const noexcept              { return information.get(); }

    /** Takes a packet's content: the sender, the rebuilt object (owned from now on), and now as
        the alive time. */
    void set (const NetworkAddress& sender, Object* rebuiltInformation, bool notify = true);
};

} // namespace tov
