#include "base/ZoGraph.h"
#include "base/ZoGraphConnectionIterator.h"
#include "base/ZoGraphIterator.h"
#include "base/ZoGraphPathIterator.h"
#include "base/ZoStreamWriteASCIIString.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

std::vector<ZoGraphNode*> addNodes(ZoGraph& graph, const std::string& names)
{
    std::vector<ZoGraphNode*> nodes;
    for (char name : names) {
        nodes.push_back(new ZoGraphNode(CString(std::string(1, name))));
        graph.InsertNode(nodes.back());
    }
    return nodes;
}

CString dump(ZoGraph& graph, int dot, int directed = 0)
{
    ZoStreamWriteASCIIString text;
    dot ? graph.DumpDot(text, directed) : graph.Dump(text);
    return text.GetText();
}

std::vector<float> outgoingWeights(const ZoGraphNode& node)
{
    std::vector<float> weights;
    for (ZoGraphConnectionIterator it(node.GetOutgoingConnections()); it.HasMoreElements();)
        weights.push_back(it.GetNext()->GetWeight());
    return weights;
}

TEST(ZoGraphTest, DumpsAreExact)
{
    ZoGraph graph;
    EXPECT_EQ(dump(graph, 0), CString(u"\nDer Graph enth\u00e4lt 0 Knoten\n\n\n"));
    EXPECT_EQ(dump(graph, 1, 0), CString(u"graph G {\r\n}\r\n"));
    EXPECT_EQ(dump(graph, 1, 1), CString(u"digraph G {\r\n}\r\n"));
    std::vector<ZoGraphNode*> n = addNodes(graph, "abc");
    n[0]->AddConnection(*n[1], 2.5f);
    n[1]->AddConnection(*n[0], 1.0f); // the opposite connection
    n[2]->AddConnection(*n[2], 0.25f); // a self-loop
    EXPECT_EQ(dump(graph, 0), CString(u"\nDer Graph enth\u00e4lt 3 Knoten\n\n"
                                   u"Knoten 0:\n\tVerbindung zu Knoten 1 mit Gewicht 2.500000\n"
                                   u"Knoten 1:\n\tVerbindung zu Knoten 0 mit Gewicht 1.000000\n"
                                   u"Knoten 2:\n\tVerbindung zu Knoten 2 mit Gewicht 0.250000\n\n"));
    EXPECT_EQ(dump(graph, 1, 0), CString(u"graph G {\r\na -- b [label = \"2.500000\"];\r\nc -- c [label = \"0.250000\"];\r\n}\r\n"));
    EXPECT_EQ(dump(graph, 1, 1), CString(u"digraph G {\r\na -> b [label = \"2.500000\"];\r\nb -> a [label = \"1.000000\"];\r\n"
                                         u"c -> c [label = \"0.250000\"];\r\n}\r\n"));
}

TEST(ZoGraphTest, ConnectionsStaySortedAndNodesTakeTheirConnectionsAlong)
{
    ZoGraph graph;
    std::vector<ZoGraphNode*> n = addNodes(graph, "abcd");
    for (float weight : {3.0f, 1.0f, 2.0f, 1.0f})
        n[0]->AddConnection(*n[1], weight);
    n[0]->AddConnection(*n[2], 0.5f);
    n[2]->AddConnection(*n[0], 7.0f);
    n[3]->AddConnection(*n[0], 4.0f);
    EXPECT_EQ(outgoingWeights(*n[0]), (std::vector<float>{0.5f, 1.0f, 1.0f, 2.0f, 3.0f}));
    EXPECT_TRUE(n[1]->GetIncomingConnections().GetCount() == 4u && n[0]->GetIncomingConnections().GetHead()->GetWeight() == 4.0f);
    n[0]->RemoveConnection(*n[1]); // the lightest one to b
    EXPECT_EQ(outgoingWeights(*n[0]), (std::vector<float>{0.5f, 1.0f, 2.0f, 3.0f}));
    EXPECT_EQ(n[1]->GetIncomingConnections().GetCount(), 3u);
    // Removing a middle node removes its connections both ways and leaves the indices stale.
    ZoSmartPointer<ZoGraphConnection> held = n[2]->GetOutgoingConnections().GetHead();
    graph.RemoveNode(*n[2]);
    EXPECT_EQ(held->GetReferenceCount(), 1); // only this handle is left
    EXPECT_EQ(outgoingWeights(*n[0]), (std::vector<float>{1.0f, 2.0f, 3.0f}));
    EXPECT_TRUE(n[0]->GetIncomingConnections().GetCount() == 1u && !graph.AreIndicesValid());
    EXPECT_TRUE(graph.FindNode(3) == n[3] && graph.FindNode(2) == nullptr);
    EXPECT_EQ(graph.CreateIndices(), 3u);
    EXPECT_EQ(graph.FindNode(2), n[3]);
    graph.RemoveNode(*n[3]);
    EXPECT_TRUE(graph.AreIndicesValid() && n[0]->GetIncomingConnections().GetCount() == 0u);
    // A copy is deep; the original's nodes are untouched by changes to it.
    ZoGraph copy(graph);
    EXPECT_EQ(dump(copy, 0), dump(graph, 0));
    ZoGraphIterator it(copy);
    ZoGraphNode& copiedA = it.GetNext();
    ASSERT_NE(&copiedA, n[0]);
    copiedA.RemoveAllConnections();
    EXPECT_EQ(n[0]->GetOutgoingConnections().GetCount(), 3u);
    ZoGraph assigned;
    assigned = graph;
    EXPECT_EQ(dump(assigned, 1, 1), dump(graph, 1, 1));
    it.Restart(); // two nodes are left
    EXPECT_TRUE(&it.GetNext() == &copiedA && it.HasMoreElements());
    it.GetNext();
    EXPECT_FALSE(it.HasMoreElements());
    // Emptying a node's own list takes each connection out of its target's list as well.
    n[0]->GetOutgoingConnections().RemoveAllConnections();
    EXPECT_TRUE(n[0]->GetOutgoingConnections().GetCount() == 0u && n[1]->GetIncomingConnections().GetCount() == 0u);
}

TEST(ZoGraphTest, PathLinksStayConsistentAndWeightsReset)
{
    ZoGraph graph;
    std::vector<ZoGraphNode*> n = addNodes(graph, "abcd");
    n[2]->SetNextNodeOnPath(n[1]);
    n[0]->SetNextNodeOnPath(n[1]); // takes b away from c
    EXPECT_TRUE(n[2]->GetNextNodeOnPath() == nullptr && n[1]->GetPreviousNodeOnPath() == n[0]);
    n[3]->SetPreviousNodeOnPath(n[1]);
    auto names = [](ZoGraphPathIterator it) {
        std::string names;
        while (it.HasMoreElements())
            names += it.GetNext().GetName().ToUtf8();
        return names;
    };
    EXPECT_EQ(names(ZoGraphPathIterator(*n[0], *n[3])), "abd");
    EXPECT_EQ(names(ZoGraphPathIterator(*n[0], *n[3], ZoGraphPathIterator::eBackward)), "dba");
    n[1]->SetNextNodeOnPath(nullptr);
    EXPECT_EQ(n[3]->GetPreviousNodeOnPath(), nullptr);
    n[1]->SetWeight(2.0f);
    n[1]->AddAttributes(5);
    graph.RemoveAttributes(1);
    EXPECT_EQ(n[1]->GetAttributes(), 4u);
    graph.ResetWeights();
    EXPECT_EQ(n[1]->GetWeight(), std::numeric_limits<float>::max());
}

} // namespace
