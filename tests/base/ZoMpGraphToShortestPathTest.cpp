#include "base/ZoClassSerialization.h"
#include "base/ZoExceptionNoOutputData.h"
#include "base/ZoMpGraphToShortestPath.h"
#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

struct Edge
{
    uint32_t target;
    float weight;
};

// The trusted model: Bellman-Ford relaxation over an adjacency list, as many rounds as nodes.
std::vector<float> plainDistances(const std::vector<std::vector<Edge>>& adjacency, uint32_t start)
{
    std::vector<float> distance(adjacency.size(), std::numeric_limits<float>::max());
    distance[start] = 0.0f;
    for (size_t round = 0; round < adjacency.size(); ++round)
        for (size_t from = 0; from < adjacency.size(); ++from)
            for (const Edge& edge : adjacency[from])
                if (distance[from] != std::numeric_limits<float>::max())
                    distance[edge.target] = std::min(distance[edge.target], distance[from] + edge.weight);
    return distance;
}

std::vector<ZoGraphNode*> buildGraph(ZoGraph& graph, const std::vector<std::vector<Edge>>& adjacency)
{
    std::vector<ZoGraphNode*> nodes;
    for (size_t i = 0; i < adjacency.size(); ++i) {
        nodes.push_back(new ZoGraphNode(CString(std::to_string(i))));
        graph.InsertNode(nodes.back());
    }
    for (size_t i = 0; i < adjacency.size(); ++i)
        for (const Edge& edge : adjacency[i])
            nodes[i]->AddConnection(*nodes[edge.target], edge.weight);
    return nodes;
}

std::string pathNames(const ZoMpGraphToShortestPath& search)
{
    std::string names;
    for (ZoGraphPathIterator it = search.GetOutput(); it.HasMoreElements();)
        names += it.GetNext().GetName().ToUtf8();
    return names;
}

TEST(ZoMpGraphToShortestPathTest, AgreesWithPlainRelaxationOnRandomGraphs)
{
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    int unreachable = 0, found = 0;
    for (int round = 0; round < 400; ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        const uint32_t count = 1 + random() % 30;
        std::vector<std::vector<Edge>> adjacency(count);
        // Small whole weights, zero included, so that sums are exact and ties are common.
        for (uint32_t k = random() % (count * 3 + 1); k > 0; --k)
            adjacency[random() % count].push_back({static_cast<uint32_t>(random() % count), static_cast<float>(random() % 4)});
        ZoGraph graph;
        const std::vector<ZoGraphNode*> nodes = buildGraph(graph, adjacency);
        const uint32_t start = random() % count, end = random() % count;
        const std::vector<float> expected = plainDistances(adjacency, start);
        ZoMpGraphToShortestPath search;
        search.SetInput(graph, *nodes[start], *nodes[end]);
        const int computed = search.Compute();
        ASSERT_EQ(computed, expected[end] != ZoGraphNode::GetInitialWeight() ? 1 : 0);
        ASSERT_EQ(nodes[end]->GetWeight(), expected[end]);
        if (!computed) {
            ++unreachable;
            EXPECT_THROW(search.GetOutput(), ZoExceptionNoOutputData);
            for (uint32_t i = 0; i < count; ++i)
                ASSERT_EQ(nodes[i]->GetWeight(), expected[i]) << "node " << i;
            continue;
        }
        ++found;
        std::vector<ZoGraphNode*> path;
        for (ZoGraphPathIterator it = search.GetOutput(); it.HasMoreElements();)
            path.push_back(&it.GetNext());
        ASSERT_TRUE(path.front() == nodes[start] && path.back() == nodes[end]);
        EXPECT_EQ(path.size() == 1, start == end);
        ASSERT_EQ(path[0]->GetWeight(), expected[start]);
        for (size_t k = 1; k < path.size(); ++k) {
            ASSERT_EQ(path[k]->GetWeight(), expected[path[k]->GetIndex()]);
            bool connected = false;
            for (const Edge& edge : adjacency[path[k - 1]->GetIndex()])
                connected = connected || (edge.target == path[k]->GetIndex() && path[k - 1]->GetWeight() + edge.weight == path[k]->GetWeight());
            ASSERT_TRUE(connected) << "step " << k;
        }
    }
    EXPECT_TRUE(unreachable > 0 && found > 0);
}

