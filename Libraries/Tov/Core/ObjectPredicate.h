#pragma once

namespace tov
{

class Object;
class Class;

/** A yes-or-no question about an object, used to filter walks over variables. */
class ObjectPredicate
{
public:
    virtual ~ObjectPredicate() = default;
    virtual bool doesAcceptObject (Object* object) = 0;
};

/** Accepts one given object. */
class EqualsObjectPredicate : public ObjectPredicate
{
public:
    explicit EqualsObjectPredicate (const Object* object) : object (object) {}
    bool doesAcceptObject (Object* candidate) override { return candidate == object; }

private:
    const Object* object;
};

/** Accepts read-only objects and, with includeNotEditable, those that are not editable. */
class IsReadonlyPredicate : public ObjectPredicate
{
public:
    explicit IsReadonlyPredicate (bool includeNotEditable) : includeNotEditable (includeNotEditable) {}
    bool doesAcceptObject (Object* object) override;

private:
    bool includeNotEditable;
};

/** Accepts objects whose class inherits from the given one. */
class ClassPredicate : public ObjectPredicate
{
public:
    explicit ClassPredicate (Class* requiredClass) : requiredClass (requiredClass) {}
    bool doesAcceptObject (Object* object) override;

private:
    Class* requiredClass;
};

/** Receives the variables that an answer depends on, so that editors can watch them. */
class VariableDependenciesDeclarator
{
public:
    virtual ~VariableDependenciesDeclarator() = default;
    virtual void add (Object* variable) = 0;
};

class IgnoreVariableDependenciesDeclarator : public VariableDependenciesDeclarator
{
public:
    void add (Object*) override {}
};

} // namespace tov
