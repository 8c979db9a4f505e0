// A plug-in module for tests: its factories make libraries of its own classes.
#include <Tov/Core/Library.h>

namespace
{
class PluginWidget : public tov::Object
{
public:
    TOV_DECLARE_CLASS (PluginWidget, Object)
};

class PluginLibrary : public tov::Library
{
public:
    TOV_DECLARE_CLASS (PluginLibrary, Library)

    PluginLibrary() { addClass<PluginWidget>(); }
    juce::String getName() const override { return "Plugin"; }
};

TOV_BEGIN_CLASS (PluginWidget)
TOV_END_CLASS()

TOV_BEGIN_CLASS (PluginLibrary)
TOV_END_CLASS()
}

extern "C" tov::Library* createTestPluginLibrary()
{
    return new PluginLibrary();
}

extern "C" tov::Library* createNoLibrary()
{
    return nullptr;
}
