// ZoMpGraphToShortestPath against Boost.Graph's dijkstra_shortest_paths on the same random graph of
// 100,000 nodes and 1,000,000 connections. The target is a node without connections, so both
// searches settle every reachable node: the same work on both sides.
#include "base/ZoGraph.h"
#include "base/ZoMpGraphToShortestPath.h"

#include <benchmark/benchmark.h>
#include <boost/graph/adjacency_list.hpp>
#include <boost/graph/dijkstra_shortest_paths.hpp>

#include <random>
#include <vector>

namespace {

const uint32_t kNodes = 100000;
const uint32_t kConnections = 1000000;

struct RandomEdges
{
    std::vector<uint32_t> sources, targets;
    std::vector<float> weights;
    RandomEdges()
    {
        std::mt19937 random(12345);
        std::uniform_int_distribution<uint32_t> node(0, kNodes - 1);
        std::uniform_real_distribution<float> weight(0.0f, 100.0f);
        for (uint32_t i = 0; i < kConnections; ++i) {
            sources.push_back(node(random));
            targets.push_back(node(random));
            weights.push_back(weight(random));
        }
    }
};

const RandomEdges& edges()
{
    static const RandomEdges instance;
    return instance;
}

} // namespace

static void ZoMpGraphToShortestPathAllNodes(benchmark::State& state)
{
    const RandomEdges& input = edges();
    ZoGraph graph;
    std::vector<ZoGraphNode*> nodes;
    for (uint32_t i = 0; i <= kNodes; ++i) {
        nodes.push_back(new ZoGraphNode());
        graph.InsertNode(nodes.back());
    }
    for (uint32_t i = 0; i < kConnections; ++i)
        nodes[input.sources[i]]->AddConnection(*nodes[input.targets[i]], input.weights[i]);
    ZoMpGraphToShortestPath search;
    for (auto _ : state) {
        search.SetInput(graph, *nodes[0], *nodes[kNodes]);
        benchmark::DoNotOptimize(search.Compute());
    }
    state.SetItemsProcessed(state.iterations() * kConnections);
}
BENCHMARK(ZoMpGraphToShortestPathAllNodes)->Unit(benchmark::kMillisecond);

static void BoostDijkstraAllNodes(benchmark::State& state)
{
    typedef boost::adjacency_list<boost::vecS, boost::vecS, boost::directedS, boost::no_property,
                                  boost::property<boost::edge_weight_t, float>>
        Graph;
    const RandomEdges& input = edges();
    Graph graph(kNodes + 1);
    for (uint32_t i = 0; i < kConnections; ++i)
        boost::add_edge(input.sources[i], input.targets[i], input.weights[i], graph);
    for (auto _ : state) {
        std::vector<Graph::vertex_descriptor> predecessors(boost::num_vertices(graph));
        std::vector<float> distances(boost::num_vertices(graph));
        boost::dijkstra_shortest_paths(graph, 0, boost::predecessor_map(predecessors.data()).distance_map(distances.data()));
        benchmark::DoNotOptimize(distances[kNodes]);
    }
    state.SetItemsProcessed(state.iterations() * kConnections);
}
BENCHMARK(BoostDijkstraAllNodes)->Unit(benchmark::kMillisecond);
