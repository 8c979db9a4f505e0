#include "DynamicVariableTestSupport.h"
#include "Message/Mirroring/MirroringTestSupport.h"
#include <mutex>

using namespace tov;
using namespace tov::test;

// An editor and a viewer on two service threads: the viewer mirrors the editor's sheet, and the
// user-made parameters that the editor adds, edits and removes follow on the viewer's side.
namespace
{
/** A service on a thread of its own whose one peer holds the space "Document"; after each pass
    it writes down the parameters of the sheet in that space. */
class SheetService : public HistoryService
{
public:
    SheetService (const juce::String& name, int64_t identifier) : peer (new Integer (identifier))
    {
        this->name.set (name, false);
        peers = { &peer };
        onPostUpdated = [this] { writeDownParameters(); };
    }

    ~SheetService() override                         { stopService (5000); peers.clear(); }

    /** "none" without a sheet; otherwise each parameter as class, name and value, ", " between. */
    juce::String getParameters() const
    {
        const std::lock_guard<std::mutex> scopedLock (lock);
        return parameters;
    }

    Sheet* getSheet()                                { return dynamic_cast<Sheet*> (peer.document.getRootObject()); }

    EditorPeer peer;

private:
    mutable std::mutex lock;
    juce::String parameters { "none" };

    void writeDownParameters()
    {
        juce::String text ("none");
        if (auto* sheet = getSheet())
        {
            juce::StringArray parts;
            for (auto* variable : sheet->parameters)
                parts.add (variable->getClassName() + " " + variable->getFriendlyName() + "=" + variable->getValue()->toString());
            text = parts.joinIntoString (", ");
        }
        const std::lock_guard<std::mutex> scopedLock (lock);
        parameters = text;
    }
};

class DynamicVariableMirroringTest : public ::testing::Test
{
protected:
    TestProgram program;
    bool libraryIsThere = (ensureMirroringTestLibrary(), ensureDynamicVariableTestLibrary(), true);
    SheetService editor { "Editor", 1 };
    SheetService viewer { "Viewer", 2 };
    /** The editor's steps: the test asks for the next one, the editor's thread takes it. */
    std::atomic<int> requestedStep { 0 }, doneStep { 0 };

    void SetUp() override
    {
        editor.onUpdated = [this] { runEditorStep(); return true; };
        std::atomic<int>* requests = &viewerRequests;
        viewer.onUpdated = [this, requests]
        {
            if (*requests == 0 && doneStep >= 1)
                *requests = viewer.peer.asyncRequestMirroringFrom (*editor.peer.getIncomingMessageTarget()) ? 1 : -1;
            return true;
        };
        ASSERT_TRUE (editor.startService (false));
        ASSERT_TRUE (viewer.startService (false));
    }

    /** Asks the editor for the step and waits until the viewer shows the parameters. */
    bool step (int number, const juce::String& expected)
    {
        requestedStep = number;
        return viewer.waitFor ([this, number, expected] { return doneStep == number && viewer.getParameters() == expected; }, 30000);
    }

    std::atomic<int> viewerRequests { 0 };

private:
    void runEditorStep()
    {
        const int next = doneStep + 1;
        if (requestedStep < next)
            return;
        auto& space = editor.peer.document;
        if (next == 1)
            space.setRootObject (Sheet::staticClass.createObject(), true);
        auto& sheet = *editor.getSheet();
        if (next == 2)
        {
            Real half (0.5);
            sheet.parameters.append (DynamicVariable::create (getClass ("DynamicVariable(Real)"), "Gain", &half, nullptr, {}));
        }
        if (next == 3)
            static_cast<Real*> (sheet.parameters[0]->getValue())->set (0.75);
        if (next == 4)
            sheet.parameters.remove ((size_t) 0);
        doneStep = next;
    }
};
} // namespace

TEST_F (DynamicVariableMirroringTest, AParameterAddedEditedAndRemovedOnTheEditorFollowsOnTheViewer)
{
    ASSERT_TRUE (step (1, ""));
    EXPECT_EQ (viewerRequests, 1);
    EXPECT_TRUE (step (2, "DynamicVariable(Real) Gain=0.5")) << viewer.getParameters();
    EXPECT_TRUE (step (3, "DynamicVariable(Real) Gain=0.75")) << viewer.getParameters();
    EXPECT_TRUE (step (4, "")) << viewer.getParameters();
}
