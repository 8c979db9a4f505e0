#include "ClassRegistry.h"
#include "AutoDeclaredSingletons.h"
#include "Class.h"
#include "ClassExpression.h"
#include "ClassGenerator.h"
#include <array>
#include <unordered_map>

namespace tov
{

static juce::CriticalSection& getCreationLock()
{
    static juce::CriticalSection lock;
    return lock;
}

static std::atomic<ClassRegistry*> registryInstance { nullptr };
static bool registryBeingCreated = false;

// Changes whenever a class may leave the registry or be replaced in it (and when a registry
// goes), so that what a thread remembers of the registry is dropped: see getRememberedClasses.
static std::atomic<uint64_t> registryChanges { 0 };

static void noteRegistryChange()
{
    registryChanges.fetch_add (1, std::memory_order_release);
}

// Every node read in asks the registry for its class, under the registry's lock: a thread
// remembers the classes found in its map, in a small direct-mapped table where a collision only
// costs the look-up again, for as long as nothing leaves the map. Plain data, so that it may be
// asked while the thread or the process ends.
struct RememberedClasses
{
    struct Entry
    {
        const ClassExpression* expression = nullptr;
        Class* foundClass = nullptr;
    };
    uint64_t changes = 0;
    std::array<Entry, 64> entries {};

