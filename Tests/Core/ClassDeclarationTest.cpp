#include "Atomic/AtomicTestClasses.h"
#include "Support/LogTestSupport.h"
#include "Support/TestValues.h"
#include <Tov/Atomic/Atomic.h>
#include <Tov/Core/ClassRegistry.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** Every class of a library and of the libraries below it. */
void collectClasses (const Library& library, std::vector<Class*>& classes)
{
    for (size_t i = 0; i < library.getNumClasses(); ++i)
        classes.push_back (library.getClass (i));
    for (size_t i = 0; i < library.getNumLibraries(); ++i)
        collectClasses (*library.getLibrary (i), classes);
}

/** What a declaration reports on debug output while the library starts and every class makes
    its default object. */
std::string startLibraryAndMakeDefaults()
{
    StreamCapture debugOutput { std::cerr };
    deinitializeTov();
    initializeTov()->addLibrary (createTestLibrary());
    ensureAtomicTestLibrary();

    std::vector<Class*> classes;
    collectClasses (*Library::getRootLibrary(), classes);
    for (auto* declared : classes)
        if (! declared->isAbstract())
            declared->getDefaultObject();
    return debugOutput.get();
}

class Misdeclared : public Object
{
public:
    TOV_DECLARE_CLASS (Misdeclared, Object)
    String label;
    Integer count;
};

TOV_BEGIN_CLASS (Misdeclared, { "friendlyName", "\"unterminated" })
    TOV_VARIABLE (label, { "maximum", "{" })
    TOV_VARIABLE (count, { "default", "\"many\"" })
TOV_END_CLASS()
} // namespace

TEST (ClassDeclarationTest, EveryDeclaredClassOfTheLibraryDeclaresWithoutError)
{
    EXPECT_EQ (startLibraryAndMakeDefaults(), "");
}

TEST (ClassDeclarationTest, AWrongAttributeTextIsReportedAtStartUp)
{
    StreamCapture debugOutput { std::cerr };
    Misdeclared::staticClass.deinitializeClass();
    Misdeclared::staticClass.initializeClass();
    EXPECT_EQ (debugOutput.get(), "Error: could not parse class parameter Misdeclared::friendlyName\n"
                                  "Error: could not parse class parameter Misdeclared::label::maximum\n");
    Misdeclared::staticClass.deinitializeClass();
}

TEST (ClassDeclarationTest, ADefaultThatDoesNotLoadIsReportedWhenObjectsAreMade)
{
    Misdeclared::staticClass.initializeClass();
    StreamCapture debugOutput { std::cerr };
    Owned<Misdeclared> object (create<Misdeclared>());
    EXPECT_EQ (object->count.get(), 0);
    EXPECT_EQ (debugOutput.get(), "Error: could not load default value Misdeclared::count: "
                                  "Error: Wrong type: expected integer, found string (in \"many\") (in ObjectImporter::checkType)\n");
    object.reset();
    Misdeclared::staticClass.deinitializeClass();
}

TEST (ClassDeclarationTest, MetaclassFollowsTheBaseClass)
{
    ensureAtomicTestLibrary();
    EXPECT_NE (dynamic_cast<EnumerationClass*> (&Interpolation::staticClass), nullptr);
    EXPECT_EQ (&Enumeration::staticClass, static_cast<EnumerationClass*> (&Enumeration::getStaticClass()));
    EXPECT_EQ (Interpolation::staticClass.getBaseClass(), &Enumeration::staticClass);
}

TEST (ClassDeclarationTest, ElementsBlockNamesEachElementOnceInOrder)
{
    ensureAtomicTestLibrary();
    auto& elements = Interpolation::staticClass;
    ASSERT_EQ (elements.getNumElements(), 3u);
    EXPECT_EQ (elements.getElementName (0), "nearest");
    EXPECT_EQ (elements.getElementName (2), "cubicSpline");
    EXPECT_EQ (elements.getElementValue (2), Interpolation::cubicSpline);
    EXPECT_EQ (elements.getElement (0).alternativeName, "closest");
    EXPECT_EQ (elements.getElementDescription (1, "fr-fr"), "Ligne droite");
    EXPECT_EQ (elements.getElementDescription (1, "us-en"), "Straight line");
    EXPECT_EQ (Interpolation (Interpolation::linear).toString(), "linear");
}
