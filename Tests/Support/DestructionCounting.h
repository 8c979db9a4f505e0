#pragma once

namespace tov::test
{

/** Base, with one more to a counter that the test owns when it is destroyed: shows who deletes what. */
template <class Base>
class DestructionCounting : public Base
{
public:
    explicit DestructionCounting (int& destructions) : destructions (destructions) {}
    ~DestructionCounting() override { ++destructions; }

private:
    int& destructions;
};

} // namespace tov::test
