// Declares a small reflected hierarchy, creates objects and walks their
// variables by name, printing each value beside its class default.
#include <Tov/Core/Object.h>
#include <Tov/Core/ClassRegistry.h>
#include <Tov/Core/Library.h>
#include <Tov/Core/ValueObject.h>
#include <iostream>

using namespace tov;

// Two value classes: one holding a text, one holding a count. Comparing, copying, saving,
// loading and printing come with ValueObject.
class Text : public ValueObject<juce::String>
{
public:
    TOV_DECLARE_CLASS (Text, Object)
    using ValueObject::ValueObject;
};

class Count : public ValueObject<int64_t>
{
public:
    TOV_DECLARE_CLASS (Count, Object)
    using ValueObject::ValueObject;
};

// The two classes of the example: a person, and an employee who is one.
class Person : public Object
{
public:
    TOV_DECLARE_CLASS (Person, Object)
    Text name;
    Count age;
};

class Employee : public Person
{
public:
    TOV_DECLARE_CLASS (Employee, Person)
    Text team;
    Count yearsOfService;
};

TOV_BEGIN_CLASS (Text)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Count)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Person, { "friendlyName", "\"Human Being\"" })
    TOV_VARIABLE (name, { "default", "\"Anonymous\"" })
    TOV_VARIABLE (age, { "default", "18" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (Employee)
    TOV_VARIABLE (team, { "default", "\"Research\"" })
    TOV_VARIABLE (yearsOfService)
TOV_END_CLASS()

static void printObject (Object& object)
{
    auto* objectClass = object.getClass();
    std::cout << objectClass->getName() << " (" << objectClass->getFriendlyName() << ")\n";
    for (size_t i = 0; i < object.getNumVariables(); ++i)
    {
        auto* signature = object.getVariableSignature (i);
        auto* variable = object.getVariableByName (signature->getName());
        std::cout << "  " << signature->getName() << " = " << variable->toString()
                  << "  (default " << variable->getDefaultValue()->toString() << ")\n";
    }
}

int main()
{
    auto* example = new NamedLibrary ("Example", {});
    example->addClass<Text>();
    example->addClass<Count>();
    example->addClass<Person>();
    example->addClass<Employee>();
    initializeTov()->addLibrary (example);

    auto* person = static_cast<Person*> (Person::staticClass.createObject());
    auto* employee = static_cast<Employee*> (getClass ("Employee")->createObject());
    employee->name.set ("Ada");
    employee->yearsOfService.set (7);

    printObject (*person);
    printObject (*employee);
    std::cout << employee->toString() << "\n";

    person->deleteThis();
    employee->deleteThis();
    deinitializeTov();
    return 0;
}
