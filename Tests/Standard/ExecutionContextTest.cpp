#include "../Support/LogTestSupport.h"
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/SuccessStatus.h>
#include <gtest/gtest.h>
#include <thread>

using namespace tov;

namespace
{

/** Writes each event it sees, with its own tag, to a shared journal. */
class JournalView : public ExecutionContextView
{
public:
    JournalView (juce::String tag, juce::StringArray& journal, bool* deleted = nullptr)
        : tag (std::move (tag)), journal (journal), deleted (deleted) {}
    ~JournalView() override
    {
        journal.add (tag + " deleted");
        if (deleted != nullptr)
            *deleted = true;
    }

    void enteredCallback (const juce::String& name) override    { journal.add (tag + " entered " + name); }
    void leavedCallback() override                              { journal.add (tag + " leaved"); }
    void askedCallback (const juce::String& question, const juce::String& answer, bool canceled) override
    {
        journal.add (tag + " asked " + question + " " + answer + (canceled ? " canceled" : ""));
    }
    void warningCallback (const juce::String& message, const Object* subject) override
    {
        journal.add (tag + " warning [" + message + "]" + (subject != nullptr ? " with subject" : ""));
    }
    void errorCallback (const juce::String& message, const Object*) override        { journal.add (tag + " error [" + message + "]"); }
    void informationCallback (const juce::String& message, const Object*) override  { journal.add (tag + " information [" + message + "]"); }

    juce::String tag;
    juce::StringArray& journal;
    bool* deleted;
};

/** Adds a second view the first time it sees information. */
class ViewAddingView : public JournalView
{
public:
    ViewAddingView (ExecutionContext& context, juce::StringArray& journal) : JournalView ("A", journal), context (context) {}

    void informationCallback (const juce::String& message, const Object* subject) override
    {
        JournalView::informationCallback (message, subject);
        if (! added)
        {
            added = true;
            context.addView (new JournalView ("B", journal));
        }
    }

    ExecutionContext& context;
    bool added = false;
};

/** An interactive context, as an application would write one. */
class AnsweringContext : public ExecutionContext
{
public:
    bool askYesNo (const juce::String& question, const juce::String&, const juce::String&, bool) override
    {
        sendAsked (question, "Yes", false);
        return true;
    }
};

} // namespace

TEST (ExecutionContextTest, ForwardsEveryEventToEveryViewInOrderOfAdding)
{
    juce::StringArray journal;
    {
        ExecutionContext context;
        context.addView (new JournalView ("A", journal));
        context.addView (new JournalView ("B", journal));
        SuccessStatus subject;
        context.enter ("Load");
        context.information ("i");
        context.warning ("w", &subject);
        context.error ("e");
        context.leave();
        EXPECT_EQ (context.getNumViews(), 2u);
    }
    EXPECT_EQ (journal.joinIntoString ("|"),
               "A entered Load|B entered Load|A information [i]|B information [i]|"
               "A warning [w] with subject|B warning [w] with subject|A error [e]|B error [e]|"
               "A leaved|B leaved|A deleted|B deleted");
}

TEST (ExecutionContextTest, WithoutViewsEventsGoNowhere)
{
    ExecutionContext context;
    context.enter ("x");
    context.information ("i");
    context.leave();
    EXPECT_EQ (context.getNumViews(), 0u);
}

TEST (ExecutionContextTest, ViewAddedDuringAWalkSeesTheSameEvent)
{
    juce::StringArray journal;
    ExecutionContext context;
    context.addView (new ViewAddingView (context, journal));
    context.information ("first");
    context.information ("second");
    EXPECT_EQ (journal.joinIntoString ("|"),
               "A information [first]|B information [first]|A information [second]|B information [second]");
}

TEST (ExecutionContextTest, DeleteViewRemovesAndDeletesOnlyAListedView)
{
    juce::StringArray journal;
    bool firstDeleted = false, strangerDeleted = false;
    ExecutionContext context;
    auto* first = new JournalView ("A", journal, &firstDeleted);
    context.addView (first);
    context.addView (new JournalView ("B", journal));

    context.deleteView (nullptr);
    JournalView stranger ("S", journal, &strangerDeleted);
    context.deleteView (&stranger);
    EXPECT_FALSE (strangerDeleted);
    EXPECT_EQ (context.getNumViews(), 2u);

    context.deleteView (first);
    EXPECT_TRUE (firstDeleted);
    EXPECT_EQ (context.getNumViews(), 1u);
    context.information ("i");
    EXPECT_EQ (journal.joinIntoString ("|"), "A deleted|B information [i]");
}

