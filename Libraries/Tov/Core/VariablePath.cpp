#include "VariablePath.h"
#include "Object.h"
#include "ObjectExporter.h"
#include "ObjectImporter.h"
#include "../Pointer/ObjectOwnedPointer.h"
#include "../Pointer/ObjectWeakPointer.h"
#include <algorithm>
#include <tuple>

namespace tov
{

const VariablePath::Names& VariablePath::getNoNames() noexcept
{
    static const Names none;
    return none;
}

VariablePath::Names& VariablePath::getNamesToChange()
{
    if (names == nullptr || names.use_count() > 1)
        names = std::make_shared<Names> (getNames());
    return *names;
}

void VariablePath::clear()
{
    names.reset();
    dereferencingPointers = false;
    dereferencingLast = false;
}

bool VariablePath::addChildPath (const juce::String& text, juce::StringRef separators, juce::StringRef quotes)
{
    // Without separators a text names nothing; it can only ask for dereferencing.
    if (text.isEmpty() || separators.isEmpty())
    {
        if (text.isEmpty())
            return false;
        if (text.startsWithChar ('*'))
            dereferencingPointers = true;
        return true;
    }

    juce::StringArray tokens;
    tokens.addTokens (text, separators, quotes);
    for (auto& token : tokens)
        if (token.isEmpty())
            return false;

    for (auto token : tokens)
    {
        if (token.startsWithChar ('*'))
        {
            dereferencingPointers = true;
            token = token.trimCharactersAtStart ("*");
        }
        if (token.endsWithChar ('*'))
        {
            dereferencingLast = true;
            token = token.trimCharactersAtEnd ("*");
        }
        addName (token);
    }
    return true;
}

juce::String VariablePath::toString() const
{
    juce::String text = dereferencingPointers ? "*" : "";
    const auto& pathNames = getNames();
    for (size_t i = 0; i < pathNames.size(); ++i)
        text << (i > 0 ? "." : "") << pathNames[i];
    return dereferencingLast ? text + "*" : text;
}

Object* VariablePath::dereferenceIfPointer (Object* object)
{
    if (auto* owned = dynamic_cast<ObjectOwnedPointer*> (object))
        return owned->get();
    if (auto* weak = dynamic_cast<ObjectWeakPointer*> (object))
        return weak->get();
    return object;
}

Object* VariablePath::getChildObject (Object* root, bool* changed, juce::String* errorMessage) const
{
    // A step whose result is not a member of the object it came from leaves the pure member path.
    auto step = [changed] (Object* result, const Object* from)
    {
        if (changed != nullptr && (result == nullptr || result->getParent() != from))
            *changed = true;
        return result;
    };

    if (changed != nullptr)
        *changed = false;
    Object* current = root;
    const auto& pathNames = getNames();
    if (dereferencingPointers && ! pathNames.empty())
        current = step (dereferenceIfPointer (root), root);

    for (auto& name : pathNames)
    {
        if (dereferencingPointers && current != nullptr)
            current = step (dereferenceIfPointer (current), current);
        if (current == nullptr)
        {
            if (errorMessage != nullptr)
                *errorMessage = "Could not dereference variable " + name;
            return nullptr;
        }

        Object* from = current;
        current = current->getVariableByName (name);
        if (dereferencingLast && current != nullptr && &name == &pathNames.back())
            current = dereferenceIfPointer (current);
        step (current, from);
        if (current == nullptr)
        {
            if (errorMessage != nullptr)
                *errorMessage = "Could not find variable " + name;
            return nullptr;
        }
    }
    return current;
}

// Addresses made one after the other mostly have the same path (the "value" of one element
// after another): each thread shares the names it made last with the next equal path, so
// that only a new path allocates. The names are gathered as the signatures' own, by address,
// since copying a string counts its references, an atomic operation per name.
Object* VariablePath::setFromChildObject (Object* object)
{
    // Twice per edited number: read with the initial-exec model (through the thread pointer,
    // 40 bytes of static TLS) rather than through the loader.
    [[gnu::tls_model ("initial-exec")]] thread_local std::vector<const juce::String*> collected;
    [[gnu::tls_model ("initial-exec")]] thread_local std::shared_ptr<Names> lastMade;
    collected.clear();
    while (object->hasParent() && object->hasStaticAllocationFlag())
    {
        auto* signature = object->getSignature();
        if (signature == nullptr)
            return nullptr;
        collected.push_back (&signature->getName());
        object = object->getParent();
    }
    if (collected.empty())
    {
        names = nullptr;
        return object;
    }
    // Collected from the object up: the path reads them backwards.
    auto isLastMade = [&]
    {
        return lastMade != nullptr && lastMade->size() == collected.size()
            && std::equal (lastMade->begin(), lastMade->end(), collected.rbegin(),
                           [] (const juce::String& made, const juce::String* name) { return made == *name; });
    };
    if (! isLastMade())
    {
        lastMade = std::make_shared<Names>();
        for (auto name = collected.rbegin(); name != collected.rend(); ++name)
            lastMade->push_back (**name);
    }
    names = lastMade;
    return object;
}

//==============================================================================
// One level at a time: a copy of each node on the way, whose variable on the path is then the
// copy of the next node, and at the end the value itself.
static std::shared_ptr<State> copyWithChildState (const State& node, const VariablePath::Names& names, size_t level,
                                                  const std::shared_ptr<State>& value)
{
    if (node.getType() != StateType::variablesType)
        return nullptr;
    const int index = node.findVariable (names[level]);
    if (index < 0)
        return nullptr;
    auto child = level + 1 == names.size() ? value : copyWithChildState (*node.getVariableState ((size_t) index), names, level + 1, value);
    if (child == nullptr)
        return nullptr;
    auto copy = std::make_shared<State> (node);
    copy->setVariableState ((size_t) index, child);
    return copy;
}

bool VariablePath::setValueToChildState (const VariablePath& path, std::shared_ptr<State>& root, const std::shared_ptr<State>& value)
{
    if (root == nullptr || path.isEmpty() || path.dereferencingPointers || path.dereferencingLast)
        return false;
    auto copy = copyWithChildState (*root, path.getNames(), 0, value);
    if (copy == nullptr)
        return false;
    root = std::move (copy);
    return true;
}

//==============================================================================
bool VariablePath::load (ObjectImporter& importer, size_t firstIndex, juce::StringRef separators, juce::StringRef quotes)
{
    VariablePath loaded;
    for (size_t i = firstIndex; i < importer.getNumVariables(); ++i)
    {
        ObjectImporter::Scope scope (importer, i);
        juce::String text;
        if (! importer.readString (text) || ! loaded.addChildPath (text, separators, quotes))
            return false;
    }
    *this = std::move (loaded);
    return true;
}

void VariablePath::save (ObjectExporter& exporter) const
{
    exporter.saveVariable (juce::String(), toString());
}

bool VariablePath::operator== (const VariablePath& other) const
{
    return getNames() == other.getNames() && dereferencingPointers == other.dereferencingPointers
        && dereferencingLast == other.dereferencingLast;
}

bool VariablePath::operator< (const VariablePath& other) const
{
    return std::tie (getNames(), dereferencingPointers, dereferencingLast)
         < std::tie (other.getNames(), other.dereferencingPointers, other.dereferencingLast);
}

} // namespace tov
