#pragma once

#include "ClassRegistry.h"
#include "ObjectConverter.h"
#include "TemplateClassGenerator.h"

namespace tov
{

/** Makes "Converter({source=S,target=T})": abstract converter classes whose class attributes
    "source" and "target" are S and T, for concrete converters to derive from. */
class ConverterClassGenerator : public DerivedClassGenerator<ObjectConverter>
{
public:
    ConverterClassGenerator() : DerivedClassGenerator ("%1 to %2 Converter", { "source", "target" }) {}
};

/** Makes "OwnedPointerConverter({sourcePointed=S,targetPointed=T})": abstract converters from
    "OwnedPointer(S)" to "OwnedPointer(T)", which they name as their "source" and "target". */
class OwnedPointerConverterClassGenerator : public DerivedClassGenerator<ObjectConverter>
{
public:
    OwnedPointerConverterClassGenerator() : DerivedClassGenerator ("%1 to %2 Pointer Converter", { "sourcePointed", "targetPointed" }) {}

    class PointerConverterClass : public GeneratedClass
    {
    public:
        using GeneratedClass::GeneratedClass;

        void declareAttributes (ExecutionContext& context) override
        {
            GeneratedClass::declareAttributes (context);
            setPointerAttribute (context, "source", "sourcePointed");
            setPointerAttribute (context, "target", "targetPointed");
        }

    private:
        void setPointerAttribute (ExecutionContext& context, const char* name, const char* pointedName)
        {
            if (auto* pointerClass = ownedPointerClass (getClassAttribute (pointedName)))
                setAttribute (context, name, new State (pointerClass->getExpression()));
        }
    };

protected:
    TemplateGeneratedClass* createEmptyClass() override  { return new PointerConverterClass (friendlyNameExpression); }
};

//==============================================================================
/** The typed base of a converter from Source to Target objects: a concrete converter derives
    from it and inherits its class attributes "source" and "target".

    Its class is named by getStaticClass, as a declared class's is, so that the declaration of a
    concrete converter, which has its own getStaticClass, finds it as its base class. */
template <class Source, class Target>
class Converter : public ObjectConverter
{
public:
    /** "Converter({source=Source,target=Target})", made when first named. */
    static Class& getStaticClass()      { return *getTemplateClass ("Converter", { { "source", classOf<Source>() }, { "target", classOf<Target>() } }); }

protected:
    Class* lookUpClass() const override { return &getStaticClass(); }
};

/** The typed base of a converter from owned pointers to Source to owned pointers to Target. */
template <class Source, class Target>
class OwnedPointerConverter : public ObjectConverter
{
public:
    /** "OwnedPointerConverter({sourcePointed=Source,targetPointed=Target})", made when first named. */
    static Class& getStaticClass()
    {
        return *getTemplateClass ("OwnedPointerConverter", { { "sourcePointed", classOf<Source>() }, { "targetPointed", classOf<Target>() } });
    }

protected:
    Class* lookUpClass() const override { return &getStaticClass(); }
};

} // namespace tov
