#include "AtomicTestSupport.h"

using namespace tov;
using namespace tov::test;

namespace
{
const juce::String document = "<layout width=\"3\"><panel name=\"left\"/></layout>";
}

TEST (XmlElementTest, GetAfterLoadParsesOnceAndKeepsTheElement)
{
    XmlElement xml;
    EXPECT_TRUE (loadFromState (xml, std::make_shared<State> (document)).result);
    EXPECT_EQ (xml.getSourceCode(), document);
    juce::XmlElement* element = xml.get();
    ASSERT_NE (element, nullptr);
    EXPECT_EQ (element->getTagName(), "layout");
    EXPECT_EQ (element->getIntAttribute ("width"), 3);
    EXPECT_EQ (xml.get(), element);
}

TEST (XmlElementTest, LoadDropsTheParsedElement)
{
    XmlElement xml;
    xml.setSourceCode (document);
    ASSERT_NE (xml.get(), nullptr);
    EXPECT_TRUE (loadFromState (xml, std::make_shared<State> ("<other/>")).result);
    ASSERT_NE (xml.get(), nullptr);
    EXPECT_EQ (xml.get()->getTagName(), "other");
}

TEST (XmlElementTest, AnInvalidTextGivesNoElement)
{
    XmlElement xml;
    xml.setSourceCode ("<open>");
    EXPECT_EQ (xml.get(), nullptr);
    EXPECT_TRUE (xml.isNotEmpty());
    EXPECT_EQ (xml.getSourceCode(), "<open>");
}

TEST (XmlElementTest, SetWritesTheText)
{
    juce::XmlElement element ("scene");
    element.setAttribute ("name", "intro");
    XmlElement xml;
    ChangeCounter counter (xml);
    xml.set (&element);
    EXPECT_EQ (counter.count, 1);
    EXPECT_EQ (xml.getSourceCode(), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n\r\n<scene name=\"intro\"/>\r\n");
    ASSERT_NE (xml.get(), nullptr);
    EXPECT_NE (xml.get(), &element);
    EXPECT_TRUE (xml.get()->isEquivalentTo (&element, false));
}

TEST (XmlElementTest, ClearingEmptiesBoth)
{
    XmlElement xml;
    xml.setSourceCode (document);
    xml.clearElement();
    EXPECT_TRUE (xml.isEmpty());
    EXPECT_EQ (xml.get(), nullptr);
    EXPECT_EQ (xml.getSourceCode(), "");
}

TEST (XmlElementTest, ElementForSaving)
{
    XmlElement xml;
    EXPECT_EQ (xml.createElementForSaving(), nullptr);

    xml.setSourceCode ("<a/>");
    ASSERT_NE (xml.get(), nullptr);
    auto shortText = xml.createElementForSaving();
    ASSERT_NE (shortText, nullptr);
    EXPECT_TRUE (shortText->isTextElement());
    EXPECT_EQ (shortText->getText(), "<a/>");

    xml.setSourceCode (document);
    ASSERT_NE (xml.get(), nullptr);
    EXPECT_EQ (xml.createElementForSaving()->getText(), "\n" + document + "\n");
}

TEST (XmlElementTest, ParseDocumentReportsFailures)
{
    juce::String messages;
    ToStringExecutionContext context (messages);
    EXPECT_EQ (XmlElement::parseString (context, "<a><b></a>", "scene.xml"), nullptr);
    EXPECT_TRUE (messages.startsWith ("Error: Could not parse scene.xml: ")) << messages;

    messages.clear();
    EXPECT_EQ (XmlElement::parseString (context, "", "empty.xml"), nullptr);
    EXPECT_EQ (messages, "Error: Could not parse empty.xml: not enough input\n");

    messages.clear();
    EXPECT_EQ (XmlElement::parseFile (context, juce::File ("/nonexistent/file.xml")), nullptr);
    EXPECT_TRUE (messages.startsWith ("Error: Could not ")) << messages;
}

TEST (XmlElementTest, CopiesTextAndElement)
{
    XmlElement source;
    source.setSourceCode (document);
    source.get();
    XmlElement copy (source);
    ASSERT_NE (copy.get(), nullptr);
    EXPECT_NE (copy.get(), source.get());
    XmlElement target;
    source.copyTo (target);
    EXPECT_TRUE (target.equals (source));
    EXPECT_EQ (target.get()->getTagName(), "layout");
}
