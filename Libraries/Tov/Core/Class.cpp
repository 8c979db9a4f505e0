#include "Class.h"
#include "ClassExpression.h"
#include "ClassRegistry.h"
#include "Method.h"
#include "../Standard/ExecutionContext.h"
#include <juce_cryptography/juce_cryptography.h>
#include <cxxabi.h>

namespace tov
{

TOV_BEGIN_CLASS (Class)
TOV_END_CLASS()

Class::~Class()
{
    delete defaultObject.load();
}

//==============================================================================
void Class::initializeInstance (Object* object)
{
    if (baseClass != nullptr)
        baseClass->initializeInstance (object);
}

Object* Class::getMemberVariable (Object* object, size_t index) const
{
    return baseClass != nullptr ? baseClass->getMemberVariable (object, index) : nullptr;
}

Class* Class::getMethodClass (size_t index) const
{
    return baseClass != nullptr ? baseClass->getMethodClass (index) : nullptr;
}

std::shared_ptr<State> Class::createAttribute (ExecutionContext& context, const juce::String& text, const juce::String& sourceName)
{
    return State::createFromStateString (context, text, sourceName);
}

//==============================================================================
void Class::initializeClass()
{
    if (initialized)
        return;
    initialized = true;

    juce::String errors;
    ToStringExecutionContext context (errors);
    declareAttributes (context);
    baseClass = declareBaseClass();

    if (baseClass != nullptr)
    {
        // Inherited attributes keep their places in front; own values win.
        const StateMap own = getAttributes();
        if (! baseClass->isInitialized())
            baseClass->initializeClass();
        setAttributes (baseClass->getAttributes());
        appendAttributes (own);
        inheritMembersFromBaseClass();
    }

    errors.clear();
    declareMemberVariables (context);
    declareMethods (context);

    if (auto* registry = ClassRegistry::getInstanceIfExists())
        registry->declareClass (this);
}

void Class::inheritMembersFromBaseClass()
{
    // Copies, so that a derived class may change an inherited variable's attributes.
    baseClassNumMemberVariables = baseClass->getNumMemberVariables();
    memberVariables.clear();
    for (auto& signature : baseClass->memberVariables)
        memberVariables.push_back (std::make_shared<VariableSignature> (*signature));

    baseClassNumMethods = baseClass->getNumMethods();
    methods.clear();
    for (auto& signature : baseClass->methods)
        methods.push_back (std::make_shared<MethodSignature> (*signature));
}

void Class::deinitializeClass()
{
    if (! initialized)
        return;
    releaseDefaultObject();
    if (auto* registry = ClassRegistry::getInstanceIfExists())
        registry->undeclareClass (this);
    initialized = false;
    memberVariables.clear();
    methods.clear();
    baseClassNumMemberVariables = 0;
    baseClassNumMethods = 0;
    clearAttributes();
    {
        const juce::ScopedLock lock (relatedClassesLock);
        relatedClasses.clear();
    }
    {
        const juce::ScopedLock lock (friendlyNameLock);
        friendlyName.clear();
    }
    baseClass = nullptr;
}

//==============================================================================
// Names in paths and addresses are mostly the signatures' own strings: the same text is the
// same name without reading it.
template <class Signatures>
static int findSignature (const Signatures& signatures, juce::StringRef name)
{
    for (size_t i = 0; i < signatures.size(); ++i)
    {
        const auto& signatureName = signatures[i]->getName();
        if (signatureName.getCharPointer() == name.text || signatureName == name)
            return (int) i;
    }
    return -1;
}

int Class::findMemberVariable (juce::StringRef name) const
{
    return findSignature (memberVariables, name);
}

VariableSignature* Class::findMemberVariableSignature (juce::StringRef name) const
{
    const int index = findMemberVariable (name);
    return index >= 0 ? memberVariables[(size_t) index].get() : nullptr;
}

int Class::findMethod (juce::StringRef name) const
{
    return findSignature (methods, name);
}

MethodSignature* Class::findMethodSignature (juce::StringRef name) const
{
    const int index = findMethod (name);
    return index >= 0 ? methods[(size_t) index].get() : nullptr;
}

template <class Signature>
static std::shared_ptr<Signature> makeSignature (Class* valueClass, const juce::String& name, bool readOnly,
                                                 const Class::Attributes& attributes)
{
    auto signature = std::make_shared<Signature> (valueClass, name, readOnly);
    for (auto& attribute : attributes)
        signature->setAttribute (attribute.first, attribute.second);
    return signature;
}

// An unknown class is reported and replaced by Void, so that the indices of later members stay right.
static Class* resolveMemberClass (const Class& owner, ExecutionContext& context, const juce::String& className)
{
    if (auto* resolved = owner.getClassRelativeToThis (className))
        return resolved;
    context.error ("Could not parse class name: " + className + " (in " + owner.getName() + ")");
    return tov::getClass ("Void");
}

void Class::addMemberVariable (ExecutionContext& context, const juce::String& className, const juce::String& name,
                               bool readOnly, const Attributes& attributes)
{
    addMemberVariable (resolveMemberClass (*this, context, className), name, readOnly, attributes);
}

void Class::addMemberVariable (Class* valueClass, const juce::String& name, bool readOnly, const Attributes& attributes)
{
    memberVariables.push_back (makeSignature<VariableSignature> (valueClass, name, readOnly, attributes));
}

void Class::addMethod (ExecutionContext& context, const juce::String& className, const juce::String& name,
                       bool readOnly, const Attributes& attributes)
{
    addMethod (resolveMemberClass (*this, context, className), name, readOnly, attributes);
}

void Class::addMethod (Class* resultClass, const juce::String& name, bool readOnly, const Attributes& attributes)
{
    methods.push_back (makeSignature<MethodSignature> (resultClass, name, readOnly, attributes));
}

template <class Signatures>
static void importSignatures (Signatures& target, const Signatures& source, size_t firstIndex, int count)
{
    const size_t end = count < 0 ? source.size() : std::min (source.size(), firstIndex + (size_t) count);
    for (size_t i = firstIndex; i < end; ++i)
        target.push_back (source[i]);
}

void Class::importMemberVariables (const juce::String& className, size_t firstIndex, int count)
{
    if (auto* source = getClassRelativeToThis (className))
    {
        source->initializeClass();
        importSignatures (memberVariables, source->memberVariables, firstIndex, count);
    }
}

void Class::importMethods (const juce::String& className, size_t firstIndex, int count)
{
    if (auto* source = getClassRelativeToThis (className))
    {
        source->initializeClass();
        importSignatures (methods, source->methods, firstIndex, count);
    }
}

void Class::setVariableAttribute (juce::StringRef variableName, const juce::String& attributeName, State* state)
{
    auto* signature = findMemberVariableSignature (variableName);
    if (state != nullptr && signature != nullptr)
        signature->setAttribute (attributeName, state);
    else
        delete state;
}

void Class::setMethodAttribute (juce::StringRef methodName, const juce::String& attributeName, State* state)
{
    auto* signature = findMethodSignature (methodName);
    if (state != nullptr && signature != nullptr)
        signature->setAttribute (attributeName, state);
    else
        delete state;
}

//==============================================================================
void Class::setAttribute (ExecutionContext& context, const juce::String& name, State* state)
{
    setAttribute (context, name, std::shared_ptr<State> (state));
}

void Class::setAttribute (ExecutionContext& context, const juce::String& name, const std::shared_ptr<State>& state)
{
    if (state == nullptr)
    {
        juce::Logger::outputDebugString ("Error: could not parse class parameter " + getName() + "::" + name);
        return;
    }
    AttributesHost::setAttribute (name, state);
    if (state->getType() != StateType::stringType)
        return;

    if (name == "friendlyName")
    {
        const juce::ScopedLock lock (friendlyNameLock);
        friendlyName.clear();
    }
    if (name.endsWith ("Origin"))
        applyFileOrigin (context, name.dropLastCharacters (6), state->getString());
}

// An attribute "xOrigin" names the file that attribute "x" comes from, so that
// the declared value follows the file on the developer's disk.
void Class::applyFileOrigin (ExecutionContext& context, const juce::String& targetName, const juce::String& path)
{
    auto* target = getAttributeRef (targetName);
    const juce::File file (path);
    if (target == nullptr || ! juce::File::isAbsolutePath (path) || ! file.existsAsFile())
        return;

    if (target->getType() == StateType::bufferType)
    {
        juce::MemoryBlock bytes;
        file.loadFileAsData (bytes);
        target->setBuffer (bytes.getSize(), bytes.getData(), true);
        return;
    }

    const auto text = file.loadFileAsString().replace ("\r\n", "\n").trim();
    if (text.isEmpty())
        return;
    if (target->getType() == StateType::stringType)
    {
        if (target->getString().trim() != text)
            target->setString (text);
        return;
    }
    setAttribute (context, targetName, State::createFromStateString (context, text, getName() + "::" + targetName));
}

std::shared_ptr<State> Class::getAttribute (const MemberSignature* signature, juce::StringRef name) const
{
    if (signature != nullptr)
        if (auto state = signature->getAttribute (name))
            return state;
    return getAttribute (name);
}

State* Class::getAttributeRef (const MemberSignature* signature, juce::StringRef name) const
{
    if (signature != nullptr)
        if (auto* state = signature->getAttributeRef (name))
            return state;
    return getAttributeRef (name);
}

// A typed value on the signature wins when it has the right type; otherwise the class's.
template <class Value, class Getter>
static Value getTypedAttribute (const AttributesHost& owner, const MemberSignature* signature, juce::StringRef name,
                                StateType type, Value defaultValue, Getter getter)
{
    if (signature != nullptr && signature->hasAttributeOfType (name, type))
        return (signature->*getter) (name, defaultValue);
    return (owner.*getter) (name, defaultValue);
}

bool Class::getBooleanAttribute (const MemberSignature* signature, juce::StringRef name, bool defaultValue) const
{
    return getTypedAttribute (*this, signature, name, StateType::booleanType, defaultValue, &AttributesHost::getBooleanAttribute);
}

int64_t Class::getIntegerAttribute (const MemberSignature* signature, juce::StringRef name, int64_t defaultValue) const
{
    return getTypedAttribute (*this, signature, name, StateType::integerType, defaultValue, &AttributesHost::getIntegerAttribute);
}

double Class::getRealAttribute (const MemberSignature* signature, juce::StringRef name, double defaultValue) const
{
    return getTypedAttribute (*this, signature, name, StateType::realType, defaultValue, &AttributesHost::getRealAttribute);
}

juce::String Class::getStringAttribute (const MemberSignature* signature, juce::StringRef name, const juce::String& defaultValue) const
{
    if (signature != nullptr && signature->hasAttributeOfType (name, StateType::stringType))
        return signature->getStringAttribute (name, defaultValue);
    return getStringAttribute (name, defaultValue);
}

const RawBuffer* Class::getBufferAttribute (const MemberSignature* signature, juce::StringRef name) const
{
    if (signature != nullptr)
        if (auto* buffer = signature->getBufferAttribute (name))
            return buffer;
    return getBufferAttribute (name);
}

Class* Class::getClassAttribute (const MemberSignature* signature, juce::StringRef name, Class* defaultValue) const
{
    if (signature != nullptr && signature->hasAttributeOfType (name, StateType::classExpressionType))
        return signature->AttributesHost::getClassAttribute (name, defaultValue);
    return getClassAttribute (name, defaultValue);
}

Class* Class::getClassAttribute (juce::StringRef name, Class* defaultValue) const
{
    if (! hasAttribute (name) && (name == juce::StringRef ("interpolationKey") || name == juce::StringRef ("diff")))
        return const_cast<Class*> (this);
    return AttributesHost::getClassAttribute (name, defaultValue);
}

std::vector<Class*> Class::getClassVectorAttribute (juce::StringRef name) const
{
    auto* state = getAttributeRef (name);
    return state != nullptr ? state->getClassVector() : std::vector<Class*>();
}

//==============================================================================
static bool isTemplateApplication (const ClassExpression* expression) noexcept
{
    return expression != nullptr && expression->getType() == ClassExpression::templateApplication;
}

bool Class::inheritsFrom (const Class* other) const
{
    if (other == nullptr)
        return false;
    // A class that no library initialised yet learns its base here. The template question is
    // asked only of template applications: this runs for every envelop that is routed.
    for (Class* level = const_cast<Class*> (this); level != nullptr; level = level->baseClass)
    {
        if (level == other || (isTemplateApplication (level->expression) && level->inheritsFromTemplate (other)))
            return true;
        if (! level->initialized)
            level->initializeClass();
    }
    return false;
}

// OwnedVector(String) inherits from the class named OwnedVector, and from
// OwnedVector(X) when String inherits from X.
bool Class::inheritsFromTemplate (const Class* other) const
{
    if (other->expression == nullptr || ! isTemplateApplication (expression))
        return false;
    const auto* otherExpression = other->expression;
    if (otherExpression->getType() == ClassExpression::atomic)
        return otherExpression->getIdentifier() == expression->getIdentifier();
    if (otherExpression->getType() != ClassExpression::templateApplication || otherExpression->getIdentifier() != expression->getIdentifier())
        return false;

    auto arguments = expression->getClassGeneratorArguments().getClassVector();
    auto otherArguments = otherExpression->getClassGeneratorArguments().getClassVector();
    if (arguments.empty() || arguments.size() != otherArguments.size())
        return false;
    for (size_t i = 0; i < arguments.size(); ++i)
        if (! arguments[i]->inheritsFrom (otherArguments[i]))
            return false;
    return true;
}

Class* Class::findCommonBaseClass (Class* a, Class* b)
{
    if (a == nullptr || b == nullptr)
        return nullptr;
    if (a->inheritsFrom (b))
        return b;
    if (b->inheritsFrom (a))
        return a;
    if (a == &Object::staticClass || b == &Object::staticClass)
        return &Object::staticClass;

    Class* first = findCommonBaseClass (a->baseClass, b);
    Class* second = findCommonBaseClass (a, b->baseClass);
    if (first == nullptr || second == nullptr)
        return first != nullptr ? first : second;
    return first->inheritsFrom (second) ? first : second;
}

Class* Class::getClassRelativeToThis (const juce::String& text) const
{
    auto* registry = ClassRegistry::getInstanceIfExists();
    auto* parsed = createClassExpressionFromString (text, nullptr);
    if (registry == nullptr || parsed == nullptr)
        return nullptr;
    return registry->resolve (makeClassExpressionRelativeTo (parsed), nullptr);
}

const ClassExpression* Class::makeClassExpressionRelativeTo (const ClassExpression* source) const
{
    const ClassExpression* expression = source;
    while (expression != nullptr && expression->getType() == ClassExpression::atomic)
    {
        auto* attribute = findAttributeOfType (expression->getIdentifier(), StateType::classExpressionType);
        if (attribute == nullptr || attribute->getClassExpressionValue() == nullptr || attribute->getClassExpressionValue() == expression)
            return expression;
        expression = attribute->getClassExpressionValue();
    }
    if (expression == nullptr)
        return nullptr;

    if (expression->getType() == ClassExpression::classParameter)
        return createClassParameterExpression (makeClassExpressionRelativeTo (expression->getClassParameterExpression()),
                                               expression->getIdentifier());
    if (expression->getType() != ClassExpression::templateApplication)
        return expression;

    const auto& arguments = expression->getClassGeneratorArgumentsPtr();
    std::shared_ptr<State> relative = arguments;
    if (arguments->getType() == StateType::classExpressionType)
    {
        const auto* argument = makeClassExpressionRelativeTo (arguments->getClassExpressionValue());
        if (argument != nullptr && argument->getType() == ClassExpression::atomic && argument->getIdentifier() == "this")
            relative = std::make_shared<State> (this->expression);
        else if (argument != nullptr && argument->getType() == ClassExpression::atomic && hasAttribute (argument->getIdentifier()))
            relative = getAttribute (argument->getIdentifier());
        else
            relative = std::make_shared<State> (argument);
    }
    else if (arguments->getType() == StateType::variablesType)
    {
        relative = std::make_shared<State>();
        for (size_t i = 0; i < arguments->getNumVariables(); ++i)
        {
            auto value = arguments->getVariableState (i);
            if (value->getType() == StateType::classExpressionType)
                value = std::make_shared<State> (makeClassExpressionRelativeTo (value->getClassExpressionValue()));
            relative->addVariable (arguments->getVariableName (i), value);
        }
    }
    return createTemplateClassExpression (expression->getIdentifier(), relative);
}

// Candidate names of companion classes, from the most specific.
static void addRelatedClassCandidates (const ClassExpression* expression, const juce::String& suffix, juce::StringArray& candidates)
{
    if (expression == nullptr)
        return;
    if (expression->getType() != ClassExpression::templateApplication)
    {
        candidates.add (expression->toString() + suffix);
        return;
    }

    const auto& arguments = expression->getClassGeneratorArguments();
    const auto templateSuffix = expression->getIdentifier() + suffix;
    if (arguments.getType() == StateType::classExpressionType)
    {
        addRelatedClassCandidates (arguments.getClassExpressionValue(), templateSuffix, candidates);
    }
    else if (arguments.getType() == StateType::variablesType)
    {
        juce::String parts;
        for (size_t i = 0; i < arguments.getNumVariables(); ++i)
        {
            const auto& value = arguments.getVariableStateRef (i);
            parts += value.getType() == StateType::classExpressionType && value.getClassExpressionValue() != nullptr
                         ? value.getClassExpressionValue()->strip() : value.toShortString();
        }
        candidates.add (parts + templateSuffix);
    }
    else
    {
        candidates.add (arguments.toShortString() + templateSuffix);
    }
    candidates.add (templateSuffix);
}

// Found outside the lock, for the reason given at getFriendlyName: the search
// resolves classes. Threads that search at once find the same class.
Class* Class::getRelatedClass (const juce::String& suffix)
{
    {
        const juce::ScopedLock lock (relatedClassesLock);
        auto cached = relatedClasses.find (suffix);
        if (cached != relatedClasses.end())
            return cached->second;
    }
    Class* found = findRelatedClass (suffix);
    const juce::ScopedLock lock (relatedClassesLock);
    return relatedClasses.emplace (suffix, found).first->second;
}

Class* Class::findRelatedClass (const juce::String& suffix) const
{
    Class* result = nullptr;
    for (const Class* level = this; level != nullptr && result == nullptr; level = level->baseClass)
    {
        juce::StringArray candidates;
        addRelatedClassCandidates (level->expression, suffix, candidates);
        const bool levelIsTemplate = level->expression != nullptr && level->expression->getType() == ClassExpression::templateApplication;
        for (auto& candidate : candidates)
        {
            auto* found = tov::getClass (candidate);
            if (found == nullptr)
                continue;
            found->initializeClass();
            const bool targetFits = ! found->hasAttribute ("target")
                                 || inheritsFrom (found->AttributesHost::getClassAttribute ("target", nullptr));
            const bool exempt = suffix == "GroupCommand" || suffix == "SelectionMenu"
                             || (levelIsTemplate && candidate == level->expression->getIdentifier() + suffix);
            if (targetFits || exempt)
            {
                result = found;
                break;
            }
        }
    }
    return result;
}

//==============================================================================
Object* Class::createObject (Object* parent)
{
    if (isAbstract())
        return nullptr;
    Object* defaults = getDefaultObject();
    Object* object = createInstance();
    if (object == nullptr)
        return nullptr;

    object->removeStaticAllocationFlag();
    object->setParent (parent);
    if (parent != nullptr && parent->isClassDefaultObject())
        setClassDefaultObjectAndMultiThreadSafeRecursively (object, this);
    initializeObjectRecursively (object, defaults);
    object->setNumChanges (0);
    return object;
}

// Once made, the default object is read without the lock: it is immutable, and asking for it
// is part of every createObject. Only making it, and releasing it, take the lock.
Object* Class::getDefaultObject()
{
    if (auto* existing = defaultObject.load (std::memory_order_acquire))
        return existing;
    const juce::ScopedLock lock (defaultObjectLock);
    if (defaultObject.load (std::memory_order_relaxed) == nullptr)
        defaultObject.store (createDefaultObject(), std::memory_order_release);
    return defaultObject.load (std::memory_order_relaxed);
}

Object* Class::createDefaultObject()
{
    initializeClass();
    Object* object = createInstance();
    if (object == nullptr)
        return nullptr;
    object->setParent (this);
    object->setStaticAllocationFlag();
    setClassDefaultObjectAndMultiThreadSafeRecursively (object, this);
    setDefaultValuesRecursively (object);
    return object;
}

Method* Class::createMethod (juce::StringRef name, Object* parent)
{
    // findMethod's 0 is taken for absent; its -1 reaches getMethodClass as an index past the end.
    const int index = findMethod (name);
    if (index == 0)
        return nullptr;
    auto* methodClass = getMethodClass ((size_t) (int64_t) index);
    if (! Class::inheritsFrom (methodClass, &Method::staticClass))
        return nullptr;
    return static_cast<Method*> (methodClass->createObject (parent));
}

void Class::releaseDefaultObject()
{
    const juce::ScopedLock lock (defaultObjectLock);
    delete defaultObject.exchange (nullptr);
}

void Class::initializeObjectRecursively (Object* object, Object* defaults)
{
    object->setClass (this);
    const bool wasApplying = object->isApplyingVariableConstraints();
    if (! wasApplying)
        object->startApplyingVariableConstraints();

    for (size_t i = 0; i < getNumMemberVariables(); ++i)
    {
        Object* variable = getMemberVariable (object, i);
        auto* signature = getMemberVariableSignature (i);
        variable->setParent (object);
        if (defaults != nullptr)
            getMemberVariable (defaults, i)->copyTo (*variable);
        if (signature->getBooleanAttribute ("propagateChildrenChanges", false))
            variable->setFlag (Object::propagateChildrenChangesFlag);
        if (auto* valueClass = signature->getValueClass())
            valueClass->initializeObjectRecursively (variable, nullptr);
        variable->setNumChanges (0);
    }

    if (! wasApplying)
        object->finishApplyingVariableConstraints();
}

void Class::setDefaultValuesRecursively (Object* object)
{
    initializeClass();
    object->setClass (this);
    for (size_t i = 0; i < getNumMemberVariables(); ++i)
    {
        Object* variable = getMemberVariable (object, i);
        auto* signature = getMemberVariableSignature (i);
        variable->setParent (object);
        if (auto* valueClass = signature->getValueClass())
            valueClass->setDefaultValuesRecursively (variable);

        if (auto defaultState = signature->getAttribute ("default"))
        {
            // The declaration's text is a saved value: give it the version of the variable's class.
            if (auto* valueClass = variable->getClass())
                defaultState->setVersionNumber (valueClass->getVersion());
            // A default that does not load is a fault of the declaration: say so, as a wrong
            // attribute text does, without stopping.
            juce::String errors;
            ToStringExecutionContext context (errors);
            if (! variable->loadFromState (context, defaultState) || errors.isNotEmpty())
                juce::Logger::outputDebugString ("Error: could not load default value " + getName() + "::"
                                                 + signature->getName() + (errors.isNotEmpty() ? ": " + errors.trimEnd() : juce::String()));
        }
        if (signature->getBooleanAttribute ("propagateChildrenChanges", false))
            variable->setFlag (Object::propagateChildrenChangesFlag);
    }
}

//==============================================================================
juce::String Class::getName() const
{
    return expression != nullptr ? expression->toString() : juce::String (declaredName);
}

juce::String Class::getStrippedName() const
{
    return expression != nullptr ? expression->strip() : juce::String (declaredName);
}

juce::String Class::getName (const std::type_info& type)
{
    int status = 0;
    char* demangled = abi::__cxa_demangle (type.name(), nullptr, nullptr, &status);
    juce::String name (status == 0 && demangled != nullptr ? demangled : type.name());
    std::free (demangled);
    const int separator = name.indexOf ("::");
    return separator >= 0 ? name.substring (separator + 2) : name;
}

// The name is computed outside the lock: computing it may resolve classes,
// and the registry holds its own lock while it deinitializes classes, which
// takes this one. Threads that compute at once find the same name.
juce::String Class::getFriendlyName() const
{
    {
        const juce::ScopedLock lock (friendlyNameLock);
        if (friendlyName.isNotEmpty())
            return friendlyName;
    }
    const auto computed = computeFriendlyName();
    const juce::ScopedLock lock (friendlyNameLock);
    if (friendlyName.isEmpty())
        friendlyName = computed;
    return friendlyName;
}

juce::String Class::computeFriendlyName() const
{
    const auto declared = getStringAttribute ("friendlyName");
    if (declared.isNotEmpty() && (baseClass == nullptr || baseClass->getStringAttribute ("friendlyName") != declared))
        return declared;

    juce::String name = getName();
    for (const Class* level = baseClass; level != nullptr; level = level->baseClass)
    {
        const auto baseName = level->computeNameForFriendlyNames();
        if (name.endsWith (baseName) && ! level->getBooleanAttribute ("keepNameInFriendlyNames", false))
        {
            if (name.length() > baseName.length())
                name = name.dropLastCharacters (baseName.length());
            break;
        }
    }
    return MemberSignature::makeFriendlyNameFromName (name, true);
}

juce::String Class::computeNameForFriendlyNames() const
{
    return getStringAttribute ("nameForFriendlyNames", getStrippedName());
}

juce::Uuid Class::getClassUniqueIdentifier() const
{
    const juce::ScopedLock lock (uniqueIdentifierLock);
    if (classUniqueIdentifier.isNull())
        classUniqueIdentifier = getClassUniqueIdentifierByName (getName());
    return classUniqueIdentifier;
}

juce::Uuid Class::getClassUniqueIdentifierByName (const juce::String& name)
{
    const juce::MD5 digest (name.toUTF8());
    return UniqueIdentifier::makeUuidCompliantToRfc4122 (juce::Uuid (digest.getChecksumDataArray()));
}

//==============================================================================
void declareAttributesFromText (Class& owner, ExecutionContext& context, AttributesHost* target,
                                const AttributeTextList& attributes, const juce::String& sourcePrefix)
{
    for (auto& attribute : attributes)
    {
        auto state = owner.createAttribute (context, attribute.text, sourcePrefix + "::" + attribute.name);
        if (target == &owner)
            owner.setAttribute (context, attribute.name, state);
        else if (state != nullptr)
            target->setAttribute (attribute.name, state);
        else
            juce::Logger::outputDebugString ("Error: could not parse class parameter " + sourcePrefix + "::" + attribute.name);
    }
}

// Each member's attributes go on the signature that add appends, labelled "Class::member".
template <class AddSignature>
static void declareMembers (Class& owner, ExecutionContext& context, const ClassDeclaration& declaration,
                            const std::vector<MemberDeclaration>& members, AddSignature&& add)
{
    for (auto& member : members)
        declareAttributesFromText (owner, context, add (member), member.attributes,
                                   juce::String (declaration.name) + "::" + member.name);
}

void declareMemberVariablesFromDeclaration (Class& owner, ExecutionContext& context, const ClassDeclaration& declaration)
{
    declareMembers (owner, context, declaration, declaration.variables, [&owner] (const MemberDeclaration& variable)
    {
        owner.addMemberVariable (variable.valueClass(), variable.name, variable.readOnly);
        return owner.getMemberVariableSignature (owner.getNumMemberVariables() - 1);
    });
}

void declareMethodsFromDeclaration (Class& owner, ExecutionContext& context, const ClassDeclaration& declaration)
{
    declareMembers (owner, context, declaration, declaration.methods, [&owner] (const MemberDeclaration& method)
    {
        owner.addMethod (method.valueClass(), method.name, method.readOnly);
        return owner.getMethodSignature (owner.getNumMethods() - 1);
    });
}

} // namespace tov
