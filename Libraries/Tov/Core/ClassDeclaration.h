#pragma once

#include <juce_core/juce_core.h>
#include <type_traits>
#include <vector>

/*  How a reflected class is declared.

    In the header, inside the class:

        class NetworkAddress : public Object
        {
        public:
            TOV_DECLARE_CLASS (NetworkAddress, Object)

            HostIdentifier host;
            NetworkPort port;
        };

    In the implementation file:

        TOV_BEGIN_CLASS (NetworkAddress, { "friendlyName", "\"Address\"" })
            TOV_VARIABLE (host)
            TOV_VARIABLE (port, { "default", "80" })
        TOV_END_CLASS()

    A method is one line among them too, naming its result class and the Method class
    that performs it (see Method.h):

            TOV_METHOD (getSoftwareVersion, SoftwareVersion, ProgramGetSoftwareVersionMethod,
                        { "httpUri", "\"/api/live/softwareVersion\"" })

    Attributes are written as the State text they stand for, next to what they
    describe. The companion metaclass NetworkAddress::NetworkAddressClass, the
    static instance NetworkAddress::staticClass, getStaticClass(), createInstance,
    declareBaseClass, declareAttributes, declareMemberVariables, declareMethods,
    getMemberVariable and getMethodClass all come from these lines, and both
    getters map indices in declaration order, inherited members first, because
    one list serves both.
*/

namespace tov
{

class Class;
class Method;
class Object;

/** One attribute as written in a declaration: a name and the State text of its value. */
struct AttributeText
{
    const char* name;
    const char* text;
};

using AttributeTextList = std::vector<AttributeText>;

/** One member as written in a declaration: a variable, reached through access, or a method,
    made by its method class. valueClass is a variable's class or a method's result class. */
struct MemberDeclaration
{
    const char* name;
    Object* (*access) (Object* owner);
    Class* (*valueClass)();
    Class* (*methodClass)();
    bool readOnly;
    AttributeTextList attributes;

    bool isMethod() const noexcept                      { return methodClass != nullptr; }
};

/** Everything a TOV_BEGIN_CLASS block says about a class. Variables and methods are written
    in one list and kept apart here, each in the order of the list. */
struct ClassDeclaration
{
    ClassDeclaration (const char* className, AttributeTextList classAttributes, std::vector<MemberDeclaration> members)
        : name (className), attributes (std::move (classAttributes))
    {
        for (auto& member : members)
            (member.isMethod() ? methods : variables).push_back (std::move (member));
    }

    const char* name;
    AttributeTextList attributes;
    std::vector<MemberDeclaration> variables;
    std::vector<MemberDeclaration> methods;
};

template <class T, class MetaclassBase>
class DeclaredClass;

/** True for the typed fronts of generated classes (OwnedPointer<T>, ...), which name their
    class through a static lookUpTemplateClass. */
template <class T, class = void>
struct HasTemplateClass : std::false_type {};

template <class T>
struct HasTemplateClass<T, std::void_t<decltype (T::lookUpTemplateClass())>> : std::true_type {};

/** The class of a C++ type, as its declaration names it, or as its template generates it
    ("OwnedPointer(Foo)" for OwnedPointer<Foo>). Only reflected objects can be member
    variables: anything else fails to compile here. */
template <class T>
Class* classOf()
{
    static_assert (std::is_base_of_v<Object, T>,
                   "A member variable must be a reflected object (a class declared with TOV_DECLARE_CLASS)");
    if constexpr (HasTemplateClass<T>::value)
        return T::lookUpTemplateClass();
    else
        return &T::getStaticClass();
}

/** The class of a method class; only a Method can perform a method. */
template <class T>
Class* methodClassOf()
{
    static_assert (std::is_base_of_v<Method, T>, "A method's class must derive from Method");
    return &T::getStaticClass();
}

/** True when Base is the declared base of Derived, as a C++ base (helper templates may stand
    between them); Object's own declaration names no base (void). */
template <class Base, class Derived>
constexpr bool isDeclaredBaseOf = std::is_void_v<Base> || std::is_base_of_v<Base, Derived>;

} // namespace tov

/** Declares a reflected class inside its body. Its metaclass follows from the base class:
    DeclaredClass over the metaclass family of BaseName (Class unless BaseName's family says
    otherwise, as Enumeration's does). */
#define TOV_DECLARE_CLASS(ClassName, BaseName) \
    TOV_DECLARE_CLASS_WITH_METACLASS_TYPE (ClassName, BaseName, \
        TOV_DECLARED_CLASS (ClassName, typename BaseName::template MetaclassFamily<ClassName>))

