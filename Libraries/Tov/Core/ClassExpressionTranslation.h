#pragma once

namespace tov
{

class ClassExpression;
class State;

/** The class expression that today's classes give to an expression read from an old document.

    Renames go by name alone, whatever version the document was saved with. A template over a
    class value has its argument translated first. Then a chain of rules compares the
    expression's text (a template compares as its name with its arguments in parentheses);
    some read the template argument or the node at hand, which may be null. Last comes
    CompatibilityTable, whose new name counts only when a class answers to it. An expression
    that nothing matches is returned as it is: the translation never fails.

    The one rule that reads "GenerationVertexMask" also adds the variable "id" to the node
    when it has none, so that the old data loads into the new class.
*/
const ClassExpression* translateClassExpression (const ClassExpression* expression, State* state);

} // namespace tov
