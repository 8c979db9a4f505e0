#pragma once

#include "ObjectSelection.h"
#include "../Core/ClassRegistry.h"

namespace tov
{

/** A selection of T, of class "Selection(T)": the typed front of ObjectSelection.

        Selection<Layer> chosen;
        chosen.insert (layer);
        for (size_t i = 0; i < chosen.size(); ++i)
            if (auto* member = chosen.get (i)) ...
*/
template <class T>
class Selection : public ObjectSelection
{
public:
    Selection() = default;

    T* get (size_t index) const                      { return static_cast<T*> (ObjectSelection::get (index)); }
    T* front()                                       { return static_cast<T*> (ObjectSelection::front()); }
    T* back()                                        { return static_cast<T*> (ObjectSelection::back()); }
    T* getSingleton()                                { return static_cast<T*> (ObjectSelection::getSingleton()); }

    using ObjectSelection::insert;
    void insert (T* object, bool notify = true, bool unique = true, uint32_t position = append)
    {
        ObjectSelection::insert (static_cast<Object*> (object), notify, unique, position);
    }
    void setSingleton (T* object, bool notify = true)  { ObjectSelection::setSingleton (object, notify); }

    juce::String getClassName() const override       { return "Selection(" + classOf<T>()->getName() + ")"; }
    /** "Selection(T)", made when first named. */
    static Class* lookUpTemplateClass()              { return selectionClass (classOf<T>()); }

protected:
    Class* lookUpClass() const override              { return lookUpTemplateClass(); }
};

} // namespace tov
