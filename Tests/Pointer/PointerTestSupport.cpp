#include "PointerTestSupport.h"

namespace tov::test
{

TOV_BEGIN_CLASS (Node)
    TOV_VARIABLE (name)
    TOV_VARIABLE (value)
    TOV_VARIABLE (child)
    TOV_VARIABLE (sibling)
    TOV_VARIABLE (link)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Stranger)
    TOV_VARIABLE (name)
TOV_END_CLASS()

NamedSpaces::Space& NamedSpaces::add (const juce::String& name)
{
    auto& space = spaces[name];
    space = std::make_unique<Space> (*this, name);
    return *space;
}

NamedSpaces::Space* NamedSpaces::find (const juce::String& name) const
{
    const auto found = spaces.find (name);
    return found != spaces.end() ? found->second.get() : nullptr;
}

Node* PointerTest::makeNode (const juce::String& name, int64_t value)
{
    ensurePointerTestLibrary();
    auto* node = static_cast<Node*> (Node::staticClass.createObject());
    node->name.set (name, false);
    node->value.set (value, false);
    return node;
}

NamedSpaces::Space& PointerTest::makeSpace (const juce::String& name, Object* root)
{
    auto& space = spaces.add (name);
    space.setRootObject (root, true);
    return space;
}

void ensurePointerTestLibrary()
{
    auto* root = Library::getRootLibrary();
    if (root == nullptr || root->getLibraryByName ("PointerTests") != nullptr)
        return;
    auto* library = new NamedLibrary ("PointerTests", {});
    library->addClass<Node>();
    library->addClass<Stranger>();
    root->addLibrary (library);
}

} // namespace tov::test