/** Declares the head of a family of classes whose metaclasses derive from MetaclassBase: this
    class and every class declared with it as base (directly or further down) get a metaclass
    with MetaclassBase's overrides. */
#define TOV_DECLARE_CLASS_WITH_METACLASS(ClassName, BaseName, MetaclassBase) \
    TOV_DECLARE_CLASS_WITH_METACLASS_TYPE (ClassName, BaseName, TOV_DECLARED_CLASS (ClassName, MetaclassBase)) \
    template <class Derived> using MetaclassFamily = MetaclassBase;

/** Declares a reflected class whose companion metaclass is exactly Metaclass: the form under the
    two above, and the one for a metaclass written by hand (Enumeration's EnumerationClass). */
#define TOV_DECLARE_CLASS_WITH_METACLASS_TYPE(ClassName, BaseName, ...) \
public: \
    using Super = BaseName; \
    using ClassName##Class = __VA_ARGS__; \
    static ClassName##Class staticClass; \
    static ClassName##Class& getStaticClass() noexcept { return staticClass; } \
    static const ::tov::ClassDeclaration& getClassDeclaration(); \
protected: \
    ::tov::Class* lookUpClass() const override; \
    const char* getDeclaredClassName() const override { return #ClassName; } \
public:

#define TOV_DECLARED_CLASS(ClassName, ...) ::tov::DeclaredClass<ClassName, __VA_ARGS__>

/** The declaration of Object itself, the one class without a base. Classes declared with Object
    as base get plain Class metaclasses. */
#define TOV_DECLARE_ROOT_CLASS(ClassName) \
public: \
    using Super = void; \
    using ClassName##Class = ::tov::DeclaredClass<ClassName, ::tov::Class>; \
    static ClassName##Class staticClass; \
    static ClassName##Class& getStaticClass() noexcept { return staticClass; } \
    static const ::tov::ClassDeclaration& getClassDeclaration(); \
    template <class Derived> using MetaclassFamily = ::tov::Class; \
public:

/** Opens the reflection of a class in its implementation file; the optional
    arguments are its class attributes, each { "name", "State text" }. */
#define TOV_BEGIN_CLASS(ClassName, ...) \
    static_assert (::tov::isDeclaredBaseOf<ClassName::Super, ClassName>, \
                   "The base named in TOV_DECLARE_CLASS (" #ClassName ", ...) is not a C++ base of " #ClassName); \
    ClassName::ClassName##Class ClassName::staticClass { #ClassName }; \
    TOV_DEFINE_LOOK_UP_CLASS (ClassName) \
    const ::tov::ClassDeclaration& ClassName::getClassDeclaration() \
    { \
        using ThisType [[maybe_unused]] = ClassName; \
        static const ::tov::ClassDeclaration declaration { #ClassName, ::tov::AttributeTextList { __VA_ARGS__ }, {

#define TOV_DEFINE_LOOK_UP_CLASS(ClassName) \
    ::tov::Class* ClassName::lookUpClass() const { return &staticClass; }

/** A member variable; the optional arguments are its attributes, each { "name", "State text" }. */
#define TOV_VARIABLE(member, ...) \
    TOV_MEMBER_VARIABLE (member, false, __VA_ARGS__)

/** A member variable that editors and loading may not change. */
#define TOV_READ_ONLY_VARIABLE(member, ...) \
    TOV_MEMBER_VARIABLE (member, true, __VA_ARGS__)

#define TOV_MEMBER_VARIABLE(member, isReadOnly, ...) \
    ::tov::MemberDeclaration { #member, \
        [] (::tov::Object* owner) -> ::tov::Object* { return &static_cast<ThisType*> (owner)->member; }, \
        &::tov::classOf<decltype (ThisType::member)>, nullptr, \
        isReadOnly, ::tov::AttributeTextList { __VA_ARGS__ } },

/** A method of the class: its name, the class of its result, the Method class that performs
    it (Class::getMethodClass gives it), and optional attributes, each { "name", "State text" }. */
#define TOV_METHOD(methodName, ResultClass, MethodClass, ...) \
    ::tov::MemberDeclaration { #methodName, nullptr, &::tov::classOf<ResultClass>, &::tov::methodClassOf<MethodClass>, \
        false, ::tov::AttributeTextList { __VA_ARGS__ } },

/** Closes TOV_BEGIN_CLASS. */
#define TOV_END_CLASS() \
        } }; \
        return declaration; \
    }
