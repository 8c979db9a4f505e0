#pragma once

#include "Object.h"
#include "AttributesHost.h"
#include "MemberSignature.h"
#include <juce_core/juce_core.h>
#include <atomic>
#include <map>
#include <memory>
#include <typeinfo>
#include <vector>

namespace tov
{

class ClassExpression;
class ExecutionContext;
class Library;
class Method;

/** The metaclass: one instance per class of the object model.

    A class knows its name (a ClassExpression), its base class, its member
    variables and methods with their signatures, its attributes, and how to
    make an instance. Saving, comparing, copying, editing and friendly names
    all run on these tables. Tables are written once by initializeClass and
    read without locks afterwards; the lazily filled caches have a lock each.
*/
class Class : public Object, public AttributesHost
{
public:
    TOV_DECLARE_CLASS (Class, Object)

    /** An attribute as a declaration lists it: a name and a State. */
    using Attributes = std::vector<std::pair<juce::String, std::shared_ptr<State>>>;

    Class() = default;
    ~Class() override;

    //==============================================================================
    // What declared classes override
    virtual uint64_t getVersion() const                    { return 0; }
    virtual juce::String getDescription() const            { return {}; }
    virtual bool isAbstract() const                        { return false; }
    /** Runs whenever setClass gives an object this class; forwards to the base class. */
    virtual void initializeInstance (Object* object);
    /** The member at that index; a declared class answers its own and forwards lower indices to its base. */
    virtual Object* getMemberVariable (Object* object, size_t index) const;
    virtual Class* getMethodClass (size_t index) const;
    virtual Class* declareBaseClass() = 0;
    /** Parses an attribute's State text; sourceName labels parse errors, as "Frequency::unit". */
    virtual std::shared_ptr<State> createAttribute (ExecutionContext& context, const juce::String& text, const juce::String& sourceName);
    virtual Object* createInstance() const = 0;
    virtual void declareAttributes (ExecutionContext& context)        {}
    virtual void declareMemberVariables (ExecutionContext& context)   {}
    virtual void declareMethods (ExecutionContext& context)           {}
    virtual juce::String computeFriendlyName() const;
    virtual juce::String computeNameForFriendlyNames() const;

    //==============================================================================
    // Life of the tables
    bool isInitialized() const noexcept                    { return initialized; }
    void initializeClass();
    void deinitializeClass();

    Library* getLibrary() const noexcept                   { return library; }
    void setLibrary (Library* newLibrary) noexcept         { library = newLibrary; }
    const ClassExpression* getExpression() const noexcept  { return expression; }
    /** The name a declaration gives, which serves until a library names the class. */
    void setDeclaredName (const char* name) noexcept       { declaredName = name; }
    void setExpression (const ClassExpression* newExpression) noexcept { expression = newExpression; }

    //==============================================================================
    // Member tables
    size_t getNumMemberVariables() const noexcept          { return memberVariables.size(); }
    size_t getBaseClassNumMemberVariables() const noexcept { return baseClassNumMemberVariables; }
    VariableSignature* getMemberVariableSignature (size_t index) const { return memberVariables[index].get(); }
    int findMemberVariable (juce::StringRef name) const;
    VariableSignature* findMemberVariableSignature (juce::StringRef name) const;
    Object* getMemberVariable (size_t index) const         { return getMemberVariable (nullptr, index); }

    size_t getNumMethods() const noexcept                  { return methods.size(); }
    size_t getBaseClassNumMethods() const noexcept         { return baseClassNumMethods; }
    MethodSignature* getMethodSignature (size_t index) const { return methods[index].get(); }
    int findMethod (juce::StringRef name) const;
    MethodSignature* findMethodSignature (juce::StringRef name) const;

    /** Resolves the class name relative to this class; an unknown class reports and becomes Void. */
    void addMemberVariable (ExecutionContext& context, const juce::String& className, const juce::String& name,
                            bool readOnly = false, const Attributes& attributes = {});
    void addMemberVariable (Class* valueClass, const juce::String& name, bool readOnly = false, const Attributes& attributes = {});
    void addMethod (ExecutionContext& context, const juce::String& className, const juce::String& name,
                    bool readOnly = false, const Attributes& attributes = {});
    void addMethod (Class* resultClass, const juce::String& name, bool readOnly = false, const Attributes& attributes = {});
    /** Appends (shares) signatures of another class; a negative count means up to the end. */
    void importMemberVariables (const juce::String& className, size_t firstIndex, int count = -1);
    void importMethods (const juce::String& className, size_t firstIndex, int count = -1);
    void setVariableAttribute (juce::StringRef variableName, const juce::String& attributeName, State* state);
    void setMethodAttribute (juce::StringRef methodName, const juce::String& attributeName, State* state);

    //==============================================================================
    // Attributes; the forms with a signature let a value on the signature win
    using AttributesHost::setAttribute;
    void setAttribute (ExecutionContext& context, const juce::String& name, State* state);
    void setAttribute (ExecutionContext& context, const juce::String& name, const std::shared_ptr<State>& state);

