#include "StateComparingObjectExporter.h"
#include "Class.h"
#include "ClassExpression.h"
#include "Object.h"
#include <cstring>

namespace tov
{

StateComparingObjectExporter::StateComparingObjectExporter (const State& expected, uint32_t flags)
    : ObjectExporter (flags)
{
    stack.reserve (16);
    push (&expected);
}

bool StateComparingObjectExporter::matches (const Object& object, const State& expected, uint32_t flags, bool writeClass,
                                           IdentifiersMemo* memo)
{
    if ((flags & exportWithoutDefaults) != 0)
        return false;
    StateComparingObjectExporter exporter (expected, flags);
    exporter.memo = memo;
    exporter.save (object, writeClass);
    exporter.finish (exporter.stack.front());
    return exporter.same;
}

// The new level is filled in place: a level built aside and copied in is read back in wider
// words than it was written, and the processor then waits for the stores to land.
void StateComparingObjectExporter::push (const State* expected)
{
    stack.emplace_back().expected = expected;
}

void StateComparingObjectExporter::pop()
{
    stack.pop_back();
}

void StateComparingObjectExporter::finish (const Level& level)
{
    if (! isComparing())
        return;
    const State& expected = *level.expected;
    check (level.hasIdentifier || expected.getUniqueIdentifier().isNull());
    check (level.hasClass || expected.getClassExpression() == nullptr);
    check (level.hasVersion || expected.getVersionNumber() == 0);
    // The type of a node with variables or a value was compared when they were written.
    if (level.written == StateType::variablesType)
        check (level.numVariables == expected.getNumVariables());
    else if (level.written == StateType::voidType)
        check (expected.getType() == StateType::voidType);
}

const State* StateComparingObjectExporter::startValue (StateType type)
{
    if (! isComparing())
        return nullptr;
    auto& level = current();
    check (level.written == StateType::voidType && level.expected->getType() == type);
    level.written = type;
    return isComparing() ? level.expected : nullptr;
}

//==============================================================================
// As StateObjectExporter::save: embedded objects carry no identifier.
void StateComparingObjectExporter::save (const Object& object, bool writeClass)
{
    if (! isComparing())
        return;
    if (! hasFlag (exportWithoutIdentifiers) && ! object.hasStaticAllocationFlag())
    {
        check (current().expected->getUniqueIdentifier() == object.getUniqueIdentifier());
        current().hasIdentifier = true;
    }
    if (writeClass)
    {
        // Without a class, StateObjectExporter reports the object: it is left to do so.
        check (object.getClass() != nullptr);
        if (isComparing())
            setClass (object.getClass());
    }
    if (isComparing())
        object.save (*this);
}

void StateComparingObjectExporter::setClass (Class* objectClass)
{
    if (! isComparing())
        return;
    check (ClassExpression::equals (current().expected->getClassExpression(), objectClass != nullptr ? objectClass->getExpression() : nullptr));
    current().hasClass = true;
}

void StateComparingObjectExporter::setVersionNumber (uint64_t version)
{
    if (! isComparing())
        return;
    check (current().expected->getVersionNumber() == version);
    current().hasVersion = true;
}

//==============================================================================
void StateComparingObjectExporter::reserveVariables (uint64_t)
{
    if (! isComparing())
        return;
    auto& level = current();
    check ((level.written == StateType::voidType || level.written == StateType::variablesType)
           && level.expected->getType() == StateType::variablesType);
    level.written = StateType::variablesType;
}

void StateComparingObjectExporter::enterVariable (const juce::String& name)
{
    reserveVariables (0);
    if (! isComparing())
        return push (nullptr);

    auto& level = current();
    const State& expected = *level.expected;
    check (level.numVariables < expected.getNumVariables() && expected.getVariableName (level.numVariables) == name);
    const State* variable = isComparing() ? expected.getVariableState (level.numVariables++).get() : nullptr;
    check (variable != nullptr);
    push (variable);
}

void StateComparingObjectExporter::leaveVariable()
{
    finish (current());
    pop();
}

//==============================================================================
void StateComparingObjectExporter::writeBoolean (bool value)
{
    if (auto* expected = startValue (StateType::booleanType))
        check (expected->getBoolean() == value);
}

void StateComparingObjectExporter::writeInteger (int64_t value)
{
    if (auto* expected = startValue (StateType::integerType))
        check (expected->getInteger() == value);
}

// Compared as State::equals does: by their bits.
void StateComparingObjectExporter::writeReal (double value)
{
    if (auto* expected = startValue (StateType::realType))
    {
        const double expectedValue = expected->getReal();
        check (std::memcmp (&expectedValue, &value, sizeof (double)) == 0);
    }
}

void StateComparingObjectExporter::writeString (const juce::String& value)
{
    if (auto* expected = startValue (StateType::stringType))
        check (expected->getString() == value);
}

void StateComparingObjectExporter::writeClass (const Class* value)
{
    if (auto* expected = startValue (StateType::classExpressionType))
        check (value != nullptr && expected->getClassExpressionValue() == value->getExpression());
}

void StateComparingObjectExporter::writeUniqueIdentifier (const UniqueIdentifier& value)
{
    if (auto* expected = startValue (StateType::weakPointerType))
        check (expected->getUniqueIdentifierValue() == value);
}

void StateComparingObjectExporter::writeNativePointer (const Object* object)
{
    if (auto* expected = startValue (StateType::nativePointerType))
        check (expected->getNativePointer() == object);
}

// As StateObjectExporter::writeOwnedPointer.
void StateComparingObjectExporter::writeOwnedPointer (const Object* object, Class* declaredClass)
{
    if (object == nullptr)
        return writeUniqueIdentifier (UniqueIdentifier());
    if (hasFlag (exportOwnedPointersAsIdentifiers))
        return writeUniqueIdentifier (object->getUniqueIdentifier());

    auto* expected = startValue (StateType::ownedPointerType);
    const auto target = expected != nullptr ? expected->getOwnedPointer() : nullptr;
    check (target != nullptr);
    if (! isComparing())
        return;
    push (target.get());
    save (*object, object->getClass() != declaredClass);
    finish (current());
    pop();
}

// The identifier a list writes for an element, null for none.
static UniqueIdentifier identifierOf (const Object* object)
{
    return object != nullptr ? object->getUniqueIdentifier() : UniqueIdentifier();
}

// What enterVariable, writeUniqueIdentifier and finish would check of a nameless variable that
// holds the identifier of an owned object.
static bool isIdentifierOf (const State::Variable& variable, const Object* object)
{
    const State* node = variable.second.get();
    return variable.first.isEmpty() && node != nullptr && node->getType() == StateType::weakPointerType
        && node->getUniqueIdentifierValue() == identifierOf (object)
        && node->getUniqueIdentifier().isNull() && node->getClassExpression() == nullptr && node->getVersionNumber() == 0;
}

void StateComparingObjectExporter::saveOwnedObjects (const std::vector<Object*>& objects, Class* declaredClass)
{
    if (! hasFlag (exportOwnedPointersAsIdentifiers))
    {
        ObjectExporter::saveOwnedObjects (objects, declaredClass);
        return;
    }
    if (objects.empty() || ! isComparing())
        return;

    auto& level = current();
    const auto& variables = level.expected->getVariables();
    check (level.numVariables + objects.size() <= variables.size());
    if (! isComparing())
        return;

    const auto* remembered = memo != nullptr ? memo->find (level.expected, level.numVariables) : nullptr;
    if (remembered != nullptr && remembered->identifiers.size() == objects.size())
    {
        compareWithMemo (objects, remembered->identifiers);
    }
    else
    {
        compareWithNodes (objects, variables.data() + level.numVariables);
        if (memo != nullptr && remembered == nullptr && isComparing())
        {
            std::vector<UniqueIdentifier> identifiers;
            identifiers.reserve (objects.size());
            for (auto* object : objects)
                identifiers.push_back (identifierOf (object));
            memo->lists.push_back ({ level.expected, level.numVariables, std::move (identifiers) });
        }
    }
    level.numVariables += objects.size();
}

// Elements and nodes lie apart on the heap: those a few turns ahead are fetched meanwhile.
static constexpr size_t elementsFetchedAhead = 16;

void StateComparingObjectExporter::compareWithNodes (const std::vector<Object*>& objects, const State::Variable* first)
{
    for (size_t i = 0; i < objects.size() && isComparing(); ++i)
    {
        if (i + elementsFetchedAhead < objects.size())
        {
            __builtin_prefetch (objects[i + elementsFetchedAhead]);
            __builtin_prefetch (first[i + elementsFetchedAhead].second.get());
        }
        check (isIdentifierOf (first[i], objects[i]));
    }
}

// The memo says what the nodes held when they last matched, and they have not changed since.
void StateComparingObjectExporter::compareWithMemo (const std::vector<Object*>& objects, const std::vector<UniqueIdentifier>& identifiers)
{
    for (size_t i = 0; i < objects.size() && isComparing(); ++i)
    {
        if (i + elementsFetchedAhead < objects.size())
            __builtin_prefetch (objects[i + elementsFetchedAhead]);
        check (identifiers[i] == identifierOf (objects[i]));
    }
}

//==============================================================================
auto StateComparingObjectExporter::IdentifiersMemo::find (const State* node, size_t first) const noexcept -> const List*
{
    for (const auto& list : lists)
        if (list.node == node && list.first == first)
            return &list;
    return nullptr;
}

void StateComparingObjectExporter::writeState (const std::shared_ptr<State>& state)
{
    if (state == nullptr)
        return;
    if (auto* expected = startValue (StateType::ownedPointerType))
        check (State::equals (expected->getOwnedPointer(), state));
}

void StateComparingObjectExporter::writeBuffer (uint64_t, void*, bool)
{
    check (false);
}

} // namespace tov