TEST (ExecutionContextTest, DeleteAllViewsDeletesInOrderOfAdding)
{
    juce::StringArray journal;
    ExecutionContext context;
    context.addView (new JournalView ("A", journal));
    context.addView (new JournalView ("B", journal));
    context.addView (new JournalView ("C", journal));
    context.deleteAllViews();
    EXPECT_EQ (context.getNumViews(), 0u);
    EXPECT_EQ (journal.joinIntoString ("|"), "A deleted|B deleted|C deleted");
    context.information ("after");
    EXPECT_EQ (journal.size(), 3);
}

TEST (ExecutionContextTest, QuestionsAreRefusedWithoutAUserInterface)
{
    juce::StringArray journal;
    ExecutionContext context;
    context.addView (new JournalView ("A", journal));

    EXPECT_FALSE (context.askYesNo ("Save?", "Save", "Discard", true));
    bool canceled = false;
    EXPECT_FALSE (context.askYesNoCancel ("Save?", canceled, "Save", "Discard", "Cancel"));
    EXPECT_TRUE (canceled);
    juce::String name = "unchanged";
    EXPECT_FALSE (context.askForAName ("Name?", name));
    EXPECT_EQ (name, "unchanged");
    EXPECT_EQ (context.askForOption ("Title", "Which?", { "a", "b", "c" }), 0);

    // A plain context does not report what it was asked.
    EXPECT_TRUE (journal.isEmpty());
}

TEST (ExecutionContextTest, AnInteractiveContextReportsItsAnswers)
{
    juce::StringArray journal;
    AnsweringContext context;
    context.addView (new JournalView ("A", journal));
    EXPECT_TRUE (context.askYesNo ("Save?", {}, {}, false));
    EXPECT_EQ (journal.joinIntoString ("|"), "A asked Save? Yes");
}

TEST (ExecutionContextTest, StatusWithABoolTurnsASuccessWithAMessageIntoAWarning)
{
    juce::StringArray journal;
    ExecutionContext context;
    context.addView (new JournalView ("A", journal));

    context.status (true, "saved");
    context.status (false, "");
    context.status (false, "failed");
    context.status (true, "");
    EXPECT_EQ (journal.joinIntoString ("|"), "A warning [saved]|A error []|A error [failed]");
}

TEST (ExecutionContextTest, StatusWithASuccessStatusFollowsItsState)
{
    juce::StringArray journal;
    ExecutionContext context;
    context.addView (new JournalView ("A", journal));

    context.status (SuccessStatus (SuccessStateEnum::success, "saved"));
    context.status (SuccessStatus (SuccessStateEnum::warning, "slow"));
    context.status (SuccessStatus (SuccessStateEnum::error, "failed"));
    EXPECT_EQ (journal.joinIntoString ("|"), "A information [saved]|A warning [slow]|A error [failed]");
}

TEST (ExecutionContextTest, StatusWithAnEmptyMessageReportsNothingWhateverTheState)
{
    juce::StringArray journal;
    ExecutionContext context;
    context.addView (new JournalView ("A", journal));

    context.status (SuccessStatus (SuccessStateEnum::success, ""));
    context.status (SuccessStatus (SuccessStateEnum::warning, ""));
    context.status (SuccessStatus (SuccessStateEnum::error, ""));
    EXPECT_TRUE (journal.isEmpty());
}

TEST (ExecutionContextTest, GetGivesTheProgramsContextWhileItRuns)
{
    auto& before = ExecutionContext::get();
    EXPECT_EQ (&ExecutionContext::get(), &before);
    EXPECT_EQ (before.getNumViews(), 0u);

    {
        test::TestProgram program;
        EXPECT_EQ (&ExecutionContext::get(), &program.getProgramExecutionContext());
        ASSERT_TRUE (program.startProgram());

        // Threads without a service share the program's context.
        ExecutionContext* seenByThread = nullptr;
        std::thread thread ([&] { seenByThread = &ExecutionContext::get(); });
        thread.join();
        EXPECT_EQ (seenByThread, &program.getProgramExecutionContext());

        program.stopProgram();
        EXPECT_EQ (&ExecutionContext::get(), &before);
    }
    EXPECT_EQ (&ExecutionContext::get(), &before);
}

TEST (ExecutionContextTest, IsAReflectedClass)
{
    ExecutionContext context;
    EXPECT_EQ (context.getClassName(), "ExecutionContext");
}