    using AttributesHost::getAttribute;
    using AttributesHost::getAttributeRef;
    using AttributesHost::getBooleanAttribute;
    using AttributesHost::getIntegerAttribute;
    using AttributesHost::getRealAttribute;
    using AttributesHost::getStringAttribute;
    using AttributesHost::getBufferAttribute;
    std::shared_ptr<State> getAttribute (const MemberSignature* signature, juce::StringRef name) const;
    State* getAttributeRef (const MemberSignature* signature, juce::StringRef name) const;
    bool getBooleanAttribute (const MemberSignature* signature, juce::StringRef name, bool defaultValue = false) const;
    int64_t getIntegerAttribute (const MemberSignature* signature, juce::StringRef name, int64_t defaultValue = 0) const;
    double getRealAttribute (const MemberSignature* signature, juce::StringRef name, double defaultValue = 0.0) const;
    juce::String getStringAttribute (const MemberSignature* signature, juce::StringRef name, const juce::String& defaultValue = {}) const;
    const RawBuffer* getBufferAttribute (const MemberSignature* signature, juce::StringRef name) const;
    Class* getClassAttribute (const MemberSignature* signature, juce::StringRef name, Class* defaultValue = nullptr) const;
    /** Without a value, "interpolationKey" and "diff" default to the class itself. */
    Class* getClassAttribute (juce::StringRef name, Class* defaultValue = nullptr) const;
    std::vector<Class*> getClassVectorAttribute (juce::StringRef name) const;

    //==============================================================================
    // Relations
    Class* getBaseClass() const noexcept                   { return baseClass; }
    bool inheritsFrom (const Class* other) const;
    /** False when either class is null. */
    static bool inheritsFrom (const Class* derived, const Class* base) { return derived != nullptr && base != nullptr && derived->inheritsFrom (base); }
    static Class* findCommonBaseClass (Class* a, Class* b);
    Class* getClassRelativeToThis (const juce::String& text) const;
    /** Replaces names of this class's class-valued attributes (and "this") by the classes they hold. */
    const ClassExpression* makeClassExpressionRelativeTo (const ClassExpression* expression) const;
    /** For class Foo and suffix "Editor", the class FooEditor or that of the nearest base class; cached. */
    Class* getRelatedClass (const juce::String& suffix);

    //==============================================================================
    // Creation
    /** A new heap object with its variables at their defaults, neither initialised nor in a space. */
    Object* createObject (Object* parent = nullptr);
    Object* getDefaultObject();
    void releaseDefaultObject();
    /** A new method object of the method with that name, made by its getMethodClass. The index 0
        counts as absent: the first method of a class cannot be made by name (callers never put a
        method to be made by name first), and neither can an unknown one. */
    Method* createMethod (juce::StringRef name, Object* parent = nullptr);
    void initializeObjectRecursively (Object* object, Object* defaultObject);
    void setDefaultValuesRecursively (Object* object);

    //==============================================================================
    // Names
    juce::String getName() const;
    juce::String getStrippedName() const;
    /** The name of a C++ type as objects report it before they know their class. */
    static juce::String getName (const std::type_info& type);
    juce::String getFriendlyName() const override;
    juce::Uuid getClassUniqueIdentifier() const;
    /** MD5 of the name, made RFC 4122 compliant: the same in every process. */
    static juce::Uuid getClassUniqueIdentifierByName (const juce::String& name);

    //==============================================================================
    bool isConvertibleTo (const Object&) const override    { return false; }

protected:
    /** Makes the base class's members this class's first members, with copied signatures. */
    void inheritMembersFromBaseClass();

private:
    bool initialized = false;
    Library* library = nullptr;
    const ClassExpression* expression = nullptr;
    const char* declaredName = nullptr;
    juce::CriticalSection defaultObjectLock;
    // Read without the lock once set: every createObject asks for it.
    std::atomic<Object*> defaultObject { nullptr };
    mutable juce::CriticalSection friendlyNameLock;
    mutable juce::String friendlyName;
    Class* baseClass = nullptr;
    size_t baseClassNumMemberVariables = 0;
    std::vector<std::shared_ptr<VariableSignature>> memberVariables;
    size_t baseClassNumMethods = 0;
    std::vector<std::shared_ptr<MethodSignature>> methods;
    juce::CriticalSection relatedClassesLock;
    std::map<juce::String, Class*> relatedClasses;
    mutable juce::CriticalSection uniqueIdentifierLock;
    mutable juce::Uuid classUniqueIdentifier { juce::Uuid::null() };

    Object* createDefaultObject();
    void applyFileOrigin (ExecutionContext& context, const juce::String& originName, const juce::String& path);
    bool inheritsFromTemplate (const Class* other) const;
    Class* findRelatedClass (const juce::String& suffix) const;
};

} // namespace tov

#include "DeclaredClass.h"