    Entry& getEntry (const ClassExpression* expression)
    {
        return entries[(reinterpret_cast<uintptr_t> (expression) >> 4) % entries.size()];
    }
};

static RememberedClasses& getRememberedClasses()
{
    thread_local RememberedClasses remembered;
    // Read before the registry's map, so that a change made meanwhile drops what was found.
    const auto changes = registryChanges.load (std::memory_order_acquire);
    if (remembered.changes != changes)
    {
        remembered.entries.fill ({});
        remembered.changes = changes;
    }
    return remembered;
}

ClassRegistry* ClassRegistry::getInstance()
{
    if (auto* existing = registryInstance.load())
        return existing;

    const juce::ScopedLock lock (getCreationLock());
    if (auto* existing = registryInstance.load())
        return existing;
    if (registryBeingCreated)
        return nullptr;

    registryBeingCreated = true;
    registryInstance = new ClassRegistry();
    registryBeingCreated = false;
    return registryInstance.load();
}

ClassRegistry* ClassRegistry::getInstanceIfExists()
{
    return registryInstance.load();
}

void ClassRegistry::destroyInstance()
{
    const juce::ScopedLock lock (getCreationLock());
    delete registryInstance.exchange (nullptr);
    noteRegistryChange();
}

ClassRegistry::~ClassRegistry()
{
    rootLibrary.reset();
    autoDeclaredSingletons.clear();
}

//==============================================================================
void ClassRegistry::addClass (const ClassExpression* expression, Class* declaredClass)
{
    const juce::ScopedLock lock (classesLock);
    auto& slot = classesByExpression[expression];
    if (slot != nullptr && slot != declaredClass)
        noteRegistryChange();
    slot = declaredClass;
}

void ClassRegistry::removeClass (const ClassExpression* expression)
{
    const juce::ScopedLock lock (classesLock);
    classesByExpression.erase (expression);
    noteRegistryChange();
}

Class* ClassRegistry::resolve (const ClassExpression* expression, juce::String* error)
{
    if (expression == nullptr)
    {
        if (error != nullptr)
            *error = "no class expression";
        return nullptr;
    }

    auto& remembered = getRememberedClasses().getEntry (expression);
    if (remembered.expression == expression)
        return remembered.foundClass;

    const juce::ScopedLock lock (classesLock);
    if (expression->getType() == ClassExpression::classParameter)
        return resolveClassParameter (expression, error);

    auto found = classesByExpression.find (expression);
    if (found != classesByExpression.end())
    {
        remembered = { expression, found->second };
        return found->second;
    }

    if (expression->getType() == ClassExpression::templateApplication)
        return generateClass (expression, error);

    if (error != nullptr)
        *error = "Could not find class " + expression->toString().quoted();
    return nullptr;
}

Class* ClassRegistry::resolveClassParameter (const ClassExpression* expression, juce::String* error)
{
    auto* baseClass = resolve (expression->getClassParameterExpression(), error);
    if (baseClass == nullptr)
        return nullptr;
    baseClass->initializeClass();
    if (auto* parameter = baseClass->AttributesHost::getClassAttribute (expression->getIdentifier(), nullptr))
        return parameter;
    if (expression->getIdentifier() == "interpolationKey")
        return baseClass;
    if (error != nullptr)
        *error = "Could not find parameter " + expression->getIdentifier() + " in class "
               + expression->getClassParameterExpression()->toString();
    return nullptr;
}

// A generated class enters the map before it initialises, so that a member of
// type OwnedVector(X) inside X itself finds it instead of recursing.
Class* ClassRegistry::generateClass (const ClassExpression* expression, juce::String* error)
{
    const juce::ScopedLock lock (generatorsLock);
    auto entry = generators.find (expression->getIdentifier());
    if (entry == generators.end() || entry->second.generator == nullptr)
    {
        if (error != nullptr)
            *error = "Could not find class generator " + expression->getIdentifier().quoted();
        return nullptr;
    }

    juce::String reason;
    auto* generator = entry->second.generator;
    Class* generated = generator->create (expression->getClassGeneratorArguments(), reason);
    if (generated == nullptr)
    {
        if (error != nullptr)
            *error = reason;
        return nullptr;
    }

    generated->setLibrary (generator->getLibrary());
    generated->setExpression (expression);
    entry->second.generatedClasses.emplace_back (generated);
    addClass (expression, generated);
    generated->initializeClass();
    return generated;
}

//==============================================================================
void ClassRegistry::addGenerator (const juce::String& name, ClassGenerator* generator)
{
    const juce::ScopedLock lock (generatorsLock);
    generators[name].generator = generator;
}

void ClassRegistry::removeGenerator (const juce::String& name)
{
    const juce::ScopedLock classes (classesLock);
    const juce::ScopedLock lock (generatorsLock);
    auto entry = generators.find (name);
    if (entry == generators.end())
        return;
    for (auto& generated : entry->second.generatedClasses)
    {
        classesByExpression.erase (generated->getExpression());
        generated->deinitializeClass();
    }
    generators.erase (entry);
    noteRegistryChange();
}

void ClassRegistry::releaseGeneratedDefaultObjects (const juce::String& generatorName)
{
    const juce::ScopedLock lock (generatorsLock);
    auto entry = generators.find (generatorName);
    if (entry != generators.end())
        for (auto& generated : entry->second.generatedClasses)
            generated->releaseDefaultObject();
}

// Once only: a second tree built beside the first (a program started while the tree of a tool
// is there) registers the same process-wide singletons again.
void ClassRegistry::addAutoDeclaredSingletons (AutoDeclaredSingletons* singletons)
{
    for (auto& registered : autoDeclaredSingletons)
        if (registered.get() == singletons)
            return;
    autoDeclaredSingletons.emplace_back (singletons);
}

void ClassRegistry::removeAutoDeclaredSingletons (AutoDeclaredSingletons* singletons)
{
    for (auto it = autoDeclaredSingletons.begin(); it != autoDeclaredSingletons.end(); ++it)
        if (it->get() == singletons)
        {
            autoDeclaredSingletons.erase (it);
            return;
        }
}

void ClassRegistry::declareClass (Class* declaredClass)
{
    for (auto& singletons : autoDeclaredSingletons)
        singletons->declareClass (declaredClass);
}

void ClassRegistry::undeclareClass (Class* declaredClass)
{
    for (auto& singletons : autoDeclaredSingletons)
        singletons->undeclareClass (declaredClass);
}

//==============================================================================
Class* getClass (const juce::String& text)
{
    auto* registry = ClassRegistry::getInstanceIfExists();
    if (registry == nullptr)
        return nullptr;
    auto* expression = createClassExpressionFromString (text, nullptr);
    return expression != nullptr ? registry->resolve (expression, nullptr) : nullptr;
}

bool hasClass (const juce::String& text)
{
    return getClass (text) != nullptr;
}

// Every new OwnedVector<T> and OwnedPointer<T> asks this for its class. Expressions are
// interned for the life of the process, so a thread may remember which one an application
// gives, keyed by the template's name and the argument's expression, and skip making, hashing
// and finding the arguments' state; the class itself is still resolved, as classes come and go.
static const ClassExpression* getTemplateExpression (const juce::String& templateName, const ClassExpression* argument)
{
    struct Key
    {
        juce::String name;
        const ClassExpression* argument;
        bool operator== (const Key& other) const noexcept { return argument == other.argument && name == other.name; }
    };
    struct HashKey
    {
        size_t operator() (const Key& key) const noexcept
        {
            return std::hash<const void*>() (key.argument) ^ (size_t) key.name.hashCode64();
        }
    };
    thread_local std::unordered_map<Key, const ClassExpression*, HashKey> expressions;

    auto& expression = expressions[Key { templateName, argument }];
    if (expression == nullptr)
    {
        auto arguments = std::make_shared<State>();
        arguments->setClassExpressionValue (argument);
        expression = createTemplateClassExpression (templateName, arguments);
    }
    return expression;
}

Class* getTemplateClass (const juce::String& templateName, Class* argument)
{
    auto* registry = ClassRegistry::getInstanceIfExists();
    if (argument == nullptr || registry == nullptr)
        return nullptr;
    return registry->resolve (getTemplateExpression (templateName, argument->getExpression()), nullptr);
}

Class* getTemplateClass (const juce::String& templateName, std::initializer_list<std::pair<const char*, Class*>> arguments)
{
    auto* registry = ClassRegistry::getInstanceIfExists();
    if (registry == nullptr)
        return nullptr;
    auto object = std::make_shared<State>();
    for (auto& [name, argument] : arguments)
    {
        if (argument == nullptr)
            return nullptr;
        auto value = std::make_shared<State>();
        value->setClassValue (argument);
        object->addVariable (name, value);
    }
    return registry->resolve (createTemplateClassExpression (templateName, object), nullptr);
}

Class* ownedVectorClass (Class* targetClass)   { return getTemplateClass ("OwnedVector", targetClass); }
Class* mapClass (Class* keyClass, Class* valueClass) { return getTemplateClass ("Map", { { "key", keyClass }, { "value", valueClass } }); }
Class* optionClass (Class* valueClass)         { return getTemplateClass ("Option", valueClass); }
Class* selectionClass (Class* targetClass)     { return getTemplateClass ("Selection", targetClass); }
Class* ownedPointerClass (Class* targetClass)  { return getTemplateClass ("OwnedPointer", targetClass); }
Class* weakPointerClass (Class* targetClass)   { return getTemplateClass ("WeakPointer", targetClass); }

} // namespace tov
