#pragma once

#include <juce_core/juce_core.h>
#include <memory>
#include <vector>

namespace tov
{

class Object;
class ObjectExporter;
class ObjectImporter;
class State;

/** The names of member variables from a root object down to one of its variables, as
    "track.gain". A leading "*" dereferences the pointers met on the way, a trailing "*"
    the variable reached last.
*/
class VariablePath
{
public:
    VariablePath() = default;

    using Names = std::vector<juce::String>;

    bool isEmpty() const noexcept                        { return getNames().empty(); }
    size_t size() const noexcept                         { return getNames().size(); }
    const juce::String& operator[] (size_t index) const  { return getNames()[index]; }
    const Names& getNames() const noexcept               { return names != nullptr ? *names : getNoNames(); }
    void addName (const juce::String& name)              { getNamesToChange().push_back (name); }
    bool isDereferencingPointers() const noexcept        { return dereferencingPointers; }
    bool isDereferencingLast() const noexcept            { return dereferencingLast; }

    void clear();
    void reserve (size_t numNames)                       { getNamesToChange().reserve (numNames); }

    /** Splits the text at the separators (quotes keep separators inside them) and appends the
        names; false, adding nothing, when a name is empty. */
    bool addChildPath (const juce::String& text, juce::StringRef separators = ".", juce::StringRef quotes = {});

    /** The names joined by ".", with the stars of the two flags. */
    juce::String toString() const;

    /** The object at the end of the path from root, or null with the reason in errorMessage.
        changed, when given, says whether the path crossed from an owner into a child that is
        not one of its member variables. */
    Object* getChildObject (Object* root, bool* changed = nullptr, juce::String* errorMessage = nullptr) const;
    /** Stores the names from the object's root down to it, and returns that root: the first
        object up the parents that is not embedded, or has no parent. Null, storing nothing,
        when an embedded object on the way has no signature. */
    Object* setFromChildObject (Object* object);
    /** The pointed object of an owned or weak pointer; any other object itself. */
    static Object* dereferenceIfPointer (Object* object);

    /** Replaces, in the state of the path's root object, the state of the variable that the path
        names by value. The nodes on the way are copied, not changed, since states are shared
        once handed on: root then points at the new tree. False, leaving root alone, when a name
        on the way is not a variable of its state, or the path dereferences pointers. */
    static bool setValueToChildState (const VariablePath& path, std::shared_ptr<State>& root, const std::shared_ptr<State>& value);

    /** Reads the strings of the variables from firstIndex on; false leaves the path as it was. */
    bool load (ObjectImporter& importer, size_t firstIndex, juce::StringRef separators = ".", juce::StringRef quotes = {});
    /** One unnamed string, the path's text. */
    void save (ObjectExporter& exporter) const;

    bool operator== (const VariablePath& other) const;
    bool operator!= (const VariablePath& other) const   { return ! operator== (other); }
    bool operator< (const VariablePath& other) const;

private:
    /** Shared by copies until one of them changes: addresses are copied into every message and
        pointer that carries them, and seldom changed. Null for no names. */
    std::shared_ptr<Names> names;
    bool dereferencingPointers = false;
    bool dereferencingLast = false;

    static const Names& getNoNames() noexcept;
    /** The names of this path alone, copied first when others share them. */
    Names& getNamesToChange();
};

} // namespace tov