TEST(ZoMpGraphToShortestPathTest, TiesKeepTheFirstPredecessorAndResultsAreReused)
{
    for (const bool aFirst : {true, false}) {
        ZoGraph graph;
        // Nodes s, a, b, t: s->a and s->b weigh the same, and so do a->t and b->t.
        const std::vector<ZoGraphNode*> n = buildGraph(graph, {{}, {{3, 1.0f}}, {{3, 1.0f}}, {}});
        n[0]->AddConnection(*n[aFirst ? 1 : 2], 1.0f);
        n[0]->AddConnection(*n[aFirst ? 2 : 1], 1.0f);
        ZoMpGraphToShortestPath search;
        search.SetInput(graph, *n[0], *n[3]);
        ASSERT_EQ(search.Compute(), 1);
        EXPECT_TRUE(pathNames(search) == (aFirst ? "013" : "023") && n[3]->GetWeight() == 2.0f);
        // A second Compute without SetInput does not search again.
        n[3]->SetWeight(9.0f);
        EXPECT_TRUE(search.Compute() == 1 && n[3]->GetWeight() == 9.0f);
        search.SetInput(graph, *n[3], *n[3]);
        EXPECT_EQ(search.IsCalculated(), 0);
        EXPECT_TRUE(search.Compute() == 1 && pathNames(search) == "3");
    }
    ZoMpGraphToShortestPath empty;
    EXPECT_TRUE(empty.IsComputable() == 0 && empty.Compute() == 0);
    zotest::ExpectThrowSite<ZoExceptionNoOutputData>([&] { empty.GetOutput(); }, "..\\base\\ZoMpGraphToShortestPath.cpp",
                                                     "ZoMpGraphToShortestPath", "GetOutput", 203);
}

TEST(ZoMpGraphToShortestPathTest, RecordingsReplayAndNeverStopTheComputation)
{
    zotest::TempFolder folder;
    zotest::ScopedSystemTemporary temporary(folder);
    ZoGraph graph;
    const std::vector<ZoGraphNode*> n = buildGraph(graph, {{{1, 2.0f}, {2, 5.0f}}, {{2, 1.0f}}, {}});
    ZoMpGraphToShortestPath search;
    search.SetFlags(ZoAlgorithm::eRecordUnitTest);
    search.SetInput(graph, *n[0], *n[2]);
    search.SetUniqueID(u"case");
    ASSERT_EQ(search.Compute(), 1);
    const std::string recording = folder.Path("Halvo/ZoMpGraphToShortestPath/case.dat");
    ASSERT_TRUE(std::filesystem::exists(recording));
    // The identifier was used once: the next recording gets a fresh one.
    search.SetInput(graph, *n[0], *n[1]);
    ASSERT_EQ(search.Compute(), 1);
    std::vector<size_t> stems;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path("Halvo/ZoMpGraphToShortestPath")))
        stems.push_back(entry.path().stem().string().size());
    std::sort(stems.begin(), stems.end());
    EXPECT_EQ(stems, (std::vector<size_t>{4, 36}));

    ZoMpGraphToShortestPath replay;
    EXPECT_TRUE(replay.RunUnitTest(CString(recording)) == ZoUnitTest::eResultSucceeded && replay.IsComputable() == 0);
    std::vector<unsigned char> bytes = zotest::ReadBytes(recording);
    bytes[bytes.size() - 4] = 1; // the end of the recorded path: node 1 instead of 2
    zotest::WriteBytes(recording, bytes);
    EXPECT_EQ(replay.RunUnitTest(CString(recording)), ZoUnitTest::eResultFailed);
    // By default the harness replays the class's own recording folder.
    ZoUnitTest::Summary summary = replay.RunRecordedUnitTests();
    EXPECT_TRUE(summary.counts[ZoUnitTest::eResultSucceeded] == 1u && summary.counts[ZoUnitTest::eResultFailed] == 1u);
    bytes[bytes.size() - 28] = 3; // the recorded end node (before the 24-byte output): one past the last
    zotest::WriteBytes(recording, bytes);
    EXPECT_EQ(replay.RunUnitTest(CString(recording)), ZoUnitTest::eResultError);
    // A file where the recording folder should be: nothing is recorded, the result is the same.
    zotest::TempFolder blocked;
    zotest::ScopedSystemTemporary blockedTemporary(blocked);
    std::ofstream(blocked.Path("Halvo")) << "not a folder";
    search.SetInput(graph, *n[0], *n[2]);
    EXPECT_TRUE(search.Compute() == 1 && pathNames(search) == "012");
    EXPECT_FALSE(std::filesystem::is_directory(blocked.Path("Halvo")));
}

} // namespace
