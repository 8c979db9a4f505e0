#pragma once

#include <juce_core/juce_core.h>
#include <memory>

namespace tov
{

class State;

/** The interned name of a class: an atomic name such as "String", a template
    application such as "OwnedVector(String)", or a class parameter such as
    "Number:interpolationKey".

    Equal expressions are one object, so expressions compare by pointer. They
    live as long as the class registry that interned them.
*/
class ClassExpression
{
public:
    enum Type : uint32_t
    {
        none = 0,
        atomic = 1,
        templateApplication = 2,
        classParameter = 3
    };

    ClassExpression (Type type, const juce::String& identifier,
                     const ClassExpression* classParameterExpression = nullptr,
                     std::shared_ptr<State> classGeneratorArguments = {});
    ~ClassExpression();

    Type getType() const noexcept                                        { return type; }
    const juce::String& getIdentifier() const noexcept                   { return identifier; }
    const ClassExpression* getClassParameterExpression() const noexcept  { return classParameterExpression; }
    const State& getClassGeneratorArguments() const noexcept             { return *classGeneratorArguments; }
    const std::shared_ptr<State>& getClassGeneratorArgumentsPtr() const noexcept { return classGeneratorArguments; }

    /** The text of the expression, as saved in State files. */
    juce::String toString() const;

    /** The name without template arguments or class parameters. */
    juce::String strip() const;

    /** The optional form: a present flag, then type, identifier, inner expression and arguments. */
    static bool toBinary (const ClassExpression* expression, juce::OutputStream& output);
    bool toBinary (juce::OutputStream& output) const                    { return toBinary (this, output); }
    /** Reads and interns an expression; a template without arguments or a parameter without base reads as null. */
    static bool loadFromBinary (juce::InputStream& input, const ClassExpression*& expression, juce::String& error);

    /** Null equals only null; otherwise type, identifier, parameter expression and arguments must agree. */
    static bool equals (const ClassExpression* a, const ClassExpression* b);

private:
    Type type;
    juce::String identifier;
    const ClassExpression* classParameterExpression;
    std::shared_ptr<State> classGeneratorArguments;
};

/** The interned atomic expression of the name, made when new. */
const ClassExpression* createAtomicClassExpression (const juce::String& name);

/** The interned template application of the name to the arguments, made when new.
    The arguments are shared with the expression and must not change afterwards.
*/
const ClassExpression* createTemplateClassExpression (const juce::String& templateName,
                                                      const std::shared_ptr<State>& arguments);

/** The interned expression of the class-valued attribute of the base expression's class, made when new. */
const ClassExpression* createClassParameterExpression (const ClassExpression* base, const juce::String& attributeName);

/** Parses the text of a class expression, with a leading "tov::" ignored, and interns it.

    The grammar is that of class expressions in State texts (see StateParser.h):
    a name, optionally applied to State arguments in parentheses, then any
    number of ":" and an attribute name. The whole text must be consumed.
    On failure returns null and, when errorMessage is given, sets it to the
    parser's report or to "Empty class expression" or
    "Could not parse class expression: " and the text.
*/
const ClassExpression* createClassExpressionFromString (const juce::String& text, juce::String* errorMessage);

} // namespace tov
